#pragma once

#include <QFrame>
#include <QImage>
#include <QPointer>
#include <memory>
#include <string>

#include "tavo/base/Export.h"

class QToolButton;

namespace tavo {

class EventDisplayer;
class MetaClass;

// One section of the debug window: a displayer's widget under a title bar that collapses it, saves a picture of it and
// closes it. A name too long for the title bar is cut there, and stands in its tool tip.
class TAVO_BASE_EXPORT DebugSection : public QFrame
{
    Q_OBJECT

public:
    // Makes a displayer of that class and its widget. Throws PException if the class is null or makes no
    // EventDisplayer.
    DebugSection(const MetaClass* displayerClass, std::string name, QWidget* parent);
    ~DebugSection() override;

    const MetaClass* getDisplayerClass() const { return m_DisplayerClass; }
    const std::string& getName() const { return m_Name; }

    // The name as people see it: in one line, with control characters written out, no longer than its place in a menu
    // or a dialog.
    QString getShortTitle() const;

    EventDisplayer& getDisplayer() { return *m_Displayer; }

    // The displayer's widget, null if it has none. It belongs to the section.
    QWidget* getDisplayerWidget() const { return m_Widget; }

    bool isCollapsed() const;
    void setCollapsed(bool collapsed);

    // A closed section is hidden; its displayer goes on receiving events.
    bool isClosed() const { return m_IsClosed; }
    void setClosed(bool closed);

    // A picture of the displayer's view, null if there is none.
    QImage getPicture();

    // Saves it as a PNG or whatever else the file's name says (see tavo/base/files/saveFile.h). A picture that cannot
    // be written is an error in the debug output, and false.
    bool savePicture(const QString& fileName);

signals:
    // The section was closed or reopened.
    void closedChanged();

private:
    QWidget* makeTitleBar();

    // Asks for a file without blocking the program, and saves the picture into it.
    void askWhereToSave();

    const MetaClass* m_DisplayerClass;
    std::string m_Name;
    std::unique_ptr<EventDisplayer> m_Displayer;
    QPointer<QWidget> m_Widget;
    QToolButton* m_CollapseButton;
    bool m_IsClosed = false;
};

} // namespace tavo
