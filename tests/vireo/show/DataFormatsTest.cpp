#include "vireo/show/delivery/dataFormats.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <vector>

#include "vireo/show/delivery/Inbox.h"
#include "vireo/show/show.h"

// What a refusal names can be saved, each kind of view its own.
namespace tavo {
namespace {

class DataFormatsTest : public testing::Test
{
protected:
    DataFormatsTest()
    {
        plot("plot").curve("c", {1, 2});
        scene("scene").volume("v", std::vector<float>{1, 2, 3, 4, 5, 6, 7, 8}, {2, 2, 2});
        image("image", std::vector<unsigned char>{1, 2, 3, 4}, 2, 2);
        slices("slices", std::vector<float>{1, 2, 3, 4, 5, 6, 7, 8}, {2, 2, 2});
    }
    ~DataFormatsTest() override { inbox::take(); }

    std::string fileWith(const char* ending) const { return m_Folder.filePath(QString("data") + ending).toStdString(); }

    std::string refusal(const char* view) const
    {
        testing::internal::CaptureStderr();
        EXPECT_FALSE(saveData(view, fileWith(".xyz")));
        return testing::internal::GetCapturedStderr();
    }

    const QTemporaryDir m_Folder;
};

TEST_F(DataFormatsTest, AreNamedByRefusals)
{
    EXPECT_THAT(refusal("plot"), testing::EndsWith(": the file's name must end with .csv\n"));
    EXPECT_THAT(refusal("scene"), testing::EndsWith(": the file's name must end with .csv, .nii or .json\n"));
    EXPECT_THAT(refusal("image"), testing::EndsWith(": the file's name must end with .csv or .png\n"));
    EXPECT_THAT(refusal("slices"), testing::EndsWith(": the file's name must end with .csv or .nii\n"));
}

TEST_F(DataFormatsTest, AreSaved)
{
    for (const auto& [view, kind] : {std::pair("plot", ViewKind::Plot), {"scene", ViewKind::Scene},
             {"image", ViewKind::Image}, {"slices", ViewKind::Slices}})
        for (const DataFormat& format : dataFormatsOf(kind))
            EXPECT_TRUE(saveData(view, fileWith(format.ending))) << view << format.ending;
}

} // namespace
} // namespace tavo
