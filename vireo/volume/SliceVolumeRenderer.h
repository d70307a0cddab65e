#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "vireo/Export.h"
#include "vireo/volume/Tex2dVolumeRenderer.h"

namespace tavo {

/// Draws volumes: a stack of textured quads across the view, each blended over those behind it, in the colours that a
/// transfer function gives the samples. It works in any context, beside other textures, with several channels, and with
/// volumes that change.
///
///     RGBA8 grey(void*, const StaticVector<float, 1>& value)
///     {
///         return {value[0], value[0], value[0], value[0] / 8};
///     }
///
///     void drawInEveryFrame(SliceVolumeRenderer& renderer, const Vector3f& viewDir)
///     {
///         renderer.drawVolume(&volume, viewDir, "density", &grey, nullptr);
///     }
///
/// A stack of textures is made along the axis nearest to the view, when that axis is first needed. Slices are padded
/// only if the driver needs powers of two. A changed volume of the same size is written into the textures that exist.
/// Call setTableSize if the mapping is slow, invalidate when its colours have changed, and disposeTextures before the
/// renderer dies.
///
/// A stack takes four bytes of texture per texel, for each channel. While it is made, the renderer holds the image of
/// one slice, and for the stack along X also samples of several slices: at most 1 MiB or, if larger, the size of one
/// slice's colours plus its image.
///
/// A program, the texture matrix, culling, fog, the alpha test and the blend equation take part as they are. Pixel
/// storage and transfer of the application do not matter. There is no class record of its own: by class records, a
/// renderer counts as its base, whose other rules do not hold here.
///
/// @needs For drawing and disposing, a context with GL_ARB_multitexture must be current: the same one each time, or one
/// that shares names with it.
/// @owns Destroying a renderer does not delete its textures: call disposeTextures first. Copies name the same textures;
/// a copy that draws another volume writes it into them.
class VIREO_EXPORT SliceVolumeRenderer : public Tex2dVolumeRenderer
{
public:
    using Tex2dVolumeRenderer::drawVolume;

    /// Draws the volume's box as seen along viewDir (in the volume's coordinates, away from the viewer, of any length),
    /// through the matrices that are loaded (glBindTexture, glBegin). Channel 0 is drawn with unit 0; the textures of
    /// channels 1, 2, ... are bound on units 1, 2, ... for a program of yours. If volume, channels, mapping or userData
    /// differ from the last time, makes the textures anew.
    /// @leaves All GL state is as before, even if this throws. The renderer can still be used.
    /// @throws std::out_of_range Without channels.
    /// @throws PException As prepareTextures of the base does, but in the name of this class; if slices are too large
    /// for the driver's textures, or channels more than its units; and without GL_ARB_multitexture or in the core
    /// profile, before it changes GL.
    void drawVolume(RegularVolume* volume, Vector3f viewDir, const std::vector<std::string>& channels, Mapping mapping,
        void* userData) override;

    /// Deletes all textures (glDeleteTextures). The next drawing makes new ones.
    void disposeTextures() override;

    /// Says that samples, or the answers of the mapping, have changed although volume and pointers are the same. The
    /// next drawing makes the textures anew. Needs no context.
    void invalidate();

    /// Calls the mapping for that many values, spread evenly over a channel's range, instead of once per sample; each
    /// sample takes the colour of the nearest. 0, the default, calls it for each sample. Samples that are NaN take the
    /// colour of the least value. Makes the textures anew. Needs no context.
    void setTableSize(unsigned int numEntries);
    unsigned int getTableSize() const { return m_TableSize; }

    /// Draws each slice in the middle of its layer of the box, so that the stack fills the box, and is in the same
    /// place from both sides. Otherwise, by default, slices lie where layers begin, as the base draws them. Needs no
    /// context.
    void setCentred(bool isCentred) { m_IsCentred = isCentred; }
    bool isCentred() const { return m_IsCentred; }

    /// Takes the mapping's opacity for that of a layer so thick, in the units of the volume's box, and gives each slice
    /// that of its own layer: stacks along all axes are as opaque then, however far apart their slices are. With 0, the
    /// default, the mapping's opacity is that of a slice. Applies to channels of one component. Makes the textures
    /// anew. Needs no context.
    void setOpacityDistance(float distance);
    float getOpacityDistance() const { return m_OpacityDistance; }

    /// Binds beside each slice of channel 0 those before and behind it along the axis, on this unit and the next one,
    /// for a program of yours that computes gradients; at the ends, the slice itself. Units of other channels must be
    /// left alone. With 0, the default, none are bound. Needs no context.
    void setNeighbourUnit(unsigned int unit) { m_NeighbourUnit = unit; }
    unsigned int getNeighbourUnit() const { return m_NeighbourUnit; }

    /// Draws only one of so many slices, or one if there are fewer: sooner, for a view that moves. The opacity of each
    /// slice stays as it is. Needs no context.
    void setStep(unsigned int step) { m_Step = step > 0 ? step : 1; }
    unsigned int getStep() const { return m_Step; }

    /// Sets a function to call while textures are made, before the first slice and after each, with how many slices are
    /// done and how many there are. It must not draw with this renderer nor dispose of its textures, and must leave the
    /// context current and GL's state as it was. An empty function, the default, is not called. Copies of the renderer
    /// have it too.
    using Progress = std::function<void(unsigned int numDone, unsigned int numSlices)>;
    void setProgress(Progress progress) { m_Progress = std::move(progress); }

protected:
    /// Makes the textures that the view needs and that are missing or out of date.
    void prepareTextures(RegularVolume* volume, Vector3f viewDir, const std::vector<std::string>& channels,
        Mapping mapping, void* userData) override;

private:
    // What the textures were made of.
    struct Source
    {
        std::uint64_t volumeNumber = 0;
        Vector3i extends;
        std::vector<std::string> channels;
        Mapping mapping = nullptr;
        void* userData = nullptr;

        bool operator==(const Source&) const = default;
    };

    // The colours of a channel's values, evenly from min on; empty for calling the mapping.
    struct Table
    {
        std::vector<RGBA8> colours;
        float min = 0;
        double entriesPerValue = 0;

        RGBA8 look(float value) const;
    };

    using Channels = std::vector<VolumeChannel>;

    void adopt(Source source, const RegularVolume& volume, const Channels& channels);
    Table makeTable(const RegularVolume& volume, const VolumeChannel& channel) const;
    void prepareStack(
        const RegularVolume& volume, const VolumeChannel& channel, const SliceStack& stack, unsigned int channelNumber);
    template <typename Use>
    void withLook(
        const VolumeChannel& channel, const SliceStack& stack, unsigned int channelNumber, const Use& use) const;
    std::array<unsigned char, 256> opacitiesOf(const SliceStack& stack) const;
    void drawSlices(const SliceStack& stack, int direction) const;
    void bindNeighbours(const SliceStack& stack, unsigned int slice) const;

    Source m_Source;
    std::vector<Table> m_Tables;        // of each channel
    std::array<bool, 3> m_IsPrepared{}; // the stack of each axis
    unsigned int m_TableSize = 0;
    float m_OpacityDistance = 0;
    bool m_IsCentred = false;
    unsigned int m_NeighbourUnit = 0;
    unsigned int m_Step = 1;
    Progress m_Progress;
};

} // namespace tavo
