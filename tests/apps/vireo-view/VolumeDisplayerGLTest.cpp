#include <QGLWidget>
#include <filesystem>
#include <gmock/gmock.h>
#include <utility>

#include "apps/vireo-view/VolumeDisplayer.h"
#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/gui/Camera.h"
#include "tavo/base/objects/MetaClass.h"
#include "tavo/platform/wgl.h"
#include "tests/apps/vireo-view/VolumeViewTest.h"
#include "tests/support/PictureComparison.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/displayers/GLGraphDisplayer.h"

namespace vireo_view {
namespace {

using tavo::Box3f;
using tavo::matchesReference;
using tavo::Picture;
using tavo::Vector2d;
using testing::HasSubstr;

// Quarter turns of the view.
constexpr int QUARTER = 80;

// 3 x 3 x 3 samples, all 0 but one or two.
class Cube
{
public:
    Cube& with(int x, int y, int z, float density)
    {
        m_Densities[x + 3 * (y + 3 * z)] = density;
        return *this;
    }
    operator tavo::RegularVolume() const { return makeVolume({3, 3, 3}, m_Densities); }

private:
    std::vector<float> m_Densities = std::vector<float>(27, 0.0f);
};

// Opaque from 0 to 1.
TransferFunction opaqueFunction()
{
    TransferFunction function;
    function.setWindow(1);
    function.setLevel(0.5);
    function.setOpacity(1);
    return function;
}

class VolumeDisplayerGLTest : public VolumeViewTest
{
protected:
    VolumeDisplayer& showOpaque(tavo::RegularVolume volume)
    {
        VolumeDisplayer& displayer = show(std::move(volume));
        displayer.setTransferFunction(opaqueFunction());
        return displayer;
    }

    // Where the brightness is, in pixels from the middle, right and up.
    static Vector2d brightPlace(const Picture& picture)
    {
        Vector2d sum;
        double weight = 0;
        for (unsigned int y = 0; y < picture.height; ++y)
            for (unsigned int x = 0; x < picture.width; ++x) {
                const double brightness = picture.at(x, y)[0];
                sum += Vector2d(x - (VIEW_SIZE - 1) / 2.0, y - (VIEW_SIZE - 1) / 2.0) * brightness;
                weight += brightness;
            }
        EXPECT_GT(weight, 0);
        return sum * (1 / weight);
    }

    static int middleOf(const Picture& picture) { return picture.at(VIEW_SIZE / 2, VIEW_SIZE / 2)[0]; }

    unsigned int countTextures()
    {
        m_View->makeCurrent();
        unsigned int count = 0;
        for (GLuint name = 1; name < 2000; ++name)
            count += glIsTexture(name) == GL_TRUE;
        return count;
    }
};

TEST_F(VolumeDisplayerGLTest, HasABoxOfTheFittedExtentAroundTheOrigin)
{
    VolumeDisplayer displayer(
        std::make_unique<tavo::RegularVolume>(makeVolume({1, 1, 1}, {0}, {100.0f, 200.0f, 50.0f})));
    EXPECT_EQ(displayer.getBoundingBox(), Box3f({-0.25f, -0.125f, -0.5f}, {0.25f, 0.125f, 0.5f}));
    EXPECT_EQ(VolumeDisplayer().getBoundingBox(), Box3f({0.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 0.0f}));
}

TEST_F(VolumeDisplayerGLTest, SaysInTheLogWhatTheDriverLacks)
{
    showOpaque(Cube().with(1, 1, 1, 1));
    EXPECT_GT(middleOf(getPicture()), 0);
    const auto entryPoint = std::exchange(tavo::glActiveTextureARB, nullptr);
    const std::size_t before = tavo::debugOutput.getText().size();
    const Picture withoutMultitexture = getPicture();
    tavo::glActiveTextureARB = entryPoint;
    EXPECT_THAT(tavo::debugOutput.getText().substr(before),
        HasSubstr("error: SliceVolumeRenderer::drawVolume - GL_ARB_multitexture is missing"));
    EXPECT_EQ(middleOf(withoutMultitexture), 0);
    EXPECT_GT(middleOf(getPicture()), 0) << "the view lives on";
}

TEST_F(VolumeDisplayerGLTest, ShowsTheFrontUprightAndNothingMirrored)
{
    showOpaque(Cube().with(2, 1, 1, 1));
    const auto right = brightPlace(getPicture());
    EXPECT_LT(right[0], -10) << "the right of the person, who looks at the viewer";
    EXPECT_NEAR(right[1], 0, 4);
    makeWidget();
    showOpaque(Cube().with(1, 1, 2, 1));
    const auto top = brightPlace(getPicture());
    EXPECT_NEAR(top[0], 0, 4);
    EXPECT_GT(top[1], 10);
}

TEST_F(VolumeDisplayerGLTest, ShowsWhatIsNearerOverWhatIsFartherFromEverySide)
{
    // Grey in front, white in the back, and so on.
    const auto expectOver = [this](const Cube& cube, int right, int down) {
        makeWidget();
        showOpaque(cube);
        getPicture();
        drag(right, down);
        return middleOf(getPicture());
    };
    const Cube alongY = Cube().with(1, 2, 1, 0.5f).with(1, 0, 1, 1);
    const int front = expectOver(alongY, 0, 0);
    const int back = expectOver(alongY, 2 * QUARTER, 0);
    const Cube alongX = Cube().with(2, 1, 1, 0.5f).with(0, 1, 1, 1);
    const int right = expectOver(alongX, QUARTER, 0);
    const int left = expectOver(alongX, -QUARTER, 0);
    const Cube alongZ = Cube().with(1, 1, 2, 0.5f).with(1, 1, 0, 1);
    const int top = expectOver(alongZ, 0, QUARTER);
    const int bottom = expectOver(alongZ, 0, -QUARTER);
    EXPECT_LT(front, back);
    EXPECT_LT(right, left);
    EXPECT_LT(top, bottom);
}

TEST_F(VolumeDisplayerGLTest, ShowsAChangedTransferFunction)
{
    VolumeDisplayer& displayer = showOpaque(Cube().with(1, 1, 1, 1));
    const Picture before = getPicture();
    EXPECT_GT(middleOf(before), 200);
    TransferFunction function = opaqueFunction();
    function.setColourMap(1);
    function.setLevel(2);
    displayer.setTransferFunction(function);
    EXPECT_EQ(middleOf(getPicture()), 0) << "below the window";
    displayer.setTransferFunction(opaqueFunction());
    EXPECT_EQ(getPicture(), before);
}

TEST_F(VolumeDisplayerGLTest, TakesOverTheVolumeOfANewerOneAndKeepsItsTransferFunction)
{
    VolumeDisplayer& displayer = showOpaque(Cube().with(1, 1, 1, 1));
    getPicture();
    const unsigned int numTextures = countTextures();
    VolumeDisplayer newer(std::make_unique<tavo::RegularVolume>(Cube().with(1, 1, 1, 0.5f)));
    const tavo::RegularVolume* const volume = newer.getVolume();
    displayer.updateData(&newer);
    EXPECT_EQ(displayer.getVolume(), volume);
    EXPECT_EQ(newer.getVolume(), nullptr);
    EXPECT_EQ(displayer.getTransferFunction(), opaqueFunction());
    EXPECT_EQ(displayer.getHistogram().getSpan().getMax(), 0.5);
    EXPECT_LT(middleOf(getPicture()), 150);
    EXPECT_EQ(countTextures(), numTextures);
}

TEST_F(VolumeDisplayerGLTest, IgnoresTheDataOfOtherObjectsAndItsOwn)
{
    VolumeDisplayer displayer(std::make_unique<tavo::RegularVolume>(Cube().with(1, 1, 1, 1)));
    tavo::GLGraphDisplayer graphs;
    displayer.updateData(&graphs);
    displayer.updateData(&displayer);
    displayer.updateData(nullptr);
    EXPECT_NE(displayer.getVolume(), nullptr);
}

TEST_F(VolumeDisplayerGLTest, ShowsNothingWithoutAVolume)
{
    m_Widget->setGLEventObject(new VolumeDisplayer, false);
    EXPECT_EQ(getPicture(), Picture(VIEW_SIZE, VIEW_SIZE, {0, 0, 0, 255}));
}

TEST_F(VolumeDisplayerGLTest, DeletesItsTexturesWhenItIsReplaced)
{
    getPicture();
    const unsigned int before = countTextures();
    show(Cube().with(1, 1, 1, 1));
    getPicture();
    EXPECT_EQ(countTextures(), before + 3) << "one stack";
    QGLWidget other;
    other.makeCurrent();
    const QGLContext* const current = QGLContext::currentContext();
    m_Widget->setGLEventObject(new tavo::GLGraphDisplayer, false);
    EXPECT_EQ(QGLContext::currentContext(), current);
    other.doneCurrent();
    EXPECT_EQ(countTextures(), before);
}

TEST_F(VolumeDisplayerGLTest, DiesWithItsViewWhetherItsContextIsCurrentOrNot)
{
    show(Cube().with(1, 1, 1, 1));
    getPicture();
    m_View->doneCurrent();
    m_Widget.reset();
    EXPECT_EQ(QGLContext::currentContext(), nullptr);
}

TEST_F(VolumeDisplayerGLTest, LeavesTheStateOfTheContextAsItWas)
{
    VolumeDisplayer displayer(std::make_unique<tavo::RegularVolume>(Cube().with(1, 1, 1, 1)));
    QGLWidget view;
    view.makeCurrent();
    const tavo::GLContext context(wglGetCurrentDC(), wglGetCurrentContext(), nullptr, &view);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(1, 2, 3);
    glMatrixMode(GL_PROJECTION);
    const auto state = [] {
        std::vector<float> values(16);
        glGetFloatv(GL_MODELVIEW_MATRIX, values.data());
        for (const GLenum name : {GL_MATRIX_MODE, GL_MODELVIEW_STACK_DEPTH, GL_ATTRIB_STACK_DEPTH, GL_BLEND,
                 GL_TEXTURE_BINDING_2D, GL_DEPTH_WRITEMASK}) {
            values.emplace_back();
            glGetFloatv(name, &values.back());
        }
        return values;
    };
    const std::vector<float> before = state();
    tavo::Camera camera;
    displayer.drawGL(&view, camera);
    EXPECT_EQ(state(), before);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(VolumeDisplayerGLTest, ReportsAVolumeThatIsTooLargeForTexturesAndTheViewLivesOn)
{
    const std::size_t before = tavo::debugOutput.getText().size();
    show(makeVolume({1, 1, 40000}, std::vector<float>(40000)));
    getPicture();
    EXPECT_THAT(tavo::debugOutput.getText().substr(before), HasSubstr("larger than the driver's textures"));
    showOpaque(Cube().with(1, 1, 1, 1));
    EXPECT_GT(middleOf(getPicture()), 200);
}

TEST_F(VolumeDisplayerGLTest, HasAClassRecordWithAFactory)
{
    const tavo::MetaClass* const record = VolumeDisplayer::getClass();
    EXPECT_STREQ(record->getName(), "VolumeDisplayer");
    EXPECT_EQ(record->getParent(), tavo::GLEventObject::getClass());
    const std::unique_ptr<tavo::Object> instance(record->newInstance());
    EXPECT_EQ(instance->getInstanceClass(), record);
    EXPECT_EQ(dynamic_cast<VolumeDisplayer&>(*instance).getVolume(), nullptr);
}

// The head of mricron-data. Drivers filter and round differently; what they sum up over some two hundred slices may
// differ by a few steps.
class HeadPictureGLTest : public VolumeDisplayerGLTest
{
protected:
    void SetUp() override
    {
        if (!std::filesystem::exists(VIREO_MRI_HEAD))
            GTEST_SKIP() << VIREO_MRI_HEAD << " (package mricron-data) is not installed";
        m_Displayer = &show(readNifti(VIREO_MRI_HEAD, nullptr));
        getPicture();
        // Nearer, so that it fills the view.
        for (int i = 0; i < NUM_STEPS_NEARER; ++i)
            tavo::clickKey(m_View, Qt::Key_Plus);
    }

    VolumeDisplayer* m_Displayer = nullptr;

    static constexpr int NUM_STEPS_NEARER = 1;
    static constexpr tavo::PictureTolerance TOLERANCE = {.perChannel = 6, .differingPixels = 0.01};
};

TEST_F(HeadPictureGLTest, IsRightFromTheFront)
{
    EXPECT_TRUE(matchesReference(getPicture(), "vireo-view/head-front", TOLERANCE));
}

TEST_F(HeadPictureGLTest, IsRightFromTheBack)
{
    drag(2 * QUARTER, 0);
    EXPECT_TRUE(matchesReference(getPicture(), "vireo-view/head-back", TOLERANCE));
}

TEST_F(HeadPictureGLTest, IsRightFromTheRight)
{
    drag(QUARTER, 0);
    EXPECT_TRUE(matchesReference(getPicture(), "vireo-view/head-right", TOLERANCE));
}

TEST_F(HeadPictureGLTest, IsRightFromTheLeft)
{
    drag(-QUARTER, 0);
    EXPECT_TRUE(matchesReference(getPicture(), "vireo-view/head-left", TOLERANCE));
}

TEST_F(HeadPictureGLTest, IsRightFromAbove)
{
    drag(0, QUARTER);
    EXPECT_TRUE(matchesReference(getPicture(), "vireo-view/head-above", TOLERANCE));
}

TEST_F(HeadPictureGLTest, IsRightFromBelow)
{
    drag(0, -QUARTER);
    EXPECT_TRUE(matchesReference(getPicture(), "vireo-view/head-below", TOLERANCE));
}

TEST_F(HeadPictureGLTest, IsRightObliquely)
{
    drag(QUARTER / 2 - 10, 0);
    getPicture();
    drag(0, QUARTER / 4);
    EXPECT_TRUE(matchesReference(getPicture(), "vireo-view/head-oblique", TOLERANCE));
}

// From one axis to the next, the other stack is drawn halfway.
TEST_F(HeadPictureGLTest, StaysAsBrightWhileItIsTurned)
{
    const auto meanOf = [](const Picture& picture) {
        double sum = 0;
        double count = 0;
        for (const tavo::Pixel& pixel : picture.pixels) {
            sum += pixel[0];
            count += pixel[0] > 0;
        }
        return sum / count;
    };
    constexpr int STEP = 8;
    for (const QPoint direction : {QPoint(STEP, 0), QPoint(0, STEP)}) {
        double before = meanOf(getPicture());
        for (int angle = 0; angle < 2 * QUARTER; angle += STEP) {
            drag(direction.x(), direction.y());
            const double mean = meanOf(getPicture());
            EXPECT_NEAR(mean / before, 1, 0.1) << angle;
            before = mean;
        }
    }
}

TEST_F(HeadPictureGLTest, IsRightInOtherColours)
{
    TransferFunction function;
    function.setWindow(60);
    function.setLevel(90);
    function.setOpacity(0.1);
    function.setColourMap(1);
    m_Displayer->setTransferFunction(function);
    EXPECT_TRUE(matchesReference(getPicture(), "vireo-view/head-hot", TOLERANCE));
}

} // namespace
} // namespace vireo_view
