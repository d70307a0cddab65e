#pragma once

#include <string>

#include "vireo/show/window/ViewDock.h"

namespace tavo {

class DebugSection;

// What the dock of a section shows and offers: its picture, and of the displayers of GL events their panel and the data
// that they show.
DockContent contentOf(DebugSection& section);

// Saves the data that a section shows, in a file of comma-separated values: a row for each point. Why they could not be
// saved, for a person; empty if they were.
std::string saveSectionData(DebugSection& section, const QString& file);

} // namespace tavo
