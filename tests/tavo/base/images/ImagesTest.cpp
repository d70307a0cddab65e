#include <QBuffer>
#include <QImage>
#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>

#include "tavo/base/images/RGBACubeMap.h"
#include "tavo/base/images/RGBAFloat32Image.h"
#include "tavo/base/images/RGBAImage.h"

namespace tavo {
namespace {

using Pixel = RGBAImage::Pixel;

TEST(TemplatedImageTest, HasNoPixelsAtFirst)
{
    RGBAImage image;
    EXPECT_EQ(image.getWidth(), 0u);
    EXPECT_EQ(image.getHeight(), 0u);
    EXPECT_TRUE(image.getPixels().empty());
    EXPECT_THROW(image.at(0, 0), std::out_of_range);
}

TEST(TemplatedImageTest, HoldsRowsOneAfterTheOther)
{
    RGBAImage image(3, 2);
    image.at(2, 1) = Pixel(1, 2, 3, 4);
    EXPECT_EQ(image.getPixels()[5], Pixel(1, 2, 3, 4));
    EXPECT_THROW(image.at(3, 0), std::out_of_range);
    EXPECT_THROW(image.at(0, 2), std::out_of_range);
}

TEST(TemplatedImageTest, IsZeroAfterResizing)
{
    RGBAImage image(1, 1);
    image.at(0, 0) = Pixel(9, 9, 9, 9);
    image.resize(2, 1);
    EXPECT_EQ(image.at(0, 0), Pixel());
    EXPECT_EQ(image.at(1, 0), Pixel());
}

TEST(RGBAImageTest, SurvivesTheWayThroughAPngFile)
{
    RGBAImage image(3, 2);
    for (unsigned int i = 0; i < 6; ++i)
        image.getPixels()[i] = Pixel(10 * i, 255 - i, i, 40 * i + 10);

    QByteArray png;
    QBuffer buffer(&png);
    ASSERT_TRUE(buffer.open(QIODevice::WriteOnly));
    ASSERT_TRUE(image.toQImage().save(&buffer, "PNG"));

    const RGBAImage read = RGBAImage::fromQImage(QImage::fromData(png, "PNG"));
    EXPECT_EQ(read.getWidth(), 3u);
    EXPECT_EQ(read.getHeight(), 2u);
    EXPECT_EQ(read.getPixels(), image.getPixels());
}

TEST(RGBAImageTest, TakesOtherFormatsAndNone)
{
    QImage red(2, 2, QImage::Format_RGB32);
    red.fill(qRgb(255, 0, 0));
    EXPECT_EQ(RGBAImage::fromQImage(red).at(1, 1), Pixel(255, 0, 0, 255));
    EXPECT_TRUE(RGBAImage::fromQImage(QImage()).getPixels().empty());
    EXPECT_TRUE(RGBAImage().toQImage().isNull());
}

TEST(RGBAFloat32ImageTest, CutsAndRoundsOnTheWayToBytes)
{
    RGBAFloat32Image image(2, 1);
    image.at(0, 0) = {-1.0f, 0.5f, 2.0f, 1.0f};
    image.at(1, 0) = {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(), 0.0f, 0.002f};
    const RGBAImage bytes = RGBAImage::fromQImage(image.toQImage());
    EXPECT_EQ(bytes.at(0, 0), Pixel(0, 128, 255, 255));
    EXPECT_EQ(bytes.at(1, 0), Pixel(0, 255, 0, 1));
}

TEST(RGBAFloat32ImageTest, GivesBackEveryByte)
{
    RGBAImage bytes(64, 1);
    for (unsigned int i = 0; i < 256; ++i)
        bytes.getPixels()[i / 4][i % 4] = static_cast<unsigned char>(i);
    const QImage through = RGBAFloat32Image::fromQImage(bytes.toQImage()).toQImage();
    EXPECT_EQ(RGBAImage::fromQImage(through).getPixels(), bytes.getPixels());
}

TEST(RGBACubeMapTest, HoldsSixImagesInTheirOrder)
{
    RGBACubeMap cubeMap;
    for (unsigned int face = 0; face < RGBACubeMap::NUM_FACES; ++face)
        cubeMap.getImage(static_cast<RGBACubeMap::Face>(face)).resize(face + 1, 1);
    EXPECT_EQ(cubeMap.getImage(RGBACubeMap::POSITIVE_X).getWidth(), 1u);
    EXPECT_EQ(cubeMap.getImage(RGBACubeMap::NEGATIVE_X).getWidth(), 2u);
    EXPECT_EQ(cubeMap.getImage(RGBACubeMap::POSITIVE_Y).getWidth(), 3u);
    EXPECT_EQ(cubeMap.getImage(RGBACubeMap::NEGATIVE_Y).getWidth(), 4u);
    EXPECT_EQ(cubeMap.getImage(RGBACubeMap::POSITIVE_Z).getWidth(), 5u);
    EXPECT_EQ(cubeMap.getImage(RGBACubeMap::NEGATIVE_Z).getWidth(), 6u);
}

} // namespace
} // namespace tavo
