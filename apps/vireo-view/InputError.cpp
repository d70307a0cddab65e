#include "apps/vireo-view/InputError.h"

#include <algorithm>

namespace vireo_view {

namespace {

std::string printable(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, '?');
    return text;
}

} // namespace

InputError::InputError(const std::filesystem::path& file, const std::string& reason)
    : std::runtime_error(printableName(file) + ": " + printable(reason))
{}

InputError::InputError(const std::filesystem::path& file, std::size_t line, const std::string& reason)
    : std::runtime_error(printableName(file) + ":" + std::to_string(line) + ": " + printable(reason))
{}

std::string printableName(const std::filesystem::path& file)
{
    const std::u8string name = file.u8string();
    return printable(std::string(name.begin(), name.end()));
}

std::string quotedText(std::string_view text)
{
    constexpr std::size_t LONGEST = 40;
    const bool cut = text.size() > LONGEST;
    return "'" + printable(std::string(text.substr(0, LONGEST))) + (cut ? "...'" : "'");
}

} // namespace vireo_view
