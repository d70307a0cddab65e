#pragma once

#include <memory>
#include <stdexcept>
#include <thread>

#include "vireo/show/delivery/Statement.h"

namespace tavo::python {

// A statement of C++ as a context of Python. It ends in the thread that began it.
class Together
{
public:
    ~Together()
    {
        if (m_Statement && !isHere())
            static_cast<void>(m_Statement.release()); // no other thread can end it
    }

    void enter()
    {
        m_Thread = std::this_thread::get_id();
        m_Statement = std::make_unique<Statement>();
    }

    void exit()
    {
        if (m_Statement && !isHere())
            throw std::runtime_error("a block of vireo.Together must end in the thread in which it began");
        m_Statement.reset();
    }

private:
    bool isHere() const { return m_Thread == std::this_thread::get_id(); }

    std::thread::id m_Thread;
    std::unique_ptr<Statement> m_Statement;
};

} // namespace tavo::python
