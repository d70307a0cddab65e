#include "apps/vireo-view/InputError.h"

#include "tavo/base/text/printable.h"

namespace vireo_view {

using tavo::printable;

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
    return "'" + printable(text, LONGEST) + "'";
}

} // namespace vireo_view
