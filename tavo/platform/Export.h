#pragma once

// Marks what the platform library offers to those who link it.

#if defined(_WIN32)
#if defined(TAVO_WGL_BUILD)
#define TAVO_WGL_EXPORT __declspec(dllexport)
#else
#define TAVO_WGL_EXPORT __declspec(dllimport)
#endif
#else
#define TAVO_WGL_EXPORT __attribute__((visibility("default")))
#endif
