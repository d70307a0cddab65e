#pragma once

#include <QIODevice>
#include <filesystem>
#include <memory>

namespace vireo_view {

// The PNG without what its pixels do not need, such as notes and profiles of colours. What reads pixels would speak of
// such parts on the standard error stream, in words of its own, where they are damaged or unusual. Throws an InputError
// where the PNG is cut off, or where what the pixels need is damaged.
std::unique_ptr<QIODevice> openPng(const std::filesystem::path& file);

} // namespace vireo_view
