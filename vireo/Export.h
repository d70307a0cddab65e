#pragma once

// Marks what the vireo library offers to those who link it.

#if defined(_WIN32)
#define VIREO_OWN
#if defined(VIREO_BUILD)
#define VIREO_EXPORT __declspec(dllexport)
#else
#define VIREO_EXPORT __declspec(dllimport)
#endif
#else
#define VIREO_EXPORT __attribute__((visibility("default")))
// For variables of the library's own that are used in more than one source: they need not be looked up.
#define VIREO_OWN __attribute__((visibility("hidden")))
#endif
