#pragma once

#include <filesystem>

namespace vireo_view {

// Throws an InputError where a PNG is cut off, or holds something else than was written: what reads its pixels would
// say so on the standard error stream, in words of its own.
void checkPng(const std::filesystem::path& file);

} // namespace vireo_view
