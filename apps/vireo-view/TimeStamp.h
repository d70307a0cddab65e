#pragma once

#include <optional>
#include <string_view>

namespace vireo_view {

// The seconds since 1970 of a moment in writing; nothing if the text is none.
//
//     2024-05-01                      a day, from its beginning
//     2024-05-01T12:30:59.5+02:00     ISO 8601: a "T" or blanks in the middle, fractions of a second or none, "Z" or
//     the
//                                     hours ahead of UTC, with or without minutes; or 20240501T123059Z
//     01.05.2024 12:30                as it is written in German, or with slashes 2024/05/01 12:30
//
// Without a zone it is taken for local time.
std::optional<double> timeStampOf(std::string_view text);

// Whether the text is a day alone, or a time of day alone, such as 12:30:59.5.
bool isDate(std::string_view text);
bool isTimeOfDay(std::string_view text);

} // namespace vireo_view
