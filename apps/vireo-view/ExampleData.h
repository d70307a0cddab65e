#pragma once

#include <filesystem>
#include <vector>

#include "apps/vireo-view/Point.h"

namespace vireo_view {

// A file to be shown and the axis that points up in it, if it is a cloud.
struct InputFile
{
    std::filesystem::path path;
    Axis up;
    std::vector<std::filesystem::path> slices{}; // further files of the same scan
};

// One of the files that are shown when none is named.
struct ExampleFile
{
    const char* name;
    Axis up;
    std::vector<std::filesystem::path> folders; // where it is, within the directory of the example data or not
};

// The labels of the head, beside it; empty if they are not there.
std::filesystem::path findLabelsOfExample(const std::filesystem::path& head);

// An MRI head, from Debian's package mricron-data, and a scanned building; scripts/example-data gets both.
const std::vector<ExampleFile>& exampleFiles();

// Looks for the file in the directory, which is an unpacked archive, or has one or the file itself in it, and then
// where its package puts it. Throws InputError if it is not there.
InputFile findExample(const ExampleFile& example, const std::filesystem::path& directory);

} // namespace vireo_view
