#include "vireo/show/plots/NumberQueue.h"

#include <utility>

namespace tavo {

void NumberQueue::drop(std::size_t count)
{
    m_First += count;
    m_Size -= count;
    for (; m_First >= BLOCK; m_First -= BLOCK) {
        m_Spare = std::move(m_Blocks.front());
        m_Blocks.pop_front();
    }
}

void NumberQueue::read(std::size_t i, std::size_t count, double* numbers) const
{
    for (i += m_First; count > 0;) {
        const std::size_t piece = std::min(count, BLOCK - i % BLOCK);
        std::copy_n(m_Blocks[i / BLOCK].get() + i % BLOCK, piece, numbers);
        numbers += piece;
        i += piece;
        count -= piece;
    }
}

void NumberQueue::addBlock()
{
    m_Blocks.push_back(m_Spare ? std::move(m_Spare) : Block(new double[BLOCK]));
}

} // namespace tavo
