#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <memory>

namespace tavo {

// Numbers that come at the back and go at the front, in blocks. Beside its numbers it takes a block or two, where a
// deque takes a twentieth of them; and while as many go as come, the blocks go round, and no memory is asked for.
class NumberQueue
{
public:
    std::size_t size() const { return m_Size; }
    bool empty() const { return m_Size == 0; }

    double operator[](std::size_t i) const { return m_Blocks[(m_First + i) / BLOCK][(m_First + i) % BLOCK]; }

    void push_back(double number) { append(&number, 1); }

    template <typename Number>
    void append(const Number* numbers, std::size_t count)
    {
        while (count > 0) {
            const std::size_t place = (m_First + m_Size) % BLOCK;
            const std::size_t piece = std::min(count, BLOCK - place);
            if (place == 0)
                addBlock();
            std::copy_n(numbers, piece, m_Blocks.back().get() + place);
            numbers += piece;
            count -= piece;
            m_Size += piece;
        }
    }

    // From the front.
    void drop(std::size_t count);

    // Copies `count` numbers from the i-th on.
    void read(std::size_t i, std::size_t count, double* numbers) const;

private:
    static constexpr std::size_t BLOCK = 4096;

    using Block = std::unique_ptr<double[]>;

    void addBlock();

    std::deque<Block> m_Blocks; // the last one has the last number, or none is there
    std::size_t m_First = 0;    // in the first block
    std::size_t m_Size = 0;
    Block m_Spare;
};

} // namespace tavo
