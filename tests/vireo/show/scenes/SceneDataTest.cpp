#include <QFile>
#include <QTemporaryDir>
#include <array>
#include <cstdint>
#include <cstring>
#include <gmock/gmock.h>

#include "vireo/show/delivery/Inbox.h"
#include "vireo/show/show.h"

// What is saved of scenes that nobody shows: all of it still waits.
namespace tavo {
namespace {

class SceneDataTest : public testing::Test
{
protected:
    ~SceneDataTest() override { inbox::take(); }

    std::string saved()
    {
        const QString path = m_Folder.filePath("scene.csv");
        if (!saveData("data", path.toStdString()))
            return "nothing";
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : "no file";
    }

    const Scene m_Scene = scene("data");
    QTemporaryDir m_Folder;
};

TEST_F(SceneDataTest, OfOneItemHasARowForEachPoint)
{
    m_Scene.cloud("a", {0.1, 2, 1e-300, 5500000.125, 0, -1}).scalar("height", std::vector<float>{0.1F, NAN});
    m_Scene.transform("a", {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 7, 7, 7, 1});
    EXPECT_EQ(saved(), "\"x\",\"y\",\"z\",\"height\"\n"
                       "0.1,2,1e-300,0.1\n"
                       "5500000.125,0,-1,nan\n");
}

TEST_F(SceneDataTest, HasAllThatFits)
{
    m_Scene.cloud("a", std::vector<Vector3f>{{1, 2, 3}, {4, 5, 6}})
        .normals({0, 0, 1, 0, 0.5, 0})
        .colours(std::vector<RGBA8>{{255, 0, 7, 128}, {1, 2, 3, 4}})
        .labels({-3, 9})
        .scalar("x", {10, 20})
        .scalar("say \"hi\", twice", {1, 2})
        .scalar("waits", {1, 2, 3})
        .radius({0.5, 0.25});
    EXPECT_EQ(saved(),
        "\"x\",\"y\",\"z\",\"normal x\",\"normal y\",\"normal z\",\"red\",\"green\",\"blue\",\"opacity\","
        "\"radius\",\"labels\",\"x 2\",\"say \"\"hi\"\", twice\"\n"
        "1,2,3,0,0,1,255,0,7,128,0.5,-3,10,1\n"
        "4,5,6,0,0.5,0,1,2,3,4,0.25,9,20,2\n");
}

TEST_F(SceneDataTest, OfAMeshHasItsFaces)
{
    const std::vector<std::vector<int>> faces{{0, 1, 2}, {2, 1, 3, 0}};
    m_Scene.mesh("a", {0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0}, faces).scalar("area", {0.5, 1}).scalar("of", {1, 2, 3, 4});
    EXPECT_EQ(saved(), "\"x\",\"y\",\"z\",\"area\",\"of\",\"vertices\"\n"
                       "0,0,0,,1,\n"
                       "1,0,0,,2,\n"
                       "0,1,0,,3,\n"
                       "1,1,0,,4,\n"
                       ",,,0.5,,0 1 2\n"
                       ",,,1,,2 1 3 0\n");
}

TEST_F(SceneDataTest, OfLinesHasTheirPartsIfTheyHaveNumbers)
{
    m_Scene.segments("a", {0, 0, 0, 1, 0, 0, 2, 0, 0, 3, 0, 0});
    EXPECT_EQ(saved(), "\"x\",\"y\",\"z\"\n0,0,0\n1,0,0\n2,0,0\n3,0,0\n");
    m_Scene.segments("a", {0, 0, 0, 1, 0, 0, 2, 0, 0, 3, 0, 0}).colours({255, 0, 0, 0, 255, 0});
    EXPECT_THAT(saved(), testing::EndsWith("3,0,0,,,,\n,,,255,0,0,0 1\n,,,0,255,0,2 3\n"));
    m_Scene.clear();
    m_Scene.lines("a", {0, 0, 0, 1, 0, 0, 2, 0, 0}).scalar("speed", {7, 8});
    EXPECT_THAT(saved(), testing::EndsWith("2,0,0,,\n,,,7,0 1\n,,,8,1 2\n"));
}

TEST_F(SceneDataTest, OfSeveralItemsHasTheirPaths)
{
    m_Scene.cloud("car/lidar", {1, 2, 3}).scalar("height", {3});
    m_Scene.vectors("car/wind", {0, 0, 0}, {1, 0, 0});
    m_Scene.boxes("box", {0, 0, 0}, {1, 2, 3}).scalar("height", {9});
    m_Scene.frame("frame", {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1});
    m_Scene.text("note", {4, 4, 4}, "a, b");
    EXPECT_EQ(saved(), "\"path\",\"x\",\"y\",\"z\",\"max x\",\"max y\",\"max z\",\"height\",\"direction x\","
                       "\"direction y\",\"direction z\",\"text\"\n"
                       "\"box\",0,0,0,1,2,3,9,,,,\n"
                       "\"car/lidar\",1,2,3,,,,3,,,,\n"
                       "\"car/wind\",0,0,0,,,,,1,0,0,\n"
                       "\"frame\",5,6,7,,,,,1,0,0,\n"
                       "\"frame\",5,6,7,,,,,0,1,0,\n"
                       "\"frame\",5,6,7,,,,,0,0,1,\n"
                       "\"note\",4,4,4,,,,,,,,\"a, b\"\n");
}

TEST_F(SceneDataTest, OfAnEmptySceneHasNoRows)
{
    m_Scene.orthographic();
    EXPECT_EQ(saved(), "\"x\",\"y\",\"z\"\n");
}

// More than one piece of text.
TEST_F(SceneDataTest, OfManyPointsIsWhole)
{
    std::vector<Vector3d> points(200000, Vector3d(1, 2, 3));
    points.back() = {7, 8, 9};
    m_Scene.cloud("a", std::move(points));
    const std::string text = saved();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 200001);
    EXPECT_THAT(text, testing::EndsWith("1,2,3\n7,8,9\n"));
}

// Numbers where NIfTI-1 has them.
class NiftiBytes
{
public:
    explicit NiftiBytes(const QString& path)
    {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            m_Bytes = file.readAll();
    }

    template <typename T>
    std::vector<T> at(int offset, int count) const
    {
        std::vector<T> numbers(static_cast<std::size_t>(count));
        const int size = count * static_cast<int>(sizeof(T));
        if (offset + size <= m_Bytes.size())
            std::memcpy(numbers.data(), m_Bytes.constData() + offset, static_cast<std::size_t>(size));
        return numbers;
    }

    int size() const { return m_Bytes.size(); }

private:
    QByteArray m_Bytes;
};

TEST_F(SceneDataTest, AVolumeIsAFileOfItsOwn)
{
    using testing::ElementsAre;
    const std::string path = m_Folder.filePath("volume.nii").toStdString();
    const std::vector<std::int16_t> samples{-1, 2, 3, 4, 5, 1000};
    m_Scene.cloud("points", {0, 0, 0});
    EXPECT_FALSE(saveData("data", path)) << "there is no volume";
    m_Scene.volume("v", samples, {3, 2, 1}, {0.5, 2, 4}, {10, 20, 30}, {{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}});
    ASSERT_TRUE(saveData("data", path));
    const NiftiBytes file(QString::fromStdString(path));
    EXPECT_EQ(file.size(), 352 + 12);
    EXPECT_THAT(file.at<std::int32_t>(0, 1), ElementsAre(348));
    EXPECT_THAT(file.at<std::int16_t>(40, 8), ElementsAre(3, 3, 2, 1, 1, 1, 1, 1));
    EXPECT_THAT(file.at<std::int16_t>(70, 2), ElementsAre(4, 16));
    EXPECT_THAT(file.at<float>(76, 4), ElementsAre(1, 0.5F, 2, 4));
    EXPECT_THAT(file.at<float>(108, 3), ElementsAre(352, 1, 0));
    EXPECT_THAT(file.at<float>(280, 12), ElementsAre(0, -2, 0, 10, 0.5F, 0, 0, 20, 0, 0, 4, 30));
    EXPECT_THAT(file.at<char>(344, 4), ElementsAre('n', '+', '1', '\0'));
    EXPECT_EQ(file.at<std::int16_t>(352, 6), samples);
    m_Scene.volume("w", samples, {3, 2, 1});
    EXPECT_FALSE(saveData("data", path)) << "there are two";
}

TEST_F(SceneDataTest, AVolumeOfColoursHasBytes)
{
    const std::string path = m_Folder.filePath("colours.nii").toStdString();
    m_Scene.volume("v", std::vector<std::array<float, 3>>{{1, 0, 0}, {0, 1, 0.2F}}, {2, 1, 1});
    ASSERT_TRUE(saveData("data", path));
    const NiftiBytes file(QString::fromStdString(path));
    EXPECT_THAT(file.at<std::int16_t>(70, 2), testing::ElementsAre(2304, 32));
    EXPECT_THAT(file.at<std::uint8_t>(352, 8), testing::ElementsAre(255, 0, 0, 255, 0, 255, 51, 255));
}

} // namespace
} // namespace tavo
