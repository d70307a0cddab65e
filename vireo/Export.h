#pragma once

// Marks what the vireo library offers to those who link it.

#if defined(_WIN32)
#if defined(VIREO_BUILD)
#define VIREO_EXPORT __declspec(dllexport)
#else
#define VIREO_EXPORT __declspec(dllimport)
#endif
#else
#define VIREO_EXPORT __attribute__((visibility("default")))
#endif
