#include "apps/vireo-view/showSlices.h"

#include <QImage>
#include <gmock/gmock.h>

#include "apps/vireo-view/TimeSlider.h"
#include "tests/apps/vireo-view/FilesTest.h"
#include "tests/support/userEvents.h"

namespace vireo_view {
namespace {

class ShowSlicesTest : public FilesTest
{
protected:
    ~ShowSlicesTest() override { tavo::clear(); }

    QImage picture() const
    {
        const std::filesystem::path file = directory() / "picture.png";
        EXPECT_TRUE(tavo::savePicture("head", file.string(), 400, 100)); // side by side: axial is the second one
        return QImage(QString::fromStdString(file.string()));
    }

    // The middle of what is that bright in the axial plane, to the right.
    double placeOfBright() const
    {
        const QImage image = picture();
        double sum = 0, number = 0;
        for (int y = 0; y < 100; ++y)
            for (int x = 102; x < 200; ++x)
                if (image.pixel(x, y) == qRgb(255, 255, 255)) {
                    sum += x;
                    ++number;
                }
        return number > 0 ? sum / number : 0;
    }
};

// 9 x 9 x 9 voxels in order along the axes, those with this x are 1.
Volume volumeWith(int brightX)
{
    std::vector<float> samples;
    for (int i = 0; i < 9 * 9 * 9; ++i)
        samples.push_back(i % 9 == brightX ? 1.0F : 0.0F);
    Volume volume;
    volume.grid.size = {9, 9, 9};
    volume.times.emplace_back(std::move(samples));
    return volume;
}

TEST_F(ShowSlicesTest, ThePatientsRightIsOnTheLeftHoweverTheFileCounts)
{
    const auto placeOf = [this](Volume::Front front) {
        Volume volume = volumeWith(8);
        volume.isOriented = true;
        volume.front = front;
        const ShownVolume shown({"head", std::move(volume), {}}, "head", LayersOnSlices());
        return placeOfBright();
    };
    const double right = placeOf(Volume::Front::HIGH_Y), left = placeOf(Volume::Front::LOW_Y);
    EXPECT_GT(right, 102);
    EXPECT_LT(right, left - 30) << "where x leads to the right it is seen on the left";
}

TEST_F(ShowSlicesTest, ASliderShowsTheTimes)
{
    Volume volume = volumeWith(0);
    volume.times.push_back(volumeWith(8).times.front());
    TimeSlider window(ShownVolume({"head", std::move(volume), {}}, "head", LayersOnSlices()));
    auto* const slider = window.findChild<QSlider*>();
    const double left = placeOfBright();
    EXPECT_GT(left, 102);
    tavo::clickKey(slider, Qt::Key_Right);
    EXPECT_GT(placeOfBright(), left + 30);
}

TEST_F(ShowSlicesTest, LabelsHaveTheColoursOfTheirTable)
{
    LayersOnSlices layers;
    Volume labels = volumeWith(4);
    layers.labels = sentVolumeOf(samplesOf(labels.times.front()), labels);
    layers.table.colours = {{1, tavo::RGBA8(255, 0, 0, 255)}};
    Volume dark = volumeWith(-1);
    const ShownVolume shown({"head", std::move(dark), {}}, "head", layers);
    const QImage image = picture();
    int numRed = 0;
    for (int x = 102; x < 200; ++x)
        numRed += qRed(image.pixel(x, 30)) > 100 && qGreen(image.pixel(x, 30)) < 60 && qBlue(image.pixel(x, 30)) < 60;
    EXPECT_GT(numRed, 3);
}

} // namespace
} // namespace vireo_view
