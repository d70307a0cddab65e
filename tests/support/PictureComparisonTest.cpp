#include "tests/support/PictureComparison.h"

#include <QByteArray>
#include <QTemporaryDir>
#include <gmock/gmock.h>

namespace tavo {

namespace {

using testing::HasSubstr;
namespace fs = std::filesystem;

class PictureComparisonTest : public testing::Test
{
protected:
    void SetUp() override
    {
        qunsetenv("VIREO_APPROVE_PICTURES");
        fs::remove_all(m_Folder);
        approve(m_Reference, "square");
    }

    void approve(const Picture& picture, const std::string& name)
    {
        qputenv("VIREO_APPROVE_PICTURES", "1");
        EXPECT_TRUE(m_Comparison.matches(picture, name, {}));
        qunsetenv("VIREO_APPROVE_PICTURES");
    }

    bool hasFailure(const std::string& file) const { return fs::exists(m_Folder / "failures" / file); }

    const QTemporaryDir m_Directory; // the same test may be running on another window system
    const fs::path m_Folder = fs::path(m_Directory.path().toStdString()) / "pictures";
    const PictureComparison m_Comparison{m_Folder / "references", m_Folder / "failures"};
    const Picture m_Reference{4, 5, {10, 20, 30, 40}};
};

} // namespace

TEST_F(PictureComparisonTest, AcceptsThePictureThatWasApproved)
{
    EXPECT_TRUE(m_Comparison.matches(m_Reference, "square", {}));
    EXPECT_FALSE(fs::exists(m_Folder / "failures"));
}

TEST_F(PictureComparisonTest, KeepsEveryPixelThroughTheFile)
{
    Picture picture(3, 2);
    for (unsigned char i = 0; i < 6; ++i)
        picture.pixels[i] = {i, static_cast<unsigned char>(i * 2), static_cast<unsigned char>(i * 3), 200};
    picture.at(2, 1) = {1, 2, 3, 0};
    approve(picture, "folder/gradient");
    EXPECT_TRUE(m_Comparison.matches(picture, "folder/gradient", {}));
}

TEST_F(PictureComparisonTest, RefusesAPictureThatDiffersAndNamesTheFiles)
{
    Picture picture = m_Reference;
    picture.at(1, 2)[3] = 41;
    const testing::AssertionResult result = m_Comparison.matches(picture, "square", {});
    EXPECT_FALSE(result);
    EXPECT_THAT(result.message(), HasSubstr("1 of 20 pixels differ by more than 0"));
    EXPECT_THAT(result.message(), HasSubstr((m_Folder / "failures" / "square.png").string()));
    EXPECT_TRUE(hasFailure("square.png"));
    EXPECT_TRUE(hasFailure("square.reference.png"));
    EXPECT_TRUE(hasFailure("square.difference.png"));
}

TEST_F(PictureComparisonTest, TakesThePerChannelToleranceAsTheLargestAllowedDifference)
{
    Picture picture = m_Reference;
    picture.at(0, 0)[1] = 23;
    EXPECT_TRUE(m_Comparison.matches(picture, "square", {.perChannel = 3}));
    EXPECT_FALSE(m_Comparison.matches(picture, "square", {.perChannel = 2}));
}

TEST_F(PictureComparisonTest, TakesTheAllowedPartOfDifferingPixels)
{
    Picture picture = m_Reference;
    picture.at(0, 0) = {255, 255, 255, 255};
    picture.at(3, 4) = {255, 255, 255, 255};
    EXPECT_TRUE(m_Comparison.matches(picture, "square", {.differingPixels = 0.1}));
    EXPECT_FALSE(m_Comparison.matches(picture, "square", {.differingPixels = 0.09}));
}

TEST_F(PictureComparisonTest, RefusesAPictureOfAnotherSize)
{
    const auto result = m_Comparison.matches(Picture(5, 4, {10, 20, 30, 40}), "square", {.differingPixels = 1});
    EXPECT_FALSE(result);
    EXPECT_THAT(result.message(), HasSubstr("it is 5x4, the reference 4x5"));
    EXPECT_TRUE(hasFailure("square.reference.png"));
}

TEST_F(PictureComparisonTest, RefusesAPictureWithoutAReference)
{
    const auto result = m_Comparison.matches(m_Reference, "unknown", {});
    EXPECT_FALSE(result);
    EXPECT_THAT(result.message(), HasSubstr("there is no reference"));
    EXPECT_TRUE(hasFailure("unknown.png"));
}

} // namespace tavo
