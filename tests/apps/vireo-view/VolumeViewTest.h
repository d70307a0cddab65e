#pragma once

#include <QGLWidget>
#include <QImage>
#include <gtest/gtest.h>
#include <memory>

#include "apps/vireo-view/VolumeDisplayer.h"
#include "tavo/base/gui/WidgetPicture.h"
#include "tests/apps/vireo-view/TestVolume.h"
#include "tests/support/Picture.h"
#include "tests/support/userEvents.h"
#include "vireo/Library.h"
#include "vireo/displayers/GLEventDisplayerWidget.h"

namespace vireo_view {

// Tests of volumes in a view. Each starts with a widget that is not shown, of 160x160 pixels in its view.
class VolumeViewTest : public testing::Test
{
protected:
    static constexpr int VIEW_SIZE = 160;

    VolumeViewTest() { makeWidget(); }

    // A new one, whose camera has not been turned.
    void makeWidget()
    {
        m_Widget = std::make_unique<tavo::GLEventDisplayerWidget>(nullptr, Qt::WindowFlags());
        m_View = m_Widget->findChild<QGLWidget*>();
        m_View->setFixedSize(VIEW_SIZE, VIEW_SIZE);
    }

    static void SetUpTestSuite()
    {
        tavo::initVireo();
        VolumeDisplayer::init(tavo::GLEventObject::getClass());
    }

    // Shows a volume; what is returned is the widget's.
    VolumeDisplayer& show(tavo::RegularVolume volume)
    {
        auto* const displayer = new VolumeDisplayer(std::make_unique<tavo::RegularVolume>(std::move(volume)));
        m_Widget->setGLEventObject(displayer, false);
        return *displayer;
    }

    void showWidget()
    {
        m_Widget->move(100, 100);
        m_Widget->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(m_Widget.get()));
    }

    // What is drawn now.
    QImage getImage() { return tavo::grabPicture(m_View); }

    tavo::Picture getPicture()
    {
        const QImage image = getImage();
        tavo::Picture picture(image.width(), image.height());
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                const QColor colour = image.pixelColor(x, y);
                picture.at(x, image.height() - 1 - y) = {static_cast<unsigned char>(colour.red()),
                    static_cast<unsigned char>(colour.green()), static_cast<unsigned char>(colour.blue()), 255};
            }
        return picture;
    }

    // Turns the camera by dragging, so many pixels to the right and down.
    void drag(int right, int down)
    {
        const QPoint middle(VIEW_SIZE / 2, VIEW_SIZE / 2);
        tavo::dragMouse(m_View, Qt::LeftButton, middle, middle + QPoint(right, down));
    }

    std::unique_ptr<tavo::GLEventDisplayerWidget> m_Widget;
    QGLWidget* m_View;
};

} // namespace vireo_view
