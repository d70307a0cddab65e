#include "vireo/show/Plot.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <sstream>
#include <utility>

#include "tavo/base/debug/displayException.h"
#include "tavo/base/text/printable.h"
#include "vireo/show/delivery/Inbox.h"
#include "vireo/show/delivery/Mode.h"
#include "vireo/show/delivery/changeUpdate.h"
#include "vireo/show/delivery/nothingToSee.h"
#include "vireo/show/delivery/sayOnce.h"
#include "vireo/show/plots/PlotUpdate.h"

namespace tavo {

namespace {

constexpr std::size_t LONGEST_NAME = 100; // in a line of the log

// A call as a line of the log names it.
std::string callOf(const ViewSlotPointer& slot, const char* operation, std::string_view name)
{
    return callOf("plot", slot, operation, name);
}

template <typename Change>
void change(const ViewSlotPointer& slot, Change&& changeIt) noexcept
{
    changeUpdate<PlotUpdate>(slot, changeIt);
}

template <typename Change>
void changeCurve(const ViewSlotPointer& slot, std::string_view name, Change&& changeIt) noexcept
{
    change(slot, [&](PlotUpdate& plot) { changeIt(plot.curve(std::string(name))); });
}

// Of a curve that stands at x, which has the axis show dates if it is dates.
template <typename Change>
void changeSamples(const ViewSlotPointer& slot, std::string_view name, const Numbers* x, Change&& changeIt) noexcept
{
    change(slot, [&](PlotUpdate& plot) {
        changeIt(plot.curve(std::string(name)));
        if (x && x->areDates())
            plot.x.isTime = true;
    });
}

// What is wrong with a call, which is said.
void refuse(const ViewSlotPointer& slot, const char* operation, std::string_view name, const std::string& why) noexcept
{
    runGuarded([&] { sayOnce(callOf(slot, operation, name) + ": " + why + "; what was shown stays"); });
}

// Whether there is anything wrong with the samples, which is said.
bool isMistaken(
    const ViewSlotPointer& slot, const char* operation, std::string_view name, const Numbers* x, const Numbers& y)
{
    if (y.areTooMany() || (x && x->areTooMany()))
        refuse(slot, operation, name, "there is no memory for so many numbers");
    else if (x && x->size() != y.size())
        refuse(slot, operation, name, std::to_string(x->size()) + " x and " + std::to_string(y.size()) + " y");
    else
        return false;
    return true;
}

// Whether anything would be seen; if not, it is said why.
bool isAnythingSeen(const ViewSlotPointer& slot, CurveKind kind, std::string_view name, const Numbers* x,
    const Numbers& y, const Numbers* low) noexcept
{
    bool isSeen = false;
    runGuarded([&] {
        const std::string why = whyNothingIsSeen({{&y, "samples"}, {x, "x"}, {low, "low ends"}});
        isSeen = why.empty();
        if (!isSeen)
            refuse(slot, nameOf(kind), name, why);
    });
    return isSeen;
}

void sendSamples(const ViewSlotPointer& slot, CurveKind kind, std::string_view name, const Numbers* x, const Numbers& y,
    const Numbers* low = nullptr)
{
    if (!isSent(slot) || isMistaken(slot, nameOf(kind), name, x, y) ||
        (low && isMistaken(slot, nameOf(kind), name, x, *low)) || !isAnythingSeen(slot, kind, name, x, y, low))
        return;
    changeSamples(slot, name, x, [&](CurveUpdate& curve) {
        curve.send({x ? NumberArray(*x) : NumberArray(), y, low ? NumberArray(*low) : NumberArray(), kind});
    });
}

// Has an axis of a plot show a range, or says why it cannot.
// Says of a call that what it asks for is none.
void refuse(const ViewSlotPointer& slot, const std::string& call, const char* why)
{
    runGuarded([&] {
        sayOnce(
            "plot(\"" + printable(slot->name, LONGEST_NAME) + "\")." + call + ": " + why + "; what was shown stays");
    });
}

void sendRange(const ViewSlotPointer& slot, const char* operation, AxisUpdate PlotUpdate::*axis, double from, double to)
{
    if (!isSent(slot))
        return;
    if (std::isfinite(from) && std::isfinite(to) && from != to)
        changeUpdate<PlotUpdate>(slot, [&](PlotUpdate& plot) {
            (plot.*axis).range = AxisUpdate::Range{std::min(from, to), std::max(from, to)};
        });
    else
        runGuarded([&] {
            std::ostringstream call;
            call << operation << "(" << from << ", " << to << ")";
            refuse(slot, call.str(), "a range goes from one number to another");
        });
}

bool isStyleWord(const std::string& word)
{
    constexpr const char* WORDS[] = {"dashed", "dotted", "thick", "marks", "y2"};
    return std::find(std::begin(WORDS), std::end(WORDS), word) != std::end(WORDS);
}

void sayUnknownWords(const ViewSlotPointer& slot, std::string_view name, std::string_view words)
{
    std::istringstream text{std::string(words)};
    for (std::string word; text >> word;)
        if (!isStyleWord(word))
            sayOnce(callOf(slot, "style", name) + ": \"" + printable(word, LONGEST_NAME) +
                    "\" means nothing: the words are dashed, dotted, thick, marks and y2");
}

} // namespace

Plot plot(std::string_view name)
{
    Plot handle;
    if (!isShowOff())
        runGuarded([&] { handle.m_Slot = inbox::findSlot(ViewKind::Plot, std::string(name)); });
    return handle;
}

Plot Plot::curve(std::string_view name, const Numbers& y, const Statement&) const
{
    sendSamples(m_Slot, CurveKind::Line, name, nullptr, y);
    return *this;
}

Plot Plot::curve(std::string_view name, const Numbers& x, const Numbers& y, const Statement&) const
{
    sendSamples(m_Slot, CurveKind::Line, name, &x, y);
    return *this;
}

Plot Plot::points(std::string_view name, const Numbers& y, const Statement&) const
{
    sendSamples(m_Slot, CurveKind::Points, name, nullptr, y);
    return *this;
}

Plot Plot::points(std::string_view name, const Numbers& x, const Numbers& y, const Statement&) const
{
    sendSamples(m_Slot, CurveKind::Points, name, &x, y);
    return *this;
}

Plot Plot::steps(std::string_view name, const Numbers& y, const Statement&) const
{
    sendSamples(m_Slot, CurveKind::Steps, name, nullptr, y);
    return *this;
}

Plot Plot::steps(std::string_view name, const Numbers& x, const Numbers& y, const Statement&) const
{
    sendSamples(m_Slot, CurveKind::Steps, name, &x, y);
    return *this;
}

Plot Plot::bars(std::string_view name, const Numbers& y, const Statement&) const
{
    sendSamples(m_Slot, CurveKind::Bars, name, nullptr, y);
    return *this;
}

Plot Plot::bars(std::string_view name, const Numbers& x, const Numbers& y, const Statement&) const
{
    sendSamples(m_Slot, CurveKind::Bars, name, &x, y);
    return *this;
}

Plot Plot::histogram(std::string_view name, const Numbers& values, const Statement&) const
{
    sendSamples(m_Slot, CurveKind::Histogram, name, nullptr, values);
    return *this;
}

Plot Plot::band(
    std::string_view name, const Numbers& x, const Numbers& low, const Numbers& high, const Statement&) const
{
    sendSamples(m_Slot, CurveKind::Band, name, &x, high, &low);
    return *this;
}

Plot Plot::append(std::string_view name, double x, double y, const Statement&) const
{
    changeCurve(m_Slot, name, [&](CurveUpdate& curve) { curve.append({x, y}); });
    return *this;
}

Plot Plot::append(std::string_view name, const Numbers& x, const Numbers& y, const Statement&) const
{
    if (isSent(m_Slot) && !isMistaken(m_Slot, "append", name, &x, y))
        changeSamples(m_Slot, name, &x, [&](CurveUpdate& curve) { curve.append({x, y}); });
    return *this;
}

Plot Plot::keep(std::string_view name, std::size_t count, const Statement&) const
{
    changeCurve(m_Slot, name, [&](CurveUpdate& curve) { curve.kept = count; });
    return *this;
}

Plot Plot::colour(std::string_view name, const RGBA8& colour, const Statement&) const
{
    changeCurve(
        m_Slot, name, [&](CurveUpdate& curve) { curve.colour = qRgba(colour[0], colour[1], colour[2], colour[3]); });
    return *this;
}

Plot Plot::style(std::string_view name, std::string_view words, const Statement&) const
{
    if (isSent(m_Slot))
        runGuarded([&] { sayUnknownWords(m_Slot, name, words); });
    changeCurve(m_Slot, name, [&](CurveUpdate& curve) { curve.style = std::string(words); });
    return *this;
}

Plot Plot::vertical(double x, std::string_view label, const Statement&) const
{
    change(m_Slot, [&](PlotUpdate& plot) { plot.addLine({true, x, std::string(label)}); });
    return *this;
}

Plot Plot::horizontal(double y, std::string_view label, const Statement&) const
{
    change(m_Slot, [&](PlotUpdate& plot) { plot.addLine({false, y, std::string(label)}); });
    return *this;
}

Plot Plot::window(double seconds, const Statement&) const
{
    if (seconds > 0)
        change(m_Slot, [seconds](PlotUpdate& plot) { plot.window = seconds; });
    else if (isSent(m_Slot))
        runGuarded([&] {
            std::ostringstream call;
            call << "window(" << seconds << ")";
            refuse(m_Slot, call.str(), "a window is longer than nothing");
        });
    return *this;
}

Plot Plot::link(const Plot& other, const Statement&) const
{
    if (other.m_Slot)
        change(m_Slot, [&other](PlotUpdate& plot) { plot.addLink(other.m_Slot->name); });
    return *this;
}

Plot Plot::title(std::string_view text, const Statement&) const
{
    change(m_Slot, [&](PlotUpdate& plot) { plot.title = std::string(text); });
    return *this;
}

Plot Plot::xAxis(std::string_view label, std::string_view unit, const Statement&) const
{
    change(m_Slot, [&](PlotUpdate& plot) { plot.x.name = AxisUpdate::Name{std::string(label), std::string(unit)}; });
    return *this;
}

Plot Plot::yAxis(std::string_view label, std::string_view unit, const Statement&) const
{
    change(m_Slot, [&](PlotUpdate& plot) { plot.y.name = AxisUpdate::Name{std::string(label), std::string(unit)}; });
    return *this;
}

Plot Plot::y2Axis(std::string_view label, std::string_view unit, const Statement&) const
{
    change(m_Slot, [&](PlotUpdate& plot) { plot.y2.name = AxisUpdate::Name{std::string(label), std::string(unit)}; });
    return *this;
}

Plot Plot::logX(bool isLog, const Statement&) const
{
    change(m_Slot, [isLog](PlotUpdate& plot) { plot.x.isLog = isLog; });
    return *this;
}

Plot Plot::logY(bool isLog, const Statement&) const
{
    change(m_Slot, [isLog](PlotUpdate& plot) { plot.y.isLog = isLog; });
    return *this;
}

Plot Plot::timeX(bool isTime, const Statement&) const
{
    change(m_Slot, [isTime](PlotUpdate& plot) { plot.x.isTime = isTime; });
    return *this;
}

Plot Plot::xRange(double from, double to, const Statement&) const
{
    sendRange(m_Slot, "xRange", &PlotUpdate::x, from, to);
    return *this;
}

Plot Plot::yRange(double from, double to, const Statement&) const
{
    sendRange(m_Slot, "yRange", &PlotUpdate::y, from, to);
    return *this;
}

Plot Plot::remove(std::string_view name, const Statement&) const
{
    change(m_Slot, [&](PlotUpdate& plot) { plot.remove(std::string(name)); });
    return *this;
}

Plot Plot::clear(const Statement&) const
{
    change(m_Slot, [](PlotUpdate& plot) { plot.clear(); });
    return *this;
}

} // namespace tavo
