#include "apps/vireo-view/TimeStamp.h"

#include <QDateTime>
#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>

namespace vireo_view {

namespace {

constexpr std::int64_t SECONDS_OF_HOUR = 3600;
constexpr std::int64_t SECONDS_OF_DAY = 24 * SECONDS_OF_HOUR;

// What of a text has not been read yet. Everything that reads leaves it alone if it is something else.
class Scanner
{
public:
    explicit Scanner(std::string_view text)
        : m_Text(text)
    {}

    bool isAtEnd() const { return m_Text.empty(); }

    bool take(char c)
    {
        const bool isThere = !m_Text.empty() && m_Text.front() == c;
        if (isThere)
            m_Text.remove_prefix(1);
        return isThere;
    }

    bool takeAny(std::string_view characters)
    {
        const std::size_t number = std::min(m_Text.find_first_not_of(characters), m_Text.size());
        m_Text.remove_prefix(number);
        return number > 0;
    }

    std::optional<int> digits(std::size_t least, std::size_t most)
    {
        const std::size_t number = std::min({m_Text.find_first_not_of("0123456789"), m_Text.size(), most});
        if (number < least)
            return std::nullopt;
        int value = 0;
        std::from_chars(m_Text.data(), m_Text.data() + number, value);
        m_Text.remove_prefix(number);
        return value;
    }

    // A decimal point or comma and digits; zero if there is none.
    double fraction()
    {
        if (m_Text.size() < 2 || (m_Text[0] != '.' && m_Text[0] != ',') || !isDigit(m_Text[1]))
            return 0;
        m_Text.remove_prefix(1);
        double value = 0;
        for (double place = 10; !m_Text.empty() && isDigit(m_Text.front()); place *= 10, m_Text.remove_prefix(1))
            value += (m_Text.front() - '0') / place;
        return value;
    }

private:
    static bool isDigit(char c) { return c >= '0' && c <= '9'; }

    std::string_view m_Text;
};

// The days since 1970 of a day that the calendar has.
std::optional<std::int64_t> daysOf(int year, int month, int day)
{
    const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
        std::chrono::day(static_cast<unsigned>(day))};
    if (!date.ok())
        return std::nullopt;
    return std::chrono::sys_days(date).time_since_epoch().count();
}

// The year, a mark, the month, the mark, the day.
std::optional<std::int64_t> yearFirst(Scanner& scanner)
{
    Scanner ahead = scanner;
    const auto year = ahead.digits(4, 4);
    const char mark = ahead.take('-') ? '-' : ahead.take('/') ? '/' : 0;
    const auto month = ahead.digits(mark ? 1 : 2, 2);
    const bool isMarked = mark == 0 || ahead.take(mark);
    const auto day = ahead.digits(mark ? 1 : 2, 2);
    if (!year || !month || !isMarked || !day || (mark == 0 && !Scanner(ahead).take('T')))
        return std::nullopt;
    scanner = ahead;
    return daysOf(*year, *month, *day);
}

std::optional<std::int64_t> dayFirst(Scanner& scanner)
{
    Scanner ahead = scanner;
    const auto day = ahead.digits(1, 2);
    const bool isDay = ahead.take('.');
    const auto month = ahead.digits(1, 2);
    const bool isMonth = ahead.take('.');
    const auto year = ahead.digits(4, 4);
    if (!day || !isDay || !month || !isMonth || !year)
        return std::nullopt;
    scanner = ahead;
    return daysOf(*year, *month, *day);
}

std::optional<std::int64_t> takeDate(Scanner& scanner)
{
    const auto days = yearFirst(scanner);
    return days ? days : dayFirst(scanner);
}

// The seconds since midnight: hours, minutes and, perhaps, seconds. Colons stand between all of them or none.
std::optional<double> takeTimeOfDay(Scanner& scanner)
{
    const auto hours = scanner.digits(1, 2);
    const bool hasColons = scanner.take(':');
    const auto minutes = scanner.digits(2, 2);
    if (!hours || !minutes || *hours > 24 || *minutes > 59)
        return std::nullopt;
    double seconds = 0;
    if (!hasColons || scanner.take(':')) {
        const auto whole = scanner.digits(2, 2);
        constexpr int LEAP_SECOND = 60;
        if ((hasColons && !whole) || whole.value_or(0) > LEAP_SECOND)
            return std::nullopt;
        seconds = whole.value_or(0) + scanner.fraction();
    }
    return static_cast<double>(*hours * SECONDS_OF_HOUR + *minutes * 60) + seconds;
}

// How many seconds the zone is ahead of UTC. Nothing if there is none; `isGood` becomes false where it is misspelt.
std::optional<int> takeZone(Scanner& scanner, bool& isGood)
{
    if (scanner.take('Z') || scanner.take('z'))
        return 0;
    const int sign = scanner.take('+') ? 1 : scanner.take('-') ? -1 : 0;
    if (sign == 0)
        return std::nullopt;
    const auto hours = scanner.digits(2, 2);
    const bool hasColon = scanner.take(':');
    const auto minutes = scanner.digits(2, 2);
    isGood = hours && *hours < 24 && (minutes ? *minutes < 60 : !hasColon);
    return sign * (hours.value_or(0) * 3600 + minutes.value_or(0) * 60);
}

// How far local time is ahead of UTC at a local moment. It changes at quarters of an hour at most, so the last answer
// is kept for a quarter: asking takes long.
std::int64_t localOffset(std::int64_t localSeconds)
{
    constexpr std::int64_t QUARTER = SECONDS_OF_HOUR / 4;
    static thread_local std::int64_t knownQuarter = INT64_MIN;
    static thread_local std::int64_t knownOffset = 0;
    const std::int64_t quarter = localSeconds / QUARTER - (localSeconds % QUARTER < 0 ? 1 : 0);
    if (quarter != knownQuarter) {
        QDateTime moment = QDateTime::fromSecsSinceEpoch(quarter * QUARTER, Qt::UTC);
        moment.setTimeSpec(Qt::LocalTime);
        knownOffset = quarter * QUARTER - moment.toSecsSinceEpoch();
        knownQuarter = quarter;
    }
    return knownOffset;
}

// Numbers are tried first, and there are many more of them than of anything else.
bool canBeTimeStamp(std::string_view text)
{
    constexpr std::size_t SHORTEST = 8;
    return text.size() >= SHORTEST && text.find_first_of("-/.T") != std::string_view::npos;
}

} // namespace

std::optional<double> timeStampOf(std::string_view text)
{
    if (!canBeTimeStamp(text))
        return std::nullopt;
    Scanner scanner(text);
    const auto days = takeDate(scanner);
    if (!days)
        return std::nullopt;
    double timeOfDay = 0;
    std::optional<int> zone;
    if (!scanner.isAtEnd()) {
        constexpr std::string_view BETWEEN = " \t,;\""; // the two may be cells of their own
        const auto time = scanner.take('T') || scanner.takeAny(BETWEEN) ? takeTimeOfDay(scanner) : std::nullopt;
        scanner.takeAny(" ");
        bool isGood = time.has_value();
        zone = takeZone(scanner, isGood);
        if (!isGood || !scanner.isAtEnd())
            return std::nullopt;
        timeOfDay = *time;
    }
    const std::int64_t midnight = *days * SECONDS_OF_DAY;
    const std::int64_t ahead = zone ? *zone : localOffset(midnight + static_cast<std::int64_t>(timeOfDay));
    return static_cast<double>(midnight - ahead) + timeOfDay;
}

bool isDate(std::string_view text)
{
    Scanner scanner(text);
    return takeDate(scanner) && scanner.isAtEnd();
}

bool isTimeOfDay(std::string_view text)
{
    Scanner scanner(text);
    return text.find(':') != std::string_view::npos && takeTimeOfDay(scanner) && scanner.isAtEnd();
}

} // namespace vireo_view
