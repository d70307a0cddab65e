#include "tavo/base/gui/WidgetPicture.h"

#include <QPixmap>
#include <QVariant>
#include <QWidget>

Q_DECLARE_METATYPE(std::function<QImage()>)

namespace tavo {

namespace {

using PictureSource = std::function<QImage()>;

constexpr char SOURCE_PROPERTY[] = "tavoPictureSource";

PictureSource pictureSourceOf(const QWidget* widget)
{
    return widget->property(SOURCE_PROPERTY).value<PictureSource>();
}

PictureSource findPictureSource(const QWidget* widget)
{
    if (PictureSource source = pictureSourceOf(widget))
        return source;
    for (const QWidget* child : widget->findChildren<QWidget*>())
        if (PictureSource source = pictureSourceOf(child))
            return source;
    return nullptr;
}

} // namespace

void setPictureSource(QWidget* widget, std::function<QImage()> source)
{
    widget->setProperty(SOURCE_PROPERTY, source ? QVariant::fromValue(source) : QVariant());
}

QImage grabPicture(QWidget* widget)
{
    const PictureSource source = findPictureSource(widget);
    return source ? source() : widget->grab().toImage();
}

} // namespace tavo
