#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tavo/base/math/vectors.h"

namespace vireo_view {

// What DICOM calls its fields, by group and element.
enum class DicomTag : std::uint32_t
{
    TRANSFER_SYNTAX = 0x00020010,
    DESCRIPTION = 0x0008103E,
    THICKNESS = 0x00180050,
    DISTANCE = 0x00180088, // from the middle of a slice to that of the next
    SERIES = 0x0020000E,
    NUMBER = 0x00200013,
    POSITION = 0x00200032,
    DIRECTIONS = 0x00200037, // of rows and columns
    NUM_CHANNELS = 0x00280002,
    MEANING = 0x00280004, // of the numbers
    PLANES = 0x00280006,
    NUM_FRAMES = 0x00280008,
    NUM_ROWS = 0x00280010,
    NUM_COLUMNS = 0x00280011,
    PIXEL_SPACING = 0x00280030,
    BITS_ALLOCATED = 0x00280100,
    BITS_STORED = 0x00280101,
    HIGHEST_BIT = 0x00280102,
    IS_SIGNED = 0x00280103,
    INTERCEPT = 0x00281052,
    SLOPE = 0x00281053,
    FRAMES_TOGETHER = 0x52009229, // what holds for all frames of a file
    FRAMES_EACH = 0x52009230,     // and for each of them
    PIXELS = 0x7FE00010,
};

// What a DICOM file says before its pixels, and where these are.
class DicomHeader
{
public:
    // Throws InputError if the file is no DICOM file, ends before its pixels, or has them compressed.
    explicit DicomHeader(const std::filesystem::path& file);

    const std::filesystem::path& getFile() const { return m_File; }

    // A field's text without the fill at its end; empty if there is none.
    std::string text(DicomTag tag) const;

    // The numbers that a field's text has; none if it has not so many, or others.
    std::vector<double> numbers(DicomTag tag, std::size_t count) const;
    double number(DicomTag tag, double otherwise) const;

    // A number of 16 bits.
    int integer(DicomTag tag, int otherwise) const;

    // Where the frames of the file are, if it says so of each.
    const std::vector<tavo::Vector3d>& getFramePositions() const { return m_FramePositions; }

    bool isBigEndian() const { return m_IsBigEndian; }

    // The first byte of the pixels, and how many there are; none if the file has no pixels.
    std::uint64_t getPixelsStart() const { return m_PixelsStart; }
    std::uint64_t getPixelsSize() const { return m_PixelsSize; }

private:
    friend class DicomHeaderReader;

    std::filesystem::path m_File;
    std::map<DicomTag, std::string> m_Fields;
    std::vector<tavo::Vector3d> m_FramePositions;
    bool m_IsBigEndian = false;
    std::uint64_t m_PixelsStart = 0;
    std::uint64_t m_PixelsSize = 0;
};

// Whether the file begins as DICOM files do.
bool isDicom(const std::filesystem::path& file);

} // namespace vireo_view
