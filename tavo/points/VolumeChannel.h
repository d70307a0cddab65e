#pragma once

#include "tavo/points/VertexAttribDescriptor.h"

namespace tavo {

/// Where a RegularVolume finds a channel, looked up once by RegularVolume::getChannel(), so that access to many slices
/// needs no names. It serves every volume whose samples have the same layout.
///
///     #include <tavo/points/RegularVolume.h>
///
///     const VolumeChannel density = volume.getChannel("density");
///     float sum = 0;
///     volume.forEachSample<1>(density, {0, 0, 0}, {0, 0, 0},
///         [&sum](const auto& sample, std::size_t, std::size_t) { sum += sample[0]; });
class VolumeChannel
{
public:
    bool isFloat() const { return m_IsFloat; }
    unsigned int getNumComponents() const { return m_NumComponents; }

private:
    friend class RegularVolume;

    VolumeChannel(const VertexAttribDescriptor& attribute, unsigned int offset)
        : m_Offset(offset)
        , m_NumComponents(attribute.getNumComponents())
        , m_IsFloat(attribute.isFloat())
    {}

    unsigned int m_Offset;
    unsigned int m_NumComponents;
    bool m_IsFloat;
};

} // namespace tavo
