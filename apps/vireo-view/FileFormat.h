#pragma once

#include <filesystem>

namespace vireo_view {

enum class FileFormat
{
    PLY,
    OFF,
    OBJ,
    STL,
    GLTF,
    XYZ,
    PTS,
    NIFTI,
    NRRD,
    METAIMAGE,
    TIFF,
    DICOM,
    IMAGE,
    COLUMNS, // text with columns of numbers
};

// Tells the format of a file: NIFTI by the extension (.nii, .hdr or .img, each also with .gz), METAIMAGE (.mha or
// .mhd) and NRRD (.nrrd or .nhdr) too, TIFF (.tif or .tiff) if its first pages are alike, DICOM, of which a folder has
// files, PLY and OFF by how it begins, images too (see hasNameOfImage), OBJ, STL, glTF (.gltf or .glb), XYZ (.xyz or
// .pwn) and PTS by the extension, and columns if it can be text. Throws InputError if it cannot, if the extension says
// PLY or OFF and the file does not, and as InputBuffer does.
FileFormat detectFormat(const std::filesystem::path& file);

// Whether the file is one of volumes.
bool isOfVolumes(FileFormat format);

// Whether the extension is that of an image: of TIFF, of PFM, or of what Qt reads.
bool hasNameOfImage(const std::filesystem::path& file);

} // namespace vireo_view
