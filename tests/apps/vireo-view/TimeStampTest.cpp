#include "apps/vireo-view/TimeStamp.h"

#include <QDateTime>
#include <cstdlib>
#include <ctime>
#include <gmock/gmock.h>

namespace vireo_view {
namespace {

using testing::Eq;
using testing::Optional;

constexpr double MAY_DAY = 1714521600; // 2024-05-01T00:00:00Z

double localSeconds(int year, int month, int day, int hour = 0, int minute = 0)
{
    return static_cast<double>(QDateTime(QDate(year, month, day), QTime(hour, minute)).toSecsSinceEpoch());
}

TEST(TimeStampTest, ReadsMomentsInUtc)
{
    EXPECT_THAT(timeStampOf("2024-05-01T12:30:59Z"), Optional(MAY_DAY + 45059));
    EXPECT_THAT(timeStampOf("2024-05-01 12:30:59 Z"), Optional(MAY_DAY + 45059));
    EXPECT_THAT(timeStampOf("20240501T123059Z"), Optional(MAY_DAY + 45059));
    EXPECT_THAT(timeStampOf("2024-05-01T12:30Z"), Optional(MAY_DAY + 45000));
    EXPECT_THAT(timeStampOf("1969-12-31T23:59:59Z"), Optional(-1.0));
    EXPECT_THAT(timeStampOf("2016-12-31T23:59:60Z"), Optional(1483228800.0)) << "a leap second";
}

TEST(TimeStampTest, ReadsFractionsOfASecond)
{
    EXPECT_THAT(timeStampOf("2024-05-01T00:00:00.25Z"), Optional(MAY_DAY + 0.25));
    EXPECT_THAT(timeStampOf("2024-05-01T00:00:00,250Z"), Optional(MAY_DAY + 0.25));
    EXPECT_THAT(timeStampOf("2024-05-01T00:00:00.123456Z"), Optional(testing::DoubleNear(MAY_DAY + 0.123456, 3e-7)));
    EXPECT_THAT(timeStampOf("1970-01-01T00:00:00.000000001Z"), Optional(testing::DoubleNear(1e-9, 1e-15)));
}

TEST(TimeStampTest, ReadsZones)
{
    EXPECT_THAT(timeStampOf("2024-05-01T02:00:00+02:00"), Optional(MAY_DAY));
    EXPECT_THAT(timeStampOf("2024-05-01T02:00:00+02"), Optional(MAY_DAY));
    EXPECT_THAT(timeStampOf("2024-04-30T18:30:00.5-0530"), Optional(MAY_DAY + 0.5));
}

TEST(TimeStampTest, TakesLocalTimeWithoutAZone)
{
    EXPECT_THAT(timeStampOf("2024-05-01T12:30:00"), Optional(localSeconds(2024, 5, 1, 12, 30)));
    EXPECT_THAT(timeStampOf("2024-12-01 12:30"), Optional(localSeconds(2024, 12, 1, 12, 30)));
    EXPECT_THAT(timeStampOf("2024-05-01"), Optional(localSeconds(2024, 5, 1)));
    EXPECT_THAT(timeStampOf("2024/5/1 12:30"), Optional(localSeconds(2024, 5, 1, 12, 30)));
    EXPECT_THAT(timeStampOf("1.5.2024"), Optional(localSeconds(2024, 5, 1)));
    EXPECT_THAT(timeStampOf("01.05.2024 12:30:00"), Optional(localSeconds(2024, 5, 1, 12, 30)));
}

#ifndef _WIN32 // whose C library does not know zones by these names
TEST(TimeStampTest, KnowsSummerTime)
{
    const QByteArray before = qgetenv("TZ");
    qputenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    tzset();
    EXPECT_THAT(timeStampOf("2024-03-31T01:59:59"), Optional(1711846799.0));
    EXPECT_THAT(timeStampOf("2024-03-31T03:00:00"), Optional(1711846800.0)) << "a second later";
    EXPECT_THAT(timeStampOf("2024-07-01T12:00:00"), Optional(1719828000.0));
    EXPECT_THAT(timeStampOf("2024-01-01T12:00:00"), Optional(1704106800.0));
    before.isNull() ? qunsetenv("TZ") : qputenv("TZ", before);
    tzset();
}
#endif

TEST(TimeStampTest, RefusesWhatIsNone)
{
    for (const auto* text : {"", "12", "2024", "-1.5e-10", "2024-13-01", "2023-02-29", "2024-05-01T",
             "2024-05-01T25:00", "2024-05-01T12:60", "2024-05-01T12:30:61", "2024-05-01T12:30x", "2024-05-01T12:30+",
             "2024-05-01T12:30+2:00", "2024-05-01T12:30:00+02:", "2024-05/01", "01.05.24", "1.2.3", "12:30:00",
             "20240501", "2024-05-01T12:30:", "2024-05-01Z", "99999999999-01-01", "2024-05-01T12:30:59.Z"})
        EXPECT_THAT(timeStampOf(text), Eq(std::nullopt)) << text;
}

TEST(TimeStampTest, TellsDaysFromTimesOfDay)
{
    EXPECT_TRUE(isDate("2024-05-01"));
    EXPECT_TRUE(isDate("01.05.2024"));
    EXPECT_FALSE(isDate("2024-05-01T12:30"));
    EXPECT_FALSE(isDate("1.5"));
    EXPECT_TRUE(isTimeOfDay("12:30:59.5"));
    EXPECT_TRUE(isTimeOfDay("7:05"));
    EXPECT_FALSE(isTimeOfDay("1230"));
    EXPECT_FALSE(isTimeOfDay("12:30 x"));
}

} // namespace
} // namespace vireo_view
