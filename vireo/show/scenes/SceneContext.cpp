#include "vireo/show/scenes/SceneContext.h"

#include <algorithm>

#include "vireo/context/GLExtensions.h"

namespace tavo {

namespace {

std::weak_ptr<SceneContext> theContext;

// Targets of these sizes serve views of all sizes, so that few are made while a window is resized.
int roundedUp(int size)
{
    constexpr int STEP = 512;
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
    const bool canDraw =
        isExtensionSupported("GL_ARB_vertex_buffer_object") && isExtensionSupported("GL_EXT_framebuffer_object");
    m_GL->deactivate();
    return canDraw;
}

SceneContext::~SceneContext()
{
    if (m_GL) {
        const Scope scope(*this);
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

bool SceneContext::beginPicture(const QSize& size)
{
    const auto width = static_cast<unsigned int>(roundedUp(size.width()));
    const auto height = static_cast<unsigned int>(roundedUp(size.height()));
    if (!m_Target || m_Target->getWidth() < width || m_Target->getHeight() < height) {
        auto target = std::make_unique<GLRenderTextureFBO>(m_GL.get());
        if (!target->create(m_Target ? std::max(width, m_Target->getWidth()) : width,
                m_Target ? std::max(height, m_Target->getHeight()) : height, 4,
                GLRenderTextureFBO::FLAG_DEPTH | GLRenderTextureFBO::FLAG_RECTANGLE))
            return false;
        m_Target = std::move(target);
    }
    m_Target->activate();
    glViewport(0, 0, size.width(), size.height());
    return true;
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

} // namespace tavo
