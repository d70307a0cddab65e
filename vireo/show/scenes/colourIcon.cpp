#include "vireo/show/scenes/colourIcon.h"

#include <QLinearGradient>
#include <QPainter>
#include <algorithm>

#include "vireo/show/window/DrawnIconEngine.h"

namespace tavo {

namespace {

class ColourEngine : public DrawnIconEngine
{
public:
    ColourEngine(const std::vector<RGBA8>& colours, bool areCategories)
        : m_Colours(colours)
        , m_AreCategories(areCategories)
    {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override
    {
        const QRectF inside = QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5);
        QLinearGradient gradient(inside.topLeft(), inside.topRight());
        gradient.setStops(stops());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QColor(128, 128, 128, 160));
        painter->setBrush(m_Colours.empty() ? QBrush() : QBrush(gradient));
        painter->drawRoundedRect(inside, 2, 2);
        painter->restore();
    }

    QIconEngine* clone() const override { return new ColourEngine(m_Colours, m_AreCategories); }

private:
    QGradientStops stops() const
    {
        const double size = double(m_Colours.size());
        QGradientStops stops;
        for (std::size_t i = 0; i < m_Colours.size(); ++i) {
            const QColor colour = toQColor(m_Colours[i]);
            if (m_AreCategories)
                stops << QGradientStop(double(i) / size, colour) << QGradientStop((double(i) + 0.999) / size, colour);
            else
                stops << QGradientStop(double(i) / std::max(1.0, size - 1), colour);
        }
        return stops;
    }

    std::vector<RGBA8> m_Colours;
    bool m_AreCategories;
};

} // namespace

QIcon colourIcon(const std::vector<RGBA8>& colours, bool areCategories)
{
    return QIcon(new ColourEngine(colours, areCategories));
}

QColor toQColor(const RGBA8& colour)
{
    return QColor(colour[0], colour[1], colour[2], colour[3]);
}

} // namespace tavo
