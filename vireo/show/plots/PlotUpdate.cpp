#include "vireo/show/plots/PlotUpdate.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "vireo/show/plots/PlotCurve.h"
#include "vireo/show/plots/curvesAsText.h"

namespace tavo {

namespace {

// What has fewer samples is put together, up to so many: a piece of its own would take more memory than they do.
constexpr std::size_t SMALL_PIECE = 256;
constexpr std::size_t LARGE_PIECE = 4096;

void addTo(std::vector<double>& numbers, const NumberArray& added)
{
    added.visit(
        [&numbers](const auto* first, std::size_t size) { numbers.insert(numbers.end(), first, first + size); });
}

template <typename T>
void replace(std::optional<T>& older, std::optional<T>& newer)
{
    if (newer)
        older.swap(newer);
}

// However often a program says the same, it waits for the window once.
void addOnce(std::vector<std::string>& names, const std::string& name)
{
    if (std::find(names.begin(), names.end(), name) == names.end())
        names.push_back(name);
}

} // namespace

const char* nameOf(CurveKind kind)
{
    constexpr const char* NAMES[] = {"curve", "points", "steps", "bars", "histogram", "band"};
    return NAMES[static_cast<std::size_t>(kind)];
}

bool AppendedSamples::takesIn(const AppendedSamples& newer) const
{
    const bool stayAsSent = m_X.empty() && m_SentX.size() >= SMALL_PIECE;
    return !stayAsSent && newer.size() < SMALL_PIECE && size() + newer.size() <= LARGE_PIECE;
}

void AppendedSamples::append(const AppendedSamples& newer)
{
    if (m_X.empty()) {
        addTo(m_X, m_SentX);
        addTo(m_Y, m_SentY);
        m_SentX = m_SentY = {};
    }
    addTo(m_X, newer.x());
    addTo(m_Y, newer.y());
}

void CurveUpdate::merge(CurveUpdate& newer)
{
    if (newer.isReplacing()) {
        appended.swap(newer.appended);
        std::swap(m_NumAppended, newer.m_NumAppended);
    }
    if (newer.isRemoved) {
        isRemoved = true;
        std::swap(samples, newer.samples);
        std::swap(colour, newer.colour);
        std::swap(kept, newer.kept);
        std::swap(style, newer.style);
    } else {
        replace(colour, newer.colour);
        replace(kept, newer.kept);
        replace(style, newer.style);
        if (newer.samples)
            samples.swap(newer.samples);
        else
            for (AppendedSamples& piece : newer.appended)
                append(std::move(piece));
    }
    dropOldSamples();
}

void CurveUpdate::send(CurveSamples newest)
{
    samples = std::move(newest);
    dropAppended();
}

void CurveUpdate::append(AppendedSamples piece)
{
    m_NumAppended += piece.size();
    if (!appended.empty() && appended.back().takesIn(piece))
        appended.back().append(piece);
    else
        appended.push_back(std::move(piece));
}

void CurveUpdate::remove()
{
    isRemoved = true;
    samples.reset();
    dropAppended();
    kept.reset();
    colour.reset();
    style.reset();
}

void CurveUpdate::dropAppended()
{
    appended.clear();
    m_NumAppended = 0;
}

void CurveUpdate::dropOldSamples()
{
    const std::size_t wanted = kept.value_or(DEFAULT_KEPT);
    while (!appended.empty() && m_NumAppended - appended.front().size() >= wanted) {
        m_NumAppended -= appended.front().size();
        appended.pop_front();
    }
}

void AxisUpdate::merge(AxisUpdate& newer)
{
    replace(name, newer.name);
    replace(range, newer.range);
    replace(isLog, newer.isLog);
    replace(isTime, newer.isTime);
}

void PlotUpdate::merge(ViewUpdate& newer)
{
    auto& newerPlot = static_cast<PlotUpdate&>(newer);
    if (newerPlot.isCleared) {
        isCleared = true;
        curves.swap(newerPlot.curves);
        lines.clear();
    } else {
        for (CurveUpdate& newerCurve : newerPlot.curves)
            curve(newerCurve.name).merge(newerCurve);
    }
    for (const std::string& label : newerPlot.removedLines)
        removeLines(label);
    for (LineAcross& line : newerPlot.lines)
        addLine(std::move(line));
    replace(title, newerPlot.title);
    x.merge(newerPlot.x);
    y.merge(newerPlot.y);
    y2.merge(newerPlot.y2);
    replace(window, newerPlot.window);
    for (const std::string& plot : newerPlot.links)
        addLink(plot);
}

std::unique_ptr<ViewUpdate> PlotUpdate::forTheNext() const
{
    std::unique_ptr<PlotUpdate> next;
    for (const CurveUpdate& curve : curves) {
        if (!curve.kept)
            continue;
        if (!next)
            next = std::make_unique<PlotUpdate>();
        next->curve(curve.name).kept = curve.kept;
    }
    return next;
}

Replaced PlotUpdate::replaced() const
{
    Replaced replaced{isCleared, {}};
    for (const CurveUpdate& curve : curves)
        if (!isCleared && curve.isReplacing())
            replaced.names.push_back(curve.name);
    return replaced;
}

std::unique_ptr<ViewUpdate> PlotUpdate::copy() const
{
    return std::make_unique<PlotUpdate>(*this);
}

std::string PlotUpdate::saveData(const QString& file)
{
    std::list<PlotCurve> shown;
    std::vector<const PlotCurve*> saved;
    for (CurveUpdate& update : curves)
        if (update.hasSamples()) {
            shown.emplace_back(update.name, shown.size()).apply(update);
            saved.push_back(&shown.back());
        }
    return saveCurves(file, saved);
}

CurveUpdate& PlotUpdate::curve(const std::string& name)
{
    const auto found =
        std::find_if(curves.begin(), curves.end(), [&name](const CurveUpdate& curve) { return curve.name == name; });
    if (found != curves.end())
        return *found;
    curves.emplace_back();
    curves.back().name = name;
    return curves.back();
}

void PlotUpdate::clear()
{
    isCleared = true;
    curves.clear();
    lines.clear();
}

void PlotUpdate::remove(const std::string& name)
{
    curve(name).remove();
    removeLines(name);
}

void PlotUpdate::addLine(LineAcross line)
{
    const auto isReplaced = [&line](const LineAcross& older) {
        return older.label == line.label && older.isVertical == line.isVertical;
    };
    lines.erase(std::remove_if(lines.begin(), lines.end(), isReplaced), lines.end());
    if (lines.size() == LineAcross::MOST)
        lines.erase(lines.begin());
    lines.push_back(std::move(line));
}

void PlotUpdate::addLink(const std::string& plot)
{
    addOnce(links, plot);
}

void PlotUpdate::removeLines(const std::string& label)
{
    addOnce(removedLines, label);
    lines.erase(
        std::remove_if(lines.begin(), lines.end(), [&label](const LineAcross& line) { return line.label == label; }),
        lines.end());
}

} // namespace tavo
