#include "vireo/offscreen/GLImage.h"

#include <array>
#include <bit>
#include <cassert>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>

#include "tavo/base/debug/displayException.h"
#include "tavo/base/objects/PException.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/SavedState.h"
#include "vireo/geometry/GLHelper.h"
#include "vireo/offscreen/GLRenderTextureCache.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"
#include "vireo/offscreen/imageTexels.h"
#include "vireo/textures/imagePixels.h"
#include "vireo/textures/textureFormats.h"

namespace tavo {

namespace {

constexpr const char* NO_FLOAT_FORMATS = ": it lists neither GL_ARB_texture_float nor GL_NV_float_buffer";

template <typename Component>
void requirePixels(const TemplatedImage<Component>& image)
{
    firstPixels(image, static_cast<std::size_t>(image.getWidth()) * image.getHeight());
}

// Copies an image into a render texture of its size, which is then sampled without filters.
template <typename Component>
void upload(GLRenderTextureFBO& renderTexture, const TemplatedImage<Component>& image)
{
    const unsigned int target = renderTexture.getTextureTarget();
    renderTexture.bind(0);
    writeTexels(target, image);
    glTexParameteri(target, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(target, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    renderTexture.unbind();
}

template <typename Component>
[[noreturn]] void throwRefused(const TemplatedImage<Component>& image, const std::string& reason)
{
    const char* const texels = COMPONENT_TYPE<Component> == GL_FLOAT ? " texels of floats" : " texels of bytes";
    throw PException("GLImage::setup() - the driver refused a render texture of " + std::to_string(image.getWidth()) +
                     " x " + std::to_string(image.getHeight()) + texels + reason);
}

template <typename Image>
Image* readBack(GLRenderTextureFBO& renderTexture)
{
    auto image = std::make_unique<Image>(renderTexture.getWidth(), renderTexture.getHeight());
    renderTexture.bind(0);
    readTexels(renderTexture.getTextureTarget(), *image);
    renderTexture.unbind();
    return image.release();
}

// Coordinates that count pixels of a view of that size, for as long as it lives.
class View2D
{
public:
    View2D(float width, float height) { GLHelper::begin2D(width, height); }
    ~View2D() { GLHelper::end2D(); }
    View2D(const View2D&) = delete;
    View2D& operator=(const View2D&) = delete;
};

// A quad from the origin to (width, height), with a texture from its origin to (maxS, maxT).
void drawQuad(float width, float height, float maxS, float maxT)
{
    const Primitive quad(GL_QUADS);
    glColor3f(1, 1, 1);
    glTexCoord2f(0, 0);
    glVertex2f(0, 0);
    glTexCoord2f(maxS, 0);
    glVertex2f(width, 0);
    glTexCoord2f(maxS, maxT);
    glVertex2f(width, height);
    glTexCoord2f(0, maxT);
    glVertex2f(0, height);
}

} // namespace

GLImage::~GLImage()
{
    // A cache may refuse what it is given back.
    runGuarded([this] { deleteRenderTexture(); });
}

void GLImage::setup(GLRenderTextureFBO* renderTexture, bool owns)
{
    // What is kept must not be destroyed; and what goes on being owned must not be given back to its cache as well.
    const bool isKept = renderTexture == m_RenderTexture && (owns || !m_Cache);
    if (!isKept)
        deleteRenderTexture();
    m_RenderTexture = renderTexture;
    m_OwnsRenderTexture = owns;
}

void GLImage::setup(GLRenderTextureCache* cache, unsigned int width, unsigned int height, unsigned int components,
    bool rectangle, bool floatTexture, bool float32, bool depth, bool stencil)
{
    assert(cache && "an image takes render textures from a cache");
    deleteRenderTexture();
    m_Cache = cache;
    m_RenderTexture =
        cache->getRenderTexture(width, height, components, rectangle, floatTexture, float32, depth, stencil);
    m_OwnsRenderTexture = true;
}

void GLImage::setup(GLRenderTextureCache* cache, GLImage* other)
{
    assert(other && "an image is made like another one");
    setup(cache, other->getWidth(), other->getHeight(), other->getNumComponents(), other->isRectangle(),
        other->isFloat(), other->isFloat32(), other->hasDepth(), other->hasStencil());
}

void GLImage::setup(GLRenderTextureCache* cache, RGBAFloat32Image* image, bool float32)
{
    assert(image && "an image is made of a picture");
    requirePixels(*image);
    setup(cache, image->getWidth(), image->getHeight(), 4, true, true, float32, false, false);
    if (!m_RenderTexture)
        throwRefused(*image, hasRectFloatFormats() ? "" : NO_FLOAT_FORMATS);
    upload(*m_RenderTexture, *image);
}

void GLImage::setup(GLRenderTextureCache* cache, RGBAImage* image)
{
    assert(image && "an image is made of a picture");
    requirePixels(*image);
    setup(cache, image->getWidth(), image->getHeight(), 4, true, false, false, false, false);
    if (!m_RenderTexture)
        throwRefused(*image, "");
    upload(*m_RenderTexture, *image);
}

// The image has forgotten the render texture also where the cache does not take it back.
void GLImage::deleteRenderTexture()
{
    GLRenderTextureFBO* const renderTexture = std::exchange(m_RenderTexture, nullptr);
    GLRenderTextureCache* const cache = std::exchange(m_Cache, nullptr);
    if (!m_OwnsRenderTexture || !renderTexture)
        return;
    if (cache)
        cache->freeRenderTexture(renderTexture);
    else
        delete renderTexture;
}

GLRenderTextureFBO& GLImage::requireRenderTexture(const char* operation) const
{
    if (!m_RenderTexture)
        throw PException(std::string("GLImage::") + operation + "() - the image is empty");
    return *m_RenderTexture;
}

void GLImage::activate()
{
    requireRenderTexture("activate").activate();
}

void GLImage::deactivate()
{
    requireRenderTexture("deactivate").deactivate();
}

void GLImage::bind(unsigned int unit)
{
    requireRenderTexture("bind").bind(unit);
}

void GLImage::unbind()
{
    requireRenderTexture("unbind").unbind();
}

unsigned int GLImage::getWidth() const
{
    return requireRenderTexture("getWidth").getWidth();
}

unsigned int GLImage::getHeight() const
{
    return requireRenderTexture("getHeight").getHeight();
}

unsigned int GLImage::getNumComponents() const
{
    return requireRenderTexture("getNumComponents").getNumComponents();
}

bool GLImage::isFloat16() const
{
    return requireRenderTexture("isFloat16").isFloat16();
}

bool GLImage::isFloat32() const
{
    return requireRenderTexture("isFloat32").isFloat32();
}

bool GLImage::isRectangle() const
{
    return requireRenderTexture("isRectangle").isRectangle();
}

bool GLImage::isFloat() const
{
    return isFloat16() || isFloat32();
}

bool GLImage::hasDepth() const
{
    return requireRenderTexture("hasDepth").hasDepth();
}

// Deliberately the depth buffer's.
bool GLImage::hasStencil() const
{
    return hasDepth();
}

bool GLImage::isSquare() const
{
    return getWidth() == getHeight();
}

bool GLImage::isPowerOfTwo() const
{
    return std::has_single_bit(getWidth()) && std::has_single_bit(getHeight());
}

void GLImage::copySubImage(
    GLImage* source, unsigned int, unsigned int, unsigned int, unsigned int, unsigned int, unsigned int)
{
    assert(source && "an image is copied from another one");
    source->requireRenderTexture("copySubImage");
    activate();
    source->bind(0);
    source->unbind();
    deactivate();
}

RGBAImage* GLImage::getRGBAImage()
{
    return readBack<RGBAImage>(requireRenderTexture("getRGBAImage"));
}

RGBAFloat32Image* GLImage::getRGBAFloat32Image()
{
    return readBack<RGBAFloat32Image>(requireRenderTexture("getRGBAFloat32Image"));
}

void GLImage::drawToScreen()
{
    GLRenderTextureFBO& renderTexture = requireRenderTexture("drawToScreen");
    std::array<int, 4> viewport{};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    // Deliberately as if the viewport were its left, bottom, right and top.
    const auto width = static_cast<float>(viewport[2] - viewport[0]);
    const auto height = static_cast<float>(viewport[3] - viewport[1]);

    const SavedAttributes attributes;
    const View2D view(width, height);
    renderTexture.bind(0);
    glEnable(renderTexture.getTextureTarget());
    glDisable(GL_DEPTH_TEST);
    drawQuad(width, height, static_cast<float>(getWidth()), static_cast<float>(getHeight()));
    renderTexture.unbind();
}

} // namespace tavo
