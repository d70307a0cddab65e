#pragma once

#include <QList>

namespace ads {
class CDockManager;
class CDockWidget;
} // namespace ads

namespace tavo {

// Lays docks out anew, in rows of equal height, so that all have about the shape of a sheet of paper. Where that would
// leave them too little room, those that come last are tabs of the others.
void tile(ads::CDockManager& manager, const QList<ads::CDockWidget*>& docks);

// Puts a dock beside those that lie as a person has left them: the largest area gives it half of its room.
void placeBeside(ads::CDockManager& manager, ads::CDockWidget* dock);

// Puts a dock below all others, as high as some lines of text.
void placeBelow(ads::CDockManager& manager, ads::CDockWidget* dock);

} // namespace tavo
