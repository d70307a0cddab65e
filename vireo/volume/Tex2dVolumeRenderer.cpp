#include "vireo/volume/Tex2dVolumeRenderer.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <optional>

#include "tavo/base/math/checkedAt.h"
#include "tavo/base/objects/ClassRecord.h"
#include "tavo/points/RegularVolume.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/SavedState.h"
#include "vireo/context/nameAccounts.h"
#include "vireo/volume/SliceReader.h"
#include "vireo/volume/SliceStack.h"
#include "vireo/volume/drawableChannels.h"
#include "vireo/volume/sliceState.h"

namespace tavo {

TAVO_CLASS_RECORD(Tex2dVolumeRenderer)

namespace {

// The power of two that an extent is padded to; deliberately 0 for an extent of 1.
unsigned int paddedSize(int extent)
{
    return extent == 1 ? 0 : std::bit_ceil(static_cast<unsigned int>(extent));
}

} // namespace

Tex2dVolumeRenderer::Tex2dVolumeRenderer() = default;
Tex2dVolumeRenderer::Tex2dVolumeRenderer(const Tex2dVolumeRenderer& other) = default;
Tex2dVolumeRenderer& Tex2dVolumeRenderer::operator=(const Tex2dVolumeRenderer& other) = default;
Tex2dVolumeRenderer::~Tex2dVolumeRenderer() = default;

void Tex2dVolumeRenderer::computeOrder(const Vector3f& viewDir, unsigned int& axis, int& direction)
{
    axis = 0;
    for (const unsigned int other : {1u, 2u})
        if (std::abs(viewDir[other]) > std::abs(viewDir[axis]))
            axis = other;
    direction = viewDir[axis] < 0 ? -1 : 1;
}

void Tex2dVolumeRenderer::prepareTextures(
    RegularVolume* volume, Vector3f, const std::vector<std::string>& channels, Mapping mapping, void* userData)
{
    checkedAt(channels, 0);
    disposeTextures();
    mappingUserData = userData;
    channelMapping = mapping;
    for (const std::string& name : channels) {
        textureNames.emplace_back();
        slabStarts.emplace_back();
        std::optional<VolumeChannel> channel; // looked up when the first stack has been begun
        for (unsigned int axis = 0; axis < 3; ++axis) {
            slabStarts.back().push_back(textureNames.back().size());
            const SliceStack stack(*volume, axis);
            if (stack.getWidth() == 0 || stack.getHeight() == 0)
                return; // deliberately without forgetting the mapping
            if (!channel)
                channel = requireDrawableChannel(*volume, name, "Tex2dVolumeRenderer::prepareTextures");
            prepareStack(*volume, *channel, stack);
        }
    }
    mappingUserData = nullptr;
    channelMapping = nullptr;
}

void Tex2dVolumeRenderer::prepareStack(
    const RegularVolume& volume, const VolumeChannel& channel, const SliceStack& stack)
{
    switch (channel.getNumComponents()) {
    case 1: prepareStackBy<1>(volume, channel, stack, channelMapping, mappingUserData); break;
    case 2: prepareStackBy<2>(volume, channel, stack, mapping2, this); break;
    case 3: prepareStackBy<3>(volume, channel, stack, mapping3, this); break;
    default: prepareStackBy<4>(volume, channel, stack, mapping4, this); break;
    }
}

template <unsigned int N>
void Tex2dVolumeRenderer::prepareStackBy(const RegularVolume& volume, const VolumeChannel& channel,
    const SliceStack& stack, RGBA8 (*mapping)(void*, const StaticVector<float, N>&), void* userData)
{
    const unsigned int width = paddedSize(stack.getWidth());
    const unsigned int height = paddedSize(stack.getHeight());
    std::vector<RGBA8> padded(std::size_t{width} * height, NULL_VECTOR4UB);
    SliceReader<N> reader(volume, channel, stack, padded.size());
    for (int slice = 0; slice < stack.getNumSlices(); ++slice) {
        reader.mapSlice(
            slice, [mapping, userData](const StaticVector<float, N>& sample) { return mapping(userData, sample); },
            &checkedAt(padded, 0), width);

        // The image deliberately goes to the texture before the one that is made for the slice.
        setSliceParameters();
        glTexImage2D(GL_TEXTURE_2D, 0, 4, static_cast<GLsizei>(width), static_cast<GLsizei>(height), 0, GL_RGBA,
            GL_UNSIGNED_BYTE, padded.data());
        std::vector<unsigned int>& names = textureNames.back();
        names.push_back(0);
        glGenTextures(1, &names.back());
        noteForeignName(
            NameKind::TEXTURE, names.back(), "Tex2dVolumeRenderer", std::uint64_t{width} * height * sizeof(RGBA8));
        glBindTexture(GL_TEXTURE_2D, names.back());
    }
}

unsigned char Tex2dVolumeRenderer::alphaOf(float value) const
{
    return channelMapping(mappingUserData, StaticVector<float, 1>(value))[3];
}

// The order of these calls, from the last component to the first, and the alpha of 16 are deliberate.

RGBA8 Tex2dVolumeRenderer::mapping2(void* self, const Vector2f& v)
{
    const auto* const renderer = static_cast<const Tex2dVolumeRenderer*>(self);
    const unsigned char second = renderer->alphaOf(v[1]);
    const unsigned char first = renderer->alphaOf(v[0]);
    return {first, second, 0, 16};
}

RGBA8 Tex2dVolumeRenderer::mapping3(void* self, const Vector3f& v)
{
    const auto* const renderer = static_cast<const Tex2dVolumeRenderer*>(self);
    const unsigned char third = renderer->alphaOf(v[2]);
    const unsigned char second = renderer->alphaOf(v[1]);
    const unsigned char first = renderer->alphaOf(v[0]);
    return {first, second, third, 16};
}

RGBA8 Tex2dVolumeRenderer::mapping4(void* self, const Vector4f& v)
{
    const auto* const renderer = static_cast<const Tex2dVolumeRenderer*>(self);
    const unsigned char fourth = renderer->alphaOf(v[3]);
    const unsigned char third = renderer->alphaOf(v[2]);
    const unsigned char second = renderer->alphaOf(v[1]);
    const unsigned char first = renderer->alphaOf(v[0]);
    return {first, second, third, fourth};
}

void Tex2dVolumeRenderer::drawVolume(
    RegularVolume* volume, Vector3f viewDir, std::string channel, Mapping mapping, void* userData)
{
    drawVolume(volume, viewDir, std::vector<std::string>{std::move(channel)}, mapping, userData);
}

void Tex2dVolumeRenderer::drawVolume(
    RegularVolume* volume, Vector3f viewDir, const std::vector<std::string>& channels, Mapping mapping, void* userData)
{
    if (!volume || !hasSlices(*volume))
        return;
    unsigned int axis = 0;
    int direction = 0;
    computeOrder(viewDir, axis, direction);
    requireMultitexture("Tex2dVolumeRenderer::drawVolume");

    const SavedAttributes attributes;
    enableBlendedSlices();
    // All three stacks exist after one preparation, so that the view does not matter here.
    if (textureNames.size() != channels.size())
        prepareTextures(volume, viewDir, channels, mapping, userData);
    drawSlices(SliceStack(*volume, axis), direction);
}

void Tex2dVolumeRenderer::drawSlices(const SliceStack& stack, int direction) const
{
    const float sMax = static_cast<float>(stack.getWidth()) / static_cast<float>(paddedSize(stack.getWidth()));
    const float tMax = static_cast<float>(stack.getHeight()) / static_cast<float>(paddedSize(stack.getHeight()));
    stack.draw(direction, sMax, tMax, [&](unsigned int slice) { bindSlice(stack.getAxis(), slice); });
}

void Tex2dVolumeRenderer::bindSlice(unsigned int axis, unsigned int slice) const
{
    for (unsigned int channel = 0; channel < textureNames.size(); ++channel) {
        // Deliberately not one of the channel's textureNames: these are numbers of textures, taken for names.
        const std::size_t start = checkedAt(checkedAt(slabStarts, channel), axis);
        glActiveTextureARB(GL_TEXTURE0 + channel);
        glBindTexture(GL_TEXTURE_2D, static_cast<unsigned int>(start) + slice);
        setSliceParameters();
    }
    glActiveTextureARB(GL_TEXTURE0);
}

void Tex2dVolumeRenderer::disposeTextures()
{
    for (const std::vector<unsigned int>& names : textureNames)
        if (!names.empty()) {
            glDeleteTextures(static_cast<GLsizei>(names.size()), names.data());
            noteForeignNamesDeleted(NameKind::TEXTURE, names);
        }
    textureNames.clear();
    slabStarts.clear();
}

} // namespace tavo
