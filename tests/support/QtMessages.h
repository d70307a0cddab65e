#pragma once

#include <QRegularExpression>

namespace tavo {

// From now on a warning or worse that Qt logs fails the running test, unless the test expects it. Messages that come
// while no test runs go to standard error.
void watchQtMessages();

// While it lives, Qt warnings in which the pattern is found are expected; at its end the test fails if none has come.
//
//     const ExpectedQtWarning expected("QMetaObject::connectSlotsByName: No matching signal");
class ExpectedQtWarning
{
public:
    explicit ExpectedQtWarning(const QString& pattern);
    ~ExpectedQtWarning();
    ExpectedQtWarning(const ExpectedQtWarning&) = delete;
    ExpectedQtWarning& operator=(const ExpectedQtWarning&) = delete;

    // Whether the message is one that is expected; if so, it has come.
    bool accept(const QString& message);

private:
    QRegularExpression m_Expression;
    bool m_HasCome = false;
};

} // namespace tavo
