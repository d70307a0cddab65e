#pragma once

#include <QStringList>
#include <string>
#include <vector>

#include "vireo/show/delivery/ViewUpdate.h"

namespace tavo {

// In what files data are saved.
struct DataFormat
{
    const char* ending;
    const char* contents; // for a person
};

// The one of tables comes first.
using DataFormats = std::vector<DataFormat>;

const DataFormats& dataFormatsOf(ViewKind kind);

// Of what has tables alone.
const DataFormats& tableFormats();

// As dialogs have them: "Comma-separated values (*.csv)".
QStringList filtersOf(const DataFormats& formats);

// What to say of a file with another ending.
std::string whyNoneIs(const DataFormats& formats);

} // namespace tavo
