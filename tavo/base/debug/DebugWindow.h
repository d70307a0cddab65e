#pragma once

#include <QWidget>
#include <string>
#include <vector>

#include "tavo/base/Export.h"

class QMenu;
class QPlainTextEdit;
class QToolButton;
class QVBoxLayout;

namespace tavo {

class DebugSection;
class EventDisplayer;
class MetaClass;

/// The window of the debug output: one section for every displayer class and name, in order of arrival, above a log of
/// the text. Closing the window or a section only hides it; what is sent still arrives. The menu "Closed sections"
/// reopens a section. The next new section, or show(), reopens the window.
///
///     if (DebugWindow* const window = debugOutput.getWindow())
///         window->show();
///
/// The window does not keep an application running whose own windows are closed. If it is the last one, closing it ends
/// the application, as with any last window.
///
/// A library may bring a window of its own, derived from this one, that shows the log and the sections in another way
/// (see DebugOutput::setWindowMaker).
class TAVO_BASE_EXPORT DebugWindow : public QWidget
{
    Q_OBJECT

public:
    DebugWindow();
    ~DebugWindow() override;

    /// The displayer of that class and name. The first call makes it and its section, and shows the window.
    /// @throws PException If the class is null or makes no EventDisplayer. Like whatever the displayer's constructor
    /// throws, it leaves no section behind.
    EventDisplayer& getDisplayer(const MetaClass* displayerClass, const std::string& name);

    /// All sections in order of arrival, closed ones included.
    /// @owns The window owns the sections.
    const std::vector<DebugSection*>& getSections() const { return m_Sections; }

    /// Appends text to the log at once and as it is; only "\n" ends a line. The log keeps the last 10,000 lines.
    /// Programs write to `debugOutput` instead, which appends once per frame.
    void appendText(const std::string& text);

protected:
    /// For a window with a layout of its own, which places the log at once and the sections as they come.
    struct OwnLayout
    {};
    explicit DebugWindow(OwnLayout);

    /// The log, a widget named "log".
    /// @owns The window owns it once it is part of the window.
    QPlainTextEdit* getLog() const { return m_Log; }

    /// Puts a new section into the window.
    /// @owns Nobody owns the section yet.
    virtual void place(DebugSection* section);

    void closeEvent(QCloseEvent* event) override;

private:
    void makeLayout();
    DebugSection* findSection(const MetaClass* displayerClass, const std::string& name) const;
    DebugSection* addSection(const MetaClass* displayerClass, const std::string& name);
    void listClosedSections();

    std::vector<DebugSection*> m_Sections;
    QVBoxLayout* m_SectionLayout;
    QToolButton* m_ClosedSections;
    QMenu* m_ClosedMenu;
    QPlainTextEdit* m_Log;
};

} // namespace tavo
