#pragma once

// Marks what the point-data library offers to those who link it.

#if defined(_WIN32)
#if defined(TAVO_POINTS_BUILD)
#define TAVO_POINTS_EXPORT __declspec(dllexport)
#else
#define TAVO_POINTS_EXPORT __declspec(dllimport)
#endif
#else
#define TAVO_POINTS_EXPORT __attribute__((visibility("default")))
#endif
