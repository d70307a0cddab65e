#include <QApplication>
#include <QPainter>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <thread>
#include <utility>

#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/Program.h"
#include "benchmarks/support/View.h"
#include "vireo/context/SavedState.h"
#include "vireo/show/Numbers.h"
#include "vireo/show/TextureImage.h"
#include "vireo/show/delivery/Inbox.h"
#include "vireo/show/images/ImageView.h"
#include "vireo/show/show.h"
#include "vireo/show/slices/SlicesView.h"
#include "vireo/textures/GLTexture2D.h"

#include <GL/gl.h>

namespace vireo_bench {

namespace {

const QSize IMAGE(1920, 1080);

std::size_t numPixels(const QSize& size)
{
    return static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height());
}

const std::vector<std::uint8_t>& colours()
{
    static const std::vector<std::uint8_t> numbers = [] {
        std::vector<std::uint8_t> made(3 * numPixels(IMAGE));
        for (std::size_t i = 0; i < made.size(); ++i)
            made[i] = static_cast<std::uint8_t>(i * i / 977);
        return made;
    }();
    return numbers;
}

const std::vector<float>& heights()
{
    static const std::vector<float> numbers = [] {
        std::vector<float> made(numPixels(IMAGE));
        for (std::size_t i = 0; i < made.size(); ++i)
            made[i] = std::sin(1e-3F * static_cast<float>(i % 192'000));
        return made;
    }();
    return numbers;
}

void showNow(QWidget& widget)
{
    widget.show();
    while (!widget.windowHandle()->isExposed())
        QApplication::processEvents();
}

// Sends one image after the other to a view and has it painted, at 1:1; what it waits for the screen is left out.
template <typename T>
class Showing : public Contestant
{
public:
    Showing(const std::vector<T>& numbers, int channels, const std::string& colourMap)
        : m_Numbers{numbers, std::vector<T>(numbers.rbegin(), numbers.rend())}
    {
        m_Update.pixels.emplace();
        m_Update.pixels->width = IMAGE.width();
        m_Update.pixels->height = IMAGE.height();
        m_Update.pixels->channels = channels;
        m_Update.pixels->rowStride = static_cast<std::size_t>(IMAGE.width() * channels);
        m_Update.settings.colourMap = colourMap;
        m_View.resize(IMAGE + QSize(0, 40));
        showNow(m_View);
        if (m_View.isPanelShown())
            m_View.switchPanel();
        run();
    }

    void run() override
    {
        std::swap(m_Numbers[0], m_Numbers[1]);
        m_Update.pixels->numbers = tavo::Numbers(m_Numbers[0]);
        m_View.makeRoom(m_Update.replaced());
        m_View.apply(m_Update);
        m_View.repaint();
    }

private:
    std::array<std::vector<T>, 2> m_Numbers;
    tavo::ImageUpdate m_Update;
    tavo::ImageView m_View{"image"};
};

// What it cannot do without: a copy in the colours of the screen, which is painted.
class Painting : public Contestant
{
public:
    Painting()
    {
        m_Widget.resize(IMAGE + QSize(0, 40));
        showNow(m_Widget);
    }

    void run() override
    {
        const QImage sent(colours().data(), IMAGE.width(), IMAGE.height(), 3 * IMAGE.width(), QImage::Format_RGB888);
        m_Widget.picture = sent.convertToFormat(QImage::Format_RGB32);
        m_Widget.repaint();
    }

private:
    class Widget : public QWidget
    {
    public:
        Widget() { setAttribute(Qt::WA_OpaquePaintEvent); }

        QImage picture;

    protected:
        void paintEvent(QPaintEvent*) override { QPainter(this).drawImage(QPoint(0, 0), picture); }
    };

    Widget m_Widget;
};

// Hands it to OpenGL, which draws it.
class Drawing : public Contestant
{
public:
    void prepare() override
    {
        View::ofSize(IMAGE.width(), IMAGE.height());
        if (m_Texture != 0)
            return;
        glGenTextures(1, &m_Texture);
        glBindTexture(GL_TEXTURE_2D, m_Texture);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        glTexImage2D(
            GL_TEXTURE_2D, 0, GL_RGB8, IMAGE.width(), IMAGE.height(), 0, GL_RGB, GL_UNSIGNED_BYTE, colours().data());
        glEnable(GL_TEXTURE_2D);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    }

    void run() override
    {
        glTexSubImage2D(
            GL_TEXTURE_2D, 0, 0, 0, IMAGE.width(), IMAGE.height(), GL_RGB, GL_UNSIGNED_BYTE, colours().data());
        drawSquare();
        glFinish();
    }

private:
    static void drawSquare()
    {
        const tavo::Primitive square(GL_QUADS);
        for (const auto& [x, y] : {std::pair(0, 0), std::pair(1, 0), std::pair(1, 1), std::pair(0, 1)}) {
            glTexCoord2i(x, 1 - y);
            glVertex2i(2 * x - 1, 2 * y - 1);
        }
    }

    GLuint m_Texture = 0;
};

// Moves a large image under the window.
class Panning : public Contestant
{
public:
    Panning(int side, double scale)
    {
        tavo::ImageUpdate update;
        update.pixels.emplace();
        update.pixels->width = update.pixels->height = side;
        update.pixels->rowStride = static_cast<std::size_t>(side);
        update.pixels->numbers = tavo::Numbers(std::vector<std::uint8_t>(numPixels({side, side}), 7));
        m_View.resize(IMAGE);
        showNow(m_View);
        m_View.apply(update);
        m_Sight.scale = scale;
        m_Sight.centre = QPointF(side, side) / 2;
    }

    void run() override
    {
        m_Sight.centre.rx() += (m_Step++ / 40 % 2 == 0 ? 16 : -16) / m_Sight.scale;
        m_View.setSight(m_Sight);
        m_View.repaint();
    }

private:
    tavo::ImageSight m_Sight;
    int m_Step = 0;
    tavo::ImageView m_View{"image"};
};

constexpr int NUM_FRAMES = 30; // in a second

// A thread of the program sends frames, of which each is painted in the library's own window.
class Live : public Contestant
{
public:
    Live()
        : m_Frames{colours(), std::vector<std::uint8_t>(colours().rbegin(), colours().rend())}
    {
        send();
        while (!m_Painted.view())
            QApplication::processEvents();
        QWidget* const window = m_Painted.view()->window();
        window->resize(window->size() + IMAGE - m_Painted.view()->size() + QSize(0, 40));
        if (m_Painted.view()->isPanelShown())
            m_Painted.view()->switchPanel();
        QApplication::processEvents();
    }
    ~Live() override { tavo::remove(NAME); }

    // One frame after the other, as a clock has them.
    void run() override
    {
        m_Painted.takeNumber();
        std::atomic<bool> isOver{false};
        std::thread sender([&] {
            auto time = std::chrono::steady_clock::now();
            for (int i = 0; i < NUM_FRAMES; ++i) {
                send();
                std::this_thread::sleep_until(time += std::chrono::microseconds(1'000'000 / NUM_FRAMES));
            }
            isOver = true;
            QMetaObject::invokeMethod(
                qApp, [] {}, Qt::QueuedConnection); // wakes it
        });
        while (!isOver)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        sender.join();
        m_NumPainted = m_Painted.takeNumber();
    }

    // What is lost makes the time from one painted frame to the next longer.
    double repetitions() const override { return std::max(m_NumPainted, 1); }

private:
    static constexpr const char* NAME = "live";

    // Counts the frames that are painted, and knows the view that shows them.
    class Painted : public QObject
    {
    public:
        Painted() { qApp->installEventFilter(this); }

        tavo::ImageView* view() const { return m_View; }
        int takeNumber() { return std::exchange(m_Number, 0); }

        bool eventFilter(QObject* object, QEvent* event) override
        {
            if (event->type() != QEvent::Paint)
                return false;
            auto* const view = dynamic_cast<tavo::ImageView*>(object);
            if (!view)
                return false;
            m_View = view;
            const void* const frame = view->getModel().pixels().numbers.getData();
            m_Number += frame != std::exchange(m_Frame, frame) ? 1 : 0;
            return false;
        }

    private:
        tavo::ImageView* m_View = nullptr;
        const void* m_Frame = nullptr;
        int m_Number = 0;
    };

    void send()
    {
        std::swap(m_Frames[0], m_Frames[1]);
        tavo::image(NAME, m_Frames[0], IMAGE.width(), IMAGE.height(), 3);
    }

    std::array<std::vector<std::uint8_t>, 2> m_Frames;
    Painted m_Painted;
    int m_NumPainted = 0;
};

// As many frames go by, and none is lost.
class Clock : public Contestant
{
public:
    void run() override { std::this_thread::sleep_for(std::chrono::seconds(1)); }
    double repetitions() const override { return NUM_FRAMES; }
};

void addLive()
{
    add({"a frame of 1920 x 1080 colours, of 30 a second that a thread sends, each painted",
        {{"vireo", [] { return std::make_unique<Live>(); }},
            {"the time from one to the next", [] { return std::make_unique<Clock>(); }}}});
}

// Beside what a picture on the screen cannot do without, which either OpenGL does or the processor.
void addShowing(const std::string& work, const std::function<std::unique_ptr<Contestant>()>& make, double ratioToReach)
{
    add({work, {{"vireo", make},
                   {"uploading and drawing colours with OpenGL", [] { return std::make_unique<Drawing>(); },
                       ratioToReach, anyResult},
                   {"converting and painting colours", [] { return std::make_unique<Painting>(); }, std::nullopt,
                       anyResult}}});
}

// As many samples as a head has, of bytes that differ everywhere.
tavo::SliceLayer sampledHead(const tavo::Vector3d& spacing)
{
    const tavo::Vector3i size(int(181 / spacing[0]), int(217 / spacing[1]), int(181 / spacing[2]));
    tavo::SliceLayer layer;
    layer.grid = {
        size, spacing, {0, 0, 0}, {tavo::Vector3d(1, 0, 0), tavo::Vector3d(0, 1, 0), tavo::Vector3d(0, 0, 1)}};
    std::vector<std::uint8_t> samples(layer.grid.numSamples());
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<std::uint8_t>(i * i / 977);
    layer.samples = {tavo::Numbers(std::move(samples)), 1};
    return layer;
}

// Turns the wheel over a plane of slices, and has it painted.
class Stepping : public Contestant
{
public:
    explicit Stepping(bool isCovered)
    {
        m_View.resize(IMAGE);
        showNow(m_View);
        m_View.switchVolume(); // which follows when the wheel rests
        tavo::SlicesUpdate update;
        update.volume = sampledHead({1, 1, 1});
        if (isCovered) {
            update.overlay = sampledHead({2, 2, 2});
            update.labels.emplace_back();
            update.labels.back().samples = update.volume->samples;
        }
        m_View.apply(update);
        m_View.change([=](tavo::SlicesModel& model) { model.setInterpolated(isCovered); });
        m_View.repaint();
    }

    void run() override
    {
        const int angle = m_Step++ / 40 % 2 == 0 ? 120 : -120;
        const QPointF place = QRectF(m_View.cells().planes[0]).center();
        QWheelEvent event(place, m_View.mapToGlobal(place.toPoint()), {}, {0, angle}, Qt::NoButton, Qt::NoModifier,
            Qt::NoScrollPhase, false);
        QApplication::sendEvent(&m_View, &event);
        m_View.repaint();
    }

private:
    int m_Step = 0;
    tavo::SlicesView m_View{"head"};
};

void addStepping()
{
    const Entry bare{"painting colours", [] { return std::make_unique<Painting>(); }, std::nullopt, anyResult};
    add({"turn the wheel through slices of a head",
        {{"vireo", [] { return std::make_unique<Stepping>(false); }}, bare}});
    add({"the same interpolated, with overlay and labels",
        {{"vireo", [] { return std::make_unique<Stepping>(true); }}, bare}});
}

void addShowing()
{
    addShowing(
        "show 1920 x 1080 colours", [] { return std::make_unique<Showing<std::uint8_t>>(colours(), 3, ""); }, 1.2);
    addShowing(
        "show 1920 x 1080 floats by a map", [] { return std::make_unique<Showing<float>>(heights(), 1, "viridis"); },
        1.5);
}

// A texture of the application, which is in its context.
class Reading : public Contestant
{
public:
    Reading()
        : m_Texture(&View::context())
    {
        std::vector<char> texels(4 * numPixels({SIDE, SIDE}), 7);
        m_Texture.createFromMemory(SIDE, SIDE, 4, texels.data(), false);
    }
    void prepare() override { View::context(); }

protected:
    static constexpr int SIDE = 1024;

    tavo::GLTexture2D m_Texture;
};

// Which it also sends.
class VireoReading : public Reading
{
public:
    void run() override { tavo::image("texture", m_Texture); }
    void cleanUp() override { tavo::inbox::take(); }
};

class BareReading : public Reading
{
public:
    void run() override
    {
        glBindTexture(GL_TEXTURE_2D, m_Texture.getTextureID());
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, m_Read.data());
    }

private:
    Bytes m_Read = Bytes(4 * numPixels({SIDE, SIDE}));
};

void addReading()
{
    add({"read a texture of 1024 x 1024",
        {{"vireo", [] { return std::make_unique<VireoReading>(); }},
            {"glGetTexImage", [] { return std::make_unique<BareReading>(); }, 1.2, anyResult}}});
}

void addPanning(const std::string& work, double scale)
{
    add({work, {{"vireo", [scale] { return std::make_unique<Panning>(16384, scale); }},
                   {"painting colours", [] { return std::make_unique<Painting>(); }, std::nullopt, anyResult}}});
}

} // namespace

} // namespace vireo_bench

int main(int argc, char** argv)
{
    using namespace vireo_bench;
    Program program(argc, argv);
    addShowing();
    addLive();
    addReading();
    addPanning("move 16,384 x 16,384 pixels at 1:1", 1);
    addPanning("move 16,384 x 16,384 pixels at 1:3", 1.0 / 3);
    addPanning("move 16,384 x 16,384 pixels at 1:12", 1.0 / 12);
    addStepping();
    return program.run();
}
