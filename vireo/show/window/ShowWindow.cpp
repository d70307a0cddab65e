#include "vireo/show/window/ShowWindow.h"

#include <DockAreaWidget.h>
#include <DockManager.h>
#include <DockWidget.h>
#include <QApplication>
#include <QCloseEvent>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <algorithm>

#include "tavo/base/text/printable.h"
#include "vireo/show/window/View.h"
#include "vireo/show/window/viewActions.h"

namespace tavo {

namespace {

constexpr QSize PREFERRED_SIZE(1000, 700);
constexpr std::size_t LONGEST_TITLE = 60;

// What the docking system finds a dock by. A view's name may be any text.
QString dockName(const std::string& viewName)
{
    return QString::fromLatin1(QByteArray::fromStdString(viewName).toHex()).prepend("view-");
}

QString titleOf(const std::string& viewName)
{
    const QString title = QString::fromStdString(printable(viewName, LONGEST_TITLE));
    return title.isEmpty() ? ShowWindow::tr("(no name)") : title;
}

QString windowTitleOfProgram()
{
    const QString program = QGuiApplication::applicationDisplayName();
    return program.isEmpty() || program == "vireo" ? "vireo" : program + " - vireo";
}

bool hasOtherWindows(const QWidget* window)
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(), [window](const QWidget* other) {
        return other != window && other->isVisible() && other->testAttribute(Qt::WA_QuitOnClose);
    });
}

} // namespace

ShowWindow::ShowWindow()
    : m_Docks(nullptr)
    , m_ViewsMenu(nullptr)
{
    setWindowTitle(windowTitleOfProgram());
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_ShowWithoutActivating);
    ads::CDockManager::setConfigFlags(ads::CDockManager::DefaultOpaqueConfig |
                                      ads::CDockManager::DockAreaHideDisabledButtons |
                                      ads::CDockManager::MiddleMouseButtonClosesTab);
    m_Docks = new ads::CDockManager(this);
    makeMenus();
    const QScreen* const screen = QGuiApplication::primaryScreen(); // some platforms start without one
    resize(screen ? PREFERRED_SIZE.boundedTo(screen->availableSize()) : PREFERRED_SIZE);
}

ShowWindow::~ShowWindow() = default;

void ShowWindow::makeMenus()
{
    m_ViewsMenu = menuBar()->addMenu(tr("&Views"));
}

void ShowWindow::addView(const std::string& name, View* view)
{
    auto* dock = new ads::CDockWidget(titleOf(name));
    dock->setObjectName(dockName(name));
    dock->setWidget(view, ads::CDockWidget::ForceNoScrollArea);
    dock->setFeature(ads::CDockWidget::DockWidgetDeleteOnClose, false);
    dock->setTabToolTip(QString::fromStdString(printable(name)));
    dock->setTitleBarActions(makeViewActions(*view, *dock));
    place(dock);
    m_ViewsMenu->addAction(dock->toggleViewAction());
    show();
}

void ShowWindow::removeView(View* view)
{
    for (ads::CDockWidget* dock : m_Docks->dockWidgetsMap())
        if (dock->widget() == view) {
            m_ViewsMenu->removeAction(dock->toggleViewAction());
            m_Docks->removeDockWidget(dock);
            delete dock;
            return;
        }
}

void ShowWindow::place(ads::CDockWidget* dock)
{
    ads::CDockAreaWidget* const area = largestArea();
    if (!area)
        m_Docks->addDockWidget(ads::CenterDockWidgetArea, dock);
    else
        m_Docks->addDockWidget(
            area->width() > area->height() ? ads::RightDockWidgetArea : ads::BottomDockWidgetArea, dock, area);
}

ads::CDockAreaWidget* ShowWindow::largestArea() const
{
    const QList<ads::CDockAreaWidget*> areas = m_Docks->openedDockAreas();
    const auto largest =
        std::max_element(areas.begin(), areas.end(), [](const ads::CDockAreaWidget* a, const ads::CDockAreaWidget* b) {
            return a->width() * a->height() < b->width() * b->height();
        });
    return largest != areas.end() ? *largest : nullptr;
}

void ShowWindow::closeEvent(QCloseEvent* event)
{
    QMainWindow::closeEvent(event);
    emit closed();
    if (QGuiApplication::quitOnLastWindowClosed() && !hasOtherWindows(this))
        QCoreApplication::quit();
}

} // namespace tavo
