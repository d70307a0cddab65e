#include "tests/support/QtMessages.h"

#include <QString>
#include <algorithm>
#include <cstdio>
#include <gtest/gtest.h>
#include <vector>

namespace vireo_test {

namespace {

std::vector<ExpectedQtWarning*>& expectedWarnings()
{
    static std::vector<ExpectedQtWarning*> warnings;
    return warnings;
}

bool isExpected(const std::string& message)
{
    return std::any_of(expectedWarnings().begin(), expectedWarnings().end(),
        [&message](ExpectedQtWarning* warning) { return warning->accept(message); });
}

void handleMessage(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    const std::string message = text.toStdString();
    const bool harmless = type == QtDebugMsg || type == QtInfoMsg;
    if (harmless || !testing::UnitTest::GetInstance()->current_test_info())
        std::fprintf(stderr, "Qt: %s\n", message.c_str());
    else if (!isExpected(message))
        ADD_FAILURE() << "unexpected Qt warning: " << message;
}

} // namespace

void watchQtMessages()
{
    qInstallMessageHandler(handleMessage);
}

ExpectedQtWarning::ExpectedQtWarning(const std::string& pattern)
    : m_Pattern(pattern)
    , m_Expression(pattern)
{
    expectedWarnings().push_back(this);
}

ExpectedQtWarning::~ExpectedQtWarning()
{
    std::erase(expectedWarnings(), this);
    EXPECT_TRUE(m_HasCome) << "no Qt warning like '" << m_Pattern << "' came";
}

bool ExpectedQtWarning::accept(const std::string& message)
{
    const bool accepted = std::regex_search(message, m_Expression);
    m_HasCome |= accepted;
    return accepted;
}

} // namespace vireo_test
