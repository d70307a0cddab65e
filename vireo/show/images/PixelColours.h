#pragma once

#include <QRgb>
#include <array>
#include <cstddef>
#include <string>

#include "vireo/show/colours/ColourMap.h"
#include "vireo/show/images/ImagePixels.h"

namespace tavo {

// How numbers become colours.
struct ImageLook
{
    int channel = 0;      // -1: the first three are red, green and blue
    long double from = 0; // exact for integers of 64 bits, too
    long double to = 255;
    double gamma = 1;
    std::string colourMap;    // of one channel; empty for grey as bright as the number is great
    bool isSizeShown = false; // of numbers, whatever their sign

    bool isColour() const { return channel < 0; }
    bool operator==(const ImageLook& other) const = default;
};

// The colours of what is no number and of what is infinite, which no map has.
constexpr QRgb COLOUR_OF_NAN = qRgb(255, 0, 255);
constexpr QRgb COLOUR_OF_INFINITY = qRgb(0, 255, 0);

// The colours of pixels, by tables: what a pixel costs depends on nothing but its type.
class PixelColours
{
public:
    explicit PixelColours(const ImageLook& look);

    const ImageLook& look() const { return m_Look; }

    // Whether these pixels are bytes of red, green and blue in rows that QImage knows, which are shown as they are.
    bool areShownAsTheyAre(const ImagePixels& pixels) const;

    // The colours of `count` pixels of a row, from the pixel `x` on.
    void convert(const ImagePixels& pixels, int x, int y, int count, QRgb* colours) const;

    // That numbers have from the least to the greatest of the range.
    ColourMap map() const;

private:
    static constexpr std::size_t SIZE = 1024;
    // Behind those of numbers: what is infinite has one of SIZE entries, what is no number the last one.
    static constexpr int ENTRY_OF_NAN = 2 * SIZE;
    static constexpr int CHUNK = 256; // pixels that are converted at a time

    template <typename T>
    void findEntries(const T* numbers, int step, int count, int* entries) const;
    template <typename T>
    void convertNumbers(const T* numbers, int step, int count, QRgb* colours) const;
    void convertNumbers(const std::uint8_t* numbers, int step, int count, QRgb* colours) const;
    template <typename T>
    void convertColours(const T* numbers, const ImagePixels& pixels, int count, QRgb* colours) const;
    void convertColours(const std::uint8_t* numbers, const ImagePixels& pixels, int count, QRgb* colours) const;

    ImageLook m_Look;
    double m_Unit;  // that numbers are multiplied by first
    double m_Scale; // and from there to entries
    bool m_IsPlain; // bytes are colours as they are
    std::array<QRgb, 2 * SIZE + 1> m_Colours;
    std::array<unsigned char, SIZE> m_Levels;
    // Of bytes.
    std::array<QRgb, 256> m_ColoursOfBytes;
    std::array<unsigned char, 256> m_LevelsOfBytes;
};

} // namespace tavo
