#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>

#include "tests/support/QtMessages.h"
#include "tests/support/qtWindowSystem.h"

namespace {

// QApplication ends the process with a fatal message where its platform cannot start, for example because there is no X
// server. The tests are then skipped; the line says so in the words that a test runner looks for.
void skipIfPlatformCannotStart(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    std::fprintf(stderr, "Qt: %s\n", qPrintable(message));
    if (type == QtFatalMsg) {
        std::printf("[  SKIPPED ] Qt cannot start with QT_QPA_PLATFORM='%s' and DISPLAY='%s'\n",
            qgetenv("QT_QPA_PLATFORM").constData(), qgetenv("DISPLAY").constData());
        std::fflush(nullptr);
        std::_Exit(EXIT_SUCCESS);
    }
}

} // namespace

// The main function of test programs with widgets.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();

    qInstallMessageHandler(skipIfPlatformCannotStart);
    tavo::chooseQtWindowSystem();
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); // nobody can answer the system's own
    if (!qEnvironmentVariableIsSet("VIREO_SHOW") && !qEnvironmentVariableIsSet("VIREO_TEST_REMEMBERS"))
        qputenv("VIREO_SHOW", "fresh"); // whatever is remembered on this machine
    const QApplication application(argc, argv);
    tavo::watchQtMessages();
    return RUN_ALL_TESTS();
}
