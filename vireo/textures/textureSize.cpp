#include "vireo/textures/textureSize.h"

namespace tavo {

namespace {

unsigned int halved(unsigned int dimension)
{
    return dimension > 1 ? dimension / 2 : dimension;
}

} // namespace

unsigned int sizeOfLevel(unsigned int width, unsigned int height, unsigned int depth, unsigned int components)
{
    return width * height * depth * components;
}

unsigned int sizeOfMipmaps(unsigned int width, unsigned int height, unsigned int depth, unsigned int components)
{
    unsigned int size = 0;
    while (width * height * depth > 1) {
        size += sizeOfLevel(width, height, depth, components);
        width = halved(width);
        height = halved(height);
        depth = halved(depth);
    }
    return size;
}

} // namespace tavo
