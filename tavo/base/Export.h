#pragma once

// Marks what the base framework offers to those who link it.

#if defined(_WIN32)
#if defined(TAVO_BASE_BUILD)
#define TAVO_BASE_EXPORT __declspec(dllexport)
#else
#define TAVO_BASE_EXPORT __declspec(dllimport)
#endif
#else
#define TAVO_BASE_EXPORT __attribute__((visibility("default")))
#endif
