#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/NumberColumn.h"

namespace vireo_view {

// The numbers of a glTF file: its buffers, and what its accessors say of them.
class GltfBuffers
{
public:
    // The bytes are those behind the description in a binary file.
    GltfBuffers(const std::filesystem::path& file, const QJsonObject& description, std::vector<char> bytes);

    struct Values
    {
        NumberColumn numbers;
        unsigned int width = 1; // numbers that belong together
        bool isNormalized = false;

        std::size_t size() const { return sizeOf(numbers) / width; }
    };

    // Throws InputError if there is no such accessor, or if it says what cannot be.
    Values read(const QJsonValue& accessor);

private:
    struct View;

    [[noreturn]] void fail(const std::string& reason) const;
    QJsonObject at(const char* array, const QJsonValue& index) const;
    std::uint64_t wholeNumber(const QJsonObject& object, const char* name, std::uint64_t otherwise = 0) const;
    const std::vector<char>& bufferAt(const QJsonValue& index);
    std::vector<char> load(const QJsonObject& buffer) const;
    View viewAt(const QJsonValue& index, std::uint64_t offset);
    void take(std::uint64_t numBytes);
    void readInto(NumberColumn& numbers, const View& view, NumberKind kind, std::uint64_t count, unsigned int width);
    void replaceSparse(Values& values, const QJsonObject& sparse, NumberKind kind);

    std::filesystem::path m_File;
    QJsonObject m_Description;
    std::vector<std::vector<char>> m_Buffers;
    std::uint64_t m_NumBytes = 0;      // of all buffers
    std::uint64_t m_NumBytesTaken = 0; // by what was read of them
};

} // namespace vireo_view
