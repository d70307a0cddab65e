#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tavo/base/math/vectors.h"
#include "tavo/base/objects/Persistent.h"
#include "vireo/Export.h"

namespace tavo {

class RegularVolume;
class SliceStack;
class VolumeChannel;

/// Draws a RegularVolume as a stack of textured quads across the view, each blended over those behind it. A transfer
/// function gives each sample its colour. At the first drawing the colours become three stacks of 2D textures, one
/// along each axis and padded to powers of two, which are kept.
///
/// Use SliceVolumeRenderer instead. This class addresses its textures as if GL handed out the names 1, 2, 3, ..., in a
/// context without other textures and with the default texture bound. Only there, and with one channel, is its picture
/// right. Elsewhere it also does harm: it writes its first slice into whatever texture is bound, and sets parameters of
/// other textures that have the names 1, 2, 3, ... It needs GL_ARB_multitexture.
///
///     RGBA8 grey(void*, const StaticVector<float, 1>& value)
///     {
///         return {value[0], value[0], value[0], value[0] / 8};
///     }
///
///     void drawInEveryFrame(Tex2dVolumeRenderer& renderer, const Vector3f& viewDir)
///     {
///         renderer.drawVolume(&volume, viewDir, "density", &grey, nullptr);
///     }
///
/// The stacks take four bytes of texture per texel, for each channel. While one is made, the renderer holds the image
/// of one slice, and for the stack along X also samples of several slices: at most 1 MiB or, if larger, the size of one
/// slice's colours plus its image.
///
/// @needs For preparing, drawing and disposing, a context must be current, with unit 0 active: the same one each time,
/// or one that shares names with it.
/// @owns Destroying a renderer does not delete its textures: call disposeTextures first. Copies name the same textures.
class VIREO_EXPORT Tex2dVolumeRenderer : public Persistent
{
public:
    using RGBA = RGBA8; // its older name

    /// The colour of a channel's value. The pointer is the caller's own.
    using Mapping = RGBA8 (*)(void*, const StaticVector<float, 1>&);

    const MetaClass* getInstanceClass() const override;

    Tex2dVolumeRenderer();
    Tex2dVolumeRenderer(const Tex2dVolumeRenderer& other);
    Tex2dVolumeRenderer& operator=(const Tex2dVolumeRenderer& other);
    ~Tex2dVolumeRenderer() override;

    /// The axis (0, 1, 2 for X, Y, Z) most nearly parallel to the view direction, the first of equals, and the sign of
    /// the direction along it; 1 for zero.
    void computeOrder(const Vector3f& viewDir, unsigned int& axis, int& direction);

protected:
    /// Disposes of the old textures, and makes those of all channels: three stacks of slices each, by axis
    /// (glGenTextures, glTexImage2D). Slices are padded to powers of two. The view direction is not used.
    ///
    /// A channel of one component is mapped as it is. With two to four components, each becomes the alpha that the
    /// mapping gives it; with fewer than four, the fourth is 16. These are for a program of the caller's.
    /// @leaves The texture that was bound on the active unit has the first slice. The last texture that was made is
    /// bound, and has none.
    /// @throws PException If a channel is missing, is not of floats or has more than four components, or the volume's
    /// samples are not complete.
    /// @throws std::out_of_range Without channels, with nothing changed; and "invalid vector<T> subscript" if an extent
    /// across the stack is 1, for which there deliberately is no texture. Textures that were made by then stay, for
    /// disposeTextures.
    virtual void prepareTextures(RegularVolume* volume, Vector3f viewDir, const std::vector<std::string>& channels,
        Mapping mapping, void* userData);

public:
    /// Draws one channel; see below.
    virtual void drawVolume(
        RegularVolume* volume, Vector3f viewDir, std::string channel, Mapping mapping, void* userData);

    /// Draws the volume's box as seen along viewDir (in the volume's coordinates, of any length), through the matrices
    /// that are loaded (glBindTexture, glBegin). Channel 0 is drawn with unit 0; the textures of channels 1, 2, ... are
    /// bound on units 1, 2, ... for a program of the caller's. Draws nothing without a volume or without samples.
    ///
    /// Makes the textures if it has those of another number of channels. It deliberately does not notice another
    /// volume, other channels or another mapping: call disposeTextures to show these.
    /// @leaves All GL state is as before, even if this throws.
    /// @throws PException As prepareTextures does; also without GL_ARB_multitexture, before it calls GL.
    /// @throws std::out_of_range As prepareTextures does; also for a stack that was not begun because that failed.
    virtual void drawVolume(RegularVolume* volume, Vector3f viewDir, const std::vector<std::string>& channels,
        Mapping mapping, void* userData);

    /// Deletes all textures (glDeleteTextures). The next drawing makes new ones.
    virtual void disposeTextures();

    /// The class record, which the first call makes. Do not call this after shutdown().
    static const MetaClass* getClass();
    static void initMetaClass();
    static void init(const MetaClass* parent);
    static void shutdown();

    static MetaClass* Tex2dVolumeRendererMetaClass;

protected:
    /// The names of all textures of each prepared channel: those of the slices along X, then Y, then Z. Without m_,
    /// deliberately, like all these fields.
    std::vector<std::vector<unsigned int>> textureNames;
    /// For each prepared channel and each axis, how many textures come before those of its stack.
    std::vector<std::vector<std::size_t>> slabStarts;
    /// The mapping while textures are made, else null.
    void* mappingUserData = nullptr;
    Mapping channelMapping = nullptr;

private:
    static Object* newInstance();

    static RGBA8 mapping2(void* self, const Vector2f& v);
    static RGBA8 mapping3(void* self, const Vector3f& v);
    static RGBA8 mapping4(void* self, const Vector4f& v);

    unsigned char alphaOf(float value) const;
    void prepareStack(const RegularVolume& volume, const VolumeChannel& channel, const SliceStack& stack);
    template <unsigned int N>
    void prepareStackBy(const RegularVolume& volume, const VolumeChannel& channel, const SliceStack& stack,
        RGBA8 (*mapping)(void*, const StaticVector<float, N>&), void* userData);
    void bindSlice(unsigned int axis, unsigned int slice) const;
    void drawSlices(const SliceStack& stack, int direction) const;
};

} // namespace tavo
