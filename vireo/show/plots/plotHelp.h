#pragma once

class QWidget;

namespace tavo {

// Opens a list of what mouse and keys do to a plot, beside which the program goes on.
void openPlotHelp(QWidget& view);

} // namespace tavo
