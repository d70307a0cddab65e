#include "vireo/machine/MachineReport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSysInfo>
#include <algorithm>
#include <atomic>
#include <iomanip>
#include <sstream>

#include "tavo/platform/wgl.h"
#include "vireo/context/CurrentContextGuard.h"
#include "vireo/context/wayToContext.h"
#include "vireo/machine/describeDriver.h"
#include "vireo/machine/waysToGL.h"

namespace tavo {

namespace {

void describeSystem(ReportLines& lines)
{
    lines.begin("System");
    lines.addFact("vireo", VIREO_VERSION);
    lines.addFact("system", (QSysInfo::prettyProductName() + ", " + QSysInfo::kernelType() + ' ' +
                                QSysInfo::kernelVersion() + ", " + QSysInfo::currentCpuArchitecture())
                                .toStdString());
    lines.addFact("Qt", qVersion());
    // What changes how contexts are made, and what drivers say of themselves.
    for (const char* const name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "QT_XCB_GL_INTEGRATION",
             "LIBGL_ALWAYS_SOFTWARE", "LIBGL_DRIVERS_PATH", "MESA_EXTENSION_OVERRIDE", "MESA_GL_VERSION_OVERRIDE"})
        if (qEnvironmentVariableIsSet(name))
            lines.addFact(name, qEnvironmentVariable(name).toStdString());
}

const char* wordOf(MachineReport::Answer answer)
{
    switch (answer) {
    case MachineReport::Answer::YES: return "yes";
    case MachineReport::Answer::NO: return "NO";
    default: return "";
    }
}

QJsonValue valueOf(MachineReport::Answer answer)
{
    if (answer == MachineReport::Answer::FACT)
        return QJsonValue::Null;
    return answer == MachineReport::Answer::YES;
}

std::atomic<bool> hasDriverEnded = false;

// Made behind the first use of Qt and of a driver, and so gone before they end with the process.
struct EndOfDriver
{
    ~EndOfDriver() { hasDriverEnded = true; }
};

} // namespace

MachineReport MachineReport::ofMachine()
{
    MachineReport report;
    ReportLines lines;
    describeSystem(lines);
    if (hasDriverEnded) {
        lines.begin("Ways to OpenGL");
        lines.add("any", false, "the process is ending, and drivers with it", "make the report before main() returns");
        describeNoDriver(lines);
        report.m_Lines = lines.take();
        return report;
    }
    report.tryAll(lines);
    static const EndOfDriver end;
    report.m_Lines = lines.take();
    return report;
}

void MachineReport::tryAll(ReportLines& lines)
{
    const CurrentContextGuard before;
    std::vector<std::pair<std::string, std::unique_ptr<TrialContext>>> contexts;
    lines.begin("Ways to OpenGL");
    for (const WayToGL& way : waysToGL()) {
        wglMakeCurrent(nullptr, nullptr); // EGL refuses where a context of GLX is current
        std::string refusal;
        auto context = way.makeContext(refusal);
        const bool works = context && wglMakeCurrent(context->getDC(), context->getRC());
        if (context && !works)
            refusal = "the driver does not make its context current";
        lines.add(way.name, works, works ? "makes contexts" : refusal, way.advice);
        if (works)
            contexts.emplace_back(way.name, std::move(context));
    }
    m_HasOpenGL = !contexts.empty();
    wglMakeCurrent(nullptr, nullptr);
    if (m_HasOpenGL) {
        wglMakeCurrent(contexts.front().second->getDC(), contexts.front().second->getRC());
        describeDriver(contexts.front().first, lines);
    } else {
        describeNoDriver(lines);
    }
    wglMakeCurrent(nullptr, nullptr);
}

MachineReport MachineReport::ofCurrentContext()
{
    MachineReport report;
    ReportLines lines;
    describeSystem(lines);
    lines.begin("Ways to OpenGL");
    report.m_HasOpenGL = wglGetCurrentContext() != nullptr;
    lines.add("current context", report.m_HasOpenGL, report.m_HasOpenGL ? "there" : "none is current in this thread",
        "make a context current first");
    if (report.m_HasOpenGL)
        describeDriver(wayToContext(wglGetCurrentContext()), lines);
    else
        describeNoDriver(lines);
    report.m_Lines = lines.take();
    return report;
}

bool MachineReport::works(std::string_view subject) const
{
    return std::any_of(m_Lines.begin(), m_Lines.end(),
        [subject](const Line& line) { return line.subject == subject && line.answer == Answer::YES; });
}

std::string MachineReport::getText() const
{
    std::size_t width = 0;
    for (const Line& line : m_Lines)
        width = std::max(width, line.subject.size());
    std::ostringstream text;
    std::string section;
    for (const Line& line : m_Lines) {
        if (line.section != section)
            text << (section.empty() ? "" : "\n") << line.section << '\n';
        section = line.section;
        text << "  " << std::left << std::setw(static_cast<int>(width)) << line.subject << "  " << std::setw(3)
             << wordOf(line.answer) << "  " << line.finding << (line.advice.empty() ? "" : ". To do: ") << line.advice
             << '\n';
    }
    return text.str();
}

std::string MachineReport::getJson() const
{
    QJsonArray lines;
    for (const Line& line : m_Lines)
        lines.append(QJsonObject{{"section", QString::fromStdString(line.section)},
            {"subject", QString::fromStdString(line.subject)}, {"works", valueOf(line.answer)},
            {"finding", QString::fromStdString(line.finding)}, {"advice", QString::fromStdString(line.advice)}});
    const QJsonObject report{{"library", "vireo " VIREO_VERSION}, {"openGL", m_HasOpenGL}, {"lines", lines}};
    return QJsonDocument(report).toJson().toStdString();
}

} // namespace tavo
