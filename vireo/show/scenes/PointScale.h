#pragma once

#include <array>
#include <memory>

#include "vireo/shaders/GLShaderARB.h"

namespace tavo {

// Draws points as large as they are in the scene: what is farther away is smaller. They are at least a pixel wide,
// and at most as wide as the driver can.
class PointScale
{
public:
    // What colours points: their own, under the headlight or not, or an id (see PickId).
    enum class Colour
    {
        Own,
        Lit,
        Id
    };

    // Null if the driver has no vertex programs.
    static std::unique_ptr<PointScale> make(GLContext& context, Colour colour);

    // From here on the radius of a point is its first texture coordinate times `scale`. GL's projection and viewport
    // are those of the picture.
    void begin(double scale);
    void end();

    // What is added to ids.
    void setChunk(std::array<float, 4> constant) { m_Program->setLocalParameter4fv(1, constant.data()); }

private:
    explicit PointScale(std::unique_ptr<GLShaderARB> program);

    std::unique_ptr<GLShaderARB> m_Program;
};

} // namespace tavo
