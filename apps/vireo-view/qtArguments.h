#pragma once

#include <QStringList>

namespace vireo_view {

// The arguments but those that every program of Qt's takes, such as "-platform offscreen". A QApplication would take
// them away, too, but there is none where there is no display, and what else is wrong is to be said there.
QStringList withoutQtArguments(const QStringList& arguments);

} // namespace vireo_view
