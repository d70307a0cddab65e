#pragma once

#include <memory>

#include "vireo/shaders/GLShaderARB.h"

namespace tavo {

// Draws points as discs instead of squares. It costs a little for each of their pixels.
class RoundPoints
{
public:
    // In pixels: smaller ones look the same.
    static constexpr double SMALLEST = 4;

    // Null if the driver has no fragment programs, or no sprites.
    static std::unique_ptr<RoundPoints> make(GLContext& context);

    void begin();
    void end();

private:
    explicit RoundPoints(std::unique_ptr<GLShaderARB> program)
        : m_Program(std::move(program))
    {}

    std::unique_ptr<GLShaderARB> m_Program;
};

} // namespace tavo
