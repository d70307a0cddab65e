#include <QApplication>
#include <QPainter>

#include "benchmarks/scenes/BareCloud.h"
#include "benchmarks/scenes/SeenScene.h"
#include "vireo/show/scenes/SceneView.h"
#include "vireo/show/scenes/sceneOverlays.h"

namespace vireo_bench {

namespace {

constexpr std::size_t MILLION = 1'000'000;

// What a window shows is painted into.
class Screen
{
public:
    void paint(const QImage& picture)
    {
        QPainter painter(&m_Image);
        painter.drawImage(0, 0, picture);
    }
    Bytes pixels() const { return {m_Image.constBits(), m_Image.constBits() + m_Image.sizeInBytes()}; }

private:
    QImage m_Image{VIEW_SIZE, QImage::Format_RGB32};
};

class Frame : public SeenScene
{
public:
    explicit Frame(tavo::ItemUpdate item)
        : SeenScene(std::move(item))
    {}
    void run() override { m_Screen.paint(draw()); }
    Bytes result() override { return m_Screen.pixels(); }

private:
    Screen m_Screen;
};

// Without the light that depths give, and without the box.
class PlainFrame : public Frame
{
public:
    explicit PlainFrame(tavo::ItemUpdate item)
        : Frame(std::move(item))
    {
        m_Look.hasBearings = false;
        m_Look.hasDepthLight = false;
    }
};

// With all that a view has around it.
class FrameOfView : public Contestant
{
public:
    FrameOfView()
    {
        tavo::SceneUpdate update;
        update.items["item"] = cloudOf(MILLION);
        m_View.apply(update);
    }
    void run() override { m_Screen.paint(m_View.picture(VIEW_SIZE)); }

private:
    tavo::SceneView m_View{"scene"};
    Screen m_Screen;
};

// Other points each time.
class News : public Frame
{
public:
    News()
        : Frame(cloudOf(MILLION))
    {}
    void run() override
    {
        m_IsOther = !m_IsOther;
        send(cloudOf(m_IsOther ? m_Others : m_Ones));
        Frame::run();
    }

private:
    Points m_Ones = hills(MILLION);
    Points m_Others{m_Ones.rbegin(), m_Ones.rend()};
    bool m_IsOther = false;
};

class BareFrame : public Contestant
{
public:
    explicit BareFrame(bool hasOverlays)
    {
        m_Cloud.upload(m_Points);
        tavo::fitWithOverlays(
            m_Camera, {VIEW_SIZE, QFontMetricsF(QApplication::font()), hasOverlays}, m_Cloud.box(), {});
    }
    void run() override { m_Screen.paint(m_Cloud.draw(m_Camera)); }
    Bytes result() override { return m_Screen.pixels(); }

protected:
    Points m_Points = hills(MILLION);
    BareCloud m_Cloud;

private:
    tavo::SceneCamera m_Camera;
    Screen m_Screen;
};

class BareNews : public BareFrame
{
public:
    using BareFrame::BareFrame;

    void run() override
    {
        m_IsOther = !m_IsOther;
        m_Cloud.upload(m_IsOther ? m_Others : m_Points);
        BareFrame::run();
    }

private:
    Points m_Others{m_Points.rbegin(), m_Points.rend()};
    bool m_IsOther = false;
};

template <typename Kind>
std::function<std::unique_ptr<Contestant>()> of(tavo::ItemUpdate (*make)(std::size_t))
{
    return [make] { return std::make_unique<Kind>(make(MILLION)); };
}

template <typename Kind>
std::function<std::unique_ptr<Contestant>()> bare(bool hasOverlays = false)
{
    return [hasOverlays] { return std::make_unique<Kind>(hasOverlays); };
}

} // namespace

void addFrames()
{
    add({"frame of 1,000,000 points in one colour",
        {{"vireo", of<PlainFrame>(cloudOf)}, {"bare draw", bare<BareFrame>(), 1.05}}});
    add({"the same, lit by depths, with bearings",
        {{"vireo", std::make_unique<FrameOfView>}, {"bare draw", bare<BareFrame>(true), 1.15, anyResult}}});
    add({"frame of 1,000,000 points, coloured by a scalar",
        {{"vireo", of<Frame>(colouredCloudOf)}, {"in one colour", of<Frame>(cloudOf), 1.15, anyResult}}});
    add({"new 1,000,000 points, sent to painted",
        {{"vireo", std::make_unique<News>}, {"bare upload and draw", bare<BareNews>(), 1.3, anyResult}}});
}

} // namespace vireo_bench
