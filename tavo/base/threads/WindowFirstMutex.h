#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace tavo {

// A mutex between one thread, the window's, and any number of others. The window's goes first: threads that lock
// without a pause would hardly ever let it in, and the window would stand still.
class WindowFirstMutex
{
public:
    // What the others call.
    void lock()
    {
        std::unique_lock<std::mutex> lock(m_Mutex);
        m_WindowHasBeen.wait(lock, [this] { return !m_IsWindowWaiting; });
        lock.release();
    }

    // What the window's thread calls.
    void lockFirst()
    {
        m_IsWindowWaiting = true;
        m_Mutex.lock();
        m_IsWindowWaiting = false;
        m_WindowHasBeen.notify_all();
    }

    void unlock() { m_Mutex.unlock(); }

    // In the child of a fork, where the window's thread is not, and may have been waiting.
    void unlockInChild()
    {
        m_IsWindowWaiting = false;
        m_Mutex.unlock();
    }

private:
    std::mutex m_Mutex;
    std::atomic<bool> m_IsWindowWaiting{false};
    std::condition_variable m_WindowHasBeen;
};

} // namespace tavo
