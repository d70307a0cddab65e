#include "tavo/platform/nativeHandles.h"

// None of Xlib's macros comes with it.
#if defined(None) || defined(Bool) || defined(Status) || defined(Success) || defined(Always)
#error "tavo/platform/nativeHandles.h brings X11's macros along"
#endif

#include <gtest/gtest.h>

namespace {

TEST(NativeHandlesTest, NothingHasNoHandle)
{
    int something = 0;
    EXPECT_EQ(tavo::wrapGlxContext(nullptr, nullptr), nullptr);
    EXPECT_EQ(tavo::wrapGlxDrawable(nullptr, 1), nullptr);
    EXPECT_EQ(tavo::wrapGlxDrawables(nullptr, 1, 2), nullptr);
    EXPECT_EQ(tavo::wrapEglContext(nullptr, &something), nullptr);
    EXPECT_EQ(tavo::wrapEglContext(&something, nullptr), nullptr);
    EXPECT_EQ(tavo::wrapEglSurface(nullptr, &something), nullptr);
    EXPECT_EQ(tavo::wrapEglSurfaces(nullptr, &something, &something), nullptr);
}

TEST(NativeHandlesTest, SurfacesToDrawToAndToReadFromMakeADeviceContextTogether)
{
    int display = 0;
    int surfaces[2] = {};
    const HDC both = tavo::wrapEglSurfaces(&display, &surfaces[0], &surfaces[1]);
    EXPECT_EQ(tavo::wrapEglSurfaces(&display, &surfaces[0], &surfaces[1]), both);
    EXPECT_NE(tavo::wrapEglSurfaces(&display, &surfaces[1], &surfaces[0]), both);
    EXPECT_NE(tavo::wrapEglSurface(&display, &surfaces[0]), both);
    EXPECT_EQ(
        tavo::wrapEglSurface(&display, &surfaces[0]), tavo::wrapEglSurfaces(&display, &surfaces[0], &surfaces[0]));
}

TEST(NativeHandlesTest, WhatNeverWasAnEglDisplayIsRefused)
{
    int display = 0;
    int context = 0;
    EXPECT_EQ(wglMakeCurrent(tavo::wrapEglSurface(&display, nullptr), tavo::wrapEglContext(&display, &context)), 0);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}

TEST(NativeHandlesTest, ForgettingAnUnknownHandleDoesNothing)
{
    int display = 0;
    int context = 0;
    const HGLRC known = tavo::wrapEglContext(&display, &context);
    tavo::forgetContext(nullptr);
    tavo::forgetContext(reinterpret_cast<HGLRC>(&display));
    EXPECT_EQ(tavo::wrapEglContext(&display, &context), known);
}

} // namespace
