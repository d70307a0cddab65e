#pragma once

#include <QMainWindow>

namespace ads {
class CDockAreaWidget;
class CDockManager;
class CDockWidget;
} // namespace ads

namespace tavo {

class View;

// The window of the front door: its views in docks, which tile, tab and detach. Closing it hides it; the next new view,
// or show(), opens it again.
class ShowWindow : public QMainWindow
{
    Q_OBJECT

public:
    ShowWindow();
    ~ShowWindow() override;

    // Puts a view into a dock of its own, which owns it from then on: the first fills the window, further ones tile
    // with it. Shows the window.
    void addView(const std::string& name, View* view);

    // Takes a view and its dock away, and deletes both.
    void removeView(View* view);

signals:
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void place(ads::CDockWidget* dock);
    ads::CDockAreaWidget* largestArea() const;
    void makeMenus();

    ads::CDockManager* m_Docks;
    QMenu* m_ViewsMenu;
};

} // namespace tavo
