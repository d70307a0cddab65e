#pragma once

namespace tavo {

// What OpenGL has been told to draw until now, which it does in its own time. The context must be current.
//
// Where the driver has no such things, it is drawn at once.
class DrawingFence
{
public:
    DrawingFence();
    ~DrawingFence();
    DrawingFence(const DrawingFence&) = delete;
    DrawingFence& operator=(const DrawingFence&) = delete;

    // Returns when it is drawn, whatever was called since.
    void wait() const;

private:
    void* m_Fence = nullptr;
};

} // namespace tavo
