#include "tests/support/QtMessages.h"

#include <QString>
#include <algorithm>
#include <cstdio>
#include <gtest/gtest.h>
#include <vector>

namespace tavo {

namespace {

std::vector<ExpectedQtWarning*>& expectedWarnings()
{
    static std::vector<ExpectedQtWarning*> warnings;
    return warnings;
}

bool isExpected(const QString& message)
{
    return std::any_of(expectedWarnings().begin(), expectedWarnings().end(),
        [&message](ExpectedQtWarning* warning) { return warning->accept(message); });
}

// Tests run without a window manager, which would not give the keyboard to a window that is just coming or going.
bool isForLackOfAWindowManager(const QString& message)
{
    return message.contains("(BadMatch)") && message.contains("(SetInputFocus)");
}

void handleMessage(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    const bool harmless = type == QtDebugMsg || type == QtInfoMsg || isForLackOfAWindowManager(message);
    if (harmless || !testing::UnitTest::GetInstance()->current_test_info())
        std::fprintf(stderr, "Qt: %s\n", qPrintable(message));
    else if (!isExpected(message))
        ADD_FAILURE() << "unexpected Qt warning: " << qPrintable(message);
}

} // namespace

void watchQtMessages()
{
    qInstallMessageHandler(handleMessage);
}

ExpectedQtWarning::ExpectedQtWarning(const QString& pattern)
    : m_Expression(pattern)
{
    expectedWarnings().push_back(this);
}

ExpectedQtWarning::~ExpectedQtWarning()
{
    std::erase(expectedWarnings(), this);
    EXPECT_TRUE(m_HasCome) << "no Qt warning like '" << qPrintable(m_Expression.pattern()) << "' came";
}

bool ExpectedQtWarning::accept(const QString& message)
{
    const bool accepted = m_Expression.match(message).hasMatch();
    m_HasCome |= accepted;
    return accepted;
}

} // namespace tavo
