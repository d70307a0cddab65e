#pragma once

#include <memory>

#include "vireo/shaders/GLShaderARB.h"

namespace tavo {

// Draws points as large as they are in the scene: what is farther away is smaller. They are squares, at least a pixel
// wide, and at most as wide as the driver can.
class PointScale
{
public:
    // Null if the driver has no vertex programs. The headlight falls on points with normals.
    static std::unique_ptr<PointScale> make(GLContext& context, bool haveNormals);

    // From here on the radius of a point is its first texture coordinate times `scale`. GL's projection and viewport
    // are those of the picture.
    void begin(double scale);
    void end();

private:
    explicit PointScale(std::unique_ptr<GLShaderARB> program);

    std::unique_ptr<GLShaderARB> m_Program;
};

} // namespace tavo
