#include "benchmarks/scenes/seenView.h"

#include <QApplication>
#include <algorithm>

#include "benchmarks/scenes/BareCloud.h"
#include "vireo/show/scenes/Stopwatch.h"

namespace vireo_bench {

void show(tavo::SceneView& view)
{
    view.setAttribute(Qt::WA_ShowWithoutActivating);
    view.setWindowFlags(Qt::Window | Qt::BypassWindowManagerHint);
    view.resize(VIEW_SIZE);
    view.show();
}

void send(tavo::SceneView& view, tavo::ItemUpdate item)
{
    tavo::SceneUpdate update;
    update.items["item"] = std::move(item);
    view.makeRoom(update.replaced());
    view.apply(update);
}

double untilItRests(tavo::SceneView& view)
{
    double longest = 0;
    do {
        const tavo::Stopwatch watch;
        QApplication::processEvents();
        longest = std::max(longest, watch.seconds());
    } while (view.isBusy());
    return longest;
}

} // namespace vireo_bench
