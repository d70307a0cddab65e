// Before the library's header: the system's prototypes of the same functions, and Qt's own copy of GL/glext.h.
#define GL_GLEXT_PROTOTYPES
#include <QGLWidget>

#include "vireo/context/GLExtensions.h"

#include <gtest/gtest.h>
#include <type_traits>

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
#define VIREO_GL_ENTRY_POINT(name, ...) EXPECT_EQ(name, nullptr) << #name;
#define VIREO_GL_FRAMEBUFFER_ENTRY_POINT VIREO_GL_ENTRY_POINT
#include "vireo/context/GLEntryPoints.inc"
}

} // namespace
} // namespace tavo
