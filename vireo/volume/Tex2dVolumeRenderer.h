#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tavo/base/math/vectors.h"
#include "tavo/base/objects/Persistent.h"
#include "vireo/Export.h"

namespace tavo {

class RegularVolume;

// Draws a RegularVolume as a stack of textured quads across the view, each blended over those behind it. A transfer
// function gives each sample its colour; the colours are made into three stacks of 2D textures, one along each axis, at
// the first drawing, and kept.
//
// Beware: this class addresses its textures as if GL handed out the names 1, 2, 3, ... in a context without other
// textures, and with the default texture bound. Only there, and with one channel, is what it draws right; elsewhere use
// SliceVolumeRenderer. It needs GL_ARB_multitexture.
//
// A context must be current for preparing, drawing and disposing, with unit 0 active, the same (or one that shares
// names with it) each time. Destroying a renderer does not delete its textures: call disposeTextures first. Copies name
// the same textures.
//
// Elsewhere it also does harm: it writes its first slice into whatever texture is bound, and sets parameters of
// textures of others that have the names 1, 2, 3, ...
class VIREO_EXPORT Tex2dVolumeRenderer : public Persistent
{
public:
    using RGBA = RGBA8; // its older name

    // The colour of a channel's value; the pointer is the caller's own.
    using Mapping = RGBA8 (*)(void*, const StaticVector<float, 1>&);

    const MetaClass* getInstanceClass() const override;

    Tex2dVolumeRenderer();
    Tex2dVolumeRenderer(const Tex2dVolumeRenderer& other);
    Tex2dVolumeRenderer& operator=(const Tex2dVolumeRenderer& other);
    ~Tex2dVolumeRenderer() override;

    // The axis (0, 1, 2 for X, Y, Z) that is most nearly parallel to the view direction, the first of equals, and the
    // sign of the view direction along it, 1 for zero.
    void computeOrder(const Vector3f& viewDir, unsigned int& axis, int& direction);

protected:
    // Makes the textures of all channels, after disposing of the old ones, each of three stacks of slices, by axis. A
    // slice is padded to powers of two. The view direction is not used. The texture that was bound on the active unit
    // gets the first slice; the last texture that is made stays bound, and has none.
    //
    // A channel of one component is mapped as it is. One of two to four has the alpha that the mapping gives to each
    // of its components side by side, and with fewer than four, 16 as fourth component: for a program of the caller's.
    //
    // Throws std::out_of_range without channels, with nothing changed. Throws PException if a channel is not there, is
    // not of floats or has more than four components, or if the volume's samples are not complete; and
    // std::out_of_range "invalid vector<T> subscript" if an extent across the stack is 1, for which there deliberately
    // is no texture. Textures that were made by then stay, for disposeTextures.
    virtual void prepareTextures(RegularVolume* volume, Vector3f viewDir, const std::vector<std::string>& channels,
        Mapping mapping, void* userData);

public:
    // Draws one channel; see below.
    virtual void drawVolume(
        RegularVolume* volume, Vector3f viewDir, std::string channel, Mapping mapping, void* userData);

    // Draws the volume's box as it is seen along viewDir (in the volume's coordinates; of any length), through the
    // matrices that are loaded. Channel 0 is drawn with unit 0; the textures of channels 1, 2, ... are bound on units
    // 1, 2, ... for a program of the caller's.
    //
    // Makes the textures by the channels, mapping and userData if it has those of another number of channels. It
    // deliberately does not look whether volume, channels or mapping are others than before: call disposeTextures to
    // show these.
    //
    // Draws nothing without a volume or without samples. All GL state is as before afterwards, also if this throws,
    // which it does as prepareTextures does, std::out_of_range for a stack that was not begun because that failed, and
    // PException, before it calls GL, without GL_ARB_multitexture.
    virtual void drawVolume(RegularVolume* volume, Vector3f viewDir, const std::vector<std::string>& channels,
        Mapping mapping, void* userData);

    // Deletes all textures; the next drawing makes new ones.
    virtual void disposeTextures();

    // The class record, made by the first call; not to be asked for after shutdown.
    static const MetaClass* getClass();
    static void initMetaClass();
    static void init(const MetaClass* parent);
    static void shutdown();

    static MetaClass* Tex2dVolumeRendererMetaClass;

protected:
    // Without m_, deliberately.
    //
    // For each prepared channel, the names of all its textures: those of the slices along X, then Y, then Z.
    std::vector<std::vector<unsigned int>> textureNames;
    // For each prepared channel and each axis, how many textures come before those of its stack.
    std::vector<std::vector<std::size_t>> slabStarts;
    // The mapping while the textures are made, else null.
    void* mappingUserData = nullptr;
    Mapping channelMapping = nullptr;

private:
    static Object* newInstance();

    static RGBA8 mapping2(void* self, const Vector2f& v);
    static RGBA8 mapping3(void* self, const Vector3f& v);
    static RGBA8 mapping4(void* self, const Vector4f& v);

    unsigned char alphaOf(float value) const;
    void prepareStack(const RegularVolume& volume, unsigned int axis, const std::string& channel);
    template <unsigned int N>
    void prepareStackBy(const RegularVolume& volume, unsigned int axis, const std::string& channel,
        RGBA8 (*mapping)(void*, const StaticVector<float, N>&), void* userData);
    void bindSlice(unsigned int axis, unsigned int slice) const;
    void drawSlices(const RegularVolume& volume, unsigned int axis, int direction) const;
};

} // namespace tavo
