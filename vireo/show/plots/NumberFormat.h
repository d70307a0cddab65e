#pragma once

#include <QString>

namespace tavo {

// How the numbers of one axis are written: all of them alike, with as many digits as it takes to tell them apart.
//
// Large and small numbers are counted in thousands, millions and so on: by a prefix of the unit, if it is one that
// takes prefixes, or else by a power of ten. Where a number would need more than nine digits, what all of them share is
// said once, as an offset, and they count from there.
class NumberFormat
{
public:
    // For the multiples of `step` from one number to another.
    NumberFormat(double from, double to, double step, const QString& unit);

    QString label(double value) const;

    // In what the labels count, such as "kPa", "×10⁶" or "×10⁶ rpm".
    const QString& unit() const { return m_CountedUnit; }

    // From where they count, with its sign and unit; empty if from zero.
    QString offset() const;

private:
    double m_Step;
    QString m_Unit;
    QString m_CountedUnit;
    double m_Offset = 0;
    double m_OffsetStep = 1; // of which the offset is a multiple
    int m_Exponent = 0;
    int m_Decimals = 0;
};

// A number with so many digits behind its point, and thin spaces between its thousands.
QString writtenOut(double value, int decimals);

// A power of ten, to the last bit, which std::pow() is not everywhere.
double tenTo(int exponent);

// A power of ten, such as "10⁶".
QString powerOfTen(int exponent);

} // namespace tavo
