#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "vireo/context/SavedState.h"
#include "vireo/show/Image.h"

#include <GL/gl.h>

namespace tavo {

// What is said of an image that cannot be read from the GPU.
void refuseReading(std::string_view name, const std::string& why) noexcept;

// Whether a context is current that can be read in; what is wrong is said.
bool canReadHere(std::string_view name) noexcept;

// Pixels are written as they are, one after the other, while it lives.
class PlainReading
{
public:
    PlainReading();
    ~PlainReading();
    PlainReading(const PlainReading&) = delete;
    PlainReading& operator=(const PlainReading&) = delete;

private:
    SavedClientAttributes m_Storage;
    SavedAttributes m_Transfer;
    bool m_HasPixelBuffers;
    GLint m_PixelBuffer = 0;
};

// Pixels that are to be read. Their memory is not filled before, which would take about as long as reading them does.
template <Number T>
class UnreadPixels : public Pixels
{
public:
    explicit UnreadPixels(std::size_t count)
        : UnreadPixels(std::shared_ptr<T[]>(new T[count]), count)
    {}

    T* data() const { return m_Numbers.get(); }

protected:
    UnreadPixels(const std::shared_ptr<T[]>& numbers, std::size_t count)
        : m_Numbers(numbers)
    {
        NumberArray::operator=(NumberArray(m_Numbers, m_Numbers.get(), count, numberTypeOf<T>()));
    }

private:
    std::shared_ptr<T[]> m_Numbers;
};

int channelsOf(GLenum format);

std::size_t countOf(int width, int height, int depth, int channels);

} // namespace tavo
