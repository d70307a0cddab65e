#include "vireo/show/scenes/ScenePanel.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QStyle>
#include <QTimer>
#include <QWheelEvent>
#include <gmock/gmock.h>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/scenes/sceneUpdates.h"
#include "vireo/show/scenes/NumberBox.h"
#include "vireo/show/scenes/RangeHistogram.h"
#include "vireo/show/scenes/SceneTree.h"
#include "vireo/show/window/theme.h"

namespace tavo {
namespace {

const QColor RED(255, 0, 0);

ItemUpdate redCloud()
{
    ItemUpdate update = item(ItemKind::Cloud, {-1, 0, 0, 0, 0, 0, 1, 0, 0});
    update.size = 11;
    update.colour = RGBA8(255, 0, 0, 255);
    return update;
}

ItemUpdate cloudWithFields()
{
    ItemUpdate update = redCloud();
    update.fields.push_back({"height", {Numbers{0, 1, 2}, 1}, false});
    update.fields.push_back({"labels", {Numbers{3, 4, 5}, 1}, true});
    return update;
}

QTreeWidgetItem* child(QTreeWidgetItem* row, const QString& name)
{
    for (int i = 0; i < row->childCount(); ++i)
        if (row->child(i)->text(0) == name)
            return row->child(i);
    return nullptr;
}

QStringList namesIn(const QTreeWidgetItem* row)
{
    QStringList names;
    for (int i = 0; i < row->childCount(); ++i)
        names += row->child(i)->text(0);
    return names;
}

void type(QWidget* widget, const QString& text)
{
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, 0, {}, c);
        QApplication::sendEvent(widget, &press);
    }
}

void turnWheel(QWidget* widget, int steps, Qt::KeyboardModifiers modifiers = {})
{
    const QPoint place = widget->rect().center();
    QWheelEvent event(place, widget->mapToGlobal(place), QPoint(), QPoint(0, 120 * steps), Qt::NoButton, modifiers,
        Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

// The panel beside a scene, as a person uses it.
class ScenePanelTest : public testing::Test
{
protected:
    ScenePanelTest()
    {
        SceneUpdate front = seenFrom("front", false);
        front.hasBearings = false;
        m_View.apply(front);
        m_View.resize(1000, 600);
        m_View.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_View));
        QApplication::setActiveWindow(&m_View);
        send(m_View, "car/lidar", cloudWithFields());
        send(m_View, "car/body", item(ItemKind::Mesh, {0, 0, 3, 1, 0, 3, 0, 0, 4, 1, 1, 4}, {}, {0, 1, 2, 1, 3, 2}));
        send(m_View, "path", redCloud());
        waitForFrame();
    }

    // Until the panel shows what was sent.
    void waitForFrame()
    {
        const auto* const timer = m_View.findChild<QTimer*>("followSoon");
        EXPECT_TRUE(QTest::qWaitFor([timer] { return !timer->isActive(); }));
    }

    template <typename Widget>
    Widget* find(const char* name)
    {
        return m_View.findChild<Widget*>(name);
    }

    SceneTree* tree() { return find<SceneTree>("items"); }

    // By the names in its path.
    QTreeWidgetItem* row(const QStringList& names)
    {
        QTreeWidgetItem* row = tree()->invisibleRootItem();
        for (const QString& name : names)
            row = row ? child(row, name) : nullptr;
        return row;
    }

    void clickRow(const QStringList& names)
    {
        clickMouse(tree()->viewport(), tree()->visualItemRect(row(names)).center());
    }

    QRect rectOfBox(const QStringList& names)
    {
        QStyleOptionViewItem option;
        option.initFrom(tree());
        option.features = QStyleOptionViewItem::HasCheckIndicator;
        option.rect = tree()->visualItemRect(row(names));
        return tree()->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, tree());
    }

    void clickBox(const QStringList& names)
    {
        clickMouse(tree()->viewport(), rectOfBox(names).center());
        waitForFrame();
    }

    Qt::CheckState check(const QStringList& names) { return row(names)->checkState(0); }

    void choose(QComboBox* box, const QString& text)
    {
        box->setFocus();
        const int wanted = box->findText(text);
        ASSERT_GE(wanted, 0) << text.toStdString();
        while (box->currentIndex() != wanted)
            clickKey(box, box->currentIndex() < wanted ? Qt::Key_Down : Qt::Key_Up);
    }

    ItemState stateOf(const std::string& path) { return m_View.getModel().items().at(path).state(); }

    int numRed() { return numPixels(m_View.picture({200, 200}), RED); }

    SceneView m_View{"test"};
};

TEST_F(ScenePanelTest, ThePathsAreATree)
{
    EXPECT_EQ(namesIn(tree()->invisibleRootItem()), QStringList({"car", "path"}));
    EXPECT_EQ(namesIn(row({"car"})), QStringList({"body", "lidar"}));
    EXPECT_EQ(row({"car"})->text(1), "");
    EXPECT_EQ(row({"car", "lidar"})->text(1), "cloud  3");
    EXPECT_EQ(row({"car", "body"})->text(1), "mesh  4");
    EXPECT_EQ(row({"car", "lidar"})->toolTip(0), "car/lidar");
    EXPECT_TRUE(row({"car"})->isExpanded());
}

TEST_F(ScenePanelTest, NamesAreOneLineOfReadableText)
{
    send(m_View, "a\nb\x01/\x1b[0m", redCloud());
    send(m_View, "", redCloud());
    waitForFrame();
    EXPECT_NE(row({"a b\\x01", "\\x1b[0m"}), nullptr);
    EXPECT_NE(row({"(no name)"}), nullptr);
}

TEST_F(ScenePanelTest, LargeNumbersOfPointsAreShort)
{
    const std::vector<float> zeros(3 * 1'234'567);
    send(m_View, "path", item(ItemKind::Cloud, zeros));
    waitForFrame();
    EXPECT_EQ(row({"path"})->text(1), "cloud  1.23 M");
    EXPECT_EQ(row({"path"})->toolTip(1).remove(QChar(0x2009)), "cloud, 1234567 points");
}

TEST_F(ScenePanelTest, ASwatchHasTheColours)
{
    const auto pixel = [this](const QStringList& names, double place) {
        const QImage icon = row(names)->icon(0).pixmap(18, 12).toImage();
        return icon.pixelColor(int(place * 17), 6);
    };
    EXPECT_EQ(pixel({"path"}, 0.5), RED);
    EXPECT_LT(pixel({"car", "lidar"}, 0.1).green(), 80);
    EXPECT_GT(pixel({"car", "lidar"}, 0.9).green(), 180);
}

TEST_F(ScenePanelTest, ABoxHidesAnItemOrABranch)
{
    EXPECT_NEAR(numRed(), 3 * numPixelsOfDisc(11), 3 * 11);
    clickBox({"path"});
    EXPECT_EQ(numRed(), 0);
    EXPECT_EQ(check({"path"}), Qt::Unchecked);
    EXPECT_EQ(check({"car"}), Qt::Checked);
    clickBox({"car", "body"});
    EXPECT_EQ(check({"car"}), Qt::PartiallyChecked);
    clickBox({"car"});
    EXPECT_EQ(check({"car"}), Qt::Checked);
    EXPECT_EQ(check({"car", "body"}), Qt::Checked);
    clickBox({"car"});
    EXPECT_EQ(check({"car", "lidar"}), Qt::Unchecked);
    EXPECT_EQ(check({"car", "body"}), Qt::Unchecked);
    EXPECT_TRUE(m_View.getModel().items().at("car/lidar").shape());
    EXPECT_FALSE(m_View.getModel().items().at("car/lidar").isWanted());
    send(m_View, "path", redCloud());
    send(m_View, "car/new", redCloud());
    waitForFrame();
    EXPECT_EQ(numRed(), 0);
    EXPECT_EQ(check({"car"}), Qt::Unchecked);
    EXPECT_EQ(check({"car", "new"}), Qt::Unchecked);
}

TEST_F(ScenePanelTest, TheSpaceBarTogglesTheBoxOfTheSelectedRow)
{
    clickRow({"path"});
    clickKey(tree(), Qt::Key_Space);
    waitForFrame();
    EXPECT_EQ(check({"path"}), Qt::Unchecked);
    EXPECT_EQ(numRed(), 0);
}

TEST_F(ScenePanelTest, WhatIsSelectedAndClosedStaysSo)
{
    clickRow({"path"});
    row({"car"})->setExpanded(false);
    SceneUpdate cleared;
    cleared.clear();
    m_View.apply(cleared);
    waitForFrame();
    EXPECT_EQ(tree()->topLevelItemCount(), 0);
    EXPECT_EQ(find<QLabel>("name")->text(), "Nothing is selected");
    send(m_View, "another", redCloud());
    send(m_View, "car/lidar", cloudWithFields());
    waitForFrame();
    EXPECT_EQ(tree()->currentItem(), nullptr) << "nothing else is selected instead";
    send(m_View, "path", redCloud());
    send(m_View, "n", redCloud());
    waitForFrame();
    EXPECT_EQ(tree()->currentItem(), row({"path"}));
    EXPECT_FALSE(row({"car"})->isExpanded());
    EXPECT_EQ(namesIn(tree()->invisibleRootItem()), QStringList({"another", "car", "n", "path"}));
}

TEST_F(ScenePanelTest, ManyItemsAreFollowedOnceAFrame)
{
    SceneUpdate many;
    for (int i = 0; i < 1000; ++i)
        many.items["many/" + std::to_string(i)] = redCloud();
    m_View.apply(many);
    waitForFrame();
    ASSERT_EQ(row({"many"})->childCount(), 1000);
    const SignalCount changes(tree(), &QTreeWidget::itemChanged);
    const QTreeWidgetItem* const other = row({"many", "500"});
    for (int i = 0; i < 100; ++i)
        send(m_View, "many/7", item(ItemKind::Cloud, {0, 0, 0}));
    EXPECT_EQ(changes.count(), 0) << "not before the frame";
    waitForFrame();
    EXPECT_EQ(row({"many", "7"})->text(1), "cloud  1");
    EXPECT_EQ(row({"many", "500"}), other);
    EXPECT_LE(changes.count(), 3) << "of one row: its swatch, its number, its tool tip";
}

TEST_F(ScenePanelTest, OnlyWhatAppliesIsThere)
{
    const auto areThere = [this](const QStringList& names) {
        QStringList found;
        for (const char* name : {"field", "colourMap", "histogram", "size", "opacity", "shading", "edges"})
            if (find<QWidget>(name)->isVisible())
                found += name;
        return found == names;
    };
    clickRow({"car", "lidar"});
    EXPECT_TRUE(areThere({"field", "colourMap", "histogram", "size", "opacity"}));
    choose(find<QComboBox>("field"), "Labels");
    EXPECT_TRUE(areThere({"field", "size", "opacity"}));
    clickRow({"car", "body"});
    EXPECT_TRUE(areThere({"opacity", "shading", "edges"}));
    clickMouse(find<QCheckBox>("edges"), {5, 5});
    EXPECT_TRUE(areThere({"size", "opacity", "shading", "edges"}));
    clickRow({"path"});
    EXPECT_TRUE(areThere({"size", "opacity"}));
    clickRow({"car"});
    EXPECT_TRUE(areThere({}));
    EXPECT_EQ(find<QLabel>("name")->text(), "car");
}

TEST_F(ScenePanelTest, TheFieldAndItsMapAreChosen)
{
    clickRow({"car", "lidar"});
    auto* const field = find<QComboBox>("field");
    EXPECT_EQ(field->currentText(), "height");
    choose(find<QComboBox>("colourMap"), "inferno");
    EXPECT_EQ(stateOf("car/lidar").colourMap, "inferno");
    choose(field, "Labels");
    EXPECT_EQ(stateOf("car/lidar").shown, "labels");
    send(m_View, "car/lidar", cloudWithFields());
    EXPECT_EQ(stateOf("car/lidar").shown, "labels");
    clickBox({"path"});
    choose(field, "One colour");
    EXPECT_NEAR(numRed(), 3 * numPixelsOfDisc(11), 3 * 11);
}

TEST_F(ScenePanelTest, EveryColourMapHasAPicture)
{
    auto* const maps = find<QComboBox>("colourMap");
    ASSERT_EQ(std::size_t(maps->count()), namesOfColourMaps().size());
    for (int i = 0; i < maps->count(); ++i) {
        const ColourMap map = findColourMap(namesOfColourMaps()[std::size_t(i)]).value();
        const QColor middle = maps->itemIcon(i).pixmap(101, 12).toImage().pixelColor(50, 6);
        const RGBA8 expected = map.sample(0.5);
        EXPECT_NEAR(middle.red(), expected[0], 12) << i;
        EXPECT_NEAR(middle.green(), expected[1], 12) << i;
        EXPECT_NEAR(middle.blue(), expected[2], 12) << i;
    }
}

TEST_F(ScenePanelTest, LimitsOfTheRangeAreTyped)
{
    clickRow({"car", "lidar"});
    auto* const from = find<NumberBox>("from");
    auto* const to = find<NumberBox>("to");
    EXPECT_EQ(from->value(), 0);
    EXPECT_EQ(to->value(), 2);
    to->setFocus();
    to->selectAll();
    type(to, "1.5e3");
    EXPECT_EQ(stateOf("car/lidar").range.second, 2) << "not while it is typed";
    send(m_View, "car/lidar", cloudWithFields());
    waitForFrame();
    EXPECT_EQ(to->text(), "1.5e3") << "nor is it overwritten";
    clickKey(to, Qt::Key_Return);
    EXPECT_EQ(stateOf("car/lidar").range, std::pair(0.0, 1500.0));
}

TEST_F(ScenePanelTest, LimitsOfTheRangeAreDragged)
{
    clickRow({"car", "lidar"});
    auto* const histogram = find<RangeHistogram>("histogram");
    const int y = histogram->height() / 2;
    const int at = int(histogram->pixelOf(2)), middle = int(histogram->pixelOf(1));
    dragMouse(histogram, Qt::LeftButton, {at, y}, {middle, y});
    EXPECT_EQ(stateOf("car/lidar").range.first, 0);
    EXPECT_NEAR(stateOf("car/lidar").range.second, 1, 0.02);
    const double to = stateOf("car/lidar").range.second;
    dragMouse(histogram, Qt::LeftButton, {int(histogram->pixelOf(0)), y}, {int(histogram->pixelOf(0.5)), y});
    EXPECT_NEAR(stateOf("car/lidar").range.first, 0.5, 0.02);
    EXPECT_EQ(stateOf("car/lidar").range.second, to);
    dragMouse(histogram, Qt::LeftButton, {int(histogram->pixelOf(1.6)), y}, {int(histogram->pixelOf(1.8)), y});
    EXPECT_EQ(stateOf("car/lidar").range.second, to) << "no limit was there";
}

TEST_F(ScenePanelTest, LimitsDoNotPassEachOther)
{
    clickRow({"car", "lidar"});
    auto* const histogram = find<RangeHistogram>("histogram");
    const int y = histogram->height() / 2;
    pressMouse(histogram, Qt::LeftButton, {int(histogram->pixelOf(0)), y});
    moveMouse(histogram, Qt::LeftButton, {histogram->width() + 500, y});
    releaseMouse(histogram, Qt::LeftButton, {histogram->width() + 500, y});
    EXPECT_EQ(stateOf("car/lidar").range, std::pair(0.0, 2.0));
}

TEST_F(ScenePanelTest, RangesAreOfferedAndNotApplied)
{
    ItemUpdate update = item(ItemKind::Cloud, std::vector<float>(3 * 1001));
    std::vector<double> values(1001);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = double(i * i);
    update.fields.push_back({"height", {Numbers(values), 1}, false});
    update.range = {5, 6};
    send(m_View, "car/lidar", update);
    clickRow({"car", "lidar"});
    waitForFrame();
    EXPECT_EQ(stateOf("car/lidar").range, std::pair(5.0, 6.0));
    clickMouse(find<QPushButton>("middleRange"));
    EXPECT_EQ(stateOf("car/lidar").range, std::pair(400.0, 960400.0));
    clickMouse(find<QPushButton>("wholeRange"));
    EXPECT_EQ(stateOf("car/lidar").range, std::pair(0.0, 1e6));
}

TEST_F(ScenePanelTest, SizeAndOpacityAreChosen)
{
    clickBox({"car"});
    clickRow({"path"});
    auto* const size = find<QDoubleSpinBox>("size");
    EXPECT_EQ(size->value(), 11);
    size->setFocus();
    clickKey(size, Qt::Key_Down);
    clickKey(size, Qt::Key_Down);
    EXPECT_NEAR(numRed(), 3 * numPixelsOfDisc(9), 3 * 9);
    auto* const slider = find<QSlider>("opacitySlider");
    slider->setFocus();
    clickKey(slider, Qt::Key_PageDown);
    EXPECT_EQ(stateOf("path").opacity, 0.9);
    EXPECT_EQ(find<QSpinBox>("opacity")->value(), 90);
    send(m_View, "path", redCloud());
    EXPECT_EQ(stateOf("path").size, 9);
    EXPECT_EQ(stateOf("path").opacity, 0.9);
}

TEST_F(ScenePanelTest, TheOneColourIsChosen)
{
    const QColor blue(0, 0, 255);
    const auto numBlue = [&] { return numPixels(m_View.picture({200, 200}), blue); };
    clickRow({"path"});
    auto* const button = find<QPushButton>("colour");
    ASSERT_TRUE(button->isVisible());
    EXPECT_EQ(button->text(), "#ff0000");
    const auto openDialog = [&] {
        clickMouse(button);
        return m_View.findChild<QColorDialog*>();
    };
    openDialog()->setCurrentColor(blue);
    EXPECT_NEAR(numBlue(), 3 * numPixelsOfDisc(11), 3 * 11) << "at once";
    m_View.findChild<QColorDialog*>()->reject();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(numBlue(), 0);
    openDialog()->setCurrentColor(blue);
    m_View.findChild<QColorDialog*>()->accept();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    send(m_View, "path", redCloud());
    EXPECT_NEAR(numBlue(), 3 * numPixelsOfDisc(11), 3 * 11) << "whatever the program sends";
    EXPECT_EQ(button->text(), "#0000ff");
    clickMouse(find<QPushButton>("reset"));
    EXPECT_EQ(numBlue(), 0);
    clickRow({"car", "lidar"});
    EXPECT_FALSE(button->isVisible()) << "it is coloured by its heights";
}

TEST_F(ScenePanelTest, ShadingIsChosen)
{
    clickRow({"car", "body"});
    choose(find<QComboBox>("shading"), "Smooth");
    EXPECT_TRUE(stateOf("car/body").isSmooth);
}

TEST_F(ScenePanelTest, EdgesAndBacksAreChosen)
{
    clickRow({"car", "body"});
    clickKey(&m_View, Qt::Key_1, Qt::ControlModifier); // from behind
    for (const char* name : {"edges", "backFaces"}) {
        const QImage before = m_View.picture({400, 400});
        auto* const box = find<QCheckBox>(name);
        const bool wasChecked = box->isChecked();
        clickMouse(box, {5, 5});
        EXPECT_EQ(box->isChecked(), !wasChecked);
        EXPECT_NE(m_View.picture({400, 400}), before) << name;
    }
    EXPECT_TRUE(stateOf("car/body").areEdgesSeen);
    EXPECT_FALSE(stateOf("car/body").areBackFacesSeen);
}

TEST_F(ScenePanelTest, TheProgramHasItsSayAgain)
{
    const QImage before = m_View.picture({200, 200});
    clickRow({"path"});
    auto* const reset = find<QPushButton>("reset");
    EXPECT_FALSE(reset->isEnabled());
    turnWheel(&m_View, 3, Qt::AltModifier);
    clickBox({"path"});
    EXPECT_NE(m_View.picture({200, 200}), before);
    waitForFrame();
    EXPECT_TRUE(reset->isEnabled());
    clickMouse(reset);
    EXPECT_EQ(m_View.picture({200, 200}), before);
    waitForFrame();
    EXPECT_FALSE(reset->isEnabled());
    EXPECT_EQ(check({"path"}), Qt::Checked);
}

TEST_F(ScenePanelTest, TheWheelScrollsOverWhatIsNotInUse)
{
    clickRow({"path"});
    auto* const size = find<QDoubleSpinBox>("size");
    const SceneCamera camera = m_View.getCamera();
    m_View.setFocus();
    turnWheel(size, 1);
    EXPECT_EQ(size->value(), 11);
    EXPECT_EQ(m_View.getCamera(), camera);
    size->setFocus();
    turnWheel(size, 1);
    EXPECT_EQ(size->value(), 12);
}

TEST_F(ScenePanelTest, WhatIsDoneInThePanelIsNotDoneToTheScene)
{
    const SceneCamera camera = m_View.getCamera();
    auto* const panel = find<ScenePanel>("scenePanel");
    for (QWidget* widget : {static_cast<QWidget*>(panel), find<QWidget>("name"), find<QWidget>("histogram")})
        dragMouse(widget, Qt::RightButton, {5, 5}, {60, 30});
    turnWheel(panel, 3);
    EXPECT_EQ(m_View.getCamera(), camera);
    EXPECT_FALSE(m_View.isChosen());
}

// The keys of the scene, and where it is.

TEST_F(ScenePanelTest, PShowsAndHidesIt)
{
    EXPECT_TRUE(m_View.isPanelShown()) << "there is room for it";
    const double narrow = m_View.viewSize().width;
    clickKey(&m_View, Qt::Key_P);
    EXPECT_FALSE(m_View.isPanelShown());
    EXPECT_EQ(m_View.viewSize().width, 1000);
    clickKey(&m_View, Qt::Key_P);
    EXPECT_EQ(m_View.viewSize().width, narrow);
    tree()->setFocus();
    clickKey(tree(), Qt::Key_P);
    EXPECT_FALSE(m_View.isPanelShown());
    m_View.configuration()();
    EXPECT_TRUE(m_View.isPanelShown());
}

TEST_F(ScenePanelTest, SmallViewsAreWithoutItUntilAPersonWantsIt)
{
    m_View.resize(500, 300);
    EXPECT_FALSE(m_View.isPanelShown());
    m_View.resize(1000, 600);
    EXPECT_TRUE(m_View.isPanelShown());
    m_View.resize(500, 300);
    clickKey(&m_View, Qt::Key_P);
    EXPECT_TRUE(m_View.isPanelShown());
    EXPECT_GE(m_View.viewSize().width, 200);
    for (const QSize& size : {QSize(300, 100), QSize(120, 60), QSize(40, 30)}) {
        m_View.resize(size);
        EXPECT_FALSE(m_View.grab().isNull());
        EXPECT_GE(m_View.viewSize().width, 1);
    }
}

TEST_F(ScenePanelTest, ItsEdgeIsDragged)
{
    auto* const panel = find<ScenePanel>("scenePanel");
    const int before = panel->width();
    dragMouse(panel, Qt::LeftButton, {1, 300}, {-99, 300});
    EXPECT_EQ(panel->width(), before + 100);
    EXPECT_EQ(panel->geometry().right(), m_View.width() - 1);
    EXPECT_EQ(m_View.viewSize().width, 1000 - panel->width());
    dragMouse(panel, Qt::LeftButton, {1, 300}, {-900, 300});
    EXPECT_EQ(panel->width(), 500);
}

TEST_F(ScenePanelTest, PicturesAreOfTheSceneAlone)
{
    const QImage with = m_View.picture({300, 200});
    clickKey(&m_View, Qt::Key_P);
    EXPECT_EQ(m_View.picture({300, 200}), with);
}

TEST_F(ScenePanelTest, WhatIsHitIsWhereItIsSeen)
{
    clickBox({"car"});
    const SceneCamera::Pixel pixel = m_View.getCamera().project({-1, 0, 0}, m_View.viewSize());
    const std::optional<Vector3d> hit = m_View.hitAt({pixel.x, pixel.y});
    ASSERT_TRUE(hit);
    EXPECT_NEAR((*hit)[0], -1, 0.05);
    EXPECT_EQ(m_View.grab().toImage().pixelColor(QPointF(pixel.x, pixel.y).toPoint()), RED);
}

TEST_F(ScenePanelTest, AClickInTheSceneSelects)
{
    clickBox({"car"});
    const SceneCamera::Pixel pixel = m_View.getCamera().project({-1, 0, 0}, m_View.viewSize());
    clickMouse(&m_View, QPointF(pixel.x, pixel.y).toPoint());
    EXPECT_EQ(tree()->currentItem(), row({"path"}));
    EXPECT_EQ(find<QLabel>("name")->text(), "path");
    EXPECT_EQ(m_View.getMarks().pins().size(), 1U);
    clickBox({"path"});
    EXPECT_TRUE(m_View.getMarks().pins().empty()) << "what is hidden has no marks";
}

TEST_F(ScenePanelTest, ChosenPixelsTakeThePlaceOfRadii)
{
    clickBox({"car"});
    ItemUpdate sent;
    sent.radii = NumberTuples{Numbers{0.4}, 1};
    send(m_View, "path", sent);
    const int before = numRed();
    clickRow({"path"});
    auto* const size = find<QDoubleSpinBox>("size");
    size->setFocus();
    clickKey(size, Qt::Key_Up);
    EXPECT_NEAR(numRed(), 3 * numPixelsOfDisc(size->value()), 3 * size->value());
    clickMouse(find<QPushButton>("reset"));
    EXPECT_EQ(numRed(), before);
}

TEST_F(ScenePanelTest, TheSizeThatIsDrawnIsShownWhateverItIs)
{
    clickRow({"path"});
    auto* const size = find<QDoubleSpinBox>("size");
    for (const double pixels : {100.0, 0.25, 7.0}) {
        ItemUpdate sent;
        sent.size = pixels;
        send(m_View, "path", sent);
        waitForFrame();
        EXPECT_EQ(size->value(), pixels);
    }
    const auto showRadii = [&](const Numbers& radii) {
        ItemUpdate sent;
        sent.radii = NumberTuples{radii, 1};
        send(m_View, "path", sent);
        waitForFrame();
    };
    showRadii({0.4});
    EXPECT_EQ(size->text(), "radius 0.4");
    showRadii({0.1, 0.3, 0.2});
    EXPECT_EQ(size->text(), QStringLiteral("radius 0.1 … 0.3"));
    size->setFocus();
    clickKey(size, Qt::Key_Up);
    EXPECT_EQ(stateOf("path").size, size->value()) << "pixels are chosen instead";
    EXPECT_TRUE(size->text().endsWith(" px"));
}

TEST_F(ScenePanelTest, NumbersAreShownAsCategoriesAndBack)
{
    clickRow({"car", "lidar"});
    auto* const scale = find<QComboBox>("scale");
    ASSERT_TRUE(scale->isVisible());
    EXPECT_EQ(scale->currentText(), "Numbers");
    const QImage before = m_View.picture({400, 300});
    choose(scale, "Categories");
    EXPECT_TRUE(stateOf("car/lidar").areLabels);
    EXPECT_FALSE(find<QComboBox>("colourMap")->isVisible());
    EXPECT_NE(m_View.picture({400, 300}), before);
    send(m_View, "car/lidar", cloudWithFields());
    EXPECT_TRUE(stateOf("car/lidar").areLabels) << "a person has chosen that";
    choose(scale, "Numbers");
    EXPECT_EQ(m_View.picture({400, 300}), before);
    choose(find<QComboBox>("field"), "Labels");
    EXPECT_EQ(scale->currentText(), "Categories");
    choose(scale, "Numbers");
    EXPECT_EQ(stateOf("car/lidar").range, std::pair(3.0, 5.0));
    choose(find<QComboBox>("field"), "One colour");
    EXPECT_FALSE(scale->isVisible());
}

TEST_F(ScenePanelTest, TabShowsTheNextField)
{
    clickRow({"car", "lidar"});
    m_View.setFocus();
    for (const char* expected : {"labels", "", "height"}) {
        clickKey(&m_View, Qt::Key_Tab);
        EXPECT_EQ(stateOf("car/lidar").shown, expected);
        EXPECT_TRUE(m_View.hasFocus());
    }
    clickRow({"path"});
    m_View.setFocus();
    clickKey(&m_View, Qt::Key_Tab);
    EXPECT_FALSE(m_View.hasFocus()) << "it has no fields";
}

TEST_F(ScenePanelTest, OnlyTheKeyShowsTheNextField)
{
    clickRow({"car", "lidar"});
    m_View.setFocus();
    QWidget window;
    QPushButton button(&window);
    m_View.setParent(&window);
    window.resize(1000, 600);
    window.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
    QApplication::setActiveWindow(&window);
    m_View.show();
    m_View.setFocus();
    ASSERT_EQ(QApplication::focusWidget(), &m_View);
    m_View.hide(); // Qt moves the focus on
    EXPECT_EQ(QApplication::focusWidget(), &button);
    EXPECT_EQ(stateOf("car/lidar").shown, "height");
    m_View.show();
    m_View.setFocus();
    m_View.setParent(nullptr);
    EXPECT_EQ(stateOf("car/lidar").shown, "height");
    m_View.show();
    QApplication::setActiveWindow(&m_View);
    m_View.setFocus();
    clickKey(&m_View, Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_EQ(stateOf("car/lidar").shown, "height");
    m_View.setFocus();
    clickKey(&m_View, Qt::Key_Tab);
    EXPECT_EQ(stateOf("car/lidar").shown, "labels");
}

TEST_F(ScenePanelTest, PointsAreMadeLargerAndSmaller)
{
    clickRow({"path"});
    turnWheel(&m_View, 2, Qt::AltModifier);
    EXPECT_EQ(stateOf("path").size, 13);
    EXPECT_EQ(stateOf("car/lidar").size, 11) << "another one is selected";
    clickKey(&m_View, Qt::Key_Minus);
    clickKey(&m_View, Qt::Key_Minus);
    clickKey(&m_View, Qt::Key_Plus);
    EXPECT_EQ(stateOf("path").size, 12);
    for (int i = 0; i < 200; ++i)
        clickKey(&m_View, Qt::Key_Minus);
    EXPECT_EQ(stateOf("path").size, 1);
}

TEST_F(ScenePanelTest, ItIsDarkWhereTheWindowIs)
{
    m_View.setPalette(paletteOf(Theme::Dark));
    waitForFrame();
    clickRow({"car", "lidar"});
    clickBox({"path"});
    const QImage box = tree()->viewport()->grab(rectOfBox({"path"})).toImage();
    EXPECT_GT(box.pixelColor(box.width() / 2, 0).lightness(), 100) << "its outline";
    const bool isDrawnByQt = QApplication::style()->inherits("QFusionStyle"); // others have boxes as the system does
    EXPECT_TRUE(!isDrawnByQt || box.pixelColor(box.width() / 2, box.height() / 2).lightness() < 60);
    auto* const maps = find<QComboBox>("colourMap");
    maps->showPopup();
    const QImage list = maps->view()->viewport()->grab().toImage();
    EXPECT_LT(list.pixelColor(list.width() - 3, list.height() - 3).lightness(), 60);
    maps->hidePopup();
}

TEST_F(ScenePanelTest, EverythingHasANameForThoseWhoCannotSee)
{
    EXPECT_NE(tree()->accessibleName(), "");
    for (const char* name : {"field", "colourMap", "histogram", "from", "to", "wholeRange", "middleRange", "size",
             "opacity", "opacitySlider", "shading", "edges", "backFaces", "reset"}) {
        EXPECT_NE(find<QWidget>(name)->accessibleName(), "") << name;
        EXPECT_NE(find<QWidget>(name)->toolTip(), "") << name;
    }
}

} // namespace
} // namespace tavo
