#include "vireo/show/plots/PlotUpdate.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tavo {

namespace {

// Smaller pieces are put together, so that single samples do not take a piece each.
constexpr std::size_t LARGE_PIECE = 4096;

template <typename T>
void replace(std::optional<T>& older, std::optional<T>& newer)
{
    if (newer)
        older.swap(newer);
}

} // namespace

const char* nameOf(CurveKind kind)
{
    constexpr const char* NAMES[] = {"curve", "points", "steps", "bars", "histogram", "band"};
    return NAMES[static_cast<std::size_t>(kind)];
}

void AppendedSamples::append(AppendedSamples&& newer)
{
    x.insert(x.end(), newer.x.begin(), newer.x.end());
    y.insert(y.end(), newer.y.begin(), newer.y.end());
}

void CurveUpdate::merge(CurveUpdate& newer)
{
    if (newer.isRemoved || newer.samples)
        appended.swap(newer.appended);
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

void CurveUpdate::append(AppendedSamples piece)
{
    if (!appended.empty() && appended.back().x.size() + piece.x.size() <= LARGE_PIECE)
        appended.back().append(std::move(piece));
    else
        appended.push_back(std::move(piece));
}

void CurveUpdate::remove()
{
    isRemoved = true;
    samples.reset();
    appended.clear();
    kept.reset();
    colour.reset();
    style.reset();
}

void CurveUpdate::dropOldSamples()
{
    std::size_t number = 0;
    auto piece = appended.end();
    while (piece != appended.begin() && number < kept.value_or(DEFAULT_KEPT))
        number += (--piece)->x.size();
    appended.erase(appended.begin(), piece);
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
    lines.insert(lines.end(), newerPlot.lines.begin(), newerPlot.lines.end());
    replace(title, newerPlot.title);
    x.merge(newerPlot.x);
    y.merge(newerPlot.y);
    y2.merge(newerPlot.y2);
    replace(window, newerPlot.window);
    links.insert(links.end(), newerPlot.links.begin(), newerPlot.links.end());
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

void PlotUpdate::removeLines(const std::string& label)
{
    removedLines.push_back(label);
    lines.erase(
        std::remove_if(lines.begin(), lines.end(), [&label](const LineAcross& line) { return line.label == label; }),
        lines.end());
}

} // namespace tavo
