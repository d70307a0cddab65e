#include "vireo/show/slices/slicesData.h"

#include <QFile>
#include <QTemporaryDir>
#include <cstring>
#include <gtest/gtest.h>

#include "tests/vireo/show/slices/layers.h"

namespace tavo {
namespace {

class SlicesDataTest : public testing::Test
{
protected:
    QByteArray saved(const QString& name, const SliceLayer& layer)
    {
        const QString file = m_Folder.filePath(name);
        EXPECT_EQ(saveSlices(file, layer), "");
        QFile read(file);
        EXPECT_TRUE(read.open(QIODevice::ReadOnly));
        return read.readAll();
    }

    template <typename T>
    static T at(const QByteArray& bytes, int place)
    {
        T value;
        std::memcpy(&value, bytes.constData() + place, sizeof value);
        return value;
    }

    QTemporaryDir m_Folder;
};

TEST_F(SlicesDataTest, NiftiHasTheSamplesAndWhereTheyAre)
{
    SliceLayer layer = layerOf<std::int16_t>({1, -2, 3, 4, 5, 600}, {3, 2, 1}, {0.5, 1, 2}, {7, 8, 9});
    layer.grid.axes[0] = {-1, 0, 0};
    layer.isOriented = true;
    const QByteArray bytes = saved("head.nii", layer);
    ASSERT_EQ(bytes.size(), 352 + 12);
    EXPECT_EQ(at<qint32>(bytes, 0), 348);
    EXPECT_EQ(at<qint16>(bytes, 40), 3);
    EXPECT_EQ(at<qint16>(bytes, 42), 3);
    EXPECT_EQ(at<qint16>(bytes, 44), 2);
    EXPECT_EQ(at<qint16>(bytes, 46), 1);
    EXPECT_EQ(at<qint16>(bytes, 70), 4);
    EXPECT_EQ(at<qint16>(bytes, 72), 16);
    EXPECT_EQ(at<float>(bytes, 80), 0.5F);
    EXPECT_EQ(at<float>(bytes, 108), 352);
    EXPECT_EQ(at<qint16>(bytes, 254), 1);
    EXPECT_EQ(at<float>(bytes, 280), -0.5F);
    EXPECT_EQ(at<float>(bytes, 292), 7);
    EXPECT_EQ(at<float>(bytes, 296 + 4), 1);
    EXPECT_EQ(at<float>(bytes, 312 + 12), 9);
    EXPECT_EQ(bytes.mid(344, 4), QByteArray("n+1\0", 4));
    EXPECT_EQ(at<qint16>(bytes, 354), -2);
    EXPECT_EQ(at<qint16>(bytes, 362), 600);
}

TEST_F(SlicesDataTest, ValuesAreSavedWithTheirPlaces)
{
    EXPECT_EQ(saved("head.csv", layerOf<float>({0.1F, 2}, {1, 2, 1}, {1, 0.5, 1}, {3, 4, 5})),
        "x,y,z,value\n3,4,5,0.1\n3,4.5,5,2\n");
    EXPECT_EQ(saved("colours.csv", layerOf<std::uint8_t>({1, 2, 3}, {1, 1, 1})), "x,y,z,red,green,blue\n0,0,0,1,2,3\n");
}

TEST_F(SlicesDataTest, WhatAFormatHasNoPlaceForIsSaid)
{
    const auto whyNot = [this](const char* name, const SliceLayer& layer) {
        return saveSlices(m_Folder.filePath(name), layer);
    };
    EXPECT_EQ(whyNot("a.nii", layerOf<float>({1, 2, 3}, {1, 1, 1})), "colours are saved as .csv");
    EXPECT_EQ(whyNot("a.nii", layerOf(std::vector<float>(40'000), {40'000, 1, 1})),
        "a NIfTI file has at most 32767 samples along an axis, and not 40000");
    EXPECT_EQ(whyNot("a.nii.gz", layerOf<float>({1}, {1, 1, 1})),
        "it is saved uncompressed, in a file that ends with \".nii\"");
    EXPECT_EQ(whyNot("a.nii", {}), "there are no samples");
}

} // namespace
} // namespace tavo
