#include "vireo/show/plots/calendarTicks.h"

#include <QDateTime>
#include <QLocale>
#include <algorithm>
#include <cmath>

#include "vireo/show/plots/NumberFormat.h"

namespace tavo {

namespace {

constexpr double MINUTE = 60;
constexpr double HOUR = 60 * MINUTE;
constexpr double DAY = 24 * HOUR;
constexpr double MONTH = 28 * DAY; // the shortest of them
constexpr double YEAR = 365 * DAY;
constexpr double LAST_SECOND = 9000 * YEAR;
constexpr std::size_t MOST_TICKS = 1000;

// Steps of one kind, and how long each is at least.
struct CalendarStep
{
    double seconds;
    double unit; // 1 for all that is counted in seconds
    int count;   // of units
};

// A second and less, by the numbers that other axes have.
CalendarStep shortStep(double shortest)
{
    const double decade = tenTo(static_cast<int>(std::floor(std::log10(shortest))));
    for (const double factor : {1.0, 2.0, 5.0})
        if (factor * decade >= shortest * (1 - 1e-9))
            return {factor * decade, 0, 1};
    return {10 * decade, 0, 1};
}

CalendarStep stepOfYears(double shortest)
{
    const int years = static_cast<int>(std::ceil(shortStep(std::max(shortest / YEAR, 1.0)).seconds));
    return {years * YEAR, YEAR, years};
}

CalendarStep stepNotShorterThan(double shortest)
{
    if (shortest < 0.75)
        return shortStep(shortest);
    for (const double seconds :
        {1., 2., 5., 10., 15., 30., 60., 120., 300., 600., 900., 1800., 3600., 7200., 10800., 21600., 43200.})
        if (seconds >= shortest)
            return {seconds, 1, static_cast<int>(seconds)};
    for (const int days : {1, 2, 5, 10})
        if (days * DAY >= shortest)
            return {days * DAY, DAY, days};
    for (const int months : {1, 2, 3, 6})
        if (months * MONTH >= shortest)
            return {months * MONTH, MONTH, months};
    return stepOfYears(shortest);
}

QDateTime dateTime(double seconds, const QTimeZone& zone)
{
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(std::floor(seconds)), zone);
}

double secondsOf(const QDate& date, const QTimeZone& zone)
{
    return static_cast<double>(QDateTime(date, QTime(0, 0), zone).toSecsSinceEpoch());
}

// Multiples of a step that is shorter than a day, in the time of the zone.
std::vector<double> timesOfDay(double from, double to, double step, const QTimeZone& zone)
{
    std::vector<double> times;
    const auto offsetAt = [&zone](double seconds) { return double(dateTime(seconds, zone).offsetFromUtc()); };
    const double first = std::ceil((from + offsetAt(from)) / step - 1e-6);
    for (std::size_t i = 0; i < MOST_TICKS; ++i) {
        const double local = (first + static_cast<double>(i)) * step;
        const double time = local - offsetAt(local - offsetAt(from));
        if (time > to + step * 1e-6)
            break;
        if (time >= from - step * 1e-6 && (times.empty() || time > times.back()))
            times.push_back(time);
    }
    return times;
}

bool isTick(const QDate& date, const CalendarStep& step)
{
    if (step.unit == DAY)
        return (date.day() - 1) % step.count == 0 &&
               (date.day() == 1 || date.daysInMonth() - date.day() >= step.count - 1);
    if (date.day() != 1)
        return false;
    if (step.unit == MONTH)
        return (date.month() - 1) % step.count == 0;
    return date.month() == 1 && date.year() % step.count == 0;
}

QDate nextDate(const QDate& date, const CalendarStep& step)
{
    if (step.unit == DAY)
        return date.addDays(1);
    if (step.unit == MONTH)
        return QDate(date.year(), date.month(), 1).addMonths(1);
    return QDate(date.year() + 1, 1, 1);
}

std::vector<double> dates(double from, double to, const CalendarStep& step, const QTimeZone& zone)
{
    std::vector<double> times;
    for (QDate date = dateTime(from, zone).date(); date.isValid(); date = nextDate(date, step)) {
        const double time = secondsOf(date, zone);
        if (time > to || times.size() == MOST_TICKS)
            break;
        if (time >= from && isTick(date, step))
            times.push_back(time);
    }
    return times;
}

struct Lines
{
    QString fine;
    QString coarse;
};

QString timeWithFraction(const QDateTime& time, double seconds, double step)
{
    const int digits = std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
    const double second = time.time().second() + (seconds - std::floor(seconds));
    const int width = digits > 0 ? 2 + 1 + digits : 2;
    return time.toString("HH:mm:") + QString::number(second, 'f', digits).rightJustified(width, '0');
}

Lines linesOf(double seconds, const CalendarStep& step, const QTimeZone& zone)
{
    // A sum of steps may miss the second that it means by a hair.
    const double rounded = step.unit == 0 ? std::round(seconds / step.seconds) * step.seconds : std::round(seconds);
    const QDateTime time = dateTime(rounded + (step.unit == 0 ? step.seconds * 1e-3 : 0), zone);
    const QDate date = time.date();
    const QLocale english = QLocale::c();
    if (step.unit == YEAR)
        return {QString::number(date.year()), {}};
    if (step.unit == MONTH)
        return {english.monthName(date.month(), QLocale::ShortFormat), QString::number(date.year())};
    if (step.unit == DAY)
        return {QString::number(date.day()),
            english.monthName(date.month(), QLocale::ShortFormat) + ' ' + QString::number(date.year())};
    const QString day = date.toString(Qt::ISODate);
    if (step.unit == 0)
        return {timeWithFraction(time, rounded, step.seconds), day};
    return {time.toString(step.seconds < MINUTE ? "HH:mm:ss" : "HH:mm"), day};
}

// The moments at which a zone's distance from UTC changes, no more than so many of them.
QVector<QDateTime> firstChanges(double from, double to, int most, const QTimeZone& zone)
{
    QVector<QDateTime> changes;
    if (!(std::abs(from) < LAST_SECOND && std::abs(to) < LAST_SECOND))
        return changes;
    const QDateTime end = dateTime(to, zone);
    QDateTime last = dateTime(from, zone);
    while (changes.size() < most) {
        const QDateTime next = zone.nextTransition(last).atUtc.toTimeZone(zone);
        if (!next.isValid() || next > end || next <= last)
            break;
        if (next.offsetFromUtc() != last.offsetFromUtc()) // and not just what the zone is called
            changes += next;
        last = next;
    }
    return changes;
}

} // namespace

std::vector<CalendarTick> calendarTicks(double from, double to, double shortestStep, const QTimeZone& zone)
{
    if (!(std::abs(from) < LAST_SECOND && std::abs(to) < LAST_SECOND && shortestStep > 0))
        return {};
    const CalendarStep step = stepNotShorterThan(shortestStep);
    const std::vector<double> times =
        step.unit <= 1 ? timesOfDay(from, to, step.seconds, zone) : dates(from, to, step, zone);
    std::vector<CalendarTick> ticks;
    QString coarseBefore;
    for (const double time : times) {
        const Lines lines = linesOf(time, step, zone);
        const bool isNew = lines.coarse != coarseBefore;
        coarseBefore = lines.coarse;
        ticks.push_back({time, isNew ? lines.fine + '\n' + lines.coarse : lines.fine});
    }
    return ticks;
}

QString nameOfZone(const QTimeZone& zone, double seconds)
{
    const int minutes = std::abs(seconds) < LAST_SECOND ? dateTime(seconds, zone).offsetFromUtc() / 60 : 0;
    if (minutes == 0)
        return "UTC";
    const QString hoursAndMinutes = QTime(0, 0).addSecs(std::abs(minutes) * 60).toString("HH:mm");
    return (minutes < 0 ? QStringLiteral("UTC−") : QStringLiteral("UTC+")) + hoursAndMinutes;
}

QString nameOfZone(const QTimeZone& zone, double from, double to, bool isShort)
{
    const QString name = nameOfZone(zone, from);
    const QVector<QDateTime> changes = firstChanges(from, to, 2, zone);
    if (changes.isEmpty())
        return name;
    if (changes.size() > 1)
        return QString::fromUtf8(zone.id());
    const QDateTime& change = changes.front();
    QString after = nameOfZone(zone, static_cast<double>(change.toSecsSinceEpoch()));
    if (after != "UTC")
        after.remove("UTC");
    const QString both = name + ", " + after;
    const QDateTime before = change.toOffsetFromUtc(dateTime(from, zone).offsetFromUtc());
    return isShort ? both : both + " from " + QLocale::c().toString(before, "d MMM HH:mm");
}

QString momentText(double value, const QTimeZone& zone)
{
    const double seconds = value / ticksPerSecond(std::abs(value));
    if (!(std::abs(seconds) < LAST_SECOND))
        return QString::number(value, 'g', 17);
    return QDateTime::fromMSecsSinceEpoch(std::llround(seconds * 1000), zone).toString("yyyy-MM-dd HH:mm:ss.zzz");
}

double ticksPerSecond(double largest)
{
    double ticks = 1;
    while (ticks < 1e9 && largest > 1e11 * ticks)
        ticks *= 1e3;
    return ticks;
}

} // namespace tavo
