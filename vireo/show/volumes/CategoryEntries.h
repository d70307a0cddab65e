#pragma once

#include <cstdint>
#include <set>
#include <vector>

#include "vireo/show/colours/colourOfLabel.h"

namespace tavo {

// Where categories stand in a table of colours: from 1 on, in their order. Entry 0 is of what is none: 0, and what is
// not among them.
class CategoryEntries
{
public:
    explicit CategoryEntries(const std::set<std::int64_t>& categories);

    // The category of entry 1 first.
    const std::vector<std::int64_t>& categories() const { return m_Categories; }

    template <typename T>
    std::uint16_t entryOf(T value) const
    {
        const std::optional<std::int64_t> label = labelOf(value);
        return label ? entryOfLabel(*label) : 0;
    }

private:
    std::uint16_t entryOfLabel(std::int64_t label) const
    {
        const auto place = static_cast<std::uint64_t>(label) - static_cast<std::uint64_t>(m_Least);
        return place < m_Near.size() ? m_Near[place] : search(label);
    }
    std::uint16_t search(std::int64_t label) const;

    std::vector<std::int64_t> m_Categories;
    std::int64_t m_Least = 0;
    std::vector<std::uint16_t> m_Near; // entries of the least category and those behind it, with gaps
};

} // namespace tavo
