#pragma once

#include <QString>
#include <QTimeZone>
#include <vector>

namespace tavo {

struct CalendarTick
{
    double seconds; // since 1970
    QString label;  // of one line or two
};

// Ticks at full years, months, days, hours, minutes and seconds of a time zone, no two of them closer than a step in
// seconds. What changes from tick to tick is the first line of a label; the coarser part stands below it where it
// changes, and under the first tick. Nothing outside the years that a calendar has.
std::vector<CalendarTick> calendarTicks(double from, double to, double shortestStep, const QTimeZone& zone);

// A moment on such a clock, with date and time to the millisecond.
QString momentText(double value, const QTimeZone& zone);

// How far a time zone is from UTC, such as "UTC+01:00".
QString nameOfZone(const QTimeZone& zone, double seconds);

// What a time zone is called from one moment to another: how far it is from UTC; where that changes once, also since
// when, on the clock before the change, such as "UTC+01:00, +02:00 from 31 Mar 02:00"; and its own name if it changes
// more often. A short one does not say when.
QString nameOfZone(const QTimeZone& zone, double from, double to, bool isShort = false);

// How many parts of a second a clock counts whose numbers are as large as this: seconds since 1970 are below 10^11 for
// some thousand years, and clocks that count in milliseconds, microseconds or nanoseconds are above.
double ticksPerSecond(double largest);

} // namespace tavo
