#include "vireo/show/plots/NumberFormat.h"

#include <gtest/gtest.h>

namespace tavo {

namespace {

// With plain spaces for thin ones.
std::string plain(QString text)
{
    return text.replace(QChar(0x2009), ' ').toStdString();
}

std::string labelOf(const NumberFormat& format, double value)
{
    return plain(format.label(value));
}

TEST(NumberFormatTest, TellsNeighboursApart)
{
    const NumberFormat pressure(101025, 101625, 100, "Pa");
    EXPECT_EQ(labelOf(pressure, 101100), "101 100");
    EXPECT_EQ(pressure.unit(), "Pa");
    EXPECT_EQ(labelOf(NumberFormat(0, 1, 0.2, ""), 0.2), "0.2");
    EXPECT_EQ(labelOf(NumberFormat(0, 1, 0.05, ""), 0.2), "0.20");
}

TEST(NumberFormatTest, WritesCoordinatesOut)
{
    for (const char* unit : {"", "m", "ft"}) {
        const NumberFormat coordinate(5'499'000, 5'501'000, 500, unit);
        EXPECT_EQ(labelOf(coordinate, 5'499'500), "5 499 500");
        EXPECT_EQ(coordinate.unit(), unit);
        EXPECT_EQ(labelOf(NumberFormat(-5'512'361, -5'512'360, 0.2, unit), -5'512'360.2), "−5 512 360.2");
    }
    EXPECT_EQ(labelOf(NumberFormat(5'400'000, 5'600'000, 50'000, ""), 5'450'000), "5.45") << "which is short";
    EXPECT_EQ(NumberFormat(55'499'000, 55'501'000, 500, "").unit(), "×10⁶") << "which would be long";
    EXPECT_EQ(plain(NumberFormat(5.5e6, 5.5e6 + 0.01, 0.001, "m").offset()), "+5 500 000 m");
}

TEST(NumberFormatTest, WritesNothingThatIsLeftOfSums)
{
    EXPECT_EQ(labelOf(NumberFormat(-1, 1, 0.5, ""), 0.1 + 0.2 - 0.3), "0.0");
    EXPECT_EQ(labelOf(NumberFormat(-20, 20, 5, ""), -5), "−5");
}

TEST(NumberFormatTest, GivesPrefixesToPlainUnitsAlone)
{
    EXPECT_EQ(NumberFormat(0, 3e6, 5e5, "Pa").unit(), "MPa");
    EXPECT_EQ(NumberFormat(0, 3e-9, 5e-10, "C").unit(), "nC");
    EXPECT_EQ(NumberFormat(0, 3e6, 5e5, "m/s").unit(), "Mm/s");
    EXPECT_EQ(NumberFormat(0, 3e-6, 5e-7, "s").unit(), "µs");
    EXPECT_EQ(NumberFormat(0, 3e6, 5e5, "s").unit(), "×10⁶ s");
    EXPECT_EQ(NumberFormat(0, 3e6, 5e5, "km").unit(), "×10⁶ km");
    EXPECT_EQ(NumberFormat(0, 3e6, 5e5, "°C").unit(), "×10⁶ °C");
    EXPECT_EQ(NumberFormat(0, 3e6, 5e5, "").unit(), "×10⁶");
    EXPECT_EQ(NumberFormat(0, 3e-6, 5e-7, "").unit(), "×10⁻⁶");
    EXPECT_EQ(NumberFormat(0, 3e30, 5e29, "Pa").unit(), "×10³⁰ Pa");
}

TEST(NumberFormatTest, CountsFromAnOffsetWhereLabelsGetLong)
{
    const NumberFormat seconds(1'700'000'000.001, 1'700'000'000.009, 0.001, "s");
    EXPECT_EQ(plain(seconds.offset()), "+1 700 000 000 s");
    EXPECT_EQ(seconds.unit(), "s");
    EXPECT_EQ(labelOf(seconds, 1'700'000'000.002), "0.002");
    const NumberFormat ids(-12'345'678'912, -12'345'678'900, 2, "");
    EXPECT_EQ(plain(ids.offset()), "−12 345 679 000");
    EXPECT_EQ(labelOf(ids, -12'345'678'910), "90");
    EXPECT_EQ(NumberFormat(0, 1e9, 1e8, "").offset(), "");
}

TEST(NumberFormatTest, CountsFromARoundNumberWithin)
{
    const NumberFormat nearOne(1 - 1.1e-12, 1 + 1.1e-12, 5e-13, "m");
    EXPECT_EQ(nearOne.offset(), "+1 m");
    EXPECT_EQ(nearOne.unit(), "pm");
    EXPECT_EQ(labelOf(nearOne, 1 - 1e-12), "−1.0");
    EXPECT_EQ(labelOf(nearOne, 1), "0.0");
    EXPECT_EQ(labelOf(nearOne, 1 + 1e-12), "1.0");
    EXPECT_EQ(plain(NumberFormat(-1e9 - 1e-3, -1e9 + 1e-3, 5e-4, "").offset()), "−1 000 000 000");
    EXPECT_EQ(NumberFormat(1.25 + 1e-12, 1.25 + 9e-12, 2e-12, "").offset(), "+1.25");
}

TEST(NumberFormatTest, KeepsItsOffsetWhileItIsMoved)
{
    const QString offset = NumberFormat(1e9 + 1, 1e9 + 1.008, 0.001, "").offset();
    for (int i = 0; i < 50; ++i)
        EXPECT_EQ(NumberFormat(1e9 + 1 + i * 1e-4, 1e9 + 1.008 + i * 1e-4, 0.001, "").offset(), offset);
}

TEST(NumberFormatTest, WritesTheLargestNumbers)
{
    EXPECT_EQ(labelOf(NumberFormat(-8e307, 8e307, 2e307, ""), -2e307), "−20");
    EXPECT_EQ(NumberFormat(-8e307, 8e307, 2e307, "").unit(), "×10³⁰⁶");
}

} // namespace

} // namespace tavo
