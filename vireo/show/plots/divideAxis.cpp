#include "vireo/show/plots/divideAxis.h"

#include <QFontMetricsF>
#include <algorithm>
#include <array>
#include <cmath>
#include <qwt_scale_engine.h>

#include "vireo/show/plots/NumberFormat.h"
#include "vireo/show/plots/calendarTicks.h"

namespace tavo {

namespace {

constexpr int MOST_TICKS = 12;
constexpr int MINOR_TICKS = 5;

QString unitOf(const AxisUpdate& axis)
{
    return axis.name ? QString::fromStdString(axis.name->unit) : QString();
}

// Qwt takes the ends of a very short piece of large numbers for the same one, and would begin its ticks anywhere. What
// these numbers share is therefore left out while they are divided.
QwtScaleDiv linearTicks(const AxisUpdate::Range& range, int mostTicks)
{
    constexpr double SHORT = 1e-9;
    const double length = range.to - range.from;
    const bool isShort = length < std::max(std::abs(range.from), std::abs(range.to)) * SHORT;
    const double longer = isShort ? tenTo(static_cast<int>(std::ceil(std::log10(length))) + 1) : 1;
    const double shared = isShort ? std::floor(range.from / longer) * longer : 0;
    QwtScaleDiv ticks =
        QwtLinearScaleEngine().divideScale(range.from - shared, range.to - shared, mostTicks, MINOR_TICKS);
    for (const int kind : {QwtScaleDiv::MinorTick, QwtScaleDiv::MediumTick, QwtScaleDiv::MajorTick}) {
        QList<double> places = ticks.ticks(kind);
        for (double& place : places)
            place += shared;
        ticks.setTicks(kind, places);
    }
    ticks.setInterval(range.from, range.to);
    return ticks;
}

AxisDivision linearDivision(const AxisUpdate& axis, const AxisUpdate::Range& range, int mostTicks)
{
    AxisDivision division;
    division.ticks = linearTicks(range, mostTicks);
    const QList<double> ticks = division.ticks.ticks(QwtScaleDiv::MajorTick);
    const double step = ticks.size() > 1 ? std::abs(ticks[1] - ticks[0]) : range.to - range.from;
    const NumberFormat format(range.from, range.to, step, unitOf(axis));
    for (const double tick : ticks)
        division.labels += format.label(tick);
    division.unit = format.unit();
    division.offset = format.offset();
    return division;
}

// Of 1, 2, 5 or another digit, and a power of ten.
QString labelOfDecades(double value, bool areWrittenOut)
{
    const int exponent = static_cast<int>(std::floor(std::log10(value) + 1e-9));
    const auto digit = std::lround(value / tenTo(exponent));
    if (areWrittenOut)
        return writtenOut(value, std::max(0, -exponent));
    return (digit == 1 ? QString() : QString::number(digit) + QStringLiteral("×")) + powerOfTen(exponent);
}

// All numbers within a range that are one of some digits times a power of ten.
QList<double> timesPowersOfTen(std::initializer_list<int> digits, const AxisUpdate::Range& range)
{
    QList<double> values;
    const int last = static_cast<int>(std::floor(std::log10(range.to)));
    for (int exponent = static_cast<int>(std::floor(std::log10(range.from))); exponent <= last; ++exponent)
        for (const int digit : digits)
            if (const double value = digit * tenTo(exponent); value >= range.from && value <= range.to)
                values += value;
    return values;
}

// Powers of ten that Qwt has no ticks for.
QwtScaleDiv farTicks(const AxisUpdate::Range& range, int mostTicks)
{
    const QList<double> powers = timesPowersOfTen({1}, range);
    constexpr std::array STEPS = {1, 2, 5, 10, 20, 50, 100, 200, 500};
    const int step = *std::lower_bound(STEPS.begin(), STEPS.end() - 1, powers.size() / mostTicks + 1);
    QList<double> ticks;
    for (const double power : powers)
        if (std::lround(std::log10(power)) % step == 0)
            ticks += power;
    return QwtScaleDiv(range.from, range.to, {}, {}, ticks);
}

// Where there are no more than two powers of ten, numbers between them tell what the axis is like.
QwtScaleDiv logTicks(const AxisUpdate::Range& range, int mostTicks)
{
    const QList<double> inBetween = timesPowersOfTen({1, 2, 5}, range);
    const bool areFew = timesPowersOfTen({1}, range).size() <= 2;
    if (areFew && inBetween.size() > 1 && inBetween.size() <= mostTicks + 1)
        return QwtScaleDiv(range.from, range.to, timesPowersOfTen({1, 2, 3, 4, 5, 6, 7, 8, 9}, range), {}, inBetween);
    if (range.from < 1e-100 || range.to > 1e100)
        return farTicks(range, mostTicks);
    return QwtLogScaleEngine().divideScale(range.from, range.to, mostTicks, 2 * MINOR_TICKS);
}

AxisDivision logDivision(const AxisUpdate& axis, const AxisUpdate::Range& range, int mostTicks)
{
    constexpr int FEW_NUMBERS = 2;
    AxisDivision division;
    division.ticks = logTicks(range, mostTicks);
    const bool areWrittenOut = range.from >= 1e-4 && range.to < 1e6;
    for (const double tick : division.ticks.ticks(QwtScaleDiv::MajorTick))
        division.labels += labelOfDecades(tick, areWrittenOut);
    division.unit = unitOf(axis);
    if (range.to >= range.from * 10)
        return division;
    AxisDivision linear = linearDivision(axis, range, mostTicks);
    return linear.labels.size() > std::min(FEW_NUMBERS, division.labels.size() - 1) ? linear : division;
}

AxisDivision timeDivision(const AxisUpdate::Range& range, int mostTicks)
{
    const double perSecond = ticksPerSecond(std::max(std::abs(range.from), std::abs(range.to)));
    const double from = range.from / perSecond;
    const double to = range.to / perSecond;
    const QTimeZone zone = QTimeZone::systemTimeZone();
    AxisDivision division;
    QList<double> values;
    for (const CalendarTick& tick : calendarTicks(from, to, (to - from) / mostTicks, zone)) {
        values += tick.seconds * perSecond;
        division.labels += tick.label;
    }
    division.ticks = QwtScaleDiv(range.from, range.to, {}, {}, values);
    return division;
}

// As long a name as has room beside the label.
QString zoneOf(const AxisUpdate::Range& range, double pixels, const QFontMetricsF& font)
{
    constexpr double PART_OF_ROOM = 0.75;
    const double perSecond = ticksPerSecond(std::max(std::abs(range.from), std::abs(range.to)));
    const auto name = [&](bool isShort) {
        return nameOfZone(QTimeZone::systemTimeZone(), range.from / perSecond, range.to / perSecond, isShort);
    };
    const QString whole = name(false);
    return font.horizontalAdvance(whole) <= pixels * PART_OF_ROOM ? whole : name(true);
}

// Years that no calendar has are numbers.
bool hasCalendar(const AxisUpdate::Range& range)
{
    constexpr double MOST_NANOSECONDS = 2e20;
    return std::abs(range.from) < MOST_NANOSECONDS && std::abs(range.to) < MOST_NANOSECONDS;
}

bool isCalendar(const AxisUpdate& axis, const AxisUpdate::Range& range)
{
    return axis.isTime.value_or(false) && hasCalendar(range);
}

AxisDivision divisionOf(const AxisUpdate& axis, const AxisUpdate::Range& range, int mostTicks)
{
    if (isCalendar(axis, range))
        return timeDivision(range, mostTicks);
    return axis.isLog.value_or(false) ? logDivision(axis, range, mostTicks) : linearDivision(axis, range, mostTicks);
}

// Lines are as high as the font, whatever other font lends it a thin space.
QSizeF largestLabel(const QStringList& labels, const QFontMetricsF& font)
{
    QSizeF largest;
    for (const QString& label : labels)
        largest = largest.expandedTo({font.size(0, label).width(), font.height() * (1 + label.count('\n'))});
    return largest;
}

// The least number of pixels between two major ticks.
double distanceOf(const AxisDivision& division, bool isLog, double pixels)
{
    const auto place = [isLog](double value) { return isLog ? std::log10(value) : value; };
    const QList<double> ticks = division.ticks.ticks(QwtScaleDiv::MajorTick);
    const double length = place(division.ticks.upperBound()) - place(division.ticks.lowerBound());
    double least = pixels;
    for (int i = 1; i < ticks.size(); ++i)
        least = std::min(least, (place(ticks[i]) - place(ticks[i - 1])) / length * pixels);
    return least;
}

// Where the labels of an axis have room.
struct Room
{
    double pixels;
    Qt::Orientation orientation;
    const QFontMetricsF& font;
};

bool fits(const AxisDivision& division, bool isLog, const Room& room)
{
    const double em = room.font.height();
    const QSizeF label = largestLabel(division.labels, room.font);
    const double needed = room.orientation == Qt::Horizontal ? label.width() + em : label.height() + em / 2;
    return distanceOf(division, isLog, room.pixels) >= needed;
}

// Of the major ticks every second one, or third and so on. The others are minor ones.
AxisDivision thinnedOut(const AxisDivision& division, int step)
{
    AxisDivision thinned = division;
    thinned.labels.clear();
    QList<double> major;
    QList<double> minor = division.ticks.ticks(QwtScaleDiv::MinorTick);
    const QList<double> ticks = division.ticks.ticks(QwtScaleDiv::MajorTick);
    for (int i = 0; i < ticks.size(); ++i) {
        (i % step == 0 ? major : minor) += ticks[i];
        if (i % step == 0)
            thinned.labels += division.labels[i];
    }
    thinned.ticks.setTicks(QwtScaleDiv::MajorTick, major);
    thinned.ticks.setTicks(QwtScaleDiv::MinorTick, minor);
    return thinned;
}

// The coarsest one that has two numbers, where a coarser one has none or a single one, which says nothing of how long
// the axis is. Times are not thinned out, whose dates stand at some of them alone.
std::optional<AxisDivision> divisionWithTwoLabels(
    const AxisUpdate& axis, const AxisUpdate::Range& range, int mostTicks, const Room& room)
{
    const bool isLog = axis.isLog.value_or(false);
    for (; mostTicks <= MOST_TICKS; ++mostTicks) {
        const AxisDivision division = divisionOf(axis, range, mostTicks);
        const int coarsest = isCalendar(axis, range) ? 1 : division.labels.size() - 1;
        for (int step = 1; step <= coarsest; ++step)
            if (const AxisDivision thinned = thinnedOut(division, step);
                thinned.labels.size() > 1 && fits(thinned, isLog, room))
                return thinned;
    }
    return std::nullopt;
}

AxisDivision divisionWithRoom(const AxisUpdate& axis, const AxisUpdate::Range& range, const Room& room)
{
    const double em = room.font.height();
    const double least = room.orientation == Qt::Horizontal ? 3 * em : 2 * em; // a label is about that long
    const bool isLog = axis.isLog.value_or(false);                             // whose ticks are where they are
    int mostTicks = isLog ? MOST_TICKS : std::clamp(static_cast<int>(room.pixels / least), 1, MOST_TICKS);
    AxisDivision division = divisionOf(axis, range, mostTicks);
    while (mostTicks > 1 && !fits(division, isLog, room))
        division = divisionOf(axis, range, --mostTicks);
    if (division.labels.size() > 1 && fits(division, isLog, room))
        return division;
    return divisionWithTwoLabels(axis, range, mostTicks, room).value_or(division);
}

} // namespace

AxisDivision divideAxis(const AxisUpdate& axis, const AxisUpdate::Range& range, double pixels,
    Qt::Orientation orientation, const QFontMetricsF& font)
{
    AxisDivision division = divisionWithRoom(axis, range, {pixels, orientation, font});
    if (isCalendar(axis, range))
        division.unit = zoneOf(range, pixels, font);
    return division;
}

const AxisDivision& AxisDivider::divide(const AxisUpdate& axis, const AxisUpdate::Range& range, double pixels,
    Qt::Orientation orientation, const QFont& font)
{
    Question question(axis.name ? axis.name->unit : std::string(), axis.isLog.value_or(false),
        axis.isTime.value_or(false), range.from, range.to, pixels, orientation, font);
    if (m_Question != question) {
        m_Answer = divideAxis(axis, range, pixels, orientation, QFontMetricsF(font));
        m_Question = std::move(question);
    }
    return m_Answer;
}

} // namespace tavo
