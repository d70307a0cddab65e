#pragma once

#include <QString>
#include <string>

namespace vireo_view {

// The name of the file for the picture of a section: its number, which keeps names apart and in order, and what of its
// name is no range or remark in brackets, such as "02-building.ply-points-per-z-over-z.png".
QString pictureName(unsigned int number, const std::string& sectionName);

} // namespace vireo_view
