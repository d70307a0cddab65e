#pragma once

#include <QWidget>

class QLabel;
class QSlider;

namespace tavo {

class ImageStack;
class ImageView;

// Below an image: which one of a stack is shown. It is there if there are several.
class LayerSlider : public QWidget
{
public:
    explicit LayerSlider(ImageView& view);

    // Shows what has become of the stack, in the lowest lines of a view so wide and so high.
    void follow(const ImageStack& stack, int widthOfView, int bottom);

    // Of the view, that it takes.
    int heightInView() const { return isHidden() ? 0 : height(); }

private:
    QSlider* m_Slider;
    QLabel* m_Text;
};

} // namespace tavo
