#include "tests/soak/RandomSends.h"

#include <QApplication>
#include <QCheckBox>
#include <QGLWidget>
#include <QPushButton>
#include <QToolButton>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugSection.h"
#include "tavo/base/debug/DebugWindow.h"
#include "tavo/base/objects/PException.h"
#include "tests/support/userEvents.h"
#include "tests/vireo/displayers/TestEventObject.h"
#include "tests/vireo/displayers/TestPointSet.h"
#include "vireo/Library.h"
#include "vireo/displayers/GLEventDisplayer.h"
#include "vireo/displayers/GLEventDisplayerWidget.h"
#include "vireo/displayers/GLGraphDisplayer.h"
#include "vireo/displayers/GLPointCloudDisplayer.h"

#include <GL/gl.h>

namespace tavo {

namespace {

const std::vector<std::string>& names()
{
    static const std::vector<std::string> all = {"", "a", "b", "two words", "l\u00edne\nend", "\x1B[31mred",
        std::string("zero\0byte", 9), "&mnemonic <b>bold</b>", "\xFF not UTF-8", std::string(500, 'n')};
    return all;
}

} // namespace

RandomSends::RandomSends(unsigned int seed)
    : m_Random(seed)
{
    initVireo();
    GLEventDisplayer::init(EventDisplayer::getClass());
    GLGraphDisplayer::init(GLEventObject::getClass());
    std::string reason;
    m_WindowSystem = WindowSystem::open(reason);
    if (!m_WindowSystem)
        throw std::runtime_error(reason);
    m_Context = m_WindowSystem->makeContext(nullptr);
    m_Context->makeCurrent();
}

RandomSends::~RandomSends()
{
    delete debugOutput.getWindow();
    EXPECT_EQ(TestEventObject::s_NumLiving, 0) << "an object is lost";
    EXPECT_EQ(m_NumPointSets, 0) << "a point set is lost";
    shutdownVireo();
}

void RandomSends::step()
{
    switch (m_Events(m_Random)) {
    case 0: send(); break;
    case 1: clickButton(); break;
    case 2: dragInView(); break;
    case 3: useWheelOrKey(); break;
    case 4: changePanel(); break;
    case 5: changeSection(); break;
    case 6: takePicture(); break;
    case 7: changeWindow(); break;
    default: write(); break;
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    check();
}

// Mostly one that can be shown.
float RandomSends::anyNumber()
{
    constexpr std::array<float, 8> ODD = {0.0f, -0.0f, std::numeric_limits<float>::quiet_NaN(),
        std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
        std::numeric_limits<float>::max(), std::numeric_limits<float>::lowest(),
        std::numeric_limits<float>::denorm_min()};
    return chance(5) ? ODD[pick(ODD.size())] : static_cast<float>(pick(2001)) / 100 - 10;
}

template <unsigned int N>
std::vector<StaticVector<float, N>> RandomSends::anyPoints()
{
    constexpr std::array<std::size_t, 5> SIZES = {0, 1, 2, 30, 3000};
    std::vector<StaticVector<float, N>> points(SIZES[pick(SIZES.size())]);
    for (StaticVector<float, N>& point : points)
        for (unsigned int axis = 0; axis < N; ++axis)
            point[axis] = anyNumber();
    return points;
}

RGBA8 RandomSends::anyColour()
{
    RGBA8 colour;
    for (unsigned int i = 0; i < 4; ++i)
        colour[i] = static_cast<unsigned char>(pick(256));
    return colour;
}

DebugSection* RandomSends::anySection()
{
    const DebugWindow* const window = debugOutput.getWindow();
    if (!window || window->getSections().empty())
        return nullptr;
    return window->getSections()[pick(window->getSections().size())];
}

template <typename Widget>
Widget* RandomSends::anyWidget(const char* name)
{
    DebugSection* const section = anySection();
    return section ? section->findChild<Widget*>(name) : nullptr;
}

QWidget* RandomSends::anyView()
{
    DebugSection* const section = anySection();
    return section ? section->findChild<QGLWidget*>() : nullptr;
}

void RandomSends::send()
{
    const std::string name = names()[pick(names().size())];
    switch (pick(4)) {
    case 0: sendCloud(name); break;
    case 1: sendTroublemaker(name); break;
    default: sendGraphs(name); break;
    }
    m_SentNames.insert(name);
}

void RandomSends::sendGraphs(const std::string& name)
{
    switch (pick(4)) {
    case 0: debugOutputGraph(name, anyPoints<2>(), anyColour()); break;
    case 1: debugOutputGraph(name, anyPoints<3>(), anyColour()); break;
    case 2: debugOutputGraphs(name, std::vector{anyPoints<3>(), anyPoints<3>()}, {anyColour()}); break;
    default: {
        std::vector<float> values(pick(200));
        std::generate(values.begin(), values.end(), [this] { return anyNumber(); });
        debugOutputGraph(name, values, anyColour());
    }
    }
}

void RandomSends::sendCloud(const std::string& name)
{
    PointSet* const points = chance(10) ? nullptr : new TestPointSet(anyPoints<3>(), m_NumPointSets);
    auto* const cloud = new GLPointCloudDisplayer(points);
    cloud->setShowCoords(chance(50));
    sendGLEventObject(name, cloud);
}

void RandomSends::sendTroublemaker(const std::string& name)
{
    const auto points = anyPoints<3>();
    auto* const object = points.size() < 2 ? new TestEventObject : new TestEventObject({points[0], points[1]});
    object->hasPanel = chance(50);
    for (auto* const occasion :
        {&object->whenDrawn, &object->whenAskedForBox, &object->whenConfigured, &object->whenUpdated})
        if (chance(25))
            *occasion = anyTrouble();
    GLEventDisplayer::SetNewGLEventObject event(object, chance(50));
    EXPECT_TRUE(debugOutput.displayEvent(GLEventDisplayer::getClass(), name, &event));
}

std::function<void()> RandomSends::anyTrouble()
{
    switch (pick(10)) {
    case 0: return [] { throw PException("TestEventObject - in trouble"); };
    case 1: return [] { throw std::runtime_error("in trouble"); };
    case 2: return [] { throw std::bad_alloc(); };
    case 3: return [] { throw std::string("in trouble"); };
    case 4: return [] { throw "in trouble"; };
    case 5: return [] { throw 5; };
    case 6: return [] { glBegin(GL_LINES); };
    case 7: return [] { glPushMatrix(); };
    case 8: return [] { glEnable(GL_LINES); }; // which leaves an error
    default: return [] { debugOutput << "in trouble\n"; };
    }
}

void RandomSends::clickButton()
{
    constexpr std::array<const char*, 4> BUTTONS = {"pbIncreaseSize", "pbDecreaseSize", "pbConfigure", "pbConfigure"};
    if (auto* const button = anyWidget<QPushButton>(BUTTONS[pick(BUTTONS.size())]))
        clickMouse(button);
}

void RandomSends::dragInView()
{
    constexpr std::array<Qt::MouseButton, 3> BUTTONS = {Qt::LeftButton, Qt::MiddleButton, Qt::RightButton};
    const auto anyPosition = [this] {
        const int x = static_cast<int>(pick(400)) - 100;
        return QPoint(x, static_cast<int>(pick(300)) - 100);
    };
    const QPoint from = anyPosition();
    if (QWidget* const view = anyView())
        dragMouse(view, BUTTONS[pick(BUTTONS.size())], from, anyPosition());
}

void RandomSends::useWheelOrKey()
{
    constexpr std::array<Qt::Key, 8> KEYS = {
        Qt::Key_Home, Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_R, Qt::Key_Plus, Qt::Key_Escape};
    constexpr std::array<int, 4> TURNS = {120, -120, 12000, -12000};
    QWidget* const view = anyView();
    if (!view)
        return;
    if (chance(50)) {
        clickKey(view, KEYS[pick(KEYS.size())], chance(30) ? Qt::ShiftModifier : Qt::NoModifier);
        return;
    }
    const QPoint position(5, 5);
    QWheelEvent event(position, view->mapToGlobal(position), QPoint(), QPoint(0, TURNS[pick(TURNS.size())]),
        Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view, &event);
}

void RandomSends::changePanel()
{
    DebugSection* const section = anySection();
    if (!section)
        return;
    const QList<QCheckBox*> boxes = section->findChildren<QCheckBox*>();
    if (!boxes.empty())
        clickMouse(boxes[static_cast<int>(pick(static_cast<std::size_t>(boxes.size())))], QPoint(5, 5));
}

// Sections that are closed are opened again, so that there is always something to see.
void RandomSends::changeSection()
{
    DebugSection* const section = anySection();
    if (!section)
        return;
    if (section->isClosed())
        section->setClosed(false);
    else
        clickMouse(section->findChild<QToolButton*>(chance(50) ? "close" : "collapse"));
}

void RandomSends::changeWindow()
{
    DebugWindow* const window = debugOutput.getWindow();
    if (!window)
        return;
    const unsigned int choice = pick(10);
    if (choice == 0) {
        delete window;
        m_SentNames.clear();
    } else if (choice <= 2) {
        window->setVisible(!window->isVisible());
    } else {
        const int width = static_cast<int>(1 + pick(1200));
        window->resize(width, static_cast<int>(1 + pick(1000)));
    }
}

void RandomSends::takePicture()
{
    DebugSection* const section = anySection();
    if (!section)
        return;
    if (chance(20)) {
        EXPECT_FALSE(section->savePicture(m_Pictures.filePath("no/such/folder.png")));
        return;
    }
    const QString file = m_Pictures.filePath("picture.png");
    const bool isSaved = section->savePicture(file);
    EXPECT_EQ(isSaved, !QImage(file).isNull()) << "a picture is saved or refused";
    QFile::remove(file);
}

void RandomSends::write()
{
    debugOutput << std::string(pick(100), 'x') << (chance(80) ? "\n" : "");
}

void RandomSends::check()
{
    const DebugWindow* const window = debugOutput.getWindow();
    std::set<std::string> shown;
    for (const DebugSection* section : window ? window->getSections() : std::vector<DebugSection*>()) {
        EXPECT_EQ(section->getDisplayerClass(), GLEventDisplayer::getClass());
        EXPECT_TRUE(shown.insert(section->getName()).second) << "two sections of one name";
    }
    EXPECT_TRUE(shown == m_SentNames) << "sections and what was sent differ";
    EXPECT_LE(TestEventObject::s_NumLiving, static_cast<int>(shown.size())) << "an object lives without a section";
    EXPECT_EQ(wglGetCurrentContext(), m_Context->getRC()) << "what was current no longer is";
    EXPECT_LE(m_NumPointSets, static_cast<int>(shown.size())) << "a point set lives without a section";
}

} // namespace tavo
