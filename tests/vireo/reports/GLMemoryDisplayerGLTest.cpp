// With objects and a cache in a context of this program's own.
#include <QTreeWidget>
#include <gmock/gmock.h>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugSection.h"
#include "tavo/base/debug/DebugWindow.h"
#include "tavo/platform/windowlessContext.h"
#include "vireo/context/GLContext.h"
#include "vireo/reports/GLMemoryDisplayer.h"
#include "vireo/textures/GLTexture2D.h"

namespace tavo {
namespace {

TEST(GLMemoryDisplayerGLTest, ShowsObjectsThatLiveAndNamesThatNobodyDeletes)
{
    LeakReport::setMode(LeakReport::Mode::COUNTS);
    GLMemoryDisplayer::init(EventDisplayer::getClass());
    const WindowlessContext native = makeWindowlessContext();
    if (!native.renderingContext || !wglMakeCurrent(native.deviceContext, native.renderingContext))
        GTEST_SKIP() << "EGL makes no context here";
    {
        GLContext context(native.deviceContext, native.renderingContext, nullptr, nullptr);
        context.activate();
        GLTexture2D texture(&context);
        texture.createFromMemory(4, 4, 4, nullptr, false);
        GLRenderTextureCache cache(&context);
        cache.freeRenderTexture(cache.getRenderTexture(8, 8, 4, false, false, false, true, false));
        cache.clearUnused();
        cache.getRenderTexture(16, 16, 4, false, false, false, false, false);
        debugOutputMemory("memory", {{"targets", cache.getStatistics()}});
    }
    LeakReport::setMode(LeakReport::Mode::OFF);
    wglMakeCurrent(nullptr, nullptr);
    destroyWindowlessContext(native);

    auto* const tree = dynamic_cast<QTreeWidget*>(debugOutput.getWindow()->getSections().front()->getDisplayerWidget());
    ASSERT_TRUE(tree);
    const auto has = [tree](const char* what, const char* number, const char* bytes) {
        for (QTreeWidgetItemIterator item(tree); *item; ++item)
            if ((*item)->text(0) == what)
                return (*item)->text(1) == number && (*item)->text(2) == QLocale().toString(QString(bytes).toInt());
        return false;
    };
    EXPECT_TRUE(has("GLTexture2D", "2", "1088")) << "the texture, and that of the cache";
    EXPECT_TRUE(has("GLRenderTextureFBO", "1", "0"));
    EXPECT_TRUE(has("renderbuffer of GLRenderTextureFBO", "1", "256"));
    EXPECT_TRUE(has("16 x 16, 4 components (0 free)", "1", "1024"));
    EXPECT_TRUE(has("in use", "1", "1024"));
}

} // namespace
} // namespace tavo
