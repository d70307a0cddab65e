#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace vireo_view {

// A slice of 3 x 2 pixels as a scanner might write it.
struct DicomFile
{
    double z = 0;
    int number = 1;
    std::string series = "1.2.3";
    std::string description = "thorax";
    std::string syntax = "1.2.840.10008.1.2.1";
    std::vector<std::int16_t> pixels = {1, 2, 3, 4, 5, 6};
    std::string intercept;
    int bitsStored = 16;
    std::string before; // fields that are written as they are, before the pixels

    // A field with its type, or without it as an implicit syntax has it. A field of 2 bytes is a number of that size.
    std::string field(std::uint16_t group, std::uint16_t element, const std::string& type, std::string value) const
    {
        if (value.size() % 2 != 0)
            value += type == "UI" ? '\0' : ' ';
        const bool isTyped = syntax != "1.2.840.10008.1.2" || group == 2;
        std::string bytes = number16(group) + number16(element);
        if (!isTyped)
            return bytes + number32(value.size()) + value;
        if (type == "OW" || type == "SQ" || type == "UN")
            return bytes + type + std::string(2, '\0') + number32(value.size()) + value;
        return bytes + type + number16(value.size()) + value;
    }

    std::string number16(std::size_t number) const
    {
        const std::string bytes{static_cast<char>(number & 0xFFu), static_cast<char>(number >> 8u & 0xFFu)};
        return m_IsBigEndian ? std::string(bytes.rbegin(), bytes.rend()) : bytes;
    }

    std::string number32(std::size_t number) const
    {
        const std::string low = number16(number & 0xFFFFu), high = number16(number >> 16u);
        return m_IsBigEndian ? high + low : low + high;
    }

    std::string bytes()
    {
        m_IsBigEndian = false;
        std::string bytes = std::string(128, '\0') + "DICM" + field(2, 0x10, "UI", syntax);
        m_IsBigEndian = syntax == "1.2.840.10008.1.2.2";
        bytes += field(0x0008, 0x103E, "LO", description) + field(0x0020, 0x000E, "UI", series);
        bytes += field(0x0020, 0x0013, "IS", std::to_string(number));
        bytes += field(0x0020, 0x0032, "DS", "10\\20\\" + std::to_string(z));
        bytes += field(0x0020, 0x0037, "DS", "1\\0\\0\\0\\1\\0");
        bytes += field(0x0028, 0x0002, "US", number16(1)) + field(0x0028, 0x0004, "CS", "MONOCHROME2");
        bytes += field(0x0028, 0x0010, "US", number16(2)) + field(0x0028, 0x0011, "US", number16(3));
        bytes += field(0x0028, 0x0030, "DS", "2\\0.5") + field(0x0028, 0x0100, "US", number16(16));
        bytes += field(0x0028, 0x0101, "US", number16(static_cast<std::size_t>(bitsStored)));
        bytes += field(0x0028, 0x0102, "US", number16(static_cast<std::size_t>(bitsStored - 1)));
        bytes += field(0x0028, 0x0103, "US", number16(1));
        if (!intercept.empty())
            bytes += field(0x0028, 0x1052, "DS", intercept) + field(0x0028, 0x1053, "DS", "1");
        std::string values;
        for (const std::int16_t pixel : pixels)
            values += number16(static_cast<std::uint16_t>(pixel));
        return bytes + before + field(0x7FE0, 0x0010, "OW", values);
    }

    void write(const std::filesystem::path& file) { std::ofstream(file, std::ios::binary) << bytes(); }

private:
    bool m_IsBigEndian = false;
};

} // namespace vireo_view
