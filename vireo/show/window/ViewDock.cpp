#include "vireo/show/window/ViewDock.h"

#include <DockManager.h>
#include <DockWidgetTab.h>
#include <QAction>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>
#include <utility>

#include "vireo/show/window/shownText.h"
#include "vireo/show/window/viewActions.h"

namespace tavo {

namespace {

constexpr std::size_t LONGEST_TITLE = 60;

QString titleOf(const std::string& name)
{
    const QString title = shownText(name, LONGEST_TITLE);
    return title.isEmpty() ? ViewDock::tr("(no name)") : title;
}

QVBoxLayout* makeTightLayout(QWidget* widget)
{
    auto* layout = new QVBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    return layout;
}

// Where a view is in full screen. Closing it takes the view back.
class FullScreenWindow : public QWidget
{
public:
    FullScreenWindow(ViewDock& dock, QWidget* parent)
        : QWidget(parent, Qt::Window)
        , m_Dock(dock)
    {
        setAttribute(Qt::WA_QuitOnClose, false);
        setAttribute(Qt::WA_WindowPropagation);
        setWindowTitle(dock.windowTitle());
        setObjectName("fullScreenOf" + dock.objectName());
        addActions(dock.actions()); // with their keys
        auto* leave = new QAction(this);
        leave->setShortcut(Qt::Key_Escape);
        leave->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        connect(leave, &QAction::triggered, this, &QWidget::close);
        addAction(leave);
        makeTightLayout(this)->addWidget(dock.getContent());
    }

protected:
    void closeEvent(QCloseEvent* event) override
    {
        event->ignore();
        m_Dock.setOnFullScreen(false);
    }

private:
    ViewDock& m_Dock;
};

QRect screenOf(const QWidget& widget)
{
    const QWindow* const window = widget.window()->windowHandle();
    const QScreen* const screen = window ? window->screen() : QGuiApplication::primaryScreen();
    return screen ? screen->geometry() : QRect();
}

} // namespace

ViewDock::ViewDock(const QString& id, const std::string& name, DockContent content)
    : CDockWidget(titleOf(name))
    , m_Name(name)
    , m_Do(std::move(content))
    , m_Content(m_Do.widget)
    , m_Holder(new QWidget)
{
    setObjectName(id);
    setTabToolTip(shownText(name));
    toggleViewAction()->setText(windowTitle().replace("&", "&&"));
    makeTightLayout(m_Holder)->addWidget(m_Content);
    setWidget(m_Holder, ForceNoScrollArea);
    if (m_Content->focusPolicy() == Qt::NoFocus)
        m_Content->setFocusPolicy(Qt::StrongFocus); // what a click says that keys are for
    setTitleBarActions(makeViewActions(*this, m_Do));
    showOnTabWhetherItIsInFront();
    connect(tabWidget(), &ads::CDockWidgetTab::activeTabChanged, this, &ViewDock::showOnTabWhetherItIsInFront);
    connect(this, &CDockWidget::viewToggled, this, [this](bool open) {
        if (!open)
            setOnFullScreen(false);
    });
}

ViewDock::~ViewDock()
{
    delete m_FullScreen;
}

void ViewDock::showOnTabWhetherItIsInFront()
{
    tabWidget()->setAutoFillBackground(tabWidget()->isActiveTab());
    tabWidget()->setBackgroundRole(QPalette::Base);
}

QImage ViewDock::getPicture() const
{
    return m_Content && m_Do.picture ? m_Do.picture() : QImage();
}

void ViewDock::setOnFullScreen(bool full)
{
    if (full == isOnFullScreen() || !m_Content)
        return;
    if (full) {
        const QRect screen = screenOf(*this);
        m_FullScreen = new FullScreenWindow(*this, dockManager());
        m_FullScreen->setGeometry(screen); // which screen it fills
        m_FullScreen->showFullScreen();
    } else {
        m_Holder->layout()->addWidget(m_Content);
        m_Content->show();          // now
        window()->activateWindow(); // first, so that the focus of the keyboard is never nowhere
        m_FullScreen->hide();
        m_FullScreen->deleteLater(); // it may be what has the event
        m_FullScreen = nullptr;
    }
    m_Content->setFocus();
}

} // namespace tavo
