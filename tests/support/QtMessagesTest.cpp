#include "tests/support/QtMessages.h"

#include <QApplication>
#include <QtDebug>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace tavo {

TEST(QtMessagesTest, RunsWithAnApplication)
{
    EXPECT_NE(qApp, nullptr);
}

TEST(QtMessagesTest, FailTheTestWhenTheyAreUnexpected)
{
    EXPECT_NONFATAL_FAILURE(qWarning("odd thing"), "unexpected Qt warning: odd thing");
    EXPECT_NONFATAL_FAILURE(qCritical("bad thing"), "unexpected Qt warning: bad thing");
}

TEST(QtMessagesTest, AreAcceptedWhenTheyAreExpected)
{
    const ExpectedQtWarning expected("^odd .* 7$");
    qWarning("odd thing 7");
    EXPECT_NONFATAL_FAILURE(qWarning("odd thing 8"), "odd thing 8");
}

TEST(QtMessagesTest, FailTheTestWhenAnExpectedOneDoesNotCome)
{
    EXPECT_NONFATAL_FAILURE(ExpectedQtWarning("odd thing"), "no Qt warning like 'odd thing' came");
}

TEST(QtMessagesTest, MayBeOfNoConcern)
{
    qDebug("a remark");
}

} // namespace tavo
