#include "vireo/show/plots/Pyramid.h"

namespace tavo {

void Pyramid::addBlock(const Extent& extent)
{
    Extent added = extent;
    for (std::size_t level = 0;; ++level) {
        if (level == m_Levels.size())
            m_Levels.emplace_back();
        m_Levels[level].blocks.push_back(added);
        const std::size_t size = m_Levels[level].size();
        if (size % FACTOR != 0)
            return;
        added = {};
        for (std::size_t block = std::max(size - FACTOR, m_Levels[level].numDropped); block < size; ++block)
            added.include(m_Levels[level][block]);
    }
}

void Pyramid::drop(std::size_t first)
{
    std::size_t blockSize = m_BlockSize;
    for (Level& level : m_Levels) {
        while (!level.blocks.empty() && (level.numDropped + 1) * blockSize <= first) {
            level.blocks.pop_front();
            ++level.numDropped;
        }
        blockSize *= FACTOR;
    }
}

} // namespace tavo
