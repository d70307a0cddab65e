#pragma once

#include "vireo/context/SavedState.h"

namespace tavo {

// While it lives, pixels are read to and from memory without gaps (each row starts at a multiple of four bytes) and as
// they are, whatever the application has set for its own or left bound.
class PlainPixels
{
public:
    PlainPixels();
    ~PlainPixels();
    PlainPixels(const PlainPixels&) = delete;
    PlainPixels& operator=(const PlainPixels&) = delete;

private:
    SavedAttributes m_Transfer{GL_PIXEL_MODE_BIT};
    SavedClientAttributes m_Storage{GL_CLIENT_PIXEL_STORE_BIT};
    // Not every driver counts these among the above.
    int m_PackBuffer = 0;
    int m_UnpackBuffer = 0;
};

} // namespace tavo
