#include <gtest/gtest.h>

#include "tests/vireo/show/scenes/sceneUpdates.h"
#include "vireo/show/colours/colourOfLabel.h"

namespace tavo {
namespace {

const QColor RED(255, 0, 0);

// What a person chooses of items wins over what the program sends, then and later.
class SceneChoicesTest : public testing::Test
{
protected:
    SceneChoicesTest()
    {
        SceneUpdate front = seenFrom("front", false);
        front.hasBearings = false;
        m_View.apply(front);
        sendBoth();
    }

    static ItemUpdate cloud()
    {
        ItemUpdate update = item(ItemKind::Cloud, {-1, 0, 0, 0, 0, 0, 1, 0, 0});
        update.size = 11;
        update.colour = RGBA8(255, 0, 0, 255);
        return update;
    }

    void sendBoth()
    {
        send(m_View, "car/lidar", cloud());
        send(m_View, "path", cloud());
    }

    void sendField(const std::string& name, const Numbers& numbers, bool areLabels = false)
    {
        ItemUpdate update;
        update.fields.push_back({name, {numbers, 1}, areLabels});
        send(m_View, "path", update);
    }

    const SceneItem& itemAt(const std::string& path) { return m_View.getModel().items().at(path); }

    void choose(const std::string& path, const ItemChoice& choice)
    {
        m_View.choose([&](SceneChoices& choices) { choices.set(path, choice); });
    }

    void setVisible(const std::string& branch, bool isVisible)
    {
        m_View.choose([&](SceneChoices& choices) { choices.setVisible(branch, isVisible); });
    }

    SceneView m_View{"test"};
};

TEST_F(SceneChoicesTest, WhatIsHiddenStaysHiddenWhenItIsSentAgain)
{
    EXPECT_NEAR(numPixels(m_View.picture({200, 200}), RED), 3 * numPixelsOfDisc(11), 3 * 11);
    setVisible("path", false);
    setVisible("car", false);
    EXPECT_EQ(numPixels(m_View.picture({200, 200}), RED), 0);
    sendBoth();
    ItemUpdate shown;
    shown.isVisible = true;
    send(m_View, "path", shown);
    SceneUpdate removed;
    removed.remove("car/lidar");
    m_View.apply(removed);
    sendBoth();
    send(m_View, "car/new", cloud());
    EXPECT_EQ(numPixels(m_View.picture({200, 200}), RED), 0);
    setVisible("car/lidar", true);
    EXPECT_TRUE(itemAt("car/lidar").isWanted());
    EXPECT_FALSE(itemAt("car/new").isWanted()) << "its branch is hidden still";
    EXPECT_GT(numPixels(m_View.picture({200, 200}), RED), 0);
}

TEST_F(SceneChoicesTest, ABranchIsNotWhatBeginsLikeIt)
{
    send(m_View, "car-2", cloud());
    setVisible("car", false);
    EXPECT_FALSE(itemAt("car/lidar").isWanted());
    EXPECT_TRUE(itemAt("car-2").isWanted());
}

TEST_F(SceneChoicesTest, AFieldStaysChosenWhileTheItemHasIt)
{
    sendField("height", {0, 1, 2});
    sendField("intensity", {0, 1, 2});
    EXPECT_EQ(itemAt("path").state().shown, "height");
    ItemChoice choice;
    choice.shown = "intensity";
    choose("path", choice);
    EXPECT_EQ(itemAt("path").state().shown, "intensity");
    ItemUpdate asked;
    asked.shown = "height";
    send(m_View, "path", asked);
    sendBoth();
    EXPECT_EQ(itemAt("path").state().shown, "intensity");

    SceneUpdate removed;
    removed.remove("path");
    m_View.apply(removed);
    sendBoth();
    sendField("height", {0, 1, 2});
    EXPECT_EQ(itemAt("path").state().shown, "height") << "it has no other";
    sendField("intensity", {0, 1, 2});
    EXPECT_EQ(itemAt("path").state().shown, "intensity");
}

TEST_F(SceneChoicesTest, EachFieldHasItsOwnMapAndRange)
{
    sendField("height", {0, 1, 2});
    sendField("intensity", {0, 100, 200});
    ItemUpdate sent;
    sent.range = {5, 6};
    sent.colourMap.emplace("grey");
    send(m_View, "path", sent);
    ItemChoice choice;
    choice.fields["height"] = {"magma", std::pair(-1.0, 1.0), false};
    choice.fields["intensity"] = {{}, {}, true};
    choose("path", choice);
    EXPECT_EQ(itemAt("path").state().colourMap, "magma");
    EXPECT_EQ(itemAt("path").state().range, std::pair(-1.0, 1.0));
    choice.shown = "intensity";
    choose("path", choice);
    EXPECT_EQ(itemAt("path").state().colourMap, "grey") << "as sent";
    EXPECT_EQ(itemAt("path").state().range, std::pair(0.0, 200.0)) << "all of it";
    sendField("intensity", {0, 100, 300});
    EXPECT_EQ(itemAt("path").state().range, std::pair(0.0, 300.0));
}

TEST_F(SceneChoicesTest, SizeAndOpacityAreAsChosen)
{
    ItemChoice choice;
    choice.size = 5;
    choose("path", choice);
    setVisible("car", false);
    sendBoth();
    EXPECT_NEAR(numPixels(m_View.picture({200, 200}), RED), 3 * numPixelsOfDisc(5), 3 * 5);
    choice.opacity = 0.5;
    choose("path", choice);
    sendBoth();
    EXPECT_EQ(itemAt("path").state().opacity, 0.5);
    EXPECT_EQ(numPixels(m_View.picture({200, 200}), RED), 0);
}

TEST_F(SceneChoicesTest, WhatIsSmoothIsAsChosen)
{
    ItemUpdate sent = item(ItemKind::Mesh, {0, 0, 0, 1, 0, 0, 0, 0, 1, 1, 1, 1}, {}, {0, 1, 2, 1, 3, 2});
    send(m_View, "mesh", sent);
    const QImage flat = m_View.picture({200, 200});
    ItemChoice choice;
    choice.isSmooth = true;
    choose("mesh", choice);
    EXPECT_NE(m_View.picture({200, 200}), flat);
    send(m_View, "mesh", sent);
    EXPECT_TRUE(itemAt("mesh").state().isSmooth);
    m_View.choose([](SceneChoices& choices) { choices.reset("mesh"); });
    EXPECT_EQ(m_View.picture({200, 200}), flat);
}

TEST_F(SceneChoicesTest, ResettingShowsWhatTheProgramSays)
{
    const QImage before = m_View.picture({200, 200});
    ItemChoice choice;
    choice.size = 5;
    choose("path", choice);
    choose("car/lidar", choice);
    setVisible("path", false);
    setVisible("car", false);
    EXPECT_TRUE(m_View.getModel().getChoices().areAnyIn("car"));
    for (const char* branch : {"path", "car"})
        m_View.choose([branch](SceneChoices& choices) { choices.reset(branch); });
    EXPECT_FALSE(m_View.getModel().getChoices().areAnyIn("car"));
    EXPECT_EQ(m_View.picture({200, 200}), before);
}

TEST_F(SceneChoicesTest, ASwatchHasAFewOfTheColours)
{
    EXPECT_EQ(itemAt("path").swatch(false), std::vector<RGBA8>{RGBA8(255, 0, 0, 255)});
    sendField("height", {0, 1, 2});
    const ColourMap viridis = findColourMap("viridis").value();
    EXPECT_EQ(itemAt("path").swatch(false).front(), viridis.sample(0));
    EXPECT_EQ(itemAt("path").swatch(false).back(), viridis.sample(1));
    sendField("labels", {2, 1, 2}, true);
    ItemChoice choice;
    choice.shown = "labels";
    choose("path", choice);
    EXPECT_EQ(itemAt("path").swatch(false), std::vector({colourOfLabel(1), colourOfLabel(2)}));
    choose("path", ItemChoice());
    ItemUpdate sent;
    sent.colours = {Numbers{0, 0, 255, 0, 255, 0, 255, 0, 0}, 0};
    send(m_View, "path", sent);
    EXPECT_EQ(itemAt("path").swatch(false).front(), RGBA8(0, 0, 255, 255));
    EXPECT_EQ(itemAt("path").swatch(false).back(), RGBA8(255, 0, 0, 255));
}

} // namespace
} // namespace tavo
