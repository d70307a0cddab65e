#pragma once

#include <cstddef>
#include <memory>
#include <optional>

#include "vireo/show/scenes/ItemColours.h"
#include "vireo/show/scenes/Matrix4.h"
#include "vireo/show/volumes/VolumeDrawing.h"
#include "vireo/show/volumes/VolumeRay.h"

namespace tavo {

// What an item that is a volume is drawn from. The context must be current, but for the size.
class ItemVolume
{
public:
    // Makes it anew where its samples are others, and takes over how it looks: `one` colour, where none others are
    // shown, whose opacity does not matter.
    void prepare(
        GLContext& context, const VolumeGrid& grid, const ItemColours& colours, const RGBA8& one, double opacity);

    // Of another grid it has to be made anew.
    void drop() { m_Drawing.reset(); }

    void draw(const Matrix4& modelView, const VolumeDrawing::Way& way)
    {
        if (m_Drawing)
            m_Drawing->draw(modelView, way);
    }

    // Whether it is drawn, and no light can fall on it.
    bool isLightMissing() const { return m_Drawing && !m_Drawing->canBeLit(); }

    // The sample that is seen along a ray, of a volume that looks like that: see SceneItem.
    static std::optional<std::size_t> sampleAlong(
        const VolumeRay& ray, const ItemColours& colours, double opacity, bool isMaximum);

    // As VolumeDrawing's.
    bool isCoarse() const { return m_Drawing && m_Drawing->isCoarse(); }
    bool refine(double seconds) { return !m_Drawing || m_Drawing->refine(seconds); }
    double progress() const { return m_Drawing ? m_Drawing->progress() : 0; }
    void giveUp()
    {
        if (m_Drawing)
            m_Drawing->giveUp();
    }

    // How many samples are drawn; null before all have been prepared.
    const Vector3i* drawnSize() const { return m_Drawing ? m_Drawing->drawnSize() : nullptr; }

private:
    std::unique_ptr<VolumeDrawing> m_Drawing;
};

} // namespace tavo
