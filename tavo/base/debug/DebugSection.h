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

/// One section of the debug window: a displayer's widget under a title bar with buttons to collapse it, to save a
/// picture of it and to close it. The title bar cuts a long name; the tool tip shows all of it.
///
///     for (DebugSection* section : debugOutput.getWindow()->getSections())
///         section->savePicture(section->getShortTitle() + ".png");
class TAVO_BASE_EXPORT DebugSection : public QFrame
{
    Q_OBJECT

public:
    /// Makes a displayer of that class, and its widget.
    /// @throws PException If the class is null or makes no EventDisplayer.
    DebugSection(const MetaClass* displayerClass, std::string name, QWidget* parent);
    ~DebugSection() override;

    const MetaClass* getDisplayerClass() const { return m_DisplayerClass; }
    const std::string& getName() const { return m_Name; }

    /// The name as people see it: in one line, with control characters escaped, short enough for a menu or a dialog.
    QString getShortTitle() const;

    EventDisplayer& getDisplayer() { return *m_Displayer; }

    /// The displayer's widget; null if it has none.
    /// @owns The section owns the widget.
    QWidget* getDisplayerWidget() const { return m_Widget; }

    /// Shows or hides the title bar, for a window that has its own for the section. It is shown at first.
    void setTitleBarVisible(bool visible) { m_TitleBar->setVisible(visible); }

    bool isCollapsed() const;
    void setCollapsed(bool collapsed);

    /// A closed section is hidden. Its displayer still receives events.
    bool isClosed() const { return m_IsClosed; }
    void setClosed(bool closed);

    /// A picture of the displayer's view; null if there is none.
    QImage getPicture();

    /// The same in another size, in pixels.
    QImage getPicture(const QSize& size);

    /// Saves the picture, as a PNG or in whatever format the file's name asks for (see tavo/base/files/saveFile.h). If
    /// that fails, writes an error to the debug output and returns false.
    bool savePicture(const QString& fileName);

signals:
    /// The section was closed or reopened.
    void closedChanged();

private:
    QWidget* makeTitleBar();

    // Asks for a file without blocking the program, and saves the picture there.
    void askWhereToSave();

    const MetaClass* m_DisplayerClass;
    std::string m_Name;
    std::unique_ptr<EventDisplayer> m_Displayer;
    QPointer<QWidget> m_Widget;
    QWidget* m_TitleBar;
    QToolButton* m_CollapseButton;
    bool m_IsClosed = false;
};

} // namespace tavo
