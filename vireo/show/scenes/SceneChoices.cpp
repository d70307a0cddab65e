#include "vireo/show/scenes/SceneChoices.h"

#include <algorithm>

#include "vireo/show/scenes/SceneUpdate.h"

namespace tavo {

ItemChoice SceneChoices::of(const std::string& path) const
{
    const auto own = m_Choices.find(path);
    ItemChoice choice = own != m_Choices.end() ? own->second : ItemChoice();
    for (std::size_t end = path.rfind('/'); !choice.isVisible && end != std::string::npos;) {
        const auto found = m_Choices.find(path.substr(0, end));
        if (found != m_Choices.end())
            choice.isVisible = found->second.isVisible;
        end = end > 0 ? path.rfind('/', end - 1) : std::string::npos;
    }
    return choice;
}

void SceneChoices::set(const std::string& path, const ItemChoice& choice)
{
    ItemChoice& own = m_Choices[path];
    const std::optional<bool> isVisible = own.isVisible;
    own = choice;
    own.isVisible = isVisible;
}

void SceneChoices::setVisible(const std::string& branch, bool isVisible)
{
    for (auto& [path, choice] : m_Choices)
        if (isInBranch(path, branch))
            choice.isVisible.reset();
    m_Choices[branch].isVisible = isVisible;
}

void SceneChoices::reset(const std::string& branch)
{
    std::erase_if(m_Choices, [&branch](const auto& entry) { return isInBranch(entry.first, branch); });
}

bool SceneChoices::areAnyIn(const std::string& branch) const
{
    return std::any_of(m_Choices.begin(), m_Choices.end(),
        [&branch](const auto& entry) { return isInBranch(entry.first, branch) && entry.second != ItemChoice(); });
}

} // namespace tavo
