#include "vireo/show/plots/divideAxis.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QTimeZone>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <set>

namespace tavo {

namespace {

double placeOf(double value, bool isLog)
{
    return isLog ? std::log10(value) : value;
}

// Whether labels of neighbours touch, which are centred at their ticks.
bool doLabelsTouch(const AxisDivision& division, bool isLog, double pixels, const QFontMetricsF& font)
{
    const QList<double> ticks = division.ticks.ticks(QwtScaleDiv::MajorTick);
    const double from = placeOf(division.ticks.lowerBound(), isLog);
    const double to = placeOf(division.ticks.upperBound(), isLog);
    double end = -INFINITY;
    for (int i = 0; i < ticks.size(); ++i) {
        const double middle = (placeOf(ticks[i], isLog) - from) / (to - from) * pixels;
        const double width = font.size(0, division.labels.value(i)).width();
        if (middle - width / 2 <= end)
            return true;
        end = middle + width / 2;
    }
    return false;
}

class DivideAxisTest : public testing::Test
{
protected:
    void expectGoodLabels(const AxisUpdate& axis, const AxisUpdate::Range& range, double pixels)
    {
        const AxisDivision division = divideAxis(axis, range, pixels, Qt::Horizontal, m_Font);
        const bool isLog = axis.isLog.value_or(false);
        EXPECT_EQ(division.labels.size(), division.ticks.ticks(QwtScaleDiv::MajorTick).size());
        EXPECT_FALSE(doLabelsTouch(division, isLog, pixels, m_Font))
            << range.from << " to " << range.to << " on " << pixels << ": " << division.labels.join(", ").toStdString();
        if (!axis.isTime.value_or(false)) {
            const std::set<QString> different(division.labels.begin(), division.labels.end());
            EXPECT_EQ(static_cast<int>(different.size()), division.labels.size())
                << range.from << " to " << range.to << ": " << division.labels.join(", ").toStdString();
        }
    }

    QFontMetricsF m_Font{QApplication::font()};
    std::mt19937 m_Random{1};
};

TEST_F(DivideAxisTest, ShortPiecesOfLargeNumbersHaveRoundTicks)
{
    const double pixels = 20 * m_Font.height(); // room for six such labels, and not for eleven
    const AxisDivision division =
        divideAxis({}, {1'234'567'890'122.95, 1'234'567'890'124.05}, pixels, Qt::Horizontal, m_Font);
    EXPECT_EQ(division.labels, QStringList({"23.0", "23.2", "23.4", "23.6", "23.8", "24.0"}));
    EXPECT_DOUBLE_EQ(division.ticks.ticks(QwtScaleDiv::MajorTick).front(), 1'234'567'890'123);
    EXPECT_EQ(division.ticks.lowerBound(), 1'234'567'890'122.95);
    for (const double length : {1e-2, 1e-3}) {
        const QList<double> ticks = divideAxis({}, {-1e9 - length, -1e9 + length}, pixels, Qt::Horizontal, m_Font)
                                        .ticks.ticks(QwtScaleDiv::MajorTick);
        EXPECT_TRUE(ticks.contains(-1e9)) << length;
        EXPECT_GE(ticks.size(), 3) << length;
    }
}

TEST_F(DivideAxisTest, LabelsOfNumbersNeverTouchAndDiffer)
{
    std::uniform_real_distribution<double> exponent(-12, 12);
    std::uniform_real_distribution<double> pixels(40, 2000);
    for (int i = 0; i < 2000; ++i) {
        const double from = std::pow(10, exponent(m_Random)) * (i % 2 ? 1 : -1);
        const double length = std::abs(from) * std::pow(10, exponent(m_Random) / 2 - 3);
        expectGoodLabels({}, {from, from + length}, pixels(m_Random));
    }
}

TEST_F(DivideAxisTest, LabelsOfTimesNeverTouch)
{
    AxisUpdate axis;
    axis.isTime = true;
    std::uniform_real_distribution<double> exponent(-4, 9);
    std::uniform_real_distribution<double> pixels(40, 2000);
    for (int i = 0; i < 500; ++i) {
        const double from = 1.7e9 + i * 12345.678;
        expectGoodLabels(axis, {from, from + std::pow(10, exponent(m_Random))}, pixels(m_Random));
    }
}

TEST_F(DivideAxisTest, LabelsOfPowersNeverTouchAndDiffer)
{
    AxisUpdate axis;
    axis.isLog = true;
    std::uniform_real_distribution<double> exponent(-20, 20);
    std::uniform_real_distribution<double> pixels(40, 2000);
    for (int i = 0; i < 500; ++i) {
        const double from = std::pow(10, exponent(m_Random));
        expectGoodLabels(axis, {from, from * std::pow(10, std::abs(exponent(m_Random)) + 0.05)}, pixels(m_Random));
    }
}

TEST_F(DivideAxisTest, HasNumbersWithinADecadeOfALogarithmicAxis)
{
    AxisUpdate axis;
    axis.isLog = true;
    EXPECT_GE(divideAxis(axis, {2, 7}, 600, Qt::Horizontal, m_Font).labels.size(), 3);
    EXPECT_EQ(divideAxis(axis, {1, 1000}, 600, Qt::Horizontal, m_Font).labels,
        QStringList({"1", "10", "100", QString("1") + QChar(0x2009) + "000"}));
}

TEST_F(DivideAxisTest, HasNumbersBetweenTwoPowersOfTen)
{
    AxisUpdate axis;
    axis.isLog = true;
    const auto labels = [&](double from, double to, double lines) {
        return divideAxis(axis, {from, to}, lines * m_Font.height(), Qt::Vertical, m_Font)
            .labels.join(' ')
            .toStdString();
    };
    EXPECT_EQ(labels(0.9, 9.5, 18), "1 2 5");
    EXPECT_EQ(labels(0.8, 70, 24), "1 2 5 10 20 50");
    EXPECT_EQ(labels(1e-12, 8e-12, 6), "10⁻¹² 2×10⁻¹² 5×10⁻¹²");
    EXPECT_EQ(labels(0.8, 70, 3.5), "1 10") << "where there is room";
    EXPECT_EQ(labels(1, 6, 4.7), "1 2 5");
}

TEST_F(DivideAxisTest, NamesUnitZoneAndOffset)
{
    AxisUpdate axis;
    axis.name = AxisUpdate::Name{"pressure", "Pa"};
    EXPECT_EQ(divideAxis(axis, {0, 4e6}, 600, Qt::Horizontal, m_Font).unit, "MPa");
    EXPECT_FALSE(divideAxis(axis, {1e9, 1e9 + 1e-3}, 600, Qt::Horizontal, m_Font).offset.isEmpty());
    axis.isTime = true;
    EXPECT_TRUE(divideAxis(axis, {1.7e9, 1.7e9 + 1}, 600, Qt::Horizontal, m_Font).unit.startsWith("UTC"));
}

TEST_F(DivideAxisTest, HasTwoNumbersWhereThereIsRoomForThem)
{
    const auto labels = [&](double from, double to, double lines, Qt::Orientation orientation = Qt::Vertical) {
        return divideAxis({}, {from, to}, lines * m_Font.height(), orientation, m_Font).labels;
    };
    EXPECT_EQ(labels(-3.3, 3.3, 7), QStringList({"−2", "0", "2"}));
    EXPECT_EQ(labels(-3.3, 3.3, 4), QStringList({"−2", "2"}));
    EXPECT_EQ(labels(-3.3, 3.3, 1.4), QStringList("0")) << "there is no room for two";
    EXPECT_EQ(labels(-3.3, 3.3, 12, Qt::Horizontal).size(), 3);
    std::uniform_real_distribution<double> exponent(-12, 12);
    for (int i = 0; i < 1000; ++i) {
        const double from = std::pow(10, exponent(m_Random)) * (i % 2 ? 1 : -1);
        const double length = std::abs(from) * std::pow(10, exponent(m_Random) / 4);
        EXPECT_GE(labels(from, from + length, 4).size(), 2) << from << " to " << from + length;
    }
}

// Until it is destroyed the program is in that time zone.
class InTimeZone
{
public:
    explicit InTimeZone(const char* zone) { qputenv("TZ", zone); }
    InTimeZone(const InTimeZone&) = delete;
    InTimeZone& operator=(const InTimeZone&) = delete;
    ~InTimeZone() { m_Before.isNull() ? qunsetenv("TZ") : qputenv("TZ", m_Before); }

private:
    QByteArray m_Before = qgetenv("TZ");
};

TEST_F(DivideAxisTest, NamesBothZonesWhereTheClockChanges)
{
    const InTimeZone berlin("Europe/Berlin");
    if (QTimeZone::systemTimeZone().id() != "Europe/Berlin")
        GTEST_SKIP() << "the time zone is not the program's to choose";
    AxisUpdate axis;
    axis.isTime = true;
    const auto zoneOf = [&](double perSecond, double pixels) {
        const double change = 1'711'846'800; // to summer time
        const AxisUpdate::Range range{(change - 43200) * perSecond, (change + 43200) * perSecond};
        return divideAxis(axis, range, pixels, Qt::Horizontal, m_Font).unit.toStdString();
    };
    EXPECT_EQ(zoneOf(1, 1000), "UTC+01:00, +02:00 from 31 Mar 02:00");
    EXPECT_EQ(zoneOf(1000, 1000), "UTC+01:00, +02:00 from 31 Mar 02:00");
    EXPECT_EQ(zoneOf(1, 10 * m_Font.height()), "UTC+01:00, +02:00") << "where there is little room";
}

TEST_F(DivideAxisTest, ADividerAnswersEachQuestionAnewThatIsNotItsLast)
{
    AxisUpdate axis;
    AxisUpdate::Range range{0, 4e6};
    double pixels = 600;
    QFont font = QApplication::font();
    AxisDivider divider;
    const auto expectAsDivided = [&] {
        const AxisDivision expected = divideAxis(axis, range, pixels, Qt::Horizontal, QFontMetricsF(font));
        for (int asked = 0; asked < 2; ++asked) {
            const AxisDivision& division = divider.divide(axis, range, pixels, Qt::Horizontal, font);
            EXPECT_EQ(division.labels, expected.labels);
            EXPECT_EQ(division.ticks, expected.ticks);
            EXPECT_EQ(division.unit, expected.unit);
        }
    };
    expectAsDivided();
    axis.name = AxisUpdate::Name{"pressure", "Pa"};
    expectAsDivided();
    range.from = 1e6;
    expectAsDivided();
    range.to = 9e6;
    expectAsDivided();
    pixels = 200;
    expectAsDivided();
    font.setPointSizeF(40);
    expectAsDivided();
    axis.isLog = true;
    expectAsDivided();
    axis.isTime = true;
    expectAsDivided();
}

} // namespace

} // namespace tavo
