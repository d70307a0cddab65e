#pragma once

#include <QPointer>
#include <functional>
#include <string>

#include "tavo/base/debug/DebugWindow.h"
#include "vireo/show/delivery/dataFormats.h"
#include "vireo/show/window/theme.h"

class QMenu;
class QMenuBar;
class QTimer;

namespace ads {
class CDockManager;
} // namespace ads

namespace tavo {

class View;
class ViewDock;
struct DockContent;

// The window of the front door, and of the debug output: views, the sections of event displayers and the log in docks,
// which tile, tab and detach. The log is open once there is any text. Closing the window hides it with all that is
// detached from it; the next new view or section, or show(), opens it again.
//
// As long as no person has moved anything, docks tile anew when one comes or goes. From then on new ones find a place
// beside the others, and the window remembers for the program's next runs where each is. A dock that was closed is open
// again in the next run.
class ShowWindow : public DebugWindow
{
    Q_OBJECT

public:
    ShowWindow();
    ~ShowWindow() override;

    // Puts a view into a dock of its own, which owns it from then on, and shows the window.
    void addView(const std::string& name, View* view, const DataFormats& dataFormats);

    // Takes a view and its dock away, and deletes both.
    void removeView(View* view);

signals:
    void opened();
    void closed();

    // The person wants all views to go.
    void clearWanted();

protected:
    void place(DebugSection* section) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;

private:
    // Who has laid the docks out.
    enum class Layout
    {
        Tiled,      // this window
        Remembered, // a person, in an earlier run
        Changed     // a person, in this run
    };

    void makeDocks();
    void makeLogDock();
    QMenuBar* makeMenus();
    void makeThemeMenu(QMenu* menu);
    void addDock(ViewDock* dock);
    void watchForChanges();
    void noteChange();
    void openLog();

    void arrange();
    void returnFocus();
    void arrangeGuarded(const std::function<void()>& work);
    void tileAll();
    bool restoreLayout();
    void bringFloatingBack();
    void matchSections();
    void resetLayout();
    void rememberAll();

    void setTheme(Theme theme);
    void askWhereToSavePictures();
    void savePictures(const QString& folder);

    ads::CDockManager* m_Docks;
    std::vector<ViewDock*> m_ViewDocks; // in the order in which they came
    ViewDock* m_LogDock;
    QMenu* m_ViewsMenu;
    QPointer<QWidget> m_Focused; // before views came that are still to be arranged
    QTimer* m_ArrangeSoon;
    QTimer* m_RememberSoon;
    Layout m_Layout;
    bool m_IsArranging = false;
    Theme m_Theme = Theme::Desktop;
};

} // namespace tavo
