#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "vireo/Export.h"

namespace tavo {

class ReportLines;

/// What this machine can do with the library, what it cannot, and what to do about that: how contexts are made, the
/// driver, its programs, targets and limits, and what each class would do here. All of it is found out by trying. A bug
/// report begins with its text; the program vireo-info prints it.
///
///     const MachineReport report = MachineReport::ofMachine();
///     if (!report.works("GLShaderARB for fragments"))
///         debugOutput << report.getText();
///
/// It works without a display, without a driver and in the core profile, needs no QApplication, and does not depend on
/// whether the library is in use already. It takes a fifth of a second at most.
class VIREO_EXPORT MachineReport
{
public:
    enum class Answer
    {
        YES,
        NO,
        FACT // neither: a name or a number
    };

    struct Line
    {
        std::string section; // "Targets"
        std::string subject; // "colours and depths"
        Answer answer;
        std::string finding;
        std::string advice; // what to do; empty where nothing is amiss
    };

    /// Tries everything in contexts of its own, which nobody sees. What was current is current again afterwards.
    /// @needs main() must not have returned: drivers and Qt end behind it. Where an earlier report lets this one know
    /// of that, it says so and tries nothing.
    static MachineReport ofMachine();

    /// Tries it in the context that is current, with its profile and its driver. Without one, the report says so.
    ///
    /// Afterwards all bindings are as before. GL errors that were pending are counted in the report, and forgotten.
    /// @needs No primitive may be open (glBegin).
    static MachineReport ofCurrentContext();

    const std::vector<Line>& getLines() const { return m_Lines; }

    /// Whether the answer on that subject is yes; false for a subject that there is not.
    bool works(std::string_view subject) const;

    /// Whether there is an OpenGL context at all.
    bool hasOpenGL() const { return m_HasOpenGL; }

    /// For people: the lines, section by section.
    std::string getText() const;

    /// For programs: an object with "library", "openGL" (a truth value) and "lines", an array of objects with
    /// "section", "subject", "finding", "advice" and "works", which is true, false, or null for a fact.
    std::string getJson() const;

private:
    MachineReport() = default;

    void tryAll(ReportLines& lines);

    std::vector<Line> m_Lines;
    bool m_HasOpenGL = false;
};

} // namespace tavo
