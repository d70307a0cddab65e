#pragma once

#include <string_view>

#include "vireo/show/Image.h"

/// @file
/// What is on the GPU, as an image: read when it is called, in the thread and the context in which it lives, which must
/// be current. All state of OpenGL is afterwards as it was before. The first row is the lowest.
///
///     #include <vireo/show/TextureImage.h>
///     #include <vireo/textures/GLTexture2D.h>
///
///     tavo::image("first pass", texture);
///
/// Depths are numbers from 0 to 1, of which the least is black and the greatest white.

namespace tavo {

class GLImage;
class GLRenderTextureFBO;
class GLTexture;

/// A level of a texture of any target; of a cube one of its faces, in the order of GL, and of a volume one of its
/// slices. It has the channels and the precision that the driver gave it.
VIREO_SHOW_EXPORT Image image(std::string_view name, const GLTexture& texture, int level = 0, int layer = 0,
    const Statement& statement = Statement());

/// All levels of a texture as a stack, of the same face or slice; or all faces of a cube, or all slices of a volume, of
/// the same level.
///
///     #include <vireo/show/TextureImage.h>
///     #include <vireo/textures/GLTexture2D.h>
///
///     tavo::imageStackOfLevels("levels of the ground", texture);
VIREO_SHOW_EXPORT Image imageStackOfLevels(
    std::string_view name, const GLTexture& texture, int layer = 0, const Statement& statement = Statement());
VIREO_SHOW_EXPORT Image imageStackOfLayers(
    std::string_view name, const GLTexture& texture, int level = 0, const Statement& statement = Statement());

/// What was drawn into a target, or is in an image on the GPU. The depths of a target are those that
/// depthBufferImage() reads while it is active.
VIREO_SHOW_EXPORT Image image(
    std::string_view name, const GLRenderTextureFBO& target, const Statement& statement = Statement());
VIREO_SHOW_EXPORT Image image(std::string_view name, const GLImage& image, const Statement& statement = Statement());

/// The part of the framebuffer that is drawn to which the viewport shows: its colours, or its depths.
VIREO_SHOW_EXPORT Image framebufferImage(std::string_view name, const Statement& statement = Statement());
VIREO_SHOW_EXPORT Image depthBufferImage(std::string_view name, const Statement& statement = Statement());

} // namespace tavo
