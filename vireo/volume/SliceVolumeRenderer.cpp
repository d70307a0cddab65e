#include "vireo/volume/SliceVolumeRenderer.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

#include "tavo/base/math/checkedAt.h"
#include "tavo/base/objects/PException.h"
#include "tavo/points/RegularVolume.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/PlainPixels.h"
#include "vireo/context/SavedState.h"
#include "vireo/context/hasFixedFunctions.h"
#include "vireo/context/nameAccounts.h"
#include "vireo/volume/SliceReader.h"
#include "vireo/volume/SliceStack.h"
#include "vireo/volume/drawableChannels.h"
#include "vireo/volume/opacityOfLayer.h"
#include "vireo/volume/sliceState.h"

namespace tavo {

namespace {

// The slices need glBegin and glPushAttrib.
void requireFixedFunctions()
{
    if (!hasFixedFunctions())
        throw PException(
            "SliceVolumeRenderer::drawVolume - glBegin and other functions of the compatibility profile are "
            "missing: the context has the core profile's only");
}

bool takesAnySize()
{
    return isExtensionSupported("GL_ARB_texture_non_power_of_two");
}

unsigned int textureSize(int extent)
{
    const auto size = static_cast<unsigned int>(extent);
    return takesAnySize() ? size : std::bit_ceil(size);
}

void requireTextureSize(unsigned int size)
{
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    if (size > static_cast<unsigned int>(largest))
        throw PException("SliceVolumeRenderer::prepareTextures - the slices are larger than the driver's textures");
}

void requireTextureUnits(std::size_t count)
{
    GLint available = 1;
    glGetIntegerv(GL_MAX_TEXTURE_UNITS_ARB, &available);
    if (count > static_cast<std::size_t>(available)) // programs may have more of them
        glGetIntegerv(GL_MAX_TEXTURE_IMAGE_UNITS_ARB, &available);
    if (count > static_cast<std::size_t>(available))
        throw PException("SliceVolumeRenderer::prepareTextures - more channels than the driver's texture units");
}

// What a sample looks like, given what each of its components does: one component as it is, more by their alphas, and
// with fewer than four, an alpha of 16.
template <unsigned int N, typename Look>
RGBA8 colourOf(const StaticVector<float, N>& sample, const Look& look)
{
    if constexpr (N == 1)
        return look(sample[0]);
    else {
        RGBA8 colour(0, 0, 0, 16);
        for (unsigned int i = 0; i < N; ++i)
            colour[i] = look(sample[i])[3];
        return colour;
    }
}

struct Range
{
    float min = std::numeric_limits<float>::max();
    float max = std::numeric_limits<float>::lowest();
};

// The range of a channel's finite values; from 0 to 0 if there are none. Writes only what changes: a range that is
// written with every sample is waited for at the next one.
Range rangeOf(const RegularVolume& volume, const VolumeChannel& channel)
{
    constexpr int all = RegularVolume::UNRESTRICTED;
    Range range;
    withNumComponents(channel, [&](auto numComponents) {
        constexpr unsigned int n = numComponents();
        volume.forEachSample<n>(channel, {all, all, all}, {all, all, all},
            [&range](const StaticVector<float, n>& sample, std::size_t, std::size_t) {
                for (unsigned int i = 0; i < n; ++i) {
                    const float value = sample[i];
                    if (value < range.min && std::isfinite(value))
                        range.min = value;
                    if (value > range.max && std::isfinite(value))
                        range.max = value;
                }
            });
    });
    return range.min <= range.max ? range : Range{0, 0};
}

std::vector<VolumeChannel> findChannels(const RegularVolume& volume, const std::vector<std::string>& names)
{
    std::vector<VolumeChannel> channels;
    channels.reserve(names.size());
    for (const std::string& name : names)
        channels.push_back(requireDrawableChannel(volume, name, "SliceVolumeRenderer::prepareTextures"));
    return channels;
}

// Writes a slice into its texture, which is made if it is not there yet (0), and leaves it bound.
void uploadSlice(unsigned int& name, unsigned int width, unsigned int height, const RGBA8* texels)
{
    const auto w = static_cast<GLsizei>(width);
    const auto h = static_cast<GLsizei>(height);
    if (name != 0) {
        glBindTexture(GL_TEXTURE_2D, name);
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, w, h, GL_RGBA, GL_UNSIGNED_BYTE, texels);
        return;
    }
    glGenTextures(1, &name);
    noteForeignName(NameKind::TEXTURE, name, "SliceVolumeRenderer", std::uint64_t{width} * height * sizeof(RGBA8));
    glBindTexture(GL_TEXTURE_2D, name);
    setSliceParameters();
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, w, h, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels);
}

// Without programs, no texture colours the slices but those that are bound on unit 0, at coordinates as they are given.
// Unit 0 is active afterwards.
void disableOtherTextures()
{
    GLint numUnits = 1;
    glGetIntegerv(GL_MAX_TEXTURE_UNITS_ARB, &numUnits);
    for (GLint unit = numUnits - 1; unit >= 0; --unit) {
        glActiveTextureARB(GL_TEXTURE0 + static_cast<GLenum>(unit));
        for (const GLenum target :
            {GL_TEXTURE_1D, GL_TEXTURE_2D, GL_TEXTURE_3D, GL_TEXTURE_CUBE_MAP, GL_TEXTURE_RECTANGLE_ARB})
            glDisable(target);
    }
    for (const GLenum coordinate : {GL_TEXTURE_GEN_S, GL_TEXTURE_GEN_T, GL_TEXTURE_GEN_R, GL_TEXTURE_GEN_Q})
        glDisable(coordinate);
}

} // namespace

// The entry that is nearest; the first for what is no number.
inline RGBA8 SliceVolumeRenderer::Table::look(float value) const
{
    const auto last = static_cast<double>(colours.size() - 1);
    const double place = std::min((double{value} - min) * entriesPerValue + 0.5, last);
    return colours[place >= 0 ? static_cast<std::size_t>(place) : 0];
}

void SliceVolumeRenderer::drawVolume(
    RegularVolume* volume, Vector3f viewDir, const std::vector<std::string>& channels, Mapping mapping, void* userData)
{
    if (!volume || !hasSlices(*volume))
        return;
    unsigned int axis = 0;
    int direction = 0;
    computeOrder(viewDir, axis, direction);
    requireFixedFunctions();
    requireMultitexture("SliceVolumeRenderer::drawVolume");

    const SavedAttributes attributes;
    disableOtherTextures();
    enableBlendedSlices();
    prepareTextures(volume, viewDir, channels, mapping, userData);
    const auto place = m_IsCentred ? SliceStack::Place::InMiddle : SliceStack::Place::AtStart;
    drawSlices(SliceStack(*volume, axis, place), direction);
}

void SliceVolumeRenderer::disposeTextures()
{
    Tex2dVolumeRenderer::disposeTextures();
    m_Source = Source();
    m_Tables.clear();
    m_IsPrepared = {};
}

void SliceVolumeRenderer::invalidate()
{
    m_Source.volumeNumber = 0; // that of no volume
}

void SliceVolumeRenderer::setTableSize(unsigned int numEntries)
{
    m_TableSize = numEntries;
    invalidate();
}

void SliceVolumeRenderer::setOpacityDistance(float distance)
{
    m_OpacityDistance = distance;
    invalidate();
}

void SliceVolumeRenderer::prepareTextures(
    RegularVolume* volume, Vector3f viewDir, const std::vector<std::string>& channels, Mapping mapping, void* userData)
{
    checkedAt(channels, 0);
    Source source{volume->getVolumeNumber(), volume->getExtends(), channels, mapping, userData};
    unsigned int axis = 0;
    int direction = 0;
    computeOrder(viewDir, axis, direction);
    if (source == m_Source && m_IsPrepared[axis])
        return;
    const Channels found = findChannels(*volume, channels);
    if (source != m_Source)
        adopt(std::move(source), *volume, found);

    const PlainPixels pixels;
    const SliceStack stack(*volume, axis);
    for (unsigned int i = 0; i < found.size(); ++i)
        prepareStack(*volume, found[i], stack, i);
    m_IsPrepared[axis] = true;
}

// Keeps the textures where they are of the right size and number.
void SliceVolumeRenderer::adopt(Source source, const RegularVolume& volume, const Channels& channels)
{
    requireTextureUnits(channels.size());
    if (source.extends != m_Source.extends || source.channels.size() != m_Source.channels.size())
        disposeTextures();
    m_IsPrepared = {};
    m_Source = std::move(source);
    m_Source.volumeNumber = 0; // until all is done

    const Vector3i& extends = m_Source.extends;
    const auto nx = static_cast<std::size_t>(extends[0]);
    const auto ny = static_cast<std::size_t>(extends[1]);
    const auto nz = static_cast<std::size_t>(extends[2]);
    m_Tables.clear();
    textureNames.resize(m_Source.channels.size());
    slabStarts.assign(m_Source.channels.size(), {0, nx, nx + ny});
    for (std::vector<unsigned int>& names : textureNames)
        names.resize(nx + ny + nz);
    for (const VolumeChannel& channel : channels)
        m_Tables.push_back(makeTable(volume, channel));
    m_Source.volumeNumber = volume.getVolumeNumber();
}

SliceVolumeRenderer::Table SliceVolumeRenderer::makeTable(
    const RegularVolume& volume, const VolumeChannel& channel) const
{
    Table table;
    if (m_TableSize == 0)
        return table;
    const Range range = rangeOf(volume, channel);
    const double width = double{range.max} - range.min;
    const double last = m_TableSize - 1.0;
    table.min = range.min;
    table.entriesPerValue = width > 0 ? last / width : 0;
    table.colours.reserve(m_TableSize);
    for (unsigned int i = 0; i < m_TableSize; ++i) {
        const double value = range.min + (last > 0 ? width * i / last : 0);
        table.colours.push_back(m_Source.mapping(m_Source.userData, StaticVector<float, 1>(value)));
    }
    return table;
}

// What becomes of each opacity that the mapping gives.
std::array<unsigned char, 256> SliceVolumeRenderer::opacitiesOf(const SliceStack& stack) const
{
    const double thickness = m_OpacityDistance > 0 ? double{stack.getDistance()} / m_OpacityDistance : 1;
    std::array<unsigned char, 256> opacities;
    for (std::size_t i = 0; i < opacities.size(); ++i)
        opacities[i] =
            static_cast<unsigned char>(std::lround(255 * opacityOfLayer(static_cast<double>(i) / 255, thickness)));
    return opacities;
}

// Calls use(look) with what gives a value its colour in a stack.
template <typename Use>
void SliceVolumeRenderer::withLook(
    const VolumeChannel& channel, const SliceStack& stack, unsigned int channelNumber, const Use& use) const
{
    const auto useCorrected = [&](const auto& look) {
        if (!(m_OpacityDistance > 0) || channel.getNumComponents() != 1)
            return use(look);
        use([look, opacities = opacitiesOf(stack)](float value) {
            RGBA8 colour = look(value);
            colour[3] = opacities[colour[3]];
            return colour;
        });
    };
    const Table& table = m_Tables[channelNumber];
    if (table.colours.empty())
        useCorrected([mapping = m_Source.mapping, userData = m_Source.userData](
                         float value) { return mapping(userData, StaticVector<float, 1>(value)); });
    else
        useCorrected([&table](float value) { return table.look(value); });
}

void SliceVolumeRenderer::prepareStack(
    const RegularVolume& volume, const VolumeChannel& channel, const SliceStack& stack, unsigned int channelNumber)
{
    const auto numSlices = static_cast<unsigned int>(stack.getNumSlices());
    const auto report = [&](unsigned int numDone) {
        if (m_Progress)
            m_Progress(channelNumber * numSlices + numDone, static_cast<unsigned int>(textureNames.size()) * numSlices);
    };
    const unsigned int width = textureSize(stack.getWidth());
    const unsigned int height = textureSize(stack.getHeight());
    requireTextureSize(std::max(width, height));
    std::vector<RGBA8> texels(std::size_t{width} * height, NULL_VECTOR4UB);
    unsigned int* const names = textureNames[channelNumber].data() + slabStarts[channelNumber][stack.getAxis()];

    if (channelNumber == 0)
        report(0);
    const auto prepareBy = [&](const auto& look) {
        withNumComponents(channel, [&](auto numComponents) {
            constexpr unsigned int n = numComponents();
            SliceReader<n> reader(volume, channel, stack, texels.size());
            for (int slice = 0; slice < stack.getNumSlices(); ++slice) {
                reader.mapSlice(
                    slice, [look](const StaticVector<float, n>& sample) { return colourOf<n>(sample, look); },
                    texels.data(), width);
                uploadSlice(names[slice], width, height, texels.data());
                report(static_cast<unsigned int>(slice) + 1);
            }
        });
    };
    withLook(channel, stack, channelNumber, prepareBy);
}

void SliceVolumeRenderer::drawSlices(const SliceStack& stack, int direction) const
{
    const float sMax = static_cast<float>(stack.getWidth()) / static_cast<float>(textureSize(stack.getWidth()));
    const float tMax = static_cast<float>(stack.getHeight()) / static_cast<float>(textureSize(stack.getHeight()));
    const auto bindSlice = [&](unsigned int slice) {
        for (unsigned int channel = 0; channel < textureNames.size(); ++channel) {
            glActiveTextureARB(GL_TEXTURE0 + channel);
            glBindTexture(GL_TEXTURE_2D, textureNames[channel][slabStarts[channel][stack.getAxis()] + slice]);
            glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
        }
        if (m_NeighbourUnit != 0)
            bindNeighbours(stack, slice);
        glActiveTextureARB(GL_TEXTURE0);
    };
    const int step = static_cast<int>(std::min(m_Step, static_cast<unsigned int>(stack.getNumSlices())));
    stack.draw(direction, sMax, tMax, bindSlice, step);
}

void SliceVolumeRenderer::bindNeighbours(const SliceStack& stack, unsigned int slice) const
{
    const unsigned int* const names = textureNames[0].data() + slabStarts[0][stack.getAxis()];
    const auto last = static_cast<unsigned int>(stack.getNumSlices()) - 1;
    glActiveTextureARB(GL_TEXTURE0 + m_NeighbourUnit);
    glBindTexture(GL_TEXTURE_2D, names[slice > 0 ? slice - 1 : 0]);
    glActiveTextureARB(GL_TEXTURE0 + m_NeighbourUnit + 1);
    glBindTexture(GL_TEXTURE_2D, names[std::min(slice + 1, last)]);
}

} // namespace tavo
