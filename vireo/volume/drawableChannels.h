#pragma once

#include <string>
#include <type_traits>

#include "tavo/points/VolumeChannel.h"

namespace tavo {

class RegularVolume;

// Whether the volume's numbers of samples leave anything to draw.
bool hasSlices(const RegularVolume& volume);

// Looks up a channel that can be made into textures. Throws PException if there is none of that name, and one that
// begins with the operation's name if the channel is not of floats or has more than four components.
VolumeChannel requireDrawableChannel(
    const RegularVolume& volume, const std::string& name, const std::string& operation);

// Calls a generic function with the number of components of such a channel, 1 to 4, as a constant.
template <typename Function>
void withNumComponents(const VolumeChannel& channel, const Function& function)
{
    switch (channel.getNumComponents()) {
    case 1: function(std::integral_constant<unsigned int, 1>()); break;
    case 2: function(std::integral_constant<unsigned int, 2>()); break;
    case 3: function(std::integral_constant<unsigned int, 3>()); break;
    default: function(std::integral_constant<unsigned int, 4>()); break;
    }
}

} // namespace tavo
