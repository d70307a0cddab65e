#include "vireo/displayers/fittedAxes.h"

#include "tavo/platform/wgl.h"
#include "vireo/geometry/GLHelper.h"

#include <GL/gl.h>

namespace tavo {

void drawFittedAxes(const BoundingBox<float, 3>& box, const StaticVector<float, 3>& scale)
{
    const StaticVector<float, 3> extent = box.getExtent();
    StaticVector<float, 3> offset;
    // The minimum enters negated: deliberate.
    for (unsigned int axis = 0; axis < 3; ++axis)
        offset[axis] = static_cast<float>(-double(box.getMin()[axis]) - 0.1 * double(extent[axis]));
    glTranslatef(offset[0], offset[1], offset[2]);
    glScalef(scale[0], scale[1], scale[2]);
    GLHelper::drawCoords();
}

} // namespace tavo
