#include "vireo/show/images/LayerSlider.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <algorithm>

#include "vireo/show/images/ImageView.h"
#include "vireo/show/window/shownText.h"

namespace tavo {

namespace {

constexpr int MARGIN = 4; // in pixels
constexpr std::size_t LONGEST_NAME = 40;

QString textOf(const ImageStack& stack)
{
    const QString place = LayerSlider::tr("%1 of %2").arg(stack.shown()).arg(stack.size());
    return stack.name().empty() ? place : place + ": " + shownText(stack.name(), LONGEST_NAME);
}

} // namespace

LayerSlider::LayerSlider(ImageView& view)
    : QWidget(&view)
    , m_Slider(new QSlider(Qt::Horizontal))
    , m_Text(new QLabel)
{
    hide();
    setAttribute(Qt::WA_NoMousePropagation); // what is done here is not done to the image
    setAutoFillBackground(true);
    setCursor(Qt::ArrowCursor);
    m_Slider->setObjectName("layer");
    m_Slider->setAccessibleName(tr("Image of the stack"));
    m_Slider->setToolTip(tr("Which image of the stack is shown (Page Up, Page Down)"));
    m_Slider->setFocusPolicy(Qt::NoFocus); // keys are the image's
    m_Text->setTextFormat(Qt::PlainText);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(MARGIN, 0, MARGIN, 0);
    row->addWidget(m_Slider, 1);
    row->addWidget(m_Text);
    connect(m_Slider, &QSlider::valueChanged, this, [&view](int layer) { view.showLayer(layer); });
}

void LayerSlider::follow(const ImageStack& stack, int widthOfView, int bottom)
{
    const QSignalBlocker quiet(m_Slider);
    m_Slider->setRange(0, std::max(stack.size() - 1, 0));
    m_Slider->setValue(stack.shown());
    m_Text->setText(textOf(stack));
    const int height = sizeHint().height();
    setGeometry(0, bottom - height, widthOfView, height);
    setVisible(stack.isStack());
}

} // namespace tavo
