#pragma once

// Marks what the front door's library offers to those who link it.

#if defined(_WIN32)
#if defined(VIREO_SHOW_BUILD)
#define VIREO_SHOW_EXPORT __declspec(dllexport)
#else
#define VIREO_SHOW_EXPORT __declspec(dllimport)
#endif
#else
#define VIREO_SHOW_EXPORT __attribute__((visibility("default")))
#endif
