#include "vireo/show/plots/plotMenu.h"

#include <QAction>
#include <QMenu>
#include <functional>

#include "vireo/show/plots/PlotMeasure.h"
#include "vireo/show/plots/PlotView.h"

namespace tavo {

namespace {

QAction* addAction(QMenu& menu, const char* name, const QString& text, const std::function<void()>& work)
{
    QAction* const action = menu.addAction(text, &menu, work);
    action->setObjectName(name);
    return action;
}

void addSwitch(QMenu& menu, const char* name, const QString& text, bool isOn, const std::function<void(bool)>& setOn)
{
    QAction* const action = addAction(menu, name, text, [isOn, setOn] { setOn(!isOn); });
    action->setCheckable(true);
    action->setChecked(isOn);
}

void addSight(QMenu& menu, PlotView& view)
{
    PlotSight& sight = view.getSight();
    const auto change = [&view](void (PlotSight::*way)(), bool isRemembered) {
        return [&view, way, isRemembered] {
            if (isRemembered)
                view.getSight().remember();
            (view.getSight().*way)();
            view.showChoice();
        };
    };
    addAction(menu, "fit", PlotView::tr("Show all") + "\tHome", change(&PlotSight::fit, true));
    addAction(menu, "back", PlotView::tr("Back") + "\tCtrl+Z", change(&PlotSight::back, false))
        ->setEnabled(sight.canGoBack());
    addAction(menu, "forward", PlotView::tr("Forward") + "\tCtrl+Shift+Z", change(&PlotSight::forward, false))
        ->setEnabled(sight.canGoForward());
    if (sight.isLive())
        addSwitch(menu, "followNewest", PlotView::tr("Follow") + "\tSpace", sight.isFollowing(), [&view](bool isOn) {
            view.getSight().setFrozen(!isOn);
            view.showChoice();
        });
}

void addAxes(QMenu& menu, PlotView& view)
{
    const auto addLog = [&](PlotSight::Axis axis, const char* name, const QString& text) {
        if (!view.isTime(axis) && view.axisWidget(axis)->isVisible())
            addSwitch(menu, name, text, view.isLog(axis), [&view, axis](bool isOn) { view.setLog(axis, isOn); });
    };
    addLog(PlotSight::X, "logX", PlotView::tr("Logarithmic x"));
    addLog(PlotSight::Y, "logY", PlotView::tr("Logarithmic y"));
    addLog(PlotSight::Y2, "logY2", PlotView::tr("Logarithmic y at the right"));
    addSwitch(menu, "grid", PlotView::tr("Grid"), view.isGridShown(), [&view](bool isOn) { view.setGridShown(isOn); });
    addSwitch(menu, "measure", PlotView::tr("Measure") + "\tM", view.getMeasure().isOn(),
        [&view](bool isOn) { view.setMeasuring(isOn); });
}

// Of the dock that the view is in, or of the window that has it in full screen.
void addActionsOfDock(QMenu& menu, const PlotView& view)
{
    for (const char* name : {"copyPicture", "savePicture", "saveData", "saveSeenData"})
        for (const QWidget* parent = view.parentWidget(); parent; parent = parent->parentWidget())
            for (QAction* action : parent->actions())
                if (action->objectName() == name)
                    menu.addAction(action);
    menu.addSeparator();
}

} // namespace

void openPlotMenu(PlotView& view, const QPoint& place)
{
    auto* const menu = new QMenu(&view);
    menu->setObjectName("plotMenu");
    menu->setAttribute(Qt::WA_DeleteOnClose);
    addSight(*menu, view);
    menu->addSeparator();
    addAxes(*menu, view);
    menu->addSeparator();
    addActionsOfDock(*menu, view);
    addAction(*menu, "help", PlotView::tr("Mouse and keys") + "\t?", [&view] { view.openHelp(); });
    menu->popup(place);
}

} // namespace tavo
