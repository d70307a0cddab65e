#include "vireo/show/volumes/CategoryEntries.h"

#include <algorithm>

namespace tavo {

namespace {

constexpr std::uint64_t MOST_NEAR = 1 << 16;

}

CategoryEntries::CategoryEntries(const std::set<std::int64_t>& categories)
{
    for (const std::int64_t category : categories)
        if (category != 0)
            m_Categories.push_back(category);
    if (m_Categories.empty())
        return;
    m_Least = m_Categories.front();
    const auto placeOf = [this](std::int64_t category) {
        return static_cast<std::uint64_t>(category) - static_cast<std::uint64_t>(m_Least);
    };
    const auto firstFar = std::find_if(m_Categories.begin(), m_Categories.end(),
        [&placeOf](std::int64_t category) { return placeOf(category) >= MOST_NEAR; });
    m_Near.resize(placeOf(*(firstFar - 1)) + 1);
    for (auto near = m_Categories.begin(); near != firstFar; ++near)
        m_Near[placeOf(*near)] = static_cast<std::uint16_t>(near - m_Categories.begin() + 1);
}

std::uint16_t CategoryEntries::search(std::int64_t label) const
{
    const auto found = std::lower_bound(m_Categories.begin(), m_Categories.end(), label);
    const bool isKnown = found != m_Categories.end() && *found == label;
    return isKnown ? static_cast<std::uint16_t>(found - m_Categories.begin() + 1) : 0;
}

} // namespace tavo
