#include <QApplication>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "vireo/show/plots/ticksOfAxis.h"
#include "vireo/show/scenes/colourBar.h"
#include "vireo/show/scenes/scaleBar.h"

namespace tavo {

namespace {

QString plain(QString text)
{
    return text.replace(QChar(0x2009), ' ');
}

TEST(ScaleBarTest, HasTheLongestRoundLengthThatFits)
{
    const ScaleBar bar = scaleBarOf(0.013, 200, "m");
    EXPECT_DOUBLE_EQ(bar.length, 2);
    EXPECT_NEAR(bar.pixels, 2 / 0.013, 1e-9);
    EXPECT_EQ(bar.label, "2 m");
    EXPECT_EQ(scaleBarOf(1e-9, 100, "m").label, "100 nm");
    EXPECT_EQ(scaleBarOf(1, 100).label, "100");
    EXPECT_EQ(scaleBarOf(1, 99.9).label, "50");
    EXPECT_EQ(plain(scaleBarOf(500, 100).label), "50 000");
    EXPECT_EQ(scaleBarOf(1e5, 100).label, QStringLiteral("10 ×10⁶"));
}

TEST(ScaleBarTest, HasARoundLengthAtEveryScale)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> exponent(-9, 9);
    for (int i = 0; i < 1000; ++i) {
        const double unitsPerPixel = std::pow(10, exponent(random));
        const ScaleBar bar = scaleBarOf(unitsPerPixel, 150);
        EXPECT_LE(bar.pixels, 150 * (1 + 1e-6));
        EXPECT_GT(bar.pixels, 150 / 2.51);
        const double leading = bar.length / std::pow(10, std::floor(std::log10(bar.length) + 1e-9));
        EXPECT_TRUE(std::abs(leading - 1) < 1e-6 || std::abs(leading - 2) < 1e-6 || std::abs(leading - 5) < 1e-6)
            << bar.length;
    }
}

TEST(ScaleBarTest, IsNoneWhereNothingHasASize)
{
    EXPECT_EQ(scaleBarOf(0, 100).pixels, 0);
    EXPECT_EQ(scaleBarOf(NAN, 100).pixels, 0);
    EXPECT_EQ(scaleBarOf(INFINITY, 100).pixels, 0);
}

TEST(ScaleBarTest, IsDrawnWithItsLabelAbove)
{
    QImage picture(200, 60, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setPen(Qt::black);
    drawScaleBar(painter, scaleBarOf(1, 100), {20, 50});
    painter.end();
    EXPECT_EQ(picture.pixel(20, 50), qRgb(0, 0, 0));
    EXPECT_EQ(picture.pixel(119, 50), qRgb(0, 0, 0));
    EXPECT_EQ(picture.pixel(125, 50), qRgb(255, 255, 255));
    bool hasLabel = false;
    for (int x = 50; x < 90; ++x)
        for (int y = 20; y < 45; ++y)
            hasLabel = hasLabel || picture.pixel(x, y) != qRgb(255, 255, 255);
    EXPECT_TRUE(hasLabel);
}

TEST(ColourBarTest, HasItsNumbersWhereTheColoursAre)
{
    const QFontMetricsF font(QApplication::font());
    const ColourBarNumbers numbers = colourBarNumbers({10, 20, 15, 300}, -0.2, 1, "height", font);
    EXPECT_EQ(numbers.title, "height");
    ASSERT_GE(numbers.ticks.size(), 4u);
    for (const ColourBarNumbers::Tick& tick : numbers.ticks) {
        const double value = QString(tick.label).replace(QChar(0x2212), '-').toDouble();
        EXPECT_NEAR(tick.y, 320 - 300 * (value + 0.2) / 1.2, 1e-6) << tick.label.toStdString();
    }
}

TEST(ColourBarTest, SaysInWhatItsNumbersCountAndFromWhere)
{
    const QFontMetricsF font(QApplication::font());
    const QRectF bar(10, 20, 15, 300);
    EXPECT_EQ(colourBarNumbers(bar, 0, 3e6, "p", font).title, QStringLiteral("p  ×10⁶"));
    EXPECT_EQ(plain(colourBarNumbers(bar, 5.5e6, 5.5e6 + 0.02, "", font).title), "+5 500 000");
}

TEST(ColourBarTest, HasOneNumberIfAllValuesAreEqual)
{
    const QFontMetricsF font(QApplication::font());
    const ColourBarNumbers numbers = colourBarNumbers({10, 20, 15, 300}, 7, 7, "field", font);
    ASSERT_EQ(numbers.ticks.size(), 1u);
    EXPECT_EQ(numbers.ticks[0].y, 170);
    EXPECT_EQ(numbers.ticks[0].label.toDouble(), 7);
}

TEST(ColourBarTest, HasTwoNumbersWhereThereIsRoomForThem)
{
    const QFontMetricsF font(QApplication::font());
    for (const double to : {125.006, 125.3, 131.0, 180.0})
        EXPECT_GE(colourBarNumbers({10, 20, 15, 4 * font.height()}, 124.993, to, "z", font).ticks.size(), 2u) << to;
}

TEST(ColourBarTest, TheSmallestNumbersThereAreAreNumbers)
{
    const QFontMetricsF font(QApplication::font());
    for (const double largest : {5e-324, 1e-322, 3e-315, 1e-310, 2e-308, 1e-300, 1e-290})
        for (const double least : {0.0, -largest, largest}) {
            const ColourBarNumbers numbers = colourBarNumbers({10, 20, 15, 300}, least, largest, "field", font);
            ASSERT_FALSE(numbers.ticks.empty()) << least << " to " << largest;
            for (const ColourBarNumbers::Tick& tick : numbers.ticks) {
                EXPECT_FALSE(tick.label.contains("nan") || tick.label.contains("inf")) << tick.label.toStdString();
                EXPECT_TRUE(tick.y >= 19 && tick.y <= 321) << tick.y << ' ' << least << " to " << largest;
            }
            EXPECT_FALSE(numbers.title.contains("nan") || numbers.title.contains("inf"));
        }
}

TEST(ColourBarTest, IsDrawnFromTheLeastColourUp)
{
    QImage picture(100, 300, QImage::Format_RGB32);
    picture.fill(Qt::white);
    const ColourMap map = findColourMap("viridis").value();
    QPainter painter(&picture);
    painter.setPen(Qt::black);
    drawColourBar(painter, {10, 30, 20, 256}, map, 0, 1, "field");
    painter.end();
    for (const int i : {5, 100, 250}) {
        const RGBA8& colour = map.entries()[static_cast<std::size_t>(i)];
        const QColor drawn = picture.pixelColor(20, 285 - i);
        EXPECT_NEAR(drawn.red(), colour[0], 3) << i;
        EXPECT_NEAR(drawn.green(), colour[1], 3) << i;
        EXPECT_NEAR(drawn.blue(), colour[2], 3) << i;
    }
    bool hasNumbers = false;
    for (int y = 0; y < 300; ++y)
        hasNumbers = hasNumbers || picture.pixel(42, y) != qRgb(255, 255, 255);
    EXPECT_TRUE(hasNumbers);
}

TEST(TicksOfAxisTest, AreThoseOfPlots)
{
    const QFontMetricsF font(QApplication::font());
    const AxisTicks ticks = ticksOfAxis(0, 1, 300, Qt::Vertical, font, "Pa");
    ASSERT_GE(ticks.places.size(), 5u);
    EXPECT_EQ(ticks.labels.size(), static_cast<int>(ticks.places.size()));
    EXPECT_EQ(ticks.unit, "Pa");
    EXPECT_EQ(ticks.offset, "");
    EXPECT_EQ(ticksOfAxis(3, 3, 300, Qt::Vertical, font).places, std::vector<double>{3});
    EXPECT_EQ(ticksOfAxis(0, 0, 300, Qt::Vertical, font).labels, QStringList{"0"});
}

TEST(TicksOfAxisTest, ASingleNumberHasTheDigitsThatTellIt)
{
    const QFontMetricsF font(QApplication::font());
    const auto written = [&font](double number) {
        const AxisTicks ticks = ticksOfAxis(number, number, 300, Qt::Vertical, font, "m");
        EXPECT_EQ(ticks.labels.size(), 1);
        return plain((ticks.labels + QStringList{ticks.unit, ticks.offset}).join('|')).toStdString();
    };
    EXPECT_EQ(written(5), "5|m|");
    EXPECT_EQ(written(-0.25), "−0.25|m|");
    EXPECT_EQ(written(1.0 / 3), "0.333333|m|");
    EXPECT_EQ(written(0.1F), "0.1|m|") << "what rounding to float adds is left out";
    EXPECT_EQ(written(5.5e6), "5.5|Mm|");
    EXPECT_EQ(written(5500123.625), "0.625|m|+5 500 123 m") << "far from zero, as on a short axis";
    EXPECT_EQ(written(1e300), "1|×10³⁰⁰ m|") << "whatever it is";
}

} // namespace

} // namespace tavo
