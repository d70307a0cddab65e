#include "vireo/show/images/ImageLinks.h"

namespace tavo {

void ImageLinks::add(const std::string& from, const std::string& to)
{
    m_To[from].insert(to);
    m_From[to].insert(from);
}

void ImageLinks::removeFrom(const std::string& name)
{
    const auto links = m_To.find(name);
    if (links == m_To.end())
        return;
    for (const std::string& to : links->second)
        m_From[to].erase(name);
    m_To.erase(links);
}

std::vector<std::string> ImageLinks::linkedTo(
    const std::string& name, const std::function<bool(const std::string&)>& isThere) const
{
    std::vector<std::string> linked{name};
    std::set<std::string> seen{name};
    for (std::size_t i = 0; i < linked.size(); ++i)
        for (const Names* names : {&m_To, &m_From}) {
            const auto neighbours = names->find(linked[i]);
            if (neighbours == names->end())
                continue;
            for (const std::string& neighbour : neighbours->second)
                if (isThere(neighbour) && seen.insert(neighbour).second)
                    linked.push_back(neighbour);
        }
    return linked;
}

} // namespace tavo
