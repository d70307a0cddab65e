#include <QApplication>
#include <QPainter>
#include <QWindow>
#include <cmath>

#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/Program.h"
#include "vireo/show/Numbers.h"
#include "vireo/show/images/ImageView.h"

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

// Sends an image to a view and has it painted, at 1:1; what it waits for the screen is left out.
template <typename T>
class Showing : public Contestant
{
public:
    Showing(const std::vector<T>& numbers, int channels, const std::string& colourMap)
        : m_Numbers(numbers)
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
        m_Update.pixels->numbers = tavo::Numbers(m_Numbers);
        m_View.makeRoom(m_Update.replaced());
        m_View.apply(m_Update);
        m_View.repaint();
    }

private:
    const std::vector<T>& m_Numbers;
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

void addShowing()
{
    const Entry bare{"converting and painting it", [] { return std::make_unique<Painting>(); }, 1.2, anyResult};
    add({"show 1920 x 1080 colours",
        {{"vireo", [] { return std::make_unique<Showing<std::uint8_t>>(colours(), 3, ""); }}, bare}});
    Entry bareBesideFloats = bare;
    bareBesideFloats.name = "painting colours";
    bareBesideFloats.ratioToReach = 1.5;
    add({"show 1920 x 1080 floats by a map",
        {{"vireo", [] { return std::make_unique<Showing<float>>(heights(), 1, "viridis"); }}, bareBesideFloats}});
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
    addPanning("move 16,384 x 16,384 pixels at 1:1", 1);
    addPanning("move 16,384 x 16,384 pixels at 1:3", 1.0 / 3);
    addPanning("move 16,384 x 16,384 pixels at 1:12", 1.0 / 12);
    return program.run();
}
