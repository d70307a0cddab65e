#pragma once

#include <QDoubleSpinBox>

namespace tavo {

// A spin box for numbers of any size: it shows as many digits, and takes such steps, as the span calls for that the
// numbers are in.
class NumberBox : public QDoubleSpinBox
{
    Q_OBJECT

public:
    explicit NumberBox(QWidget* parent = nullptr);

    // Unless a person is typing another one.
    void showValue(double value, double span);

    QString textFromValue(double value) const override;
    double valueFromText(const QString& text) const override;
    QValidator::State validate(QString& text, int& position) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    void setSpan(double span);

    int m_Decimals = 3;
};

} // namespace tavo
