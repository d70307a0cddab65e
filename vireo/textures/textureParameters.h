#pragma once

#include "vireo/context/GLExtensions.h"

namespace tavo {

// How textures are sampled, written into the texture that is bound to the target, in a fixed order: the filter for
// magnification, that for minification, and the wrap modes along S, T and, for one mode everywhere, R.
void setFiltersAndWraps(unsigned int target, GLint magFilter, GLint minFilter, GLint wrapS, GLint wrapT);
void setFilterAndWrapEverywhere(unsigned int target, GLint filter, GLint wrap);

} // namespace tavo
