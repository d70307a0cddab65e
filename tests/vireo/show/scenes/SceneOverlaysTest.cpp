#include "vireo/show/scenes/sceneOverlays.h"

#include <QApplication>
#include <QPainter>
#include <cmath>
#include <gmock/gmock.h>
#include <random>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/scenes/sceneUpdates.h"
#include "vireo/show/colours/colourOfLabel.h"

namespace tavo {
namespace {

using ColourBar = SceneOverlays::ColourBar;

const SceneBox DATA = [] {
    SceneBox box;
    box.extend(Vector3d(5499995, -4200003, 10));
    box.extend(Vector3d(5500005, -4199991, 17.5));
    return box;
}();

// Of widths and heights from the smallest that is useful on.
std::vector<QSizeF> sizes()
{
    std::vector<QSizeF> sizes;
    for (const double width : {60., 130., 220., 400., 1000.})
        for (const double height : {40., 110., 230., 700.})
            sizes.emplace_back(width, height);
    return sizes;
}

std::vector<ColourBar> twoBars()
{
    return {{"car/lidar: intensity", "viridis", {0, 4095}, {}, {}},
        {"a/long/path/somewhere: quality of the measurement", "magma", {5.5e6, 5.5e6 + 3}, {}, {}}};
}

// What stands in the picture.
std::vector<QRectF> roomsOf(const SceneOverlays& overlays)
{
    std::vector<QRectF> rooms;
    for (const ColourBar& bar : overlays.colourBars)
        rooms.push_back(bar.room);
    if (overlays.scaleBar)
        rooms.push_back(overlays.scaleBar->room);
    if (overlays.mark)
        rooms.push_back(*overlays.mark);
    for (const Bearing& bearing : overlays.bearings) {
        if (!bearing.title.isEmpty())
            rooms.push_back(bearing.titleBox);
        for (const Bearing::Tick& tick : bearing.ticks)
            if (!tick.label.isEmpty())
                rooms.push_back(tick.labelBox);
    }
    return rooms;
}

std::size_t numLabels(const SceneOverlays& overlays)
{
    std::size_t number = 0;
    for (const Bearing& bearing : overlays.bearings)
        for (const Bearing::Tick& tick : bearing.ticks)
            number += !tick.label.isEmpty();
    return number;
}

class SceneOverlaysTest : public testing::Test
{
protected:
    OverlayRoom room(const QSizeF& size, bool hasBearings = true) const
    {
        return {size, QFontMetricsF(QApplication::font()), hasBearings};
    }

    static void expectApart(const SceneOverlays& overlays, const QSizeF& size)
    {
        const std::vector<QRectF> rooms = roomsOf(overlays);
        for (std::size_t i = 0; i < rooms.size(); ++i) {
            EXPECT_TRUE(QRectF(QPointF(), size).contains(rooms[i])) << size.width() << 'x' << size.height();
            for (std::size_t j = 0; j < i; ++j)
                EXPECT_FALSE(rooms[i].intersects(rooms[j])) << size.width() << 'x' << size.height();
        }
    }
};

TEST_F(SceneOverlaysTest, NothingOverlapsAtAnySize)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> turn(-180, 180);
    for (const QSizeF& size : sizes()) {
        for (int i = 0; i < 20; ++i) {
            SceneCamera camera;
            camera.setOrthographic(i % 2);
            camera.setDirection(turn(random), turn(random) / 2);
            fitWithOverlays(camera, room(size), DATA, twoBars());
            camera.zoom(i % 3 ? 1 : 5, DATA.centre());
            expectApart(placeOverlays(room(size), camera, DATA, twoBars()), size);
        }
    }
}

TEST_F(SceneOverlaysTest, SmallPicturesHaveNone)
{
    SceneCamera camera;
    camera.setOrthographic(true);
    fitWithOverlays(camera, room({60, 40}), DATA, twoBars());
    EXPECT_TRUE(roomsOf(placeOverlays(room({60, 40}), camera, DATA, twoBars())).empty());
    fitWithOverlays(camera, room({400, 300}), DATA, twoBars());
    const SceneOverlays overlays = placeOverlays(room({400, 300}), camera, DATA, twoBars());
    EXPECT_EQ(overlays.colourBars.size(), 1u) << "there is no room for two";
    EXPECT_TRUE(overlays.scaleBar);
    EXPECT_GT(numLabels(overlays), 2u);
    EXPECT_EQ(placeOverlays(room({1000, 300}), camera, DATA, twoBars()).colourBars.size(), 2u);
}

// Of all numbers that the edges have, and of their names.
QRectF boundsOf(const std::vector<Bearing>& bearings)
{
    QRectF bounds;
    for (const Bearing& bearing : bearings) {
        bounds |= bearing.titleBox;
        for (const Bearing::Tick& tick : bearing.ticks)
            if (!tick.label.isEmpty())
                bounds |= tick.labelBox;
    }
    return bounds;
}

TEST_F(SceneOverlaysTest, TheFitLeavesRoomForTheNumbers)
{
    for (const QSizeF size : {QSizeF(1000, 700), QSizeF(500, 400), QSizeF(500, 800)}) {
        std::vector<ColourBar> bars = twoBars();
        bars.resize(size.width() > 600 ? 2 : 1);
        for (const double azimuth : {0., 30., 70., 135., 200., 300.}) {
            for (const double elevation : {0., 25., 60., 90., -40.}) {
                SceneCamera camera;
                camera.setOrthographic(azimuth > 100);
                camera.setDirection(azimuth, elevation);
                fitWithOverlays(camera, room(size), DATA, bars);
                const QRectF bounds = boundsOf(bearingsOf(Box3d(DATA.getMin(), DATA.getMax()),
                    toPicture(camera, {size.width(), size.height()}), room(size).font));
                EXPECT_TRUE(QRectF(QPointF(), size).contains(bounds))
                    << size.width() << ": " << azimuth << ' ' << elevation << ": " << bounds.left() << ' '
                    << bounds.top() << ' ' << bounds.right() << ' ' << bounds.bottom();
                for (const ColourBar& bar : placeOverlays(room(size), camera, DATA, bars).colourBars)
                    EXPECT_FALSE(bar.room.intersects(bounds));
            }
        }
    }
}

TEST_F(SceneOverlaysTest, WithoutBearingsTheBoxHasTheWholePicture)
{
    SceneCamera plain;
    plain.fit(DATA, {400, 300});
    SceneCamera camera;
    fitWithOverlays(camera, room({400, 300}, false), DATA, {});
    EXPECT_EQ(camera, plain);
    EXPECT_TRUE(placeOverlays(room({400, 300}, false), camera, DATA, {}).bearings.empty());
}

TEST_F(SceneOverlaysTest, ZoomedInTheNamesStayInView)
{
    SceneCamera camera;
    camera.look(SceneCamera::Side::Front);
    fitWithOverlays(camera, room({600, 400}), DATA, {});
    const SceneCamera::Pixel corner = camera.project(DATA.getMin(), {600, 400});
    camera.zoom(8, DATA.getMin());
    ASSERT_NEAR(camera.project(DATA.getMin(), {600, 400}).x, corner.x, 1e-3);
    const SceneOverlays overlays = placeOverlays(room({600, 400}), camera, DATA, {});
    ASSERT_EQ(overlays.bearings.size(), 2u);
    for (const Bearing& bearing : overlays.bearings)
        EXPECT_FALSE(bearing.title.isEmpty()) << bearing.axis;
    expectApart(overlays, {600, 400});
}

TEST_F(SceneOverlaysTest, HowFarOneZoomsIsNoMatter)
{
    SceneCamera camera;
    fitWithOverlays(camera, room({600, 400}), DATA, {});
    camera.zoom(1e9, DATA.centre());
    expectApart(placeOverlays(room({600, 400}), camera, DATA, {}), {600, 400});
    camera.setOrthographic(true);
    expectApart(placeOverlays(room({600, 400}), camera, DATA, {}), {600, 400});
}

TEST_F(SceneOverlaysTest, TheScaleBarIsOfOrthographicViews)
{
    SceneCamera camera;
    fitWithOverlays(camera, room({600, 400}), DATA, {});
    EXPECT_FALSE(placeOverlays(room({600, 400}), camera, DATA, {}).scaleBar);
    camera.setOrthographic(true);
    const auto bar = placeOverlays(room({600, 400}), camera, DATA, {}).scaleBar.value();
    const Vector3d across = camera.unproject({100, 0, 1}, {600, 400}) - camera.unproject({0, 0, 1}, {600, 400});
    EXPECT_NEAR(bar.bar.length / bar.bar.pixels, length(across) / 100, 1e-9);
}

class SceneBarsTest : public testing::Test
{
protected:
    SceneBarsTest()
    {
        m_View.resize(600, 400);
        m_View.show();
        QApplication::processEvents();
    }

    static void sendCloud(SceneModel& model, const std::string& path, const std::string& field, const Numbers& values)
    {
        SceneUpdate update;
        update.items[path] = item(ItemKind::Cloud, {0, 0, 0, 1, 1, 1});
        SceneField scalars{field, {values, 1}, false};
        update.items[path].addField(scalars);
        model.apply(update);
    }

    static std::vector<std::string> titles(const std::vector<ColourBar>& bars)
    {
        std::vector<std::string> titles;
        for (const ColourBar& bar : bars)
            titles.push_back(bar.field.toStdString());
        return titles;
    }

    // Whether a column of colours is in the picture.
    static bool hasBar(const QImage& picture)
    {
        const ColourMap map = findColourMap("viridis").value();
        const auto isIn = [&](int x, std::size_t entry) {
            const RGBA8& colour = map.entries()[entry];
            for (int y = 0; y < picture.height(); ++y) {
                const QColor pixel = picture.pixelColor(x, y);
                if (std::abs(pixel.red() - colour[0]) + std::abs(pixel.green() - colour[1]) +
                        std::abs(pixel.blue() - colour[2]) <
                    6)
                    return true;
            }
            return false;
        };
        for (int x = 0; x < picture.width(); ++x)
            if (isIn(x, 8) && isIn(x, 64) && isIn(x, 128) && isIn(x, 192) && isIn(x, 248))
                return true;
        return false;
    }

    SceneView m_View{"test"};
};

TEST_F(SceneBarsTest, TheFieldThatIsShownHasOne)
{
    SceneModel model("test");
    EXPECT_TRUE(colourBarsOf(model, {}).empty());
    sendCloud(model, "a", "height", {3, 7});
    const std::vector<ColourBar> bars = colourBarsOf(model, {});
    ASSERT_THAT(titles(bars), testing::ElementsAre("height"));
    EXPECT_EQ(bars[0].range, std::pair(3., 7.));
    SceneUpdate update;
    update.items["a"].range = std::pair(9., 1.);
    update.items["a"].colourMap = "magma";
    model.apply(update);
    EXPECT_EQ(colourBarsOf(model, {})[0].range, std::pair(9., 1.));
    EXPECT_EQ(colourBarsOf(model, {})[0].colourMap, "magma");
    update = {};
    update.items["a"].shown = "";
    model.apply(update);
    EXPECT_TRUE(colourBarsOf(model, {}).empty());
}

TEST_F(SceneBarsTest, NewNumbersHaveANewRange)
{
    SceneModel model("test");
    sendCloud(model, "a", "height", {3, 7});
    EXPECT_EQ(colourBarsOf(model, {})[0].range, std::pair(3., 7.));
    sendCloud(model, "a", "height", {NAN, 8});
    EXPECT_EQ(colourBarsOf(model, {})[0].range, std::pair(8., 8.));
}

TEST_F(SceneBarsTest, OfSeveralItemsTheFirstTwoOrTheSelectedOneHaveThem)
{
    SceneModel model("test");
    sendCloud(model, "a", "height", {3, 7});
    sendCloud(model, "b", "height", {3, 7});
    EXPECT_THAT(titles(colourBarsOf(model, {})), testing::ElementsAre("height")) << "of both";
    sendCloud(model, "c", "height", {3, 8});
    sendCloud(model, "d", "time", {3, 8});
    EXPECT_THAT(titles(colourBarsOf(model, {})), testing::ElementsAre("a: height", "c: height"));
    EXPECT_THAT(titles(colourBarsOf(model, "d")), testing::ElementsAre("time"));
    SceneUpdate update;
    update.items["a"].isVisible = update.items["b"].isVisible = false;
    model.apply(update);
    EXPECT_THAT(titles(colourBarsOf(model, {})), testing::ElementsAre("c: height", "d: time"));
}

TEST_F(SceneBarsTest, CategoriesHaveALegend)
{
    SceneModel model("test");
    SceneUpdate update;
    update.items["a"] = item(ItemKind::Cloud, {0, 0, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3});
    SceneField labels{"labels", {Numbers{7, 2, NAN, 7}, 1}, true};
    update.items["a"].addField(labels);
    update.items["a"].labelNames = {{2, "ground"}, {5, "trees"}};
    model.apply(update);
    const auto rows = [](const SceneItem& item) {
        const SceneItem::ShownLabels labels = item.shownLabels().value();
        QStringList texts;
        for (const auto& [colour, name] : labels.categories)
            texts += QString::fromStdString(name);
        return texts;
    };
    EXPECT_EQ(rows(model.items().at("a")), QStringList({"ground", "7"})) << "those that are there, in their order";
    const std::vector<ColourBar> bars = colourBarsOf(model, {});
    ASSERT_THAT(titles(bars), testing::ElementsAre("labels"));
    const RGBA8 two = colourOfLabel(2);
    EXPECT_EQ(bars[0].categories.front(), (LegendRow{QColor(two[0], two[1], two[2]), "ground"}));
    update = {};
    update.items["a"].colours = NumberTuples{Numbers{1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 2, 3}, 3};
    model.apply(update);
    EXPECT_TRUE(colourBarsOf(model, {}).empty()) << "colours mean nothing but themselves";
}

TEST_F(SceneOverlaysTest, ALegendHasAsManyRowsAsThereIsRoomFor)
{
    ColourBar legend{"labels", {}, {}, {}, {}};
    for (int i = 0; i < 100; ++i)
        legend.categories.push_back({QColor(i, 0, 0), "a category of a long name, number " + QString::number(i)});
    std::vector<ColourBar> bars = twoBars();
    bars[1] = legend;
    for (const QSizeF& size : sizes()) {
        SceneCamera camera;
        fitWithOverlays(camera, room(size), DATA, bars);
        const SceneOverlays overlays = placeOverlays(room(size), camera, DATA, bars);
        expectApart(overlays, size);
        for (const ColourBar& bar : overlays.colourBars)
            if (!bar.categories.empty()) {
                const std::size_t numShown = bar.categories.size() - 1;
                EXPECT_EQ(bar.categories.back().text, "and " + QString::number(100 - numShown) + " more");
                EXPECT_GE(numShown, 3U);
            }
    }
    const std::vector<LegendRow> few(legend.categories.begin(), legend.categories.begin() + 3);
    EXPECT_EQ(fittedRows(few, 1000, 1000, room({1, 1}).font), few);
}

TEST_F(SceneBarsTest, ALegendIsInPictures)
{
    ItemUpdate points = item(ItemKind::Cloud, {0, 0, 0, 1, 1, 1});
    SceneField labels{"labels", {Numbers{2, 7}, 1}, true};
    points.addField(labels);
    send(m_View, "points", points);
    const QImage picture = m_View.picture({600, 400});
    for (const int label : {2, 7}) {
        const RGBA8 colour = colourOfLabel(label);
        EXPECT_GT(numPixels(picture.copy(450, 0, 150, 400), QColor(colour[0], colour[1], colour[2])), 50) << label;
    }
}

TEST_F(SceneBarsTest, IsInTheViewAndInPicturesOnEveryGround)
{
    ItemUpdate points = item(ItemKind::Cloud, {0, 0, 0, 1, 1, 1});
    SceneField scalars{"height", {Numbers{3, 7}, 1}, false};
    points.addField(scalars);
    EXPECT_FALSE(hasBar(m_View.picture({600, 400})));
    send(m_View, "points", points);
    for (const QColor& ground : {QColor(Qt::white), QColor(25, 25, 30)}) {
        QPalette palette = m_View.palette();
        palette.setColor(QPalette::Base, ground);
        palette.setColor(QPalette::Text, ground.lightness() > 128 ? Qt::black : Qt::white);
        m_View.setPalette(palette);
        EXPECT_TRUE(hasBar(m_View.picture({600, 400})));
        EXPECT_TRUE(hasBar(m_View.picture({1000, 700})));
        EXPECT_TRUE(hasBar(m_View.grab().toImage()));
        EXPECT_GT(numPixels(m_View.picture({600, 400}), palette.color(QPalette::Text)), 200) << "the numbers";
    }
    EXPECT_FALSE(hasBar(m_View.picture({60, 40})));
}

// The numbers of a picture that is twice as large are, too.
TEST_F(SceneBarsTest, BigPicturesHaveBigNumbers)
{
    send(m_View, "points", item(ItemKind::Cloud, {0, 0, 0, 1, 1, 1}));
    const QImage picture = m_View.picture({1600, 1200});
    const QImage big = m_View.picture({3200, 2400});
    const QImage small = big.scaled(1600, 1200, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    int numDifferent = 0;
    for (int y = 0; y < 1200; ++y)
        for (int x = 0; x < 1600; ++x)
            numDifferent += std::abs(qGray(small.pixel(x, y)) - qGray(picture.pixel(x, y))) > 128;
    EXPECT_LT(numDifferent, 600);
    EXPECT_GT(1600 * 1200 - numPixels(picture, m_View.palette().color(QPalette::Base)), 1200);
}

TEST_F(SceneBarsTest, BearingsAreShownUnlessSomebodyWantsNone)
{
    send(m_View, "points", item(ItemKind::Cloud, {0, 0, 0, 1, 1, 1}));
    const auto bearings = [this](bool areShown) {
        SceneUpdate update;
        update.hasBearings = areShown;
        m_View.apply(update);
        return m_View.picture({600, 400});
    };
    const QImage shown = m_View.picture({600, 400});
    const QImage hidden = bearings(false);
    EXPECT_NE(shown, hidden);
    EXPECT_EQ(bearings(true), shown);
    clickKey(&m_View, Qt::Key_B);
    EXPECT_EQ(m_View.picture({600, 400}), hidden);
    EXPECT_EQ(bearings(true), hidden) << "as the user chose";
    clickKey(&m_View, Qt::Key_B);
    EXPECT_EQ(bearings(false), shown);
}

TEST_F(SceneBarsTest, TheFarEdgesOfTheBoxAreBehindTheData)
{
    m_View.getCamera().look(SceneCamera::Side::Front);
    ItemUpdate mesh =
        item(ItemKind::Mesh, {0, 0, 0, 1, 0, 0, 1, 0, 1, 0, 0, 1}, {}, std::vector<std::array<int, 4>>{{0, 1, 2, 3}});
    mesh.colour = RGBA8(255, 0, 0, 255);
    send(m_View, "mesh", mesh);
    send(m_View, "far", item(ItemKind::Cloud, {0.5, 1, 0.5}));
    const QImage filled = m_View.picture({600, 400});
    const QRect inner = rectOf(filled, Qt::red).adjusted(3, 3, -3, -3);
    EXPECT_EQ(numPixels(filled.copy(inner), Qt::red), inner.width() * inner.height());
    ItemUpdate outline = item(ItemKind::Lines, {0, 0, 0, 1, 0, 0, 1, 0, 1, 0, 0, 1, 0, 0, 0});
    send(m_View, "mesh", outline);
    const QImage open = m_View.picture({600, 400}).copy(inner);
    const QColor ground = m_View.palette().color(QPalette::Base);
    EXPECT_GT(inner.width() * inner.height() - numPixels(open, ground), inner.width()) << "where one sees through";
}

} // namespace
} // namespace tavo
