// Programs that use the front door in all the ways that programs have. VIREO_TEST_PROGRAM names one; it writes what it
// found to its standard output.
#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "tavo/base/debug/DebugOutput.h"
#include "tests/tavo/base/debug/TextDisplayer.h"
#include "vireo/displayers/GLEventDisplayer.h"
#include "vireo/displayers/GLGraphDisplayer.h"
#include "vireo/show/show.h"

namespace {

using namespace std::chrono_literals;

const std::vector<double> SAMPLES{3, 1, 2};

std::string variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

bool isProgram(const char* name)
{
    return variable("VIREO_TEST_PROGRAM") == name;
}

void say(const std::string& text)
{
    std::printf("%s\n", text.c_str());
    std::fflush(stdout);
}

void say(const char* call, bool answer)
{
    say(std::string(call) + (answer ? ": true" : ": false"));
}

void sayData(const std::string& name)
{
    const std::string file = name + ".csv";
    say("saveData", tavo::saveData(name, file));
    std::ifstream text(file);
    std::string line;
    std::getline(text, line); // with the names
    while (std::getline(text, line))
        say(line);
}

// Closes the window as often as it is opened.
class Closer
{
public:
    ~Closer() { m_IsOver = true, m_Thread.join(); }

private:
    std::atomic<bool> m_IsOver{false};
    std::thread m_Thread{[this] {
        while (!m_IsOver) {
            tavo::closeWindow();
            std::this_thread::sleep_for(10ms);
        }
    }};
};

// A QApplication as most programs have it.
struct Application
{
    char name[8] = "program";
    char* arguments[2] = {name, nullptr};
    int numArguments = 1;
    QApplication application{numArguments, arguments};
};

QWidget* visibleWindow()
{
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->isVisible())
            return widget;
    return nullptr;
}

// Static objects that send before main and behind it.
struct Early
{
    Early()
    {
        if (isProgram("sends before main"))
            tavo::plot("early").curve("y", SAMPLES);
    }
    ~Early()
    {
        if (!isProgram("calls in static destructors"))
            return;
        tavo::plot("late").curve("y", SAMPLES).append("z", 1, 2);
        say("openWindow", tavo::openWindow());
        say("savePicture", tavo::savePicture("late", "late.png"));
        tavo::show();
        tavo::pump();
        tavo::remove("late");
        tavo::clear();
        tavo::closeWindow();
    }
};
const Early early;

void showAndSave(const std::string& name)
{
    {
        const Closer closer;
        tavo::show();
    }
    sayData(name);
}

void withoutQt()
{
    tavo::plot("p").curve("y", SAMPLES);
    showAndSave("p");
}

void showsTwice()
{
    withoutQt();
    tavo::plot("p").curve("y", {7});
    showAndSave("p");
}

void sendsFromAWorker()
{
    std::thread([] { tavo::plot("p").curve("y", SAMPLES); }).join();
    std::thread([] { showAndSave("p"); }).join();
}

void pumps()
{
    const Closer closer;
    int numSamples = 0;
    while (tavo::pump())
        tavo::plot("p").append("y", numSamples, numSamples), ++numSamples;
    say("the window was closed");
}

void opensAWindow()
{
    say("openWindow", tavo::openWindow());
    tavo::plot("p").curve("y", SAMPLES);
    sayData("p");
    say("pump", tavo::pump());
}

void sendsAfterTheApplication()
{
    {
        const Application program;
        tavo::plot("p").curve("y", SAMPLES);
        QCoreApplication::processEvents();
        sayData("p");
    }
    tavo::plot("p").curve("y", {1});
    tavo::plot("p").remove("y");
    tavo::closeWindow();
}

void sendsBeforeTheApplication()
{
    tavo::plot("p").curve("y", SAMPLES);
    const Application program;
    while (!visibleWindow())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    say("the window is open");
    sayData("p");
}

void showsWithAnApplication()
{
    const Application program;
    tavo::plot("p").curve("y", SAMPLES);
    showAndSave("p");
    say("pump", tavo::pump());
}

void showsFromAWorkerOfAnApplication()
{
    const Application program;
    std::thread worker([] {
        tavo::plot("p").curve("y", SAMPLES);
        showAndSave("p");
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    });
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::exec();
    worker.join();
}

void hasNoWidgets()
{
    char name[] = "program";
    char* arguments[] = {name, nullptr};
    int numArguments = 1;
    const QCoreApplication application(numArguments, arguments);
    tavo::plot("p").curve("y", SAMPLES);
    QCoreApplication::processEvents();
    tavo::show();
    say("openWindow", tavo::openWindow());
    say("pump", tavo::pump());
    say("savePicture", tavo::savePicture("p", "p.png"));
    sayData("p");
}

// Its end is in the middle of everything.
void sendForever()
{
    for (int i = 0;; ++i) {
        const std::vector<double> samples(1000, i);
        tavo::plot("p").curve("y", samples).append("z", i, i);
        tavo::plot("q" + std::to_string(i % 3)).curve("y", samples);
        if (i % 50 == 0)
            tavo::remove("p");
    }
}

void endsWhileAWorkerSends()
{
    std::thread(sendForever).detach();
    tavo::openWindow();
    std::this_thread::sleep_for(100ms);
}

void endsWhileAWorkerCalls()
{
    tavo::plot("p").curve("y", SAMPLES);
    std::thread([] {
        for (;;) {
            tavo::savePicture("p", "p.png", 50, 50);
            tavo::pump();
            tavo::show();
            tavo::openWindow();
        }
    }).detach();
    std::this_thread::sleep_for(100ms);
}

// VIREO_TEST_EXIT says which thread calls exit(), and how many milliseconds after the start.
void exits()
{
    std::string thread;
    int milliseconds = 0;
    std::istringstream(variable("VIREO_TEST_EXIT")) >> thread >> milliseconds;
    tavo::plot("p").curve("y", SAMPLES);
    tavo::openWindow();
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    if (thread == "worker")
        std::thread([] { std::exit(3); }).join();
    if (thread == "window") {
        QMetaObject::invokeMethod(qApp, [] { std::exit(3); });
        std::this_thread::sleep_for(1min);
    }
    std::exit(3);
}

void neverShows()
{
    tavo::plot("p").curve("y", SAMPLES);
}

void sendsAndShows()
{
    tavo::plot("p").curve("y", SAMPLES);
    tavo::show();
}

void showsBeforeItSends()
{
    tavo::show();
    tavo::plot("p").curve("y", SAMPLES);
}

void showsNothing()
{
    tavo::show();
    tavo::plot("p").curve("y", SAMPLES);
    tavo::remove("p");
    tavo::show();
}

void makesAnotherApplication()
{
    say("openWindow", tavo::openWindow());
    const Application program;
}

void savesAPictureBeforeTheApplication()
{
    tavo::plot("p").curve("y", SAMPLES);
    say("savePicture", tavo::savePicture("p", "p.png"));
    const Application program;
}

void savesDataAroundApplications()
{
    tavo::plot("p").curve("x", {0}).curve("y", SAMPLES).remove("x").append("y", 3, 7);
    sayData("p");
    for (int i = 0; i < 2; ++i) {
        {
            const Application program;
            QCoreApplication::processEvents();
            sayData("p");
        }
        say("saveData", tavo::saveData("p", "gone.csv")); // it went with the application
        tavo::plot("p").curve("y", {i});
        sayData("p");
    }
    const Application program;
}

void callsEverything()
{
    tavo::plot("p").curve("y", SAMPLES);
    tavo::show();
    say("openWindow", tavo::openWindow());
    say("pump", tavo::pump());
    say("savePicture", tavo::savePicture("p", "p.png", 300, 200));
    say("savePictures", tavo::savePictures("folder"));
    say("saveData", tavo::saveData("p", "p.csv"));
}

void doesNotServeEvents()
{
    const Application program;
    tavo::plot("p").curve("y", SAMPLES);
    std::thread([] { say("savePicture", tavo::savePicture("p", "p.png")); }).join();
}

// Counts what comes from mouse and keys.
class PersonsEvents : public QObject
{
public:
    bool eventFilter(QObject*, QEvent* event) override
    {
        numMoves += event->type() == QEvent::MouseMove || event->type() == QEvent::Enter;
        numClicks += event->type() == QEvent::MouseButtonPress;
        numKeys += event->type() == QEvent::KeyPress;
        return false;
    }

    std::atomic<int> numMoves{0};
    std::atomic<int> numClicks{0};
    std::atomic<int> numKeys{0};
};

// Until something of it comes: the window may not be there yet, and a compositor under load moves its pointer late.
void useXdotool(const std::string& arguments, const std::atomic<int>& number)
{
    while (number == 0 && std::system(("xdotool " + arguments).c_str()) == 0)
        std::this_thread::sleep_for(50ms);
}

// VIREO_TEST_PLACE is where on the screen the window is.
void takesKeysAndPointer()
{
    tavo::plot("p").curve("y", SAMPLES);
    if (!tavo::openWindow())
        return;
    static PersonsEvents events;
    events.moveToThread(qApp->thread());
    QMetaObject::invokeMethod(
        qApp, [] { qApp->installEventFilter(&events); }, Qt::BlockingQueuedConnection);
    say(QGuiApplication::platformName().toStdString());
    // The compositor counts from where it first saw the pointer, right or wrong. Both stop in the corner.
    const std::string toWindow = "mousemove 0 0 mousemove " + variable("VIREO_TEST_PLACE") + " mousemove_relative 3 3 ";
    useXdotool(toWindow, events.numMoves);
    useXdotool(toWindow + "click 1", events.numClicks);
    useXdotool("key Right", events.numKeys);
    say("savePicture", tavo::savePicture("p", "p.png", 300, 200));
}

void sendPlotAndScene()
{
    tavo::plot("p").curve("y", SAMPLES);
    tavo::scene("s").mesh("m", {0, 0, 0, 1, 0, 0, 0, 0, 1}, {0, 1, 2}).colour({255, 0, 0, 255});
}

void savePicturesOf(const std::vector<std::string>& names)
{
    for (const std::string& name : names)
        say("savePicture", tavo::savePicture(name, name + ".png", 400, 300));
}

void savesPicturesWithoutQt()
{
    sendPlotAndScene();
    savePicturesOf({"p", "s"});
}

bool isAnyWindowSeen()
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    return std::any_of(windows.begin(), windows.end(), [](const QWindow* window) { return window->isVisible(); });
}

void savesPicturesFirst(const std::function<void()>& open)
{
    sendPlotAndScene();
    savePicturesOf({"p", "s"});
    say("is a window seen", isAnyWindowSeen());
    open();
    tavo::savePicture("p", "p.png"); // behind which all is done that waited
    say("is a window seen", isAnyWindowSeen());
}

void savesPicturesBeforeTheWindow()
{
    savesPicturesFirst([] { tavo::openWindow(); });
}

void savesPicturesBeforeItPumps()
{
    savesPicturesFirst([] { tavo::pump(); });
}

void savesPicturesWithQt()
{
    const Application program;
    tavo::GLEventObject::init(tavo::Object::getClass());
    tavo::GLEventDisplayer::init(tavo::EventDisplayer::getClass());
    tavo::GLGraphDisplayer::init(tavo::GLEventObject::getClass());
    tavo::debugOutputGraph("graph", std::vector<float>{1, 3, 2}, {255, 0, 0, 255});
    sendPlotAndScene();
    savePicturesOf({"p", "s", "graph"});
    say("is a window seen", isAnyWindowSeen());
}

void sendsToADisplayer()
{
    const Application program;
    tavo::TextDisplayer::init(tavo::EventDisplayer::getClass());
    const tavo::TextEvent event("text");
    tavo::debugOutput.displayEvent(tavo::TextDisplayer::getClass(), "section", &event);
    tavo::plot("p").curve("y", SAMPLES);
}

void savesNamesOfLetters()
{
    for (const char* name : {"\xC3\xA4", "\xC3\xB6", "\xE6\x97\xA5"})
        tavo::plot(name).curve("y", SAMPLES);
    say("savePictures", tavo::savePictures("letters"));
}

void savesToDisk()
{
    tavo::plot("p").curve("y", std::vector<double>(1000));
    for (const char* file : {"disk/p.png", "disk/p.svg", "disk/p.pdf"})
        say("savePicture", tavo::savePicture("p", file));
    say("savePictures", tavo::savePictures("disk"));
    say("saveData", tavo::saveData("p", "disk/p.csv"));
}

void savesBadly()
{
    tavo::plot("p").curve("y", SAMPLES);
    for (const char* file : {"no/such/folder/p.png", ".", "full/p.png", "p.unknown"})
        say("savePicture", tavo::savePicture("p", file));
    for (const auto& [width, height] : {std::pair(0, 100), {100, -1}, {1'000'000, 1'000'000}})
        say("savePicture", tavo::savePicture("p", "p.png", width, height));
    say("savePicture", tavo::savePicture("no\nview", "p.png"));
    say("savePictures", tavo::savePictures("full/folder"));
    for (const char* file : {"full/p.csv", "p.xlsx", "p"})
        say("saveData", tavo::saveData("p", file));
    say("saveData", tavo::saveData("", "p.csv"));
}

void sendsOddThings()
{
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const std::string& name : {std::string(), std::string(100'000, 'x'), std::string("\xFF\xFE"),
             std::string("a/b"), std::string("a\nb"), std::string("../c"), std::string("a\0b", 3)})
        tavo::plot(name).curve(name, SAMPLES).title(name).xAxis(name, name).yAxis(name, name);
    tavo::plot("values")
        .curve("none", std::vector<double>())
        .curve("NaN", {nan, nan})
        .curve("infinite", {infinity, 1.0, -infinity})
        .curve("x infinite", {-infinity, 0.0, infinity}, SAMPLES)
        .curve("x NaN", {nan, nan, nan}, SAMPLES)
        .curve("huge", {-1e308, 1e308})
        .curve("one", {5})
        .curve("many", std::vector<float>(1'000'000, 1.0F))
        .append("none", std::vector<double>(), std::vector<double>())
        .append("infinite", infinity, nan)
        .keep("kept", 0)
        .append("kept", 1, 1)
        .xRange(nan, infinity)
        .yRange(1, 1);
    say("openWindow", tavo::openWindow());
    say("savePictures", tavo::savePictures("folder"));
    for (const char* name : {"values", "", "a/b"})
        say("saveData", tavo::saveData(name, "data.csv"));
    say("log: " + tavo::debugOutput.getText());
}

void sendsManySamples()
{
    std::vector<float> samples(100'000'000);
    samples[77'777'777] = 5;
    tavo::plot("p").curve("y", std::move(samples));
    say("savePicture", tavo::savePicture("p", "p.png", 300, 200));
}

void stylesWhatNeverComes()
{
    say("openWindow", tavo::openWindow());
    tavo::plot("p").style("y", "dashed");
    tavo::plot("p").curve("y", SAMPLES).colour("z", {255, 0, 0, 255});
    while (tavo::debugOutput.getText().find('\n') == std::string::npos)
        std::this_thread::sleep_for(10ms);
    say(tavo::debugOutput.getText());
}

void sendMistakes()
{
    tavo::plot("p").curve("y", SAMPLES).colour("z", {255, 0, 0, 255});
    tavo::scene("s").cloud("c", {0, 0, 0, 1, 1, 1}).scalar("height", SAMPLES);
}

void isMistakenAtItsEnd()
{
    say("openWindow", tavo::openWindow());
    sendMistakes();
}

void isMistakenAtTheEndOfItsApplication()
{
    const Application program;
    tavo::plot("p").curve("y", SAMPLES);
    while (!visibleWindow())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    sendMistakes();
}

void saveDataBehindMain()
{
    std::atexit([] { say("saveData", tavo::saveData("p", "p.csv")); });
}

void savesBehindMain()
{
    saveDataBehindMain();
    tavo::plot("p").curve("y", SAMPLES);
    tavo::savePicture("p", "p.png");
}

void savesFirstBehindMain()
{
    tavo::plot("p").curve("y", SAMPLES);
    tavo::savePicture("p", "p.png");
    saveDataBehindMain();
}

const std::map<std::string, std::function<void()>> programs{
    {"without Qt", withoutQt},
    {"shows twice", showsTwice},
    {"sends before main", [] { showAndSave("early"); }},
    {"calls in static destructors", opensAWindow},
    {"sends from a worker", sendsFromAWorker},
    {"pumps", pumps},
    {"opens a window", opensAWindow},
    {"sends after the application", sendsAfterTheApplication},
    {"sends before the application", sendsBeforeTheApplication},
    {"shows with an application", showsWithAnApplication},
    {"shows from a worker of an application", showsFromAWorkerOfAnApplication},
    {"has no widgets", hasNoWidgets},
    {"ends while a worker sends", endsWhileAWorkerSends},
    {"ends while a worker calls", endsWhileAWorkerCalls},
    {"exits", exits},
    {"never shows", neverShows},
    {"sends and shows", sendsAndShows},
    {"shows before it sends", showsBeforeItSends},
    {"shows nothing", showsNothing},
    {"makes another application", makesAnotherApplication},
    {"saves a picture before the application", savesAPictureBeforeTheApplication},
    {"saves data around applications", savesDataAroundApplications},
    {"styles what never comes", stylesWhatNeverComes},
    {"is mistaken at its end", isMistakenAtItsEnd},
    {"is mistaken at the end of its application", isMistakenAtTheEndOfItsApplication},
    {"saves behind main", savesBehindMain},
    {"saves first behind main", savesFirstBehindMain},
    {"calls everything", callsEverything},
    {"does not serve events", doesNotServeEvents},
    {"saves badly", savesBadly},
    {"takes keys and pointer", takesKeysAndPointer},
    {"sends to a displayer", sendsToADisplayer},
    {"sends a plot and a scene", sendPlotAndScene},
    {"saves pictures without Qt", savesPicturesWithoutQt},
    {"saves pictures with Qt", savesPicturesWithQt},
    {"saves pictures before the window", savesPicturesBeforeTheWindow},
    {"saves pictures before it pumps", savesPicturesBeforeItPumps},
    {"saves names of letters", savesNamesOfLetters},
    {"saves to disk", savesToDisk},
    {"sends odd things", sendsOddThings},
    {"sends many samples", sendsManySamples},
};

} // namespace

int main()
{
    const auto program = programs.find(variable("VIREO_TEST_PROGRAM"));
    if (program == programs.end())
        return 99;
    program->second();
}
