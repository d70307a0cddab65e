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

// The window of the debug output: a section for every displayer class and name, in the order in which they came, above
// a log of the text. Closing the window or a section only hides it: what is sent goes on arriving. A closed section is
// reopened from the menu "Closed sections", a closed window by the next new section or by show().
//
// The window does not keep an application running whose own windows are closed; closed as the last one, it ends the
// application as any last window does.
class TAVO_BASE_EXPORT DebugWindow : public QWidget
{
    Q_OBJECT

public:
    DebugWindow();
    ~DebugWindow() override;

    // The displayer of that class and name; the first call makes it and its section, and shows the window. Throws
    // PException if the class is null or makes no EventDisplayer, and passes on what the displayer's making throws; no
    // section stays behind then.
    EventDisplayer& getDisplayer(const MetaClass* displayerClass, const std::string& name);

    // All sections in order of arrival, closed ones too. They belong to the window.
    const std::vector<DebugSection*>& getSections() const { return m_Sections; }

    // Appends to the log as it is: a line ends where the text says so. Of all lines the log keeps the last 10,000. (The
    // debug output collects text, and appends it once in a frame.)
    void appendText(const std::string& text);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
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
