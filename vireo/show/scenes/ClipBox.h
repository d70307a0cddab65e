#pragma once

#include <optional>

#include "vireo/show/scenes/SceneBox.h"

namespace tavo {

// The box of a scene outside of which nothing of it is seen, as the program sends it or a person has it. A slab is a
// thin one, which is moved along an axis. Of a box that is cut out, nothing is seen inside.
//
// Faces are counted: 0 and 1 are those with the least and the greatest x, and so on.
class ClipBox
{
public:
    static constexpr std::size_t NUM_FACES = 6;

    // None if all is seen.
    const std::optional<SceneBox>& shown() const { return m_Shown; }

    // Whether what is in the box is taken away, instead of what is outside.
    bool isCutOut() const { return m_Shown && m_IsCutOut; }

    bool isSeen(const Vector3d& place) const;

    // What of it is around what is there, which is all that it can cut: faces far away would be too far for GL's
    // numbers.
    std::optional<SceneBox> around(const SceneBox& all) const;

    // The axis along which it is thin and moved, of a slab.
    const std::optional<std::size_t>& slabAxis() const { return m_SlabAxis; }

    // By the program: it holds until a person chooses.
    void send(const std::optional<SceneBox>& box, bool isCutOut = false);

    // For a person. On, it is where it was before; if that is nowhere, around all that is there.
    void switchOn(bool isOn, const SceneBox& all);

    // For a person: cuts it out, or no longer. Where there is none, or one about all that is there, it becomes the
    // corner that is nearest to an eye in that direction, until it is no longer cut out.
    void switchCutOut(const SceneBox& all, const Vector3d& towardsEye);

    // For a person: makes it thin along an axis, or, if it was that, what it was before.
    void switchSlab(std::size_t axis, const SceneBox& all);

    // For a person: moves a face along its axis; not beyond the one on the other side.
    void moveFace(std::size_t face, double to);

    // For a person: moves a slab.
    void moveSlab(double by);

    double thicknessOf(std::size_t axis) const { return m_Shown->getMax()[axis] - m_Shown->getMin()[axis]; }

private:
    SceneBox boxAround(const SceneBox& all) const;

    bool m_IsChosen = false;
    std::optional<SceneBox> m_Shown;
    std::optional<SceneBox> m_Last; // that was shown
    std::optional<std::size_t> m_SlabAxis;
    SceneBox m_BeforeSlab;
    bool m_IsCutOut = false;
    std::optional<std::optional<SceneBox>> m_BeforeCorner; // if a corner took its place
};

// In the middle of a face.
Vector3d middleOfFace(const SceneBox& box, std::size_t face);

} // namespace tavo
