#include "vireo/show/scenes/colourIcon.h"

#include <QIconEngine>
#include <QLinearGradient>
#include <QPainter>
#include <QPixmap>

namespace tavo {

namespace {

class ColourEngine : public QIconEngine
{
public:
    explicit ColourEngine(const std::vector<RGBA8>& colours)
        : m_Colours(colours)
    {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override
    {
        const QRectF inside = QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5);
        QLinearGradient gradient(inside.topLeft(), inside.topRight());
        const double last = std::max(1.0, double(m_Colours.size()) - 1);
        for (std::size_t i = 0; i < m_Colours.size(); ++i)
            gradient.setColorAt(double(i) / last, toQColor(m_Colours[i]));
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QColor(128, 128, 128, 160));
        painter->setBrush(m_Colours.empty() ? QBrush() : QBrush(gradient));
        painter->drawRoundedRect(inside, 2, 2);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, pixmap.rect(), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new ColourEngine(m_Colours); }

private:
    std::vector<RGBA8> m_Colours;
};

} // namespace

QIcon colourIcon(const std::vector<RGBA8>& colours)
{
    return QIcon(new ColourEngine(colours));
}

QColor toQColor(const RGBA8& colour)
{
    return QColor(colour[0], colour[1], colour[2], colour[3]);
}

} // namespace tavo
