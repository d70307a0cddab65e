#include <DockAreaWidget.h>
#include <QDir>
#include <QFileDialog>
#include <QGLWidget>
#include <QTemporaryDir>
#include <functional>

#include "tavo/points/PointSet.h"
#include "tests/vireo/show/window/ShowWindowTest.h"
#include "vireo/displayers/GLEventConfiguration.h"
#include "vireo/displayers/GLEventDisplayer.h"
#include "vireo/displayers/GLEventDisplayerWidget.h"
#include "vireo/displayers/GLGraphDisplayer.h"
#include "vireo/displayers/GLPointCloudDisplayer.h"

namespace tavo {
namespace {

// A section with a GL view, and plots, which are moved about many times. Each time the GL view draws the same picture
// in the same context, and the plots are still there.
class DockingGLTest : public ShowWindowTest
{
protected:
    DockingGLTest()
    {
        GLEventObject::init(Object::getClass());
        GLEventDisplayer::init(EventDisplayer::getClass());
        GLGraphDisplayer::init(GLEventObject::getClass());
        GLPointCloudDisplayer::init(GLEventObject::getClass());
        show({"a", "b"});
        debugOutputGraph("graph", std::vector<float>{1, 3, 2}, {255, 0, 0, 255});
        settle();
        m_GL = window()->findChild<QGLWidget*>();
        m_View = viewIn("a");
        m_View->setFixedSize(300, 200); // a plot has as many numbers as fit its widget
        m_Context = m_GL->context();
        section()->setFixedWidth(300); // likewise
        settle();
        m_Picture = section()->getPicture();
        m_PlotPicture = plotPicture();
        EXPECT_FALSE(m_Picture.isNull());
        EXPECT_TRUE(m_Context->isValid());
    }

    static DebugSection* section() { return window()->getSections().at(0); }

    QImage plotPicture() const
    {
        const QString file = QDir::temp().filePath("vireo-docking-" + QString::number(qApp->applicationPid()) + ".png");
        EXPECT_TRUE(savePicture("a", file.toStdString(), 300, 200));
        const QImage picture(file);
        QFile::remove(file);
        return picture;
    }

    static std::string contents(const QString& name)
    {
        QFile file(name);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll().toStdString();
    }

    static QSize sizeOfPicture(const QString& file) { return QImage(file).size(); }

    void repeat(const std::function<void()>& there, const std::function<void()>& back)
    {
        for (int i = 0; i < 20; ++i) {
            there();
            settle();
            expectAll("there", i);
            back();
            settle();
            expectAll("back", i);
        }
    }

    void expectAll(const char* where, int i)
    {
        ASSERT_EQ(window()->findChild<QGLWidget*>(), m_GL) << where << ' ' << i;
        ASSERT_EQ(m_GL->context(), m_Context) << where << ' ' << i;
        ASSERT_EQ(section()->getPicture(), m_Picture) << where << ' ' << i;
        ASSERT_FALSE(m_View.isNull());
        ASSERT_EQ(plotPicture(), m_PlotPicture) << where << ' ' << i;
    }

    QPointer<QGLWidget> m_GL;
    QPointer<QWidget> m_View;
    const QGLContext* m_Context = nullptr;
    QImage m_Picture;
    QImage m_PlotPicture;
};

TEST_F(DockingGLTest, PicturesOfSectionsAreSavedLikeThoseOfViews)
{
    const QTemporaryDir folder;
    EXPECT_TRUE(savePicture("graph", folder.filePath("large.png").toStdString(), 5000, 300));
    EXPECT_EQ(sizeOfPicture(folder.filePath("large.png")), QSize(5000, 300));
    EXPECT_TRUE(savePictures(folder.filePath("all").toStdString()));
    EXPECT_EQ(QDir(folder.filePath("all")).entryList(QDir::Files), QStringList({"a.png", "b.png", "graph.png"}));
    EXPECT_EQ(sizeOfPicture(folder.filePath("all/graph.png")), QSize(1000, 700));
    EXPECT_EQ(section()->getPicture(), m_Picture) << "the view is as it was";
}

TEST_F(DockingGLTest, TitleBarsOfSectionsHaveWhatThoseOfViewsHave)
{
    QStringList names;
    for (const QAction* action : dock("graph")->titleBarActions())
        names += action->objectName();
    ASSERT_EQ(names, QStringList({"configure", "savePicture", "copyPicture", "saveData", "fullScreen"}));

    const auto* const panel = section()->findChild<GLEventConfiguration*>();
    ASSERT_NE(panel, nullptr);
    action("graph", "configure")->trigger();
    EXPECT_TRUE(panel->isVisible());
    QApplication::activePopupWidget()->close();

    const QTemporaryDir folder;
    action("graph", "saveData")->trigger();
    auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    emit dialog->fileSelected(folder.filePath("asked.csv"));
    dialog->close();
    EXPECT_EQ(contents(folder.filePath("asked.csv")), "\"x\",\"y\",\"z\"\n0,1,0\n0.33333334,3,0\n0.6666667,2,0\n");

    send("text", "hello");
    settle();
    EXPECT_EQ(action("text", "configure"), nullptr);
    EXPECT_EQ(action("text", "saveData"), nullptr);
}

TEST_F(DockingGLTest, DataOfSectionsAreSavedLikeThoseOfViews)
{
    const QTemporaryDir folder;
    const auto save = [&](const char* name) { return saveData(name, folder.filePath("data.csv").toStdString()); };
    const RGBA8 red(255, 0, 0, 255);
    debugOutputGraphs("graph", std::vector<std::vector<float>>{{1}, {2, 3}}, {red, red});
    EXPECT_TRUE(save("graph"));
    EXPECT_EQ(contents(folder.filePath("data.csv")), "\"graph\",\"x\",\"y\",\"z\"\n1,0,1,0\n2,0,2,0\n2,0.5,3,0\n");

    VertexDescriptor descriptor;
    descriptor.pushAttrib(VertexAttribDescriptor("position", 3, VertexAttribDescriptor::TYPE_FLOAT));
    auto points = std::make_unique<PointSet>(descriptor, 1);
    const float xyz[] = {1, 2, 3};
    points->set3f(0, points->getAAT("position"), xyz);
    sendGLEventObject("cloud", new GLPointCloudDisplayer(points.release()));
    EXPECT_TRUE(save("cloud"));
    EXPECT_EQ(contents(folder.filePath("data.csv")), "\"x\",\"y\",\"z\"\n1,2,3\n");

    send("text", "hello");
    EXPECT_FALSE(save("text"));
    EXPECT_THAT(debugOutput.getText(), testing::HasSubstr("what is shown has no data to be saved"));
}

TEST_F(DockingGLTest, DetachingLosesNothing)
{
    for (const QString name : {"graph", "a"})
        repeat([&] { dock(name)->setFloating(); },
            [&] { manager()->addDockWidget(ads::RightDockWidgetArea, dock(name)); });
}

TEST_F(DockingGLTest, DockingLosesNothing)
{
    for (const QString name : {"graph", "a"})
        repeat([&] { manager()->addDockWidget(ads::LeftDockWidgetArea, dock(name)); },
            [&] { manager()->addDockWidget(ads::BottomDockWidgetArea, dock(name), dock("b")->dockAreaWidget()); });
}

TEST_F(DockingGLTest, TabsLoseNothing)
{
    for (const QString name : {"graph", "a"})
        repeat(
            [&] {
                manager()->addDockWidgetTabToArea(dock(name), dock("b")->dockAreaWidget());
                dock("b")->setAsCurrentTab();
                settle();
                dock(name)->setAsCurrentTab();
            },
            [&] { manager()->addDockWidget(ads::RightDockWidgetArea, dock(name)); });
}

TEST_F(DockingGLTest, FullScreenLosesNothing)
{
    const std::pair<QString, QWidget*> views[] = {{"graph", section()}, {"a", m_View}};
    for (const auto& [name, view] : views) {
        const auto toggle = [&name = name, view = view] {
            action(name, "fullScreen")->trigger();
            EXPECT_TRUE(QTest::qWaitForWindowActive(view->window()));
        };
        repeat(toggle, toggle);
    }
}

TEST_F(DockingGLTest, ClosingLosesNothing)
{
    for (const QString name : {"graph", "a"})
        repeat(
            [&] {
                dock(name)->closeDockWidget();
                settle();
                dock(name)->toggleView(true);
            },
            [&] {
                window()->close();
                window()->show();
            });
}

} // namespace
} // namespace tavo
