#include "vireo/show/plots/NumberFormat.h"

#include <QLocale>
#include <QSet>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

namespace tavo {

namespace {

constexpr int MOST_DIGITS = 9;
constexpr int SMALLEST_WRITTEN_OUT = -3; // as powers of ten
constexpr int LARGEST_WRITTEN_OUT = 5;
constexpr double LARGEST_OFFSET_WRITTEN_OUT = 1e17;

// Of the leading digit.
int exponentOf(double value)
{
    constexpr double ROUNDING = 1e-9;
    return value > 0 ? static_cast<int>(std::floor(std::log10(value) + ROUNDING)) : 0;
}

// The power of a thousand that numbers of a size are counted in.
int thousandsOf(int exponent)
{
    if (exponent >= SMALLEST_WRITTEN_OUT && exponent <= LARGEST_WRITTEN_OUT)
        return 0;
    return 3 * static_cast<int>(std::floor(exponent / 3.0));
}

// The same for numbers that differ from a digit on. Millions that would get as many digits behind a point as they have
// before it otherwise, such as coordinates, are easier to read when they are written out.
int countedIn(int first, int last)
{
    constexpr int MILLIONS = 6;
    constexpr int FEW_DIGITS = 2;
    return first == MILLIONS && MILLIONS - last > FEW_DIGITS ? 0 : thousandsOf(first);
}

// Units that are plain enough to be said in thousands and thousandths; seconds only in the latter.
bool takesPrefix(const QString& unit, int exponent)
{
    static const QSet<QString> PLAIN = {"m", "s", "g", "A", "K", "mol", "cd", "Hz", "N", "Pa", "J", "W", "C", "V", "F",
        QStringLiteral("Ω"), "Ohm", "S", "Wb", "T", "H", "lm", "lx", "Bq", "Gy", "Sv", "B", "bit", "eV", "l", "L"};
    const QString counted = unit.section('/', 0, 0);
    return PLAIN.contains(counted) && std::abs(exponent) <= 24 && !(counted == "s" && exponent > 0);
}

QString prefixOf(int exponent)
{
    static const QStringList PREFIXES = {
        "y", "z", "a", "f", "p", "n", QStringLiteral("µ"), "m", "", "k", "M", "G", "T", "P", "E", "Z", "Y"};
    return PREFIXES[exponent / 3 + 8];
}

QString countedUnit(const QString& unit, int exponent)
{
    if (exponent == 0)
        return unit;
    if (takesPrefix(unit, exponent))
        return prefixOf(exponent) + unit;
    return QStringLiteral("×") + powerOfTen(exponent) + (unit.isEmpty() ? "" : " ") + unit;
}

// The multiple of a step that lies between two numbers which are closer than it, or else the one below them.
double roundWithinOrBelow(double from, double to, double step)
{
    const double above = std::ceil(from / step) * step;
    return above <= to ? above : std::floor(from / step) * step;
}

// Without the zeros at the end of what is behind the point.
QString shortened(QString number)
{
    while (number.contains('.') && (number.endsWith('0') || number.endsWith('.')))
        number.chop(1);
    return number;
}

} // namespace

QString writtenOut(double value, int decimals)
{
    constexpr QChar THIN_SPACE(0x2009);
    constexpr QChar MINUS(0x2212);
    QLocale locale = QLocale::c();
    locale.setNumberOptions(QLocale::DefaultNumberOptions);
    QString text = locale.toString(value, 'f', decimals).replace(locale.groupSeparator(), THIN_SPACE);
    return text.replace('-', MINUS);
}

double tenTo(int exponent)
{
    const std::string text = "1e" + std::to_string(exponent);
    double power = exponent < 0 ? 0 : std::numeric_limits<double>::infinity(); // where it is too small or too large
    std::from_chars(text.data(), text.data() + text.size(), power);
    return power;
}

QString powerOfTen(int exponent)
{
    static const QString RAISED = QStringLiteral("⁰¹²³⁴⁵⁶⁷⁸⁹");
    QString text = exponent < 0 ? QStringLiteral("10⁻") : QStringLiteral("10");
    for (const QChar digit : QString::number(std::abs(exponent)))
        text += RAISED[digit.digitValue()];
    return text;
}

NumberFormat::NumberFormat(double from, double to, double step, const QString& unit)
    : m_Step(step)
    , m_Unit(unit)
    , m_CountedUnit(unit)
{
    const int last = exponentOf(step);
    int first = exponentOf(std::max(std::abs(from), std::abs(to)));
    const auto numDigits = [&] {
        const int counted = countedIn(first, last);
        return std::max(first - counted, 0) + 1 + std::max(counted - last, 0);
    };
    if (numDigits() > MOST_DIGITS) {
        // Much longer than what is seen, so that it stays while that is moved.
        m_OffsetStep = tenTo(exponentOf(to - from) + 2);
        m_Offset = roundWithinOrBelow(from, to, m_OffsetStep);
        first = exponentOf(std::max(std::abs(from - m_Offset), std::abs(to - m_Offset)));
    }
    m_Exponent = countedIn(first, last);
    m_Decimals = std::max(m_Exponent - last, 0);
    m_CountedUnit = countedUnit(unit, m_Exponent);
}

QString NumberFormat::label(double value) const
{
    double counted = value - m_Offset;
    if (std::abs(counted) < m_Step * 1e-6)
        counted = 0;                           // and not what the sum of steps leaves of it
    const double half = tenTo(m_Exponent / 2); // the whole may be too small
    return writtenOut(counted / half / tenTo(m_Exponent - m_Exponent / 2), m_Decimals);
}

QString NumberFormat::offset() const
{
    if (m_Offset == 0)
        return {};
    const double size = std::abs(m_Offset);
    const QString text = size < LARGEST_OFFSET_WRITTEN_OUT
                             ? shortened(writtenOut(size, std::max(0, -exponentOf(m_OffsetStep))))
                             : QString::number(size, 'g', 17);
    return (m_Offset < 0 ? QStringLiteral("−") : QStringLiteral("+")) + text + (m_Unit.isEmpty() ? "" : " ") + m_Unit;
}

} // namespace tavo
