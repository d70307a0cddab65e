#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "vireo/show/images/ImageHistory.h"
#include "vireo/show/images/ImageModel.h"
#include "vireo/show/images/ImageProfile.h"
#include "vireo/show/images/ImageSight.h"
#include "vireo/show/images/ImageStack.h"
#include "vireo/show/images/drawImage.h"
#include "vireo/show/window/View.h"

namespace tavo {

class ImageGestures;
class ImagePanel;
class LayerSlider;

// An image. It is drawn by the processor, at the resolution of the screen: what is seen has to be looked up in tables
// and copied once, which takes no longer than handing it to OpenGL would, and needs no context.
class ImageView : public View
{
public:
    explicit ImageView(const std::string& name);
    ~ImageView() override;

    void makeRoom(const Replaced& replaced) override;
    void apply(ViewUpdate& update) override;
    QImage picture(QSize size) override;
    std::string saveData(const QString& file) override;
    std::vector<Gesture> gestures() const override;
    std::function<void()> configuration() override;

    ImageModel& getModel() { return m_Model; }

    // What is seen. In pixels of the screen.
    const ImageSight& getSight() const { return m_Sight; }
    QSize sightSize() const;

    // Shows that part, in linked images, too, for a person: what is sent leaves it alone then.
    void setSight(const ImageSight& sight);
    bool isChosen() const { return m_IsChosen; }

    // Shows all of it, now and as it changes.
    void showAll();

    // Before a gesture: what is seen and how, now, can be gone back to; linked images show what this one does.
    void remember(ImageHistory::Gesture gesture) { m_History.remember(choice(), gesture); }
    void goBack() { goTo(m_History.back(choice())); }
    void goForward() { goTo(m_History.forward(choice())); }

    // Shows another image of the stack, in linked stacks, too; one that is so many further on.
    void showLayer(int layer);
    void stepLayer(int step) { showLayer(m_Stack.shown() + step); }
    const ImageStack& getStack() const { return m_Stack; }

    // Has a person choose how numbers become colours.
    void choose(const std::function<void(ImageSettings& choice)>& change);
    void showNextChannel();
    void refreshRange();

    // The pixel of the image that is at a place of the widget; none beside the image.
    std::optional<QPoint> pixelAt(const QPointF& place) const;
    QPointF onScreen(const QPointF& place) const { return place * devicePixelRatioF(); }

    // Marks that pixel, in linked images, too, and says what is there.
    void hover(const std::optional<QPoint>& pixel);
    const std::optional<QPoint>& hovered() const { return m_Hovered; }

    // Plots the numbers along a line from one pixel to another; or no longer, which returns whether it was done.
    void showProfile(const QPoint& from, const QPoint& to);
    bool endProfile();
    const ImageProfile& getProfile() const { return m_Profile; }

    // The panel of the image.
    bool isPanelShown() const;
    void switchPanel();

    // What is said below the image: about the pixel that the pointer is on, and about all of it.
    QString textOfPixel() const;
    QString textOfImage() const;

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    std::vector<ImageView*> linkedViews();
    const ImageView* chosenAmong(const std::vector<std::string>& linked) const;
    void followDifferences();
    void takeDifference();
    void sayWhyNoDifference() const;
    void takeLayer(int layer);
    void followPixels();
    void sayWhatIsLeft(const ImagePixels& pixels) const;
    void changed();
    ImageInk ink() const;
    int barHeight() const;
    int imageWidth() const;
    int imageHeight() const;
    void settlePanel();
    ImageChoice choice() const;
    void goTo(const std::optional<ImageChoice>& choice);
    void paintSight(QPainter& painter) const;
    void draw();
    QSize sizeInPicture(const QSize& size) const;
    void paintColourBar(QPainter& painter, const QRectF& place) const;
    QSize imageSize() const;
    ImageSight sightFor(const QSize& size) const;
    void paintBar(QPainter& painter) const;
    void paintMark(QPainter& painter) const;
    void paintProfile(QPainter& painter) const;
    QPointF onWidget(const QPointF& point) const;

    std::string m_Name;
    ImageStack m_Stack;
    ImageModel m_Model;
    std::string m_Difference; // the name of the other image; empty for none
    ImageSight m_Sight;
    bool m_IsChosen = false; // the sight, by a person
    ImageHistory m_History;
    std::optional<QPoint> m_Hovered;
    QImage m_Picture;
    std::optional<ImageSight> m_Drawn; // what the picture shows, of the image as it is
    ImageProfile m_Profile;
    std::unique_ptr<ImageGestures> m_Gestures;
    LayerSlider* m_LayerSlider; // children of the widget
    ImagePanel* m_Panel;
    std::optional<bool> m_IsPanelWanted; // by a person
};

} // namespace tavo
