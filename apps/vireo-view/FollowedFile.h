#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace vireo_view {

// A text that grows, such as a log, and whose lines are taken as they come. It may also be cut, replaced and deleted.
class FollowedFile
{
public:
    enum class Event
    {
        NONE,    // or more lines
        ANEW,    // another file has taken its place, or it was cut: its lines come from the first on
        GONE,    // it is not there, and is waited for
        APPEARED // its lines come from the first on
    };

    using TakeLine = std::function<void(std::string_view line, std::size_t number)>;

    explicit FollowedFile(const std::filesystem::path& file);

    // Looks what has become of the file, and takes the next lines that have an end, without it. None are taken along
    // with another event. Throws InputError if it is no file, or has a line of more than 16 MiB.
    Event poll(const TakeLine& takeLine);

    // Whether there was more than one call takes.
    bool hasMore() const { return m_HasMore; }

private:
    bool beginsAsBefore(std::ifstream& stream) const;
    void begin();
    void read(std::ifstream& stream, const TakeLine& takeLine);
    void takeLines(const TakeLine& takeLine);

    std::filesystem::path m_File;
    bool m_IsGone = false;
    bool m_HasMore = false;
    std::uintmax_t m_Position = 0;
    std::filesystem::file_time_type m_Time;
    std::string m_Beginning; // of what was read
    std::string m_Partial;   // of a line whose end has not been written yet
    std::size_t m_NumLines = 0;
};

} // namespace vireo_view
