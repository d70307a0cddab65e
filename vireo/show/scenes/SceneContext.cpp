#include "vireo/show/scenes/SceneContext.h"

#include <algorithm>

#include "vireo/context/GLExtensions.h"
#include "vireo/context/classNeeds.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {

namespace {

std::weak_ptr<SceneContext> theContext;

// Targets of these sizes serve views of all sizes, so that few are made while a window is resized.
constexpr int STEP = 512;

int roundedUp(int size)
{
    return (size + STEP - 1) / STEP * STEP;
}

} // namespace

std::shared_ptr<SceneContext> SceneContext::get()
{
    std::shared_ptr<SceneContext> context = theContext.lock();
    if (context)
        return context;
    const CurrentContextGuard before;
    context.reset(new SceneContext);
    if (!context->makeNative())
        return nullptr;
    theContext = context;
    return context;
}

// As Qt makes contexts for windows, where it does; the driver that windows have is then used here too.
bool SceneContext::makeNative()
{
    QSurfaceFormat format;
    format.setVersion(2, 1);
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    m_Surface.setFormat(format);
    m_QtContext.setFormat(format);
    m_Surface.create();
    if (m_QtContext.create() && m_QtContext.makeCurrent(&m_Surface)) {
        m_DeviceContext = wglGetCurrentDC();
        m_RenderingContext = wglGetCurrentContext();
        m_QtContext.doneCurrent();
    } else {
        wglMakeCurrent(nullptr, nullptr); // one of another kind may be in the way
        m_Windowless = makeWindowlessContext();
        m_DeviceContext = m_Windowless.deviceContext;
        m_RenderingContext = m_Windowless.renderingContext;
    }
    if (!m_RenderingContext || !wglMakeCurrent(m_DeviceContext, m_RenderingContext))
        return false;
    m_GL = std::make_unique<GLContext>(m_DeviceContext, m_RenderingContext, nullptr, nullptr);
    m_Target = std::make_unique<GLRenderTargetFBO>(m_GL.get());
    m_Lit = std::make_unique<GLRenderTargetFBO>(m_GL.get());
    m_Light = EyeDomeLighting::make(*m_GL);
    m_Layers = DepthLayers::make(*m_GL);
    const bool canDraw = isExtensionSupported("GL_ARB_vertex_buffer_object") && GLRenderTargetFBO::isSupported();
    if (!canDraw)
        reportMissing("scenes of libvireoshow");
    m_GL->deactivate();
    return canDraw;
}

SceneContext::~SceneContext()
{
    if (m_GL) {
        const Scope scope(*this);
        m_PickTarget.reset();
        m_Layers.reset();
        m_Light.reset();
        m_Lit.reset();
        m_Target.reset();
    }
    m_GL.reset();
    if (m_Windowless.renderingContext)
        destroyWindowlessContext(m_Windowless);
}

SceneContext::Scope::Scope(SceneContext& context)
    : m_Context(context)
{
    wglMakeCurrent(nullptr, nullptr); // EGL refuses where a context of GLX is current
    m_IsCurrent = context.m_GL->activate();
}

SceneContext::Scope::~Scope()
{
    m_Context.m_GL->deactivate();
}

int SceneContext::largestPicture() const
{
    int texture = 0;
    int viewport[2] = {};
    glGetIntegerv(GL_MAX_RECTANGLE_TEXTURE_SIZE_ARB, &texture);
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, viewport);
    // Targets are a little larger than what they are for.
    return std::min({m_LargestPicture, (texture / STEP) * STEP, viewport[0], viewport[1]});
}

bool SceneContext::beginPicture(const QSize& size)
{
    const auto width = static_cast<unsigned int>(roundedUp(size.width()));
    const auto height = static_cast<unsigned int>(roundedUp(size.height()));
    if ((m_Target->getWidth() < width || m_Target->getHeight() < height) &&
        !m_Target->create(std::max(width, m_Target->getWidth()), std::max(height, m_Target->getHeight())))
        return false;
    m_Target->activate();
    glViewport(0, 0, size.width(), size.height());
    return true;
}

std::unique_ptr<GLRenderTargetFBO> SceneContext::makeTarget(const QSize& size)
{
    auto target = std::make_unique<GLRenderTargetFBO>(m_GL.get());
    const auto width = static_cast<unsigned int>(roundedUp(size.width()));
    const auto height = static_cast<unsigned int>(roundedUp(size.height()));
    return target->create(width, height) ? std::move(target) : nullptr;
}

void SceneContext::copyFrom(GLRenderTargetFBO& target, const QSize& size)
{
    target.activate();
    for (GLTexture* const texture : {m_Target->getColourTexture(), m_Target->getDepthTexture()}) {
        texture->bind(0);
        glCopyTexSubImage2D(GL_TEXTURE_RECTANGLE_ARB, 0, 0, 0, 0, 0, size.width(), size.height());
        texture->unbind(0);
    }
    target.deactivate();
    glViewport(0, 0, size.width(), size.height());
}

void SceneContext::light(const QSize& size, const EyeDomeLighting::View& view, double pixelRatio)
{
    const bool isAsLarge = m_Lit->getWidth() >= m_Target->getWidth() && m_Lit->getHeight() >= m_Target->getHeight();
    if (!m_Light || (!isAsLarge && !m_Lit->create(m_Target->getWidth(), m_Target->getHeight())))
        return;
    m_Lit->activate();
    glViewport(0, 0, size.width(), size.height());
    m_Light->draw(*m_Target, {size.width(), size.height()}, view, pixelRatio);
    // Back to where the depths are, for what is still to be drawn.
    m_Target->getColourTexture()->bind(0);
    glCopyTexSubImage2D(GL_TEXTURE_RECTANGLE_ARB, 0, 0, 0, 0, 0, size.width(), size.height());
    m_Target->getColourTexture()->unbind(0);
    m_Lit->deactivate();
}

bool SceneContext::blendLayers(const QSize& size, unsigned int mostLayers, const std::function<void()>& draw)
{
    return m_Layers && m_Layers->blend(*m_Target, {size.width(), size.height()}, mostLayers, draw);
}

QImage SceneContext::readPicture(const QSize& size) const
{
    QImage picture(size, QImage::Format_RGB32);
    if (picture.isNull())
        return picture;
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, size.width(), size.height(), GL_BGRA, GL_UNSIGNED_INT_8_8_8_8_REV, picture.bits());
    return picture;
}

void SceneContext::endPicture()
{
    m_Target->deactivate();
}

PickTarget& SceneContext::getPickTarget()
{
    if (!m_PickTarget)
        m_PickTarget = std::make_unique<PickTarget>(*m_GL);
    return *m_PickTarget;
}

} // namespace tavo
