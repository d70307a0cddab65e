#pragma once

#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <functional>
#include <memory>

#include "tavo/platform/windowlessContext.h"
#include "vireo/context/CurrentContextGuard.h"
#include "vireo/context/GLContext.h"
#include "vireo/offscreen/GLRenderTargetFBO.h"
#include "vireo/show/scenes/DepthLayers.h"
#include "vireo/show/scenes/EyeDomeLighting.h"
#include "vireo/show/scenes/PickTarget.h"

namespace tavo {

// The GL context that all scenes are drawn in. It has no window: what is drawn is read back, and widgets show the
// picture, so that no view loses anything wherever it is docked. Pictures without a display are made the same way.
//
// It lives in the window's thread, as long as anybody holds it.
class SceneContext
{
public:
    // Null where no driver makes a context.
    static std::shared_ptr<SceneContext> get();

    ~SceneContext();
    SceneContext(const SceneContext&) = delete;
    SceneContext& operator=(const SceneContext&) = delete;

    // Makes it current, and afterwards again what was current before.
    class Scope
    {
    public:
        explicit Scope(SceneContext& context);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

        bool isCurrent() const { return m_IsCurrent; }

    private:
        CurrentContextGuard m_Before;
        SceneContext& m_Context;
        bool m_IsCurrent;
    };

    // Within a scope.
    GLContext& getGL() { return *m_GL; }

    // Larger pictures, along a side, are drawn in parts: drivers have no targets for them, or no memory. A smaller
    // number than the driver's can be set.
    int largestPicture() const;
    void limitPictures(int largest) { m_LargestPicture = largest; }

    // Directs drawing to a target with colours and depths, at least that large. False if the driver has none.
    bool beginPicture(const QSize& size);

    // A target beside that of pictures, at least that large; null if the driver has none.
    std::unique_ptr<GLRenderTargetFBO> makeTarget(const QSize& size);

    // Pictures are drawn into that one from now on; gives the one that they were drawn into before.
    void swapTarget(std::unique_ptr<GLRenderTargetFBO>& target) { m_Target.swap(target); }

    // Takes over the colours and the depths of such a target, while a picture is drawn.
    void copyFrom(GLRenderTargetFBO& target, const QSize& size);

    // Shades what was drawn so far by its depths, where the driver can. Drawing goes on.
    void light(const QSize& size, const EyeDomeLighting::View& view, double pixelRatio);

    // Blends what draw() draws into the picture by its depths (see DepthLayers). Returns false if the driver cannot.
    bool blendLayers(const QSize& size, unsigned int mostLayers, const std::function<void()>& draw);

    // What was drawn, the first row of pixels first: whoever draws turns the picture upside down.
    QImage readPicture(const QSize& size) const;

    void endPicture();

    // Where all scenes draw what is under the pointer.
    PickTarget& getPickTarget();

private:
    SceneContext() = default;

    bool makeNative();

    QOffscreenSurface m_Surface;
    QOpenGLContext m_QtContext;
    WindowlessContext m_Windowless;
    HDC m_DeviceContext = nullptr;
    int m_LargestPicture = 8192;
    HGLRC m_RenderingContext = nullptr;
    std::unique_ptr<GLContext> m_GL;
    std::unique_ptr<GLRenderTargetFBO> m_Target;
    std::unique_ptr<GLRenderTargetFBO> m_Lit; // made when light is needed, as large as the other
    std::unique_ptr<EyeDomeLighting> m_Light; // null if the driver has none
    std::unique_ptr<DepthLayers> m_Layers;    // null if the driver has none
    std::unique_ptr<PickTarget> m_PickTarget; // made when it is needed
};

} // namespace tavo
