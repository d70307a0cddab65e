#pragma once

#include <DockWidget.h>
#include <QImage>
#include <QPointer>
#include <functional>
#include <string>

#include "vireo/show/delivery/dataFormats.h"

namespace tavo {

// What a dock shows, and what can be done with it: what is empty cannot.
struct DockContent
{
    QWidget* widget;
    std::function<QImage()> picture;
    std::function<std::string(const QString&)> saveData; // as View::saveData
    std::function<void()> configure;
    std::function<std::string(const QString&)> savePicture = nullptr; // as View::savePicture; else `picture` is saved
    QStringList pictureFormats = {};                                  // as View::pictureFormats
    std::function<std::string(const QString&)> saveSeenData = nullptr;
    DataFormats dataFormats = tableFormats();
};

// A dock of the window. Its title bar has a button for everything that can be done with what it shows. The widget
// belongs to the dock, in full screen, too, when it is in a window of its own.
class ViewDock : public ads::CDockWidget
{
    Q_OBJECT

public:
    // What the docking system finds the dock by, and what people see of its name.
    ViewDock(const QString& id, const std::string& name, DockContent content);
    ~ViewDock() override;

    const std::string& getName() const { return m_Name; }
    QWidget* getContent() const { return m_Content; }

    // Null if there is none.
    QImage getPicture() const;

    bool isOnFullScreen() const { return !m_FullScreen.isNull(); }
    void setOnFullScreen(bool full);

private:
    void showOnTabWhetherItIsInFront();

    std::string m_Name;
    DockContent m_Do;
    QPointer<QWidget> m_Content;
    QWidget* m_Holder;
    QPointer<QWidget> m_FullScreen;
};

} // namespace tavo
