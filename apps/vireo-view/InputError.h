#pragma once

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace vireo_view {

// Why a file cannot be shown, in one line: "FILE: reason" or, where a line is to blame, "FILE:12: reason". Whatever the
// name or the reason quote from outside, the line stays one line.
class InputError : public std::runtime_error
{
public:
    InputError(const std::filesystem::path& file, const std::string& reason);
    InputError(const std::filesystem::path& file, std::size_t line, const std::string& reason);
};

// The file's name in UTF-8, with control characters written out.
std::string printableName(const std::filesystem::path& file);

// Text from a file in quotes, for a message: cut where it is long, control characters written out.
std::string quotedText(std::string_view text);

} // namespace vireo_view
