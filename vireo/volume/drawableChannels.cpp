#include "vireo/volume/drawableChannels.h"

#include "tavo/base/objects/PException.h"
#include "tavo/points/RegularVolume.h"

namespace tavo {

bool hasSlices(const RegularVolume& volume)
{
    const Vector3i& extends = volume.getExtends();
    return extends[0] != 0 && extends[1] != 0 && extends[2] != 0;
}

VolumeChannel requireDrawableChannel(const RegularVolume& volume, const std::string& name, const std::string& operation)
{
    const VolumeChannel channel = volume.getChannel(name);
    if (!channel.isFloat())
        throw PException(operation + " - only float channels are supported.");
    if (channel.getNumComponents() == 0 || channel.getNumComponents() > 4)
        throw PException(operation + " - only channel dimension 1..4 is supported.");
    return channel;
}

} // namespace tavo
