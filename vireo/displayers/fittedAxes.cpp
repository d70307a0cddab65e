#include "vireo/displayers/fittedAxes.h"

#include "tavo/platform/wgl.h"
#include "vireo/geometry/GLHelper.h"

#include <GL/gl.h>

namespace tavo {

void drawFittedAxes(const Box3f& box, const Vector3f& scale)
{
    const Vector3f extent = box.getExtent();
    Vector3f offset;
    // The minimum enters negated: deliberate.
    for (unsigned int axis = 0; axis < 3; ++axis)
        offset[axis] = static_cast<float>(-double(box.getMin()[axis]) - 0.1 * double(extent[axis]));
    glTranslatef(offset[0], offset[1], offset[2]);
    glScalef(scale[0], scale[1], scale[2]);
    GLHelper::drawCoords();
}

} // namespace tavo
