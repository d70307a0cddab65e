#include "vireo/show/plots/calendarTicks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavo {

namespace {

using testing::ElementsAre;

constexpr double DAY = 86400;
constexpr double NOON = 1'700'049'600; // of 2023-11-15, in UTC

std::vector<std::string> labels(double from, double to, double step, const char* zone = "UTC")
{
    std::vector<std::string> texts;
    for (const CalendarTick& tick : calendarTicks(from, to, step, QTimeZone(zone)))
        texts.push_back(tick.label.toStdString());
    return texts;
}

TEST(CalendarTicksTest, SayTheDateOnce)
{
    EXPECT_THAT(labels(NOON, NOON + 3600, 800), ElementsAre("12:00\n2023-11-15", "12:15", "12:30", "12:45", "13:00"));
    EXPECT_THAT(labels(NOON, NOON + DAY, 20000),
        ElementsAre("12:00\n2023-11-15", "18:00", "00:00\n2023-11-16", "06:00", "12:00"));
}

TEST(CalendarTicksTest, HaveAsManyDigitsAsTheirStepNeeds)
{
    EXPECT_THAT(labels(NOON, NOON + 20, 9), ElementsAre("12:00:00\n2023-11-15", "12:00:10", "12:00:20"));
    EXPECT_THAT(labels(NOON + 8, NOON + 10, 0.9), ElementsAre("12:00:08\n2023-11-15", "12:00:09", "12:00:10"));
    EXPECT_THAT(labels(NOON + 8, NOON + 10, 0.7), ElementsAre("12:00:08\n2023-11-15", "12:00:09", "12:00:10"));
    EXPECT_THAT(labels(NOON, NOON + 0.5, 0.2), ElementsAre("12:00:00.0\n2023-11-15", "12:00:00.2", "12:00:00.4"));
    EXPECT_THAT(
        labels(NOON, NOON + 0.005, 0.002), ElementsAre("12:00:00.000\n2023-11-15", "12:00:00.002", "12:00:00.004"));
}

TEST(CalendarTicksTest, StandAtFullDaysMonthsAndYears)
{
    EXPECT_THAT(labels(NOON, NOON + 3 * DAY, DAY), ElementsAre("16\nNov 2023", "17", "18"));
    EXPECT_THAT(labels(NOON, NOON + 70 * DAY, 20 * DAY), ElementsAre("Dec\n2023", "Jan\n2024"));
    EXPECT_THAT(labels(NOON, NOON + 4000 * DAY, 1000 * DAY), ElementsAre("2025", "2030"));
}

TEST(CalendarTicksTest, FollowTheZoneAndItsSummerTime)
{
    EXPECT_THAT(
        labels(NOON, NOON + 3600, 1800, "Australia/Darwin"), ElementsAre("21:30\n2023-11-15", "22:00", "22:30"));
    EXPECT_THAT(labels(NOON, NOON + 7200, 3600, "Australia/Darwin"), ElementsAre("22:00\n2023-11-15", "23:00"));
    const double daysOfChange = 1'711'839'600; // 2024-03-31 00:00 in Berlin, where 02:00 is 03:00
    EXPECT_THAT(labels(daysOfChange, daysOfChange + 11 * 3600, 3 * 3600, "Europe/Berlin"),
        ElementsAre("00:00\n2024-03-31", "03:00", "06:00", "09:00", "12:00"));
    EXPECT_EQ(nameOfZone(QTimeZone("Australia/Darwin"), NOON), "UTC+09:30");
    EXPECT_EQ(nameOfZone(QTimeZone("America/New_York"), NOON), "UTC−05:00");
    EXPECT_EQ(nameOfZone(QTimeZone("UTC"), NOON), "UTC");
}

TEST(CalendarTicksTest, NameAllOfAZoneThatChanges)
{
    const double toSummer = 1'711'846'800; // in Berlin
    const QTimeZone berlin("Europe/Berlin");
    EXPECT_EQ(nameOfZone(berlin, toSummer - DAY, toSummer - 1), "UTC+01:00");
    EXPECT_EQ(nameOfZone(berlin, toSummer, toSummer + DAY), "UTC+02:00");
    EXPECT_EQ(nameOfZone(berlin, toSummer - DAY, toSummer + DAY), "UTC+01:00, +02:00 from 31 Mar 02:00");
    EXPECT_EQ(nameOfZone(berlin, toSummer - DAY, toSummer + DAY, true), "UTC+01:00, +02:00");
    const double toWinter = 1'729'990'800;
    EXPECT_EQ(nameOfZone(berlin, toWinter - DAY, toWinter + DAY), "UTC+02:00, +01:00 from 27 Oct 03:00");
    EXPECT_EQ(nameOfZone(berlin, toSummer - DAY, toWinter + DAY), "Europe/Berlin");
    EXPECT_EQ(nameOfZone(QTimeZone("Europe/London"), toSummer - DAY, toSummer + DAY), "UTC, +01:00 from 31 Mar 01:00");
    EXPECT_EQ(
        nameOfZone(QTimeZone("Europe/London"), toWinter - DAY, toWinter + DAY), "UTC+01:00, UTC from 27 Oct 02:00");
    EXPECT_EQ(nameOfZone(QTimeZone("UTC"), toSummer - DAY, toSummer + DAY), "UTC");
    EXPECT_EQ(nameOfZone(berlin, -1e300, 1e300), "UTC");
}

TEST(CalendarTicksTest, AreNeverCloserThanTheStep)
{
    for (const char* zone : {"UTC", "Europe/Berlin", "Australia/Darwin"})
        for (double step = 1e-5; step < 5e9; step *= 1.7) {
            const std::vector<CalendarTick> ticks = calendarTicks(NOON, NOON + 10 * step, step, QTimeZone(zone));
            for (std::size_t i = 1; i < ticks.size(); ++i)
                EXPECT_GE(ticks[i].seconds - ticks[i - 1].seconds, step * 0.7) << zone << ", " << step;
        }
}

TEST(CalendarTicksTest, AreNoneOutsideOfCalendars)
{
    EXPECT_TRUE(calendarTicks(-1e300, 1e300, 1e299, QTimeZone("UTC")).empty());
}

TEST(CalendarTicksTest, KnowClocksByTheirSize)
{
    EXPECT_EQ(ticksPerSecond(1.7e9), 1);
    EXPECT_EQ(ticksPerSecond(1.7e12), 1e3);
    EXPECT_EQ(ticksPerSecond(1.7e15), 1e6);
    EXPECT_EQ(ticksPerSecond(1.7e18), 1e9);
}

} // namespace

} // namespace tavo
