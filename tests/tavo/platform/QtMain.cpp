#include <QApplication>
#include <X11/Xlib.h>
#include <gtest/gtest.h>
#include <memory>

namespace {

// Qt ends a process that it finds no X server for, so an application is only made where there is one.
bool hasXServer()
{
    Display* display = XOpenDisplay(nullptr);
    if (display)
        XCloseDisplay(display);
    return display != nullptr;
}

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    std::unique_ptr<QApplication> application;
    if (!GTEST_FLAG_GET(list_tests) && hasXServer())
        application = std::make_unique<QApplication>(argc, argv);
    return RUN_ALL_TESTS();
}
