#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <tuple>

#include "vireo/show/images/ImagePixels.h"

namespace tavo {

// An image at half its size, a quarter and so on, each pixel the mean of those that it stands for. What is no number or
// infinite in any of them is so in the mean: it is seen at every size.
//
// Levels are made by tiles, when they are looked at. What has not been looked at for longest goes when they take too
// much memory; above the pixels themselves, whose copy is the program's affair.
class ImageLevels
{
public:
    static constexpr int TILE = 256;

    explicit ImageLevels(std::size_t mostBytes = std::size_t(256) << 20)
        : m_MostBytes(mostBytes)
    {}

    void setPixels(const ImagePixels& pixels);
    const ImagePixels& pixels() const { return m_Pixels; }

    // Of a level: 0 is the image itself.
    QSize sizeOf(int level) const;

    // Calls `use(pixels, place)` for pieces that cover a region of a level; `place` is where a piece is in the level.
    void visit(
        int level, const QRect& region, const std::function<void(const ImagePixels& piece, const QPoint& place)>& use);

    // What is visited while it lives is seen at once: nothing of it is forgotten until then.
    class Look
    {
    public:
        explicit Look(ImageLevels& levels);
        ~Look();
        Look(const Look&) = delete;
        Look& operator=(const Look&) = delete;

    private:
        ImageLevels& m_Levels;
    };

    std::size_t numBytes() const { return m_NumBytes; }

private:
    struct Tile
    {
        ImagePixels pixels;
        std::size_t numBytes = 0;
        std::uint64_t lastUse = 0;
    };
    using Key = std::tuple<int, int, int>; // level, column, row

    const ImagePixels& tile(const Key& key);
    ImagePixels make(const Key& key);
    void forgetOld();

    ImagePixels m_Pixels;
    std::map<Key, Tile> m_Tiles;
    std::size_t m_MostBytes;
    std::size_t m_NumBytes = 0;
    std::uint64_t m_Use = 0;
    int m_NumLooks = 0; // one within the other
};

} // namespace tavo
