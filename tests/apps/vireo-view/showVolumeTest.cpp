#include "apps/vireo-view/showVolume.h"

#include <QImage>
#include <gtest/gtest.h>

#include "apps/vireo-view/TimeSlider.h"
#include "tests/apps/vireo-view/FilesTest.h"
#include "tests/support/userEvents.h"
#include "vireo/show/show.h"

namespace vireo_view {
namespace {

class ShowVolumeTest : public FilesTest
{
protected:
    ~ShowVolumeTest() override { tavo::clear(); }

    // Where a volume in the scene of that name is seen: pixels to the right and down.
    QPointF placeOf(Volume volume, const std::string& scene = "a") const
    {
        const ShownVolume shown({"volume", std::move(volume), {}}, scene);
        return placeIn(scene);
    }

    // Where what is shown there is seen.
    QPointF placeIn(const std::string& scene) const
    {
        tavo::scene(scene).bearings(false); // what is counted are the pixels of the volume
        const std::filesystem::path file = directory() / "picture.png";
        EXPECT_TRUE(tavo::savePicture(scene, file.string(), 300, 199)); // too small for the orientation mark
        const QImage picture(QString::fromStdString(file.string()));
        QPointF sum;
        double weight = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < 220; ++x) { // the rest has the bar of colours
                const double darkness = 255 - qGray(picture.pixel(x, y));
                sum += QPointF(x, y) * darkness;
                weight += darkness;
            }
        EXPECT_GT(weight, 0);
        return sum / weight;
    }
};

// 3 x 3 x 3 voxels, all 0 but one.
Volume cubeWith(int x, int y, int z, Volume::Front front = Volume::Front::LOW_Y)
{
    std::vector<float> samples(27);
    samples[static_cast<std::size_t>(x + 3 * (y + 3 * z))] = 1;
    Volume volume;
    volume.grid.size = {3, 3, 3};
    volume.times.emplace_back(std::move(samples));
    volume.front = front;
    return volume;
}

TEST_F(ShowVolumeTest, ShowsTheFrontUpright)
{
    using Front = Volume::Front;
    EXPECT_GT(placeOf(cubeWith(2, 1, 1)).x(), placeOf(cubeWith(0, 1, 1)).x() + 20);
    EXPECT_LT(placeOf(cubeWith(1, 1, 2)).y(), placeOf(cubeWith(1, 1, 0)).y() - 20);
    EXPECT_LT(placeOf(cubeWith(2, 1, 1, Front::HIGH_Y)).x(), placeOf(cubeWith(0, 1, 1, Front::HIGH_Y)).x() - 20)
        << "the right of a person who looks at the viewer";
    EXPECT_LT(placeOf(cubeWith(1, 1, 2, Front::HIGH_Y)).y(), placeOf(cubeWith(1, 1, 0, Front::HIGH_Y)).y() - 20);
}

TEST_F(ShowVolumeTest, ShowsTheVolumeWhereItsFileSays)
{
    // Which are not seen, and have the view take in as much each time.
    const std::vector<float> corners{-100, -100, -100, 100, 100, 100};
    tavo::scene("a").cloud("corners", corners).colour({255, 255, 255, 255});
    const auto place = [this](int x, double originOfZ) {
        Volume volume = cubeWith(x, 1, 1);
        volume.grid.origin = {0, 0, originOfZ};
        volume.grid.spacing = {20, 10, 10};
        volume.grid.axes = {tavo::Vector3d(0, 0, 1), tavo::Vector3d(0, 1, 0), tavo::Vector3d(-1, 0, 0)};
        return placeOf(std::move(volume));
    };
    EXPECT_LT(place(1, 40).y(), place(1, -60).y() - 20) << "farther up";
    EXPECT_LT(place(2, 0).y(), place(0, 0).y() - 15) << "x points up";
    EXPECT_NEAR(place(2, 0).x(), place(0, 0).x(), 2);
}

// The bright voxel is on the left at first and then on the right.
Volume volumeInTime()
{
    Volume volume = cubeWith(0, 1, 1);
    volume.times.push_back(cubeWith(2, 1, 1).times.front());
    volume.secondsPerTime = 1.5;
    return volume;
}

TEST_F(ShowVolumeTest, ShowsTheTimeThatTheSliderIsAt)
{
    TimeSlider window(ShownVolume({"head", volumeInTime(), {}}, "a"));
    auto* const slider = window.findChild<QSlider*>();
    auto* const label = window.findChild<QLabel*>();
    EXPECT_EQ(window.windowTitle(), "head");
    EXPECT_EQ(label->text(), "1 of 2, 0 s");
    const double left = placeIn("a").x();
    tavo::clickKey(slider, Qt::Key_Right);
    EXPECT_EQ(label->text(), "2 of 2, 1.5 s");
    EXPECT_GT(placeIn("a").x(), left + 20);
    tavo::clickKey(slider, Qt::Key_Home);
    EXPECT_NEAR(placeIn("a").x(), left, 1);
}

} // namespace
} // namespace vireo_view
