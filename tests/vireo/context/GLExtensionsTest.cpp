// Before the library's header: the system's prototypes of the same functions, and Qt's own copy of GL/glext.h.
// clang-format off
#define GL_GLEXT_PROTOTYPES
#include <QGLWidget>

#include "vireo/context/GLExtensions.h"
// clang-format on

#include <gtest/gtest.h>
#include <type_traits>
#include <utility>

namespace tavo {
namespace {

// In the namespace a name is the pointer even where the system's headers declare the function, and of the same type.
static_assert(std::is_function_v<decltype(::glTexImage3D)>);
static_assert(std::is_same_v<decltype(glTexImage3D), decltype(&::glTexImage3D)>);
static_assert(std::is_same_v<decltype(glMultiTexCoord4sv), decltype(&::glMultiTexCoord4sv)>);
static_assert(std::is_same_v<decltype(glBindBufferARB), decltype(&::glBindBufferARB)>);
#define VIREO_GL_FRAMEBUFFER_ENTRY_POINT(name, ...) static_assert(std::is_same_v<decltype(name), decltype(&::name)>);
#include "vireo/context/GLEntryPoints.inc"

TEST(GLExtensionsTest, AreNullUntilFetched)
{
    EXPECT_FALSE(glExtensionsInitialized);
    const std::pair<const char*, bool> entryPoints[] = {
#define VIREO_GL_ENTRY_POINT(name, ...) {#name, name == nullptr},
#define VIREO_GL_FRAMEBUFFER_ENTRY_POINT VIREO_GL_ENTRY_POINT
#include "vireo/context/GLEntryPoints.inc"
    };
    for (const auto& [name, isNull] : entryPoints)
        EXPECT_TRUE(isNull) << name;
}

} // namespace
} // namespace tavo
