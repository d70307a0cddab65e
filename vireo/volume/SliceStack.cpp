#include "vireo/volume/SliceStack.h"

#include "vireo/context/SavedState.h"

namespace tavo {

void SliceStack::draw(
    int direction, float sMax, float tMax, const std::function<void(unsigned int slice)>& bindSlice, int step) const
{
    const int first = step / 2;
    const int count = (getNumSlices() - first + step - 1) / step;
    for (int i = 0; i < count; ++i) {
        const int slice = first + step * (direction == 1 ? count - 1 - i : i);
        bindSlice(static_cast<unsigned int>(slice));
        drawQuad(getPosition(slice), sMax, tMax);
    }
}

void SliceStack::drawQuad(float position, float sMax, float tMax) const
{
    const auto [u, v] = getAxesAcross();
    Vector3f corner;
    corner[m_Axis] = position;
    const auto sendCorner = [&, u = u, v = v](bool atMaxU, bool atMaxV) {
        corner[u] = (atMaxU ? m_Box.getMax() : m_Box.getMin())[u];
        corner[v] = (atMaxV ? m_Box.getMax() : m_Box.getMin())[v];
        glTexCoord2f(atMaxU ? sMax : 0, atMaxV ? tMax : 0);
        glVertex3f(corner[0], corner[1], corner[2]);
    };
    const Primitive quad(GL_QUADS);
    sendCorner(false, false);
    sendCorner(false, true);
    sendCorner(true, true);
    sendCorner(true, false);
}

} // namespace tavo
