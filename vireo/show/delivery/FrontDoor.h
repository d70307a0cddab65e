#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "vireo/show/delivery/Inbox.h"

namespace tavo {

class ShowWindow;
class View;

// Says so, for a person.
std::string noSuchView(const std::string& name);

// The window's side of the front door. It comes and goes with the QApplication, in whose thread it lives: takes what
// waits in the inbox, at most once in a frame, makes views for it and has them show it.
class FrontDoor : public QObject
{
    Q_OBJECT

public:
    FrontDoor();
    ~FrontDoor() override;

    // Null where there is no QCoreApplication. It belongs to the thread of that.
    static FrontDoor* get();

    // Whether it is there, in a thread that can make views: one of a QApplication.
    static bool canMakeViews();

    // Whether it has ever been there like that.
    static bool couldMakeViews();

    // Whether this is its thread.
    static bool isHere();

    // Takes and shows all that waits, now.
    void showWaiting();

    // Makes the window that views and the debug output share, hidden. It belongs to the debug output.
    ShowWindow* makeWindow();

    // Opens the window, whether or not anything new is in it. False, with a line in the log that begins with `call`, if
    // there is no display.
    bool openWindow(const char* call);
    void closeWindow();

    // Those that were made for pictures only, if there is a display.
    void moveViewsIntoWindow();

    // Serves events until the open window is closed.
    void serveUntilClosed();

    // Pictures and data of what is shown. Why they could not be saved, for a person; empty if they were.
    std::string savePicture(const std::string& name, const QString& file, QSize size);
    std::string savePictures(const QString& folder);
    void savePicturesOfMode(); // into the folder that VIREO_SHOW names, if there are new ones
    std::string saveData(const std::string& name, const QString& file);

private:
    struct ShownView
    {
        ViewSlotPointer slot;
        QPointer<View> view;
        bool isInWindow = false;
    };

    void scheduleFrame();
    std::vector<Batch::Part> takeWaiting();
    void makeRoom(const ViewSlotPointer& slot, const Replaced& replaced);
    void show(Batch::Part part);
    View* findView(const ViewSlotPointer& slot) const;
    View* findView(const std::string& name) const;
    View& makeView(const ViewSlotPointer& slot);
    void removeView(const ViewSlotPointer& slot);
    bool opensWindow() const;
    void sayWhatWaits();
    ShowWindow& window();

    std::vector<ShownView> m_Views;
    QPointer<ShowWindow> m_Window;
    QElapsedTimer m_SinceLastFrame;
    const bool m_IsOfProgram; // which has the QApplication
    bool m_IsFrameScheduled = false;
    bool m_HasUnsavedPictures = false;
    bool m_IsEnding = false; // no window opens any more
};

} // namespace tavo
