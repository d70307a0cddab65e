#pragma once

#include <istream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/VoxelReader.h"

namespace vireo_view {

// A header of lines that name something and say what it is, before the voxels of a volume or in a file of its own.
class VolumeHeader
{
public:
    // Throws InputError as InputBuffer does.
    explicit VolumeHeader(const std::filesystem::path& file);

    const std::filesystem::path& getFile() const { return m_Input.getFile(); }

    // The next line without the blanks at its ends; false at the end of the file.
    bool next();
    std::string_view getLine() const { return m_Line; }

    // What has been read belongs to that name.
    void set(const std::string& name, std::string_view value);

    // Of the first of these names that the header has; empty if it has none.
    std::string_view get(std::initializer_list<const char*> names) const;
    bool has(const char* name) const { return m_Fields.count(name) > 0; }

    // So many numbers, or any number of them for 0; none if the header has no such name. Throws InputError if they are
    // others.
    std::vector<double> numbers(std::initializer_list<const char*> names, std::size_t count) const;

    // Extents of such a name, of which none may be missing. Throws InputError if they are not positive or too large.
    std::vector<int> extents(const char* name, std::size_t count) const;

    // The file with the voxels beside this one. Throws InputError if there is none.
    std::filesystem::path findDataFile(const std::string& name) const;

    // Where the next line would begin.
    std::uint64_t getPlace() const { return m_Input.getFileSize() - m_Input.getRemainingSize(); }

    // Throws InputError with the file, and the line with failInLine.
    [[noreturn]] void fail(const std::string& reason) const;
    [[noreturn]] void failInLine(const std::string& reason) const;

private:
    InputBuffer m_Input;
    std::istream m_Stream;
    std::string m_Text;
    std::string_view m_Line;
    std::map<std::string, std::string> m_Fields;
};

// How the voxels lie that a header tells of.
struct VoxelData
{
    std::filesystem::path file;
    std::uint64_t start = 0; // bytes of the file before them
    bool isAtEnd = false;    // they are the last bytes of the file instead
    bool isCompressed = false;
    bool isText = false;
    std::uint64_t skipped = 0; // bytes that are left out, counted uncompressed
    VoxelLayout layout;
};

// Throws InputError as readVoxels does, or if a text has what is no number.
std::vector<NumberColumn> readVoxelData(const VoxelData& data, const Progress& progress);

// Says how many channels a voxel has. Throws InputError if they are neither a number nor a colour.
unsigned int checkedChannels(const std::filesystem::path& file, double number);

} // namespace vireo_view
