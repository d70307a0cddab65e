#include <QCoreApplication>
#include <QImage>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "tests/support/PictureComparison.h"
#include "tests/support/Program.h"

namespace {

using vireo_test::Outcome;
using vireo_test::Picture;

// From the bottom up, as pictures read from GL are.
Picture toPicture(const QImage& image)
{
    const QImage rgba = image.mirrored().convertToFormat(QImage::Format_RGBA8888);
    Picture picture(static_cast<unsigned int>(rgba.width()), static_cast<unsigned int>(rgba.height()));
    for (unsigned int y = 0; y < picture.height; ++y) {
        const unsigned char* const row = rgba.constScanLine(static_cast<int>(y));
        for (unsigned int x = 0; x < picture.width; ++x)
            picture.at(x, y) = {row[4 * x], row[4 * x + 1], row[4 * x + 2], row[4 * x + 3]};
    }
    return picture;
}

// Runs each example in a window of the X server, with Qt's contexts made where VIREO_TEST_WINSYS says.
class ExamplesGLTest : public testing::TestWithParam<const char*>
{
protected:
    void SetUp() override
    {
        if (!m_Environment.contains("DISPLAY"))
            GTEST_SKIP() << "there is no X server: DISPLAY is not set";
        m_Environment.insert("XDG_RUNTIME_DIR", m_Directory.path());
        m_Environment.insert("QT_QPA_PLATFORM", "xcb");
        m_Environment.insert("QT_XCB_GL_INTEGRATION", "xcb_" + m_Environment.value("VIREO_TEST_WINSYS", "glx"));
    }

    Outcome run(const QString& pictureFile) const
    {
        return vireo_test::runProgram(
            QString(VIREO_EXAMPLES) + "/" + GetParam(), {pictureFile}, m_Directory.path(), m_Environment);
    }

    QImage picture(const char* name) const { return QImage(m_Directory.filePath(name)); }

private:
    char m_Name[5] = "test";
    char* m_Arguments[2] = {m_Name, nullptr};
    int m_NumArguments = 1;
    QCoreApplication m_Application{m_NumArguments, m_Arguments};
    QTemporaryDir m_Directory;
    QProcessEnvironment m_Environment = QProcessEnvironment::systemEnvironment();
};

TEST_P(ExamplesGLTest, SavesItsPicture)
{
    const Outcome outcome = run("picture.png");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.errors, "");
    // Drivers place the edges of slanted faces and of texels differently.
    EXPECT_TRUE(vireo_test::matchesReference(toPicture(picture("picture.png")), std::string("examples/") + GetParam(),
        {.perChannel = 8, .differingPixels = 0.01}));
}

TEST_P(ExamplesGLTest, SaysThatItsPictureCannotBeSaved)
{
    const Outcome outcome = run("missing/picture.png");
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.errors, "missing/picture.png: the picture cannot be saved\n");
}

INSTANTIATE_TEST_SUITE_P(All, ExamplesGLTest, testing::ValuesIn(VIREO_EXAMPLE_NAMES), [](const auto& info) {
    std::string name = info.param;
    std::erase(name, '-');
    return name;
});

} // namespace
