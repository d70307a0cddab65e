#include <QApplication>
#include <gtest/gtest.h>
#include <memory>

#include "tests/tavo/platform/ContextSource.h"

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    // Qt ends a process that it finds no X server for, so an application is only made where there is one.
    std::unique_ptr<QApplication> application;
    if (!GTEST_FLAG_GET(list_tests) && tavo::hasXServer())
        application = std::make_unique<QApplication>(argc, argv);
    return RUN_ALL_TESTS();
}
