#include "vireo/show/window/tiling.h"

#include <DockAreaWidget.h>
#include <DockManager.h>
#include <DockSplitter.h>
#include <DockWidget.h>
#include <QLayout>
#include <algorithm>
#include <cmath>
#include <numeric>

namespace tavo {

namespace {

constexpr double BEST_SHAPE = 1.4; // width to height
constexpr QSize SMALLEST_TILE(200, 150);
constexpr int STRIP_HEIGHT = 120;

int largestNumTiles(QSize room)
{
    return std::max(1, room.width() / SMALLEST_TILE.width()) * std::max(1, room.height() / SMALLEST_TILE.height());
}

// With how many rows tiles come closest to their best shape.
int bestNumRows(int numTiles, QSize room)
{
    int best = 1;
    double leastError = HUGE_VAL;
    for (int rows = 1; rows <= numTiles; ++rows) {
        const int columns = (numTiles + rows - 1) / rows;
        const double shape = double(room.width()) / columns / (double(std::max(1, room.height())) / rows);
        const double error = std::abs(std::log(shape / BEST_SHAPE));
        if (error < leastError) {
            leastError = error;
            best = rows;
        }
    }
    return best;
}

// How many tiles each row has: the first ones have one more where it does not come out even.
QList<int> lengthsOfRows(int numTiles, QSize room)
{
    const int rows = bestNumRows(numTiles, room);
    QList<int> lengths;
    for (int row = 0; row < rows; ++row)
        lengths += numTiles / rows + (row < numTiles % rows ? 1 : 0);
    return lengths;
}

// The docking system may have put all into a new splitter, which Qt shows, and gives its size, only with the next
// events.
void layOutNow(ads::CDockManager& manager)
{
    for (ads::CDockSplitter* splitter :
        manager.findChildren<ads::CDockSplitter*>(QString(), Qt::FindDirectChildrenOnly))
        splitter->show();
    manager.layout()->activate();
}

void giveEqualShares(ads::CDockManager& manager)
{
    for (ads::CDockSplitter* splitter : manager.findChildren<ads::CDockSplitter*>()) {
        constexpr int SHARE = 1000;
        QList<int> sizes;
        for (int i = 0; i < splitter->count(); ++i)
            sizes += SHARE;
        splitter->setSizes(sizes);
    }
}

} // namespace

void tile(ads::CDockManager& manager, const QList<ads::CDockWidget*>& docks)
{
    const int numTiles = std::min(docks.size(), largestNumTiles(manager.size()));
    if (numTiles == 0)
        return;
    const QList<int> lengths = lengthsOfRows(numTiles, manager.size());
    QList<ads::CDockAreaWidget*> areas;
    for (int row = 0, next = 0; row < lengths.size(); next += lengths[row++]) // first all rows
        areas += manager.addDockWidget(ads::BottomDockWidgetArea, docks[next]);
    for (int row = 0, next = 0; row < lengths.size(); next += lengths[row++]) // then what is in them
        for (int column = lengths[row] - 1; column > 0; --column)
            areas += manager.addDockWidget(ads::RightDockWidgetArea, docks[next + column], areas[row]);
    for (int i = numTiles; i < docks.size(); ++i)
        manager.addDockWidgetTabToArea(docks[i], areas[i % numTiles]);
    for (ads::CDockAreaWidget* area : areas)
        area->setCurrentIndex(0);
    layOutNow(manager);
    giveEqualShares(manager);
}

void placeBeside(ads::CDockManager& manager, ads::CDockWidget* dock)
{
    QList<ads::CDockAreaWidget*> areas = manager.openedDockAreas();
    areas.removeOne(dock->dockAreaWidget());
    const auto largest =
        std::max_element(areas.begin(), areas.end(), [](const ads::CDockAreaWidget* a, const ads::CDockAreaWidget* b) {
            return a->width() * a->height() < b->width() * b->height();
        });
    if (largest == areas.end())
        manager.addDockWidget(ads::CenterDockWidgetArea, dock);
    else if (largestNumTiles((*largest)->size()) < 2)
        manager.addDockWidgetTabToArea(dock, *largest);
    else
        manager.addDockWidget((*largest)->width() > BEST_SHAPE * (*largest)->height() ? ads::RightDockWidgetArea
                                                                                      : ads::BottomDockWidgetArea,
            dock, *largest);
}

void placeBelow(ads::CDockManager& manager, ads::CDockWidget* dock)
{
    ads::CDockAreaWidget* const area = manager.addDockWidget(ads::BottomDockWidgetArea, dock);
    layOutNow(manager);
    QList<int> sizes = manager.splitterSizes(area);
    const int others = std::accumulate(sizes.begin(), sizes.end() - 1, 0);
    const int room = std::max(STRIP_HEIGHT, manager.height() - STRIP_HEIGHT);
    for (int& size : sizes)
        size = others > 0 ? size * room / others : room;
    sizes.last() = STRIP_HEIGHT;
    manager.setSplitterSizes(area, sizes);
}

} // namespace tavo
