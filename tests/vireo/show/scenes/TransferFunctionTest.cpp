#include "vireo/show/volumes/TransferFunction.h"

#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <string>

#include "vireo/show/Scene.h"
#include "vireo/show/delivery/Inbox.h"
#include "vireo/show/scenes/SceneUpdate.h"
#include "vireo/show/show.h"

// Looks of volumes in files.
namespace tavo {
namespace {

using testing::HasSubstr;

const TransferFunction FUNCTION{"bone", {100, 1300}, {{0, 0}, {0.1, 0}, {0.25, 0.15}, {1, 0.8}}};

constexpr const char* VALID =
    R"({"transferFunction": 1, "colourMap": "grey", "window": 4, "level": 3, "points": [{"place": 0, "opacity": 0},
        {"place": 1, "opacity": 1}]})";

std::string whyNot(const QByteArray& json)
{
    TransferFunction function = FUNCTION;
    const std::string why = readTransferFunction(json, function);
    EXPECT_EQ(why.find('\n'), std::string::npos) << "one line";
    EXPECT_EQ(function == FUNCTION, !why.empty()) << "of what is damaged nothing is taken";
    return why;
}

std::string whyNotWith(const char* before, const char* after)
{
    return whyNot(QByteArray(VALID).replace(before, after));
}

class TransferFunctionTest : public testing::Test
{
protected:
    QString path(const char* name) const { return m_Folder.filePath(name); }

    QTemporaryDir m_Folder;
};

TEST_F(TransferFunctionTest, IsReadAsItWasSaved)
{
    for (const TransferFunction& function : {FUNCTION, TransferFunction{"viridis", {5, -3}, {{0, 1}, {1, 0}}},
             TransferFunction{"grey", {2, 2}, {{0, 0.1}, {1, 1}}},
             TransferFunction{"grey", {1, 7}, {{0, 0.1}, {1, 1}}, true}}) {
        ASSERT_EQ(saveTransferFunction(path("look.json"), function), "");
        TransferFunction read;
        ASSERT_EQ(loadTransferFunction(path("look.json"), read), "");
        EXPECT_EQ(read, function);
    }
    EXPECT_EQ(saveTransferFunction(path("wide.json"), {"grey", {-1.7e308, 1.7e308}, {}}), "its range is too wide");
}

TEST_F(TransferFunctionTest, IsJsonWithAWindowAndALevel)
{
    TransferFunction read;
    ASSERT_EQ(readTransferFunction(VALID, read), "");
    EXPECT_EQ(read, (TransferFunction{"grey", {1, 5}, {{0, 0}, {1, 1}}}));
}

TEST_F(TransferFunctionTest, WhatIsDamagedIsRefusedInOneLine)
{
    EXPECT_THAT(whyNot(""), HasSubstr("it is no JSON"));
    EXPECT_THAT(whyNot(QByteArray(VALID).left(60)), HasSubstr("it is no JSON"));
    EXPECT_THAT(whyNot(QByteArray(100000, '[')), HasSubstr("it is no JSON"));
    EXPECT_EQ(whyNot("[]"), "it is no transfer function");
    EXPECT_EQ(whyNotWith("\"transferFunction\": 1", "\"transferFunction\": 2"), "it is of a later version");
    for (const char* other : {"0", "-1", "1.5"})
        EXPECT_EQ(whyNotWith("\"transferFunction\": 1", ("\"transferFunction\": " + std::string(other)).c_str()),
            "there is no version " + std::string(other) + " of transfer functions");
    EXPECT_THAT(whyNotWith("\"grey\"", "7"), HasSubstr("no \"colourMap\""));
    EXPECT_THAT(whyNotWith("grey", "gr\\u0007y\\n"), HasSubstr("there is no map \"gr\\x07y\\x0a\""));
    EXPECT_THAT(whyNotWith("\"window\": 4", "\"window\": \"4\""), HasSubstr("no number \"window\""));
    EXPECT_THAT(whyNotWith("\"level\": 3", "\"level\": 1e308, \"window\": 1.7e308"), HasSubstr("too large"));
    EXPECT_THAT(whyNotWith("\"points\"", "\"other\""), HasSubstr("no \"points\""));
    EXPECT_THAT(whyNotWith("{\"place\": 0, \"opacity\": 0},", ""), HasSubstr("1 points are too few"));
    EXPECT_THAT(whyNotWith("\"opacity\": 1", "\"opacity\": 1.5"), HasSubstr("an opacity of 1.5"));
    EXPECT_THAT(whyNotWith("\"place\": 1", "\"place\": 2"), HasSubstr("point 1 has no \"place\" from 0 to 1"));
    EXPECT_THAT(whyNotWith("\"place\": 0,", "\"place\": 1,"), HasSubstr("have the value 1"));
    EXPECT_THAT(
        whyNotWith("[", ("[" + QByteArray("{},").repeated(2000)).constData()), HasSubstr("2002 points are more"));
}

TEST_F(TransferFunctionTest, WhatIsNoFileIsRefused)
{
    TransferFunction read;
    EXPECT_EQ(loadTransferFunction(m_Folder.path(), read), "it is no file");
    testing::internal::CaptureStderr();
    EXPECT_EQ(loadTransferFunction("", read), "the file has no name");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "Qt says nothing of it";
    EXPECT_NE(loadTransferFunction(path("none.json"), read), "");
    QFile large(path("large.json"));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly));
    ASSERT_TRUE(large.resize(2 << 20));
    EXPECT_EQ(loadTransferFunction(path("large.json"), read), "2097152 bytes are too many for a transfer function");
}

TEST_F(TransferFunctionTest, AProgramSavesAndLoadsIt)
{
    const std::string file = path("look.json").toStdString();
    const Scene view = scene("functions");
    const std::vector<float> samples{1, 2, 3, 4};
    EXPECT_FALSE(saveData("functions", file)) << "there is no volume";
    const Item item = view.volume("v", samples, {2, 2, 1}).preset("CT bone");
    ASSERT_TRUE(saveData("functions", file));
    TransferFunction saved;
    ASSERT_EQ(loadTransferFunction(path("look.json"), saved), "");
    EXPECT_EQ(saved, FUNCTION);
    inbox::take();
    item.loadTransferFunction(file);
    bool isSent = false;
    for (Batch::Part& part : inbox::take())
        if (part.slot->name == "functions") {
            const ItemUpdate sent = static_cast<SceneUpdate&>(*part.pending.update).items["v"];
            isSent = sent.colourMap == "bone" && sent.range == FUNCTION.range && sent.opacities == FUNCTION.opacities;
        }
    EXPECT_TRUE(isSent);
    testing::internal::CaptureStderr();
    item.loadTransferFunction(path("none.json").toStdString());
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("what was shown stays"));
}

} // namespace
} // namespace tavo
