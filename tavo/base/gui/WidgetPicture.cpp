#include "tavo/base/gui/WidgetPicture.h"

#include <QPainter>
#include <QPixmap>
#include <QVariant>
#include <QWidget>

Q_DECLARE_METATYPE(std::function<QImage(QSize)>)

namespace tavo {

namespace {

using PictureSource = std::function<QImage(QSize)>;

constexpr char SOURCE_PROPERTY[] = "tavoPictureSource";

PictureSource pictureSourceOf(const QWidget* widget)
{
    return widget->property(SOURCE_PROPERTY).value<PictureSource>();
}

// The widget itself, or the first one in it, that has a source; null if there is none.
const QWidget* findViewWithSource(const QWidget* widget)
{
    if (pictureSourceOf(widget))
        return widget;
    for (const QWidget* child : widget->findChildren<QWidget*>())
        if (pictureSourceOf(child))
            return child;
    return nullptr;
}

QImage paintScaled(QWidget* widget, const QSize& size)
{
    QImage picture(size, QImage::Format_RGB32);
    if (picture.isNull() || widget->size().isEmpty())
        return {};
    QPainter painter(&picture);
    painter.scale(double(size.width()) / widget->width(), double(size.height()) / widget->height());
    widget->render(&painter);
    return picture;
}

} // namespace

void setPictureSource(QWidget* widget, std::function<QImage()> source)
{
    if (source)
        setSizedPictureSource(widget, [source = std::move(source)](QSize) { return source(); });
    else
        setSizedPictureSource(widget, nullptr);
}

void setSizedPictureSource(QWidget* widget, std::function<QImage(QSize)> source)
{
    widget->setProperty(SOURCE_PROPERTY, source ? QVariant::fromValue(source) : QVariant());
}

QImage grabPicture(QWidget* widget)
{
    const QWidget* const view = findViewWithSource(widget);
    return view ? pictureSourceOf(view)(view->size()) : widget->grab().toImage();
}

QImage grabPicture(QWidget* widget, const QSize& size)
{
    if (size.isEmpty())
        return {};
    const QWidget* const view = findViewWithSource(widget);
    const QImage picture = view ? pictureSourceOf(view)(size) : paintScaled(widget, size);
    if (picture.isNull() || picture.size() == size)
        return picture;
    return picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace tavo
