// Leaves a texture that outlives its root, the depths of a target, and the textures of a volume.
#include "tavo/platform/windowlessContext.h"
#include "vireo/Library.h"
#include "vireo/context/GLContext.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"
#include "vireo/textures/GLTexture2D.h"

__attribute__((noinline, visibility("default"))) tavo::GLTexture2D* leakATexture(tavo::GLContext& context)
{
    auto* const texture = new tavo::GLTexture2D(&context);
    texture->createFromMemory(4, 4, 4, nullptr, false);
    return texture;
}

int main()
{
    tavo::initVireo();
    const tavo::WindowlessContext native = tavo::makeWindowlessContext();
    if (!native.renderingContext || !wglMakeCurrent(native.deviceContext, native.renderingContext))
        return 77;
    tavo::GLTexture2D* outliving = nullptr;
    tavo::GLContext other(native.deviceContext, native.renderingContext, nullptr, nullptr);
    other.activate();
    tavo::GLTexture2D atShutdown(&other);
    {
        tavo::GLContext context(native.deviceContext, native.renderingContext, nullptr, nullptr);
        context.activate();
        outliving = leakATexture(context);
        tavo::GLRenderTextureFBO(&context).create(8, 8, 4, tavo::GLRenderTextureFBO::FLAG_DEPTH);
    }
    delete outliving;
    tavo::shutdownVireo();
    return 0;
}
