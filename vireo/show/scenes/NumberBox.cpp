#include "vireo/show/scenes/NumberBox.h"

#include <QLineEdit>
#include <algorithm>
#include <cfloat>
#include <cmath>

namespace tavo {

namespace {

constexpr int MOST_DECIMALS = DBL_MAX_10_EXP + DBL_DIG; // which Qt takes
constexpr double LARGEST_WRITTEN_OUT = 1e9;

} // namespace

NumberBox::NumberBox(QWidget* parent)
    : QDoubleSpinBox(parent)
{
    setDecimals(MOST_DECIMALS);
    setRange(-DBL_MAX, DBL_MAX);
    setKeyboardTracking(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void NumberBox::showValue(double value, double span)
{
    if (hasFocus() && lineEdit()->isModified())
        return;
    setSpan(span);
    if (value != this->value() || textFromValue(value) != lineEdit()->text())
        setValue(value);
}

// A thousandth of the span is seen, and a hundredth is a step.
void NumberBox::setSpan(double span)
{
    if (!(span > 0) || !std::isfinite(span))
        span = 1;
    const double exponent = std::floor(std::log10(span));
    m_Decimals = static_cast<int>(std::clamp(3 - exponent, 0.0, double(MOST_DECIMALS)));
    setSingleStep(std::pow(10, exponent - 2));
}

QString NumberBox::textFromValue(double value) const
{
    QLocale plain = locale();
    plain.setNumberOptions(QLocale::OmitGroupSeparator);
    const double size = std::abs(value);
    if (m_Decimals > 9 || size >= LARGEST_WRITTEN_OUT)
        return plain.toString(value, 'g', 9);
    return plain.toString(value == 0 ? 0.0 : value, 'f', m_Decimals); // no "-0"
}

double NumberBox::valueFromText(const QString& text) const
{
    bool isNumber = false;
    const double value = locale().toDouble(text.trimmed(), &isNumber);
    return isNumber ? value : this->value();
}

QValidator::State NumberBox::validate(QString& text, int&) const
{
    bool isNumber = false;
    const double value = locale().toDouble(text.trimmed(), &isNumber);
    return isNumber && std::isfinite(value) ? QValidator::Acceptable : QValidator::Intermediate;
}

QSize NumberBox::sizeHint() const
{
    return {fontMetrics().horizontalAdvance("-88888.888") + 2 * QDoubleSpinBox::sizeHint().height() / 2 + 12,
        QDoubleSpinBox::sizeHint().height()};
}

QSize NumberBox::minimumSizeHint() const
{
    return {fontMetrics().horizontalAdvance("-88.88") + 24, QDoubleSpinBox::minimumSizeHint().height()};
}

} // namespace tavo
