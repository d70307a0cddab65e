#include "vireo/show/window/ShowWindow.h"

#include <DockAreaWidget.h>
#include <DockManager.h>
#include <DockSplitter.h>
#include <FloatingDockContainer.h>
#include <IconProvider.h>
#include <QAbstractButton>
#include <QActionGroup>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollArea>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "tavo/base/debug/DebugSection.h"
#include "tavo/base/debug/displayException.h"
#include "tavo/base/files/saveFile.h"
#include "tavo/base/objects/MetaClass.h"
#include "tavo/base/text/printable.h"
#include "vireo/show/window/SymbolIcon.h"
#include "vireo/show/window/View.h"
#include "vireo/show/window/ViewDock.h"
#include "vireo/show/window/pictureFile.h"
#include "vireo/show/window/programName.h"
#include "vireo/show/window/sectionContent.h"
#include "vireo/show/window/tiling.h"
#include "vireo/show/window/windowMemory.h"

namespace tavo {

namespace {

using windowMemory::Thing;

constexpr QSize PREFERRED_SIZE(1000, 700);
constexpr int REMEMBER_MILLISECONDS = 500;

// What the docking system finds a dock by. The name of what is shown may be any text.
QString dockId(const std::string& kind, const std::string& name)
{
    return QString::fromStdString(kind) + '-' + QString::fromLatin1(QByteArray::fromStdString(name).toHex());
}

QString windowTitleOfProgram()
{
    const QString program = programName();
    return program.isEmpty() ? "vireo" : program + " - vireo";
}

void setUpDockingSystem(const QWidget* window)
{
    using Manager = ads::CDockManager;
    Manager::setConfigFlags(Manager::DockAreaHasCloseButton | Manager::DockAreaCloseButtonClosesTab |
                            Manager::DockAreaHasUndockButton | Manager::DockAreaHasTabsMenuButton |
                            Manager::DockAreaDynamicTabsMenuButtonVisibility | Manager::DockAreaHideDisabledButtons |
                            Manager::OpaqueSplitterResize | Manager::FloatingContainerHasWidgetTitle |
                            Manager::DragPreviewShowsContentPixmap | Manager::AlwaysShowTabs |
                            Manager::MiddleMouseButtonClosesTab);
    ads::CIconProvider& icons = Manager::iconProvider();
    icons.registerCustomIcon(ads::TabCloseIcon, symbolIcon(Symbol::Close, window));
    icons.registerCustomIcon(ads::DockAreaCloseIcon, symbolIcon(Symbol::Close, window));
    icons.registerCustomIcon(ads::DockAreaUndockIcon, symbolIcon(Symbol::Detach, window));
    icons.registerCustomIcon(ads::DockAreaMenuIcon, symbolIcon(Symbol::Menu, window));
}

// The docking system's style sheet would keep the colours of the theme away from all that is inside, and so would the
// attribute that it leaves behind.
void dropStyleSheet(ads::CDockManager& docks)
{
    docks.setStyleSheet({});
    docks.setAttribute(Qt::WA_StyleSheet, false);
    for (QWidget* inside : docks.findChildren<QWidget*>())
        inside->setAttribute(Qt::WA_StyleSheet, false);
}

void setToolTips(const ads::CDockAreaWidget* area)
{
    area->titleBarButton(ads::TitleBarButtonClose)->setToolTip(ShowWindow::tr("Close (Ctrl+W)"));
    area->titleBarButton(ads::TitleBarButtonUndock)->setToolTip(ShowWindow::tr("Detach"));
    area->titleBarButton(ads::TitleBarButtonTabsMenu)->setToolTip(ShowWindow::tr("All tabs"));
}

QSize sizeOfPicture(const QWidget& view)
{
    return view.isVisible() ? view.size() : PREFERRED_SIZE;
}

bool isOnAnyScreen(const QRect& rect)
{
    constexpr int LEAST = 50; // of the title bar, to be dragged by
    const QRect title(rect.left(), rect.top(), rect.width(), LEAST);
    const QList<QScreen*> screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(), [&title](const QScreen* screen) {
        const QRect seen = screen->availableGeometry() & title;
        return seen.width() >= LEAST && seen.height() > 0;
    });
}

void bringBack(QWidget* window)
{
    const QScreen* const screen = QGuiApplication::primaryScreen();
    if (!screen || isOnAnyScreen(window->geometry()))
        return;
    const QRect room = screen->availableGeometry();
    window->resize(window->size().boundedTo(room.size()));
    window->move(room.center() - window->rect().center());
}

} // namespace

ShowWindow::ShowWindow()
    : DebugWindow(OwnLayout())
    , m_Docks(nullptr)
    , m_LogDock(nullptr)
    , m_ViewsMenu(nullptr)
    , m_ArrangeSoon(new QTimer(this))
    , m_RememberSoon(new QTimer(this))
    , m_Layout(windowMemory::recall(Thing::Layout).isEmpty() ? Layout::Tiled : Layout::Remembered)
{
    setWindowTitle(windowTitleOfProgram());
    m_ArrangeSoon->setObjectName("arrangeSoon");
    m_ArrangeSoon->setSingleShot(true);
    connect(m_ArrangeSoon, &QTimer::timeout, this, &ShowWindow::arrange);
    m_RememberSoon->setSingleShot(true);
    m_RememberSoon->setInterval(REMEMBER_MILLISECONDS);
    connect(m_RememberSoon, &QTimer::timeout, this, &ShowWindow::rememberAll);
    makeDocks();
    setTheme(static_cast<Theme>(windowMemory::recall(Thing::Theme).toInt()));

    const QScreen* const screen = QGuiApplication::primaryScreen(); // some platforms start without one
    resize(screen ? PREFERRED_SIZE.boundedTo(screen->availableSize()) : PREFERRED_SIZE);
    if (restoreGeometry(windowMemory::recall(Thing::Geometry)))
        bringBack(this);
}

ShowWindow::~ShowWindow()
{
    if (isVisible())
        runGuarded([this] { rememberAll(); });
    m_IsArranging = true;
}

void ShowWindow::makeDocks()
{
    setUpDockingSystem(this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setMenuBar(makeMenus());
    m_Docks = new ads::CDockManager(this);
    dropStyleSheet(*m_Docks);
    layout->addWidget(m_Docks);
    connect(m_Docks, &ads::CDockManager::floatingWidgetCreated, this, [this](QWidget* floating) {
        floating->setAttribute(Qt::WA_QuitOnClose, false);
        floating->setAttribute(Qt::WA_WindowPropagation);
        noteChange();
    });
    connect(m_Docks, &ads::CDockManager::dockAreaCreated, this, [this](const ads::CDockAreaWidget* area) {
        setToolTips(area);
        noteChange();
    });
    connect(m_Docks, &ads::CDockManager::dockAreasRemoved, this, &ShowWindow::noteChange);
    makeLogDock();
}

void ShowWindow::makeLogDock()
{
    m_LogDock = new ViewDock("log", "Log", {getLog(), nullptr, nullptr, nullptr});
    arrangeGuarded([this] {
        m_Docks->addDockWidget(ads::BottomDockWidgetArea, m_LogDock);
        m_LogDock->toggleView(false);
    });
    connect(m_LogDock, &ViewDock::viewToggled, this, [this](bool open) {
        if (open && !m_IsArranging)
            m_ArrangeSoon->start();
    });
    m_ViewsMenu->addAction(m_LogDock->toggleViewAction());
    m_ViewsMenu->addSeparator();
    connect(getLog(), &QPlainTextEdit::textChanged, this, &ShowWindow::openLog);
}

QMenuBar* ShowWindow::makeMenus()
{
    auto* bar = new QMenuBar(this);
    m_ViewsMenu = bar->addMenu(tr("&Views"));
    m_ViewsMenu->setObjectName("views");
    QMenu* const menu = bar->addMenu(tr("&Window"));
    menu->addAction(tr("Save all &pictures..."), this, &ShowWindow::askWhereToSavePictures)
        ->setObjectName("savePictures");
    menu->addAction(tr("&Clear"), this, &ShowWindow::clearWanted)->setObjectName("clear");
    menu->addSeparator();
    makeThemeMenu(menu->addMenu(tr("&Theme")));
    menu->addAction(tr("&Reset layout"), this, &ShowWindow::resetLayout)->setObjectName("resetLayout");
    menu->addSeparator();
    menu->addAction(tr("Close &window"), this, &QWidget::close, QKeySequence("Ctrl+Q"))->setObjectName("closeWindow");
    return bar;
}

void ShowWindow::makeThemeMenu(QMenu* menu)
{
    auto* themes = new QActionGroup(menu);
    const std::pair<Theme, QString> entries[] = {
        {Theme::Desktop, tr("As the &desktop")}, {Theme::Light, tr("&Light")}, {Theme::Dark, tr("D&ark")}};
    for (const auto& [theme, text] : entries) {
        QAction* const action = menu->addAction(text);
        action->setCheckable(true);
        action->setData(static_cast<int>(theme));
        themes->addAction(action);
        connect(action, &QAction::triggered, this, [this, theme = theme] {
            setTheme(theme);
            windowMemory::remember(Thing::Theme, QByteArray::number(static_cast<int>(theme)));
        });
    }
    connect(menu, &QMenu::aboutToShow, this, [this, themes] {
        for (QAction* action : themes->actions())
            action->setChecked(action->data().toInt() == static_cast<int>(m_Theme));
    });
    menu->setObjectName("themes");
}

void ShowWindow::addView(const std::string& name, View* view, const DataFormats& dataFormats)
{
    addDock(new ViewDock(dockId("view", name), name,
        {view, [view] { return view->picture(sizeOfPicture(*view)); },
            [view](const QString& file) { return view->saveData(file); }, view->configuration(),
            [view](const QString& file) { return view->savePicture(file, sizeOfPicture(*view)); },
            view->pictureFormats(), view->seenDataSaver(), dataFormats}));
    show();
}

void ShowWindow::place(DebugSection* section)
{
    section->setTitleBarVisible(false);
    auto* dock =
        new ViewDock(dockId(std::string("section-") + section->getDisplayerClass()->getName(), section->getName()),
            section->getName(), contentOf(*section));
    connect(dock, &ViewDock::viewToggled, this, [this, section](bool open) {
        if (!m_IsArranging && section->isClosed() == open)
            section->setClosed(!open);
    });
    connect(section, &DebugSection::closedChanged, dock, [this, section, dock] {
        if (!m_IsArranging && section->isClosed() != dock->isClosed())
            dock->toggleView(!section->isClosed());
    });
    addDock(dock);
}

void ShowWindow::addDock(ViewDock* dock)
{
    if (!m_Focused)
        m_Focused = focusWidget();
    arrangeGuarded([this, dock] {
        const QList<ads::CDockAreaWidget*> areas = m_Docks->openedDockAreas();
        if (m_Layout == Layout::Changed || areas.isEmpty() || m_ViewDocks.empty())
            placeBeside(*m_Docks, dock);
        else
            m_Docks->addDockWidgetTabToArea(dock, areas.front()); // until all that come have come
    });
    m_ViewDocks.push_back(dock);
    connect(dock, &ViewDock::viewToggled, this, [this] {
        if (!m_IsArranging && m_Layout == Layout::Tiled)
            m_ArrangeSoon->start();
    });
    m_ViewsMenu->addAction(dock->toggleViewAction());
    if (m_Layout != Layout::Changed)
        m_ArrangeSoon->start();
    if (!focusWidget())
        dock->getContent()->setFocus();
    if (m_Layout == Layout::Changed)
        returnFocus();
}

// What is arranged loses the keyboard, which stays with whom a person gave it to while other views come.
void ShowWindow::returnFocus()
{
    if (m_Focused && m_Focused->isVisible())
        m_Focused->setFocus();
    m_Focused.clear();
}

void ShowWindow::removeView(View* view)
{
    const auto found = std::find_if(
        m_ViewDocks.begin(), m_ViewDocks.end(), [view](const ViewDock* dock) { return dock->getContent() == view; });
    if (found == m_ViewDocks.end())
        return;
    ViewDock* const dock = *found;
    m_ViewDocks.erase(found);
    arrangeGuarded([this, dock] {
        dock->setOnFullScreen(false);
        m_ViewsMenu->removeAction(dock->toggleViewAction());
        m_Docks->removeDockWidget(dock);
        delete dock;
    });
    if (m_Layout == Layout::Tiled)
        m_ArrangeSoon->start();
}

// Docks come and go, and change hands, while they are arranged: none of that is a person's doing.
void ShowWindow::arrangeGuarded(const std::function<void()>& work)
{
    const bool was = std::exchange(m_IsArranging, true);
    runGuarded(work);
    m_IsArranging = was;
}

void ShowWindow::arrange()
{
    if (!isVisible())
        return;
    arrangeGuarded([this] {
        if (m_Layout == Layout::Remembered && !restoreLayout())
            m_Layout = Layout::Tiled;
        if (m_Layout == Layout::Tiled)
            tileAll();
        if (!m_LogDock->isClosed() && m_Layout != Layout::Remembered)
            placeBelow(*m_Docks, m_LogDock);
        matchSections();
    });
    returnFocus();
    watchForChanges();
}

void ShowWindow::tileAll()
{
    QList<ads::CDockWidget*> docks;
    for (ViewDock* dock : m_ViewDocks)
        if (!dock->isClosed())
            docks += dock;
    tile(*m_Docks, docks);
}

// What is closed in the remembered layout, or not known there, finds a place beside the others; what was closed in this
// run stays so.
bool ShowWindow::restoreLayout()
{
    QList<ads::CDockWidget*> closed;
    for (ads::CDockWidget* dock : m_Docks->dockWidgetsMap())
        if (dock->isClosed())
            closed += dock;
    const QByteArray layout = windowMemory::recall(Thing::Layout);
    if (!layout.startsWith("<?xml") || !m_Docks->restoreState(layout))
        return false;
    for (ads::CDockWidget* dock : m_Docks->dockWidgetsMap()) {
        if (closed.contains(dock))
            dock->toggleView(false);
        else if (dock->isClosed() && dock == m_LogDock)
            placeBelow(*m_Docks, dock);
        else if (dock->isClosed())
            placeBeside(*m_Docks, dock);
    }
    bringFloatingBack();
    return true;
}

void ShowWindow::bringFloatingBack()
{
    for (ads::CFloatingDockContainer* floating : m_Docks->floatingWidgets())
        bringBack(floating);
}

void ShowWindow::matchSections()
{
    for (const ViewDock* dock : m_ViewDocks)
        if (const auto* area = qobject_cast<QScrollArea*>(dock->getContent()))
            if (auto* section = qobject_cast<DebugSection*>(area->widget()))
                if (section->isClosed() != dock->isClosed())
                    section->setClosed(dock->isClosed());
}

void ShowWindow::watchForChanges()
{
    for (QSplitter* splitter : m_Docks->findChildren<ads::CDockSplitter*>())
        connect(splitter, &QSplitter::splitterMoved, this, &ShowWindow::noteChange, Qt::UniqueConnection);
}

void ShowWindow::noteChange()
{
    if (m_IsArranging)
        return;
    m_Layout = Layout::Changed;
    m_ArrangeSoon->stop();
    m_RememberSoon->start();
}

void ShowWindow::resetLayout()
{
    m_Layout = Layout::Tiled;
    windowMemory::forget(Thing::Layout);
    arrangeGuarded([this] {
        for (ViewDock* dock : m_ViewDocks)
            dock->toggleView(true);
    });
    arrange();
}

void ShowWindow::rememberAll()
{
    m_RememberSoon->stop();
    windowMemory::remember(Thing::Geometry, saveGeometry());
    if (m_Layout == Layout::Changed)
        windowMemory::remember(Thing::Layout, m_Docks->saveState());
}

// The log opens for its first text. Who has closed it does not want to see more.
void ShowWindow::openLog()
{
    disconnect(getLog(), &QPlainTextEdit::textChanged, this, &ShowWindow::openLog);
    arrangeGuarded([this] {
        m_LogDock->toggleView(true);
        if (m_Layout == Layout::Changed)
            placeBelow(*m_Docks, m_LogDock);
    });
    if (m_Layout != Layout::Changed)
        m_ArrangeSoon->start();
}

void ShowWindow::showEvent(QShowEvent* event)
{
    DebugWindow::showEvent(event);
    if (event->spontaneous())
        return;
    arrangeGuarded([this] { m_Docks->show(); });
    if (m_Layout != Layout::Changed)
        m_ArrangeSoon->start();
    emit opened();
}

void ShowWindow::hideEvent(QHideEvent* event)
{
    DebugWindow::hideEvent(event);
    if (event->spontaneous())
        return;
    arrangeGuarded([this] {
        for (ViewDock* dock : m_ViewDocks)
            dock->setOnFullScreen(false);
        m_Docks->hideManagerAndFloatingWidgets();
    });
    emit closed();
}

void ShowWindow::closeEvent(QCloseEvent* event)
{
    runGuarded([this] { rememberAll(); });
    DebugWindow::closeEvent(event);
}

void ShowWindow::resizeEvent(QResizeEvent* event)
{
    DebugWindow::resizeEvent(event);
    m_RememberSoon->start();
}

void ShowWindow::moveEvent(QMoveEvent* event)
{
    DebugWindow::moveEvent(event);
    m_RememberSoon->start();
}

void ShowWindow::setTheme(Theme theme)
{
    m_Theme = theme;
    setPalette(paletteOf(theme));
}

void ShowWindow::askWhereToSavePictures()
{
    auto* dialog = new QFileDialog(this, tr("Save all pictures"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this,
        [this](const QString& folder) { runGuarded([&] { savePictures(folder); }); });
    dialog->open();
}

void ShowWindow::savePictures(const QString& folder)
{
    std::set<QString> taken;
    for (const ViewDock* dock : m_ViewDocks) {
        const QString file = QDir(folder).filePath(pictureFileOf(dock->getName(), taken));
        const QImage picture = dock->getPicture();
        const std::string error = picture.isNull() ? "there is none" : tavo::savePicture(file, picture);
        if (!error.empty())
            warning(file.toStdString() + ": the picture cannot be saved: " + error);
    }
}

} // namespace tavo
