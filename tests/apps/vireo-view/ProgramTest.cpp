// The program as a person starts it.

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <gmock/gmock.h>

namespace vireo_view {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

struct Outcome
{
    int exitStatus;
    std::string output;
    std::string errors;
};

class ProgramTest : public testing::Test
{
protected:
    Outcome run(const QStringList& arguments)
    {
        QProcess program;
        program.setWorkingDirectory(m_Folder.path());
        program.start(VIREO_VIEW, arguments);
        EXPECT_TRUE(program.waitForFinished(60000)) << "still running";
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        return {program.exitCode(), program.readAllStandardOutput().toStdString(), ownLines(program.readAllStandardError())};
    }

    void write(const QString& name, const QByteArray& content)
    {
        QFile file(m_Folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QStringList pictures() const { return QDir(m_Folder.filePath("pictures")).entryList(QDir::Files, QDir::Name); }

    // The lines that are the program's, not Qt's remarks on the machine.
    static std::string ownLines(const QByteArray& text)
    {
        QByteArray lines;
        for (const QByteArray& line : text.split('\n'))
            if (line.startsWith("vireo-view: "))
                lines += line + '\n';
        return lines.toStdString();
    }

    QTemporaryDir m_Folder;
};

TEST_F(ProgramTest, SavesAPictureOfEverySection)
{
    write("cloud.xyz", "0 0 0\n1 0 0\n0 1 0\n0 0 1\n1 1 1\n");
    write("curve.csv", "1\n4\n2\n8\n");
    const Outcome outcome = run({"--pictures", "pictures", "cloud.xyz", "curve.csv"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
    EXPECT_THAT(outcome.errors, IsEmpty());
    ASSERT_EQ(pictures().size(), 2);
    for (const QString& name : pictures()) {
        const QImage picture(m_Folder.filePath("pictures/" + name));
        ASSERT_FALSE(picture.isNull()) << name.toStdString();
        bool isBlack = true;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                isBlack = isBlack && picture.pixelColor(x, y) == QColor(Qt::black);
        EXPECT_FALSE(isBlack) << name.toStdString() << " shows nothing";
    }
}

TEST_F(ProgramTest, ShowsTheOthersWhereAFileIsBad)
{
    write("good.csv", "1\n4\n2\n");
    write("bad.csv", "1\n4\nfour\n");
    write("empty.ply", "");
    const Outcome outcome = run({"--pictures", "pictures", "bad.csv", "missing.off", "good.csv", "empty.ply"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(pictures().size(), 1);
    EXPECT_THAT(outcome.errors, HasSubstr("bad.csv:3: "));
    EXPECT_THAT(outcome.errors, HasSubstr("missing.off: "));
    EXPECT_THAT(outcome.errors, HasSubstr("empty.ply: "));
    EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 3) << "a line each\n" << outcome.errors;
}

TEST_F(ProgramTest, ShowsWhatIsFarAwayAndWhatIsLarge)
{
    write("far.xyz", "1e7 1e7 1e7\n10000001 1e7 1e7\n1e7 10000001 1e7\n1e7 1e7 10000001\n");
    write("large.csv", "0\n1e30\n5e29\n");
    ASSERT_EQ(run({"--pictures", "pictures", "far.xyz", "large.csv"}).exitStatus, 0);
    ASSERT_EQ(pictures().size(), 2);
    for (const QString& name : pictures()) {
        const QImage picture(m_Folder.filePath("pictures/" + name));
        int numLit = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                numLit += picture.pixelColor(x, y) != QColor(Qt::black);
        EXPECT_GE(numLit, 4) << name.toStdString();
    }
}

TEST_F(ProgramTest, HelpsAndNamesItsVersion)
{
    const Outcome help = run({"--help"});
    EXPECT_EQ(help.exitStatus, 0);
    EXPECT_THAT(help.output, HasSubstr("--pictures"));
    const Outcome version = run({"--version"});
    EXPECT_EQ(version.exitStatus, 0);
    EXPECT_THAT(version.output, StartsWith("vireo-view "));
    EXPECT_THAT(version.output, EndsWith("\n"));
}

TEST_F(ProgramTest, RefusesACommandLineItDoesNotUnderstand)
{
    const Outcome outcome = run({"--no-such-option"});
    EXPECT_EQ(outcome.exitStatus, 2);
    EXPECT_THAT(outcome.errors, HasSubstr("no-such-option"));
}

} // namespace
} // namespace vireo_view
