#include "apps/vireo-view/FileFormat.h"

#include <QImageReader>
#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "apps/vireo-view/DicomHeader.h"
#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/TiffReader.h"
#include "apps/vireo-view/lowerCaseExtension.h"

namespace vireo_view {

namespace {

constexpr std::string_view BLANKS = " \t\r\n";

// Formats that only their names tell.
constexpr std::array<std::pair<std::string_view, FileFormat>, 4> NAMED = {
    {{".obj", FileFormat::OBJ}, {".stl", FileFormat::STL}, {".gltf", FileFormat::GLTF}, {".glb", FileFormat::GLTF}}};

// Formats of volumes; what is named so and is not is refused by their readers.
constexpr std::array<std::pair<std::string_view, FileFormat>, 10> NAMED_VOLUMES = {
    {{".nii", FileFormat::NIFTI}, {".hdr", FileFormat::NIFTI}, {".img", FileFormat::NIFTI}, {".nrrd", FileFormat::NRRD},
        {".nhdr", FileFormat::NRRD}, {".mha", FileFormat::METAIMAGE}, {".mhd", FileFormat::METAIMAGE},
        {".tif", FileFormat::TIFF}, {".tiff", FileFormat::TIFF}, {".dcm", FileFormat::DICOM}}};

std::string beginningOf(const std::filesystem::path& file)
{
    InputBuffer input(file, InputBuffer::LineEnds::AS_THEY_ARE, nullptr);
    std::string beginning(1024, '\0');
    beginning.resize(input.sgetn(beginning.data(), static_cast<std::streamsize>(beginning.size())));
    input.checkEnd();
    return beginning;
}

std::string_view firstWord(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    return text.substr(0, text.find_first_of(BLANKS));
}

std::string_view withoutLeadingComments(std::string_view text)
{
    while (firstWord(text).starts_with('#')) {
        const std::size_t comment = text.find('#');
        text.remove_prefix(std::min(text.find('\n', comment), text.size()));
    }
    return text;
}

// OFF, with any of the letters before it that say what else a vertex has.
bool isOffKeyword(std::string_view word)
{
    for (const std::string_view prefix : {"ST", "C", "N", "4", "n"})
        if (word.starts_with(prefix))
            word.remove_prefix(prefix.size());
    return word == "OFF";
}

bool beginsLikeImage(std::string_view beginning)
{
    using namespace std::string_view_literals;
    for (const std::string_view mark :
        {"\x89PNG"sv, "\xFF\xD8\xFF"sv, "II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv, "GIF8"sv})
        if (beginning.starts_with(mark))
            return true;
    return false;
}

} // namespace

bool hasNameOfImage(const std::filesystem::path& file)
{
    const std::string extension = lowerCaseExtension(file);
    if (extension == ".tif" || extension == ".tiff" || extension == ".pfm")
        return true;
    if (extension.size() < 2)
        return false;
    static const QList<QByteArray> formats = QImageReader::supportedImageFormats();
    return formats.contains(QByteArray::fromStdString(extension.substr(1)));
}

FileFormat detectFormat(const std::filesystem::path& file)
{
    std::error_code error;
    if (std::filesystem::is_directory(file, error))
        return FileFormat::DICOM;
    const std::string beginning = beginningOf(file);
    const std::string extension = lowerCaseExtension(file);
    for (const auto& [name, format] : NAMED_VOLUMES)
        if (extension == name && (format != FileFormat::TIFF || isTiffStack(file)))
            return format;
    if (isDicom(file))
        return FileFormat::DICOM;
    if (beginsLikeImage(beginning) || hasNameOfImage(file))
        return FileFormat::IMAGE;
    if (beginning.starts_with("ply") && firstWord(beginning) == "ply")
        return FileFormat::PLY;
    if (isOffKeyword(firstWord(withoutLeadingComments(beginning))))
        return FileFormat::OFF;
    if (extension == ".ply")
        throw InputError(file, "is not a PLY file: it does not begin with 'ply'");
    if (extension == ".off")
        throw InputError(file, "is not an OFF file: it does not begin with 'OFF'");
    for (const auto& [name, format] : NAMED)
        if (extension == name)
            return format;
    if (beginning.find('\0') != std::string::npos)
        throw InputError(file, "is of no known format: neither PLY nor OFF nor a volume nor an image nor text; --raw "
                               "says how voxels lie in it");
    if (extension == ".pts")
        return FileFormat::PTS;
    return extension == ".xyz" || extension == ".pwn" ? FileFormat::XYZ : FileFormat::COLUMNS;
}

bool isOfVolumes(FileFormat format)
{
    return std::any_of(
        NAMED_VOLUMES.begin(), NAMED_VOLUMES.end(), [format](const auto& named) { return named.second == format; });
}

} // namespace vireo_view
