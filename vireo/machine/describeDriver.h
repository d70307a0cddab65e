#pragma once

#include <string>

#include "vireo/machine/ReportLines.h"

namespace tavo {

// What the driver of the current context, which was made by that way, can do, and what the library's classes would do
// with it.
void describeDriver(const std::string& way, ReportLines& lines);

// What the classes would do without any driver.
void describeNoDriver(ReportLines& lines);

} // namespace tavo
