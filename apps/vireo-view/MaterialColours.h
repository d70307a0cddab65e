#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

namespace vireo_view {

// The plain colours of the materials of OBJ files, by their names.
struct MaterialColours
{
    std::map<std::string, std::array<std::uint8_t, 3>, std::less<>> colours;
    bool haveTextures = false;
};

// Adds the diffuse colours that a file of materials (.mtl) says. Throws InputError if it cannot be read.
void addMaterialColours(MaterialColours& materials, const std::filesystem::path& file);

} // namespace vireo_view
