#include "tests/fuzz/Fuzzing.h"

#include <QString>
#include <QTemporaryDir>
#include <algorithm>
#include <fstream>

namespace vireo_fuzz {

void require(bool holds, const std::string& rule)
{
    if (!holds)
        throw BrokenRule(rule);
}

void requireGoodMessage(std::string_view message)
{
    constexpr int MOST_CHARACTERS = 400;
    const bool isPrintable = std::none_of(
        message.begin(), message.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
    require(!message.empty(), "bad input is refused with a reason");
    require(isPrintable, "a message is one line without control characters: " + std::string(message));
    const QString shown = QString::fromUtf8(message.data(), static_cast<int>(message.size()));
    require(shown.size() < MOST_CHARACTERS, "a message is short: " + std::string(message));
}

std::filesystem::path writeFile(const std::string& name, std::string_view bytes)
{
    static const QTemporaryDir folder;
    const std::filesystem::path file = std::filesystem::path(folder.path().toStdU16String()) / name;
    std::ofstream stream(file, std::ios::binary);
    stream << bytes;
    if (!stream.flush())
        throw std::runtime_error(file.string() + ": cannot be written");
    return file;
}

} // namespace vireo_fuzz
