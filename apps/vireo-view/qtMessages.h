#pragma once

namespace vireo_view {

// From here on, what makes Qt end the program, a display that does not answer above all, is one line on the standard
// error stream and exit status 1. Qt would abort. What else Qt says is kept back, as it may be the reason, until Qt has
// started.
void watchQtStart();

// Qt has started: its messages are written, those that were kept back and all later ones.
void qtHasStarted();

} // namespace vireo_view
