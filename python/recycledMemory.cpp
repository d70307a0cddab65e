#include "python/recycledMemory.h"

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace tavo::python {

namespace {

constexpr std::size_t MOST_BYTES = 64 << 20; // what is more goes back to the system
constexpr std::size_t MOST_BLOCKS = 16;

struct Block
{
    std::unique_ptr<std::byte[]> bytes;
    std::size_t size = 0;
};

struct Kept
{
    Kept() { blocks.reserve(MOST_BLOCKS); }

    std::mutex mutex;
    std::vector<Block> blocks; // the oldest first
    std::size_t size = 0;      // of all together
};

// Never destroyed: what the window has lasts longer than static objects.
Kept& kept()
{
    static Kept* const theKept = new Kept;
    return *theKept;
}

// With them locked.
Block takeOut(std::vector<Block>::iterator place)
{
    Block block = std::move(*place);
    kept().blocks.erase(place);
    kept().size -= block.size;
    return block;
}

Block take(std::size_t size)
{
    {
        const std::lock_guard lock(kept().mutex);
        std::vector<Block>& blocks = kept().blocks;
        const auto fitting = std::find_if(blocks.begin(), blocks.end(),
            [size](const Block& block) { return block.size >= size && block.size / 2 <= size; });
        if (fitting != blocks.end())
            return takeOut(fitting);
    }
    return {std::make_unique_for_overwrite<std::byte[]>(size), size};
}

void keep(Block block) noexcept
{
    if (block.size > MOST_BYTES)
        return;
    const std::lock_guard lock(kept().mutex);
    std::vector<Block>& blocks = kept().blocks;
    while (!blocks.empty() && (blocks.size() == MOST_BLOCKS || kept().size + block.size > MOST_BYTES))
        takeOut(blocks.begin());
    kept().size += block.size;
    blocks.push_back(std::move(block));
}

} // namespace

std::shared_ptr<std::byte> recycledMemory(std::size_t size)
{
    Block block = take(size);
    const std::size_t blockSize = block.size;
    return {block.bytes.release(), [blockSize](std::byte* bytes) {
                keep({std::unique_ptr<std::byte[]>(bytes), blockSize});
            }};
}

} // namespace tavo::python
