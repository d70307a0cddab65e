#include "vireo/show/scenes/ClipBox.h"

#include <algorithm>
#include <utility>

namespace tavo {

namespace {

constexpr double MARGIN = 0.01;    // of the diagonal, around what is there: nothing of it is lost by rounding
constexpr double SLAB = 0.02;      // of what is there
constexpr double THINNEST = 1e-12; // of its coordinates

bool isIn(const SceneBox& box, const Vector3d& place)
{
    bool isInside = true;
    for (std::size_t axis = 0; axis < 3; ++axis)
        isInside = isInside && box.getMin()[axis] <= place[axis] && place[axis] <= box.getMax()[axis];
    return isInside;
}

SceneBox boxBetween(const Vector3d& min, const Vector3d& max)
{
    SceneBox box;
    box.extend(min);
    box.extend(max);
    return box;
}

// An eighth of a box.
SceneBox cornerOf(const SceneBox& box, const Vector3d& towards)
{
    Vector3d corner;
    for (std::size_t axis = 0; axis < 3; ++axis)
        corner[axis] = (towards[axis] < 0 ? box.getMin() : box.getMax())[axis];
    return boxBetween(box.centre(), corner);
}

} // namespace

bool ClipBox::isSeen(const Vector3d& place) const
{
    return !m_Shown || isIn(*m_Shown, place) != m_IsCutOut;
}

// A box beside all that is there remains beside it.
std::optional<SceneBox> ClipBox::around(const SceneBox& all) const
{
    if (!m_Shown || all.isEmpty())
        return m_Shown;
    const SceneBox widest = boxAround(all);
    const auto moved = [&widest](Vector3d end) {
        for (std::size_t axis = 0; axis < 3; ++axis)
            end[axis] = std::clamp(end[axis], widest.getMin()[axis], widest.getMax()[axis]);
        return end;
    };
    return boxBetween(moved(m_Shown->getMin()), moved(m_Shown->getMax()));
}

void ClipBox::send(const std::optional<SceneBox>& box, bool isCutOut)
{
    if (m_IsChosen)
        return;
    m_Shown = box;
    m_IsCutOut = isCutOut;
    if (box)
        m_Last = box;
}

SceneBox ClipBox::boxAround(const SceneBox& all) const
{
    const double margin = all.diagonal() > 0 ? MARGIN * all.diagonal() : 1;
    const Vector3d by(margin, margin, margin);
    return boxBetween(all.getMin() - by, all.getMax() + by);
}

void ClipBox::switchOn(bool isOn, const SceneBox& all)
{
    m_IsChosen = true;
    if (isOn == m_Shown.has_value())
        return;
    if (!isOn) {
        m_Last = m_Shown;
        m_Shown.reset();
    } else if (m_Last) {
        m_Shown = m_Last;
    } else if (!all.isEmpty()) {
        m_Shown = boxAround(all);
    }
}

void ClipBox::switchCutOut(const SceneBox& all, const Vector3d& towardsEye)
{
    m_IsChosen = true;
    if (isCutOut()) {
        m_IsCutOut = false;
        if (m_BeforeCorner)
            m_Shown = *std::exchange(m_BeforeCorner, std::nullopt);
        return;
    }
    m_IsCutOut = true;
    m_BeforeCorner.reset();
    if (all.isEmpty() || (m_Shown && (!isIn(*m_Shown, all.getMin()) || !isIn(*m_Shown, all.getMax()))))
        return;
    m_BeforeCorner = std::exchange(m_Shown, cornerOf(boxAround(all), towardsEye));
    m_SlabAxis.reset();
}

void ClipBox::switchSlab(std::size_t axis, const SceneBox& all)
{
    const bool wasOn = m_Shown.has_value();
    switchOn(true, all);
    if (!m_Shown || (!wasOn && m_SlabAxis == axis))
        return;
    if (!m_SlabAxis)
        m_BeforeSlab = *m_Shown;
    m_Shown = m_BeforeSlab;
    if (m_SlabAxis == axis)
        return m_SlabAxis.reset();
    m_SlabAxis = axis;
    Vector3d min = m_BeforeSlab.getMin();
    Vector3d max = m_BeforeSlab.getMax();
    const double half = 0.5 * SLAB * thicknessOf(axis);
    const double middle = m_BeforeSlab.centre()[axis];
    min[axis] = middle - half;
    max[axis] = middle + half;
    m_Shown = boxBetween(min, max);
}

void ClipBox::moveFace(std::size_t face, double to)
{
    if (!m_Shown)
        return;
    m_IsChosen = true;
    const std::size_t axis = face / 2;
    const bool isMax = face % 2;
    Vector3d min = m_Shown->getMin();
    Vector3d max = m_Shown->getMax();
    const double least = THINNEST * std::max({1e-280, std::abs(min[axis]), std::abs(max[axis])});
    if (isMax)
        max[axis] = std::max(to, min[axis] + least);
    else
        min[axis] = std::min(to, max[axis] - least);
    m_Shown = boxBetween(min, max);
}

void ClipBox::moveSlab(double by)
{
    if (!m_Shown || !m_SlabAxis)
        return;
    m_IsChosen = true;
    Vector3d along;
    along[*m_SlabAxis] = by;
    m_Shown = boxBetween(m_Shown->getMin() + along, m_Shown->getMax() + along);
}

Vector3d middleOfFace(const SceneBox& box, std::size_t face)
{
    Vector3d middle = box.centre();
    middle[face / 2] = (face % 2 ? box.getMax() : box.getMin())[face / 2];
    return middle;
}

} // namespace tavo
