#include "vireo/show/window/SymbolIcon.h"

#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QWidget>

#include "vireo/show/window/DrawnIconEngine.h"

namespace tavo {

namespace {

// Symbols are drawn on a field of 16 x 16.
constexpr double FIELD = 16;
constexpr double PEN = 1.3;

QPainterPath lines(std::initializer_list<std::initializer_list<QPointF>> polylines)
{
    QPainterPath path;
    for (const auto& polyline : polylines)
        path.addPolygon(QVector<QPointF>(polyline));
    return path;
}

// What goes to a file: an arrow down, at the lower right.
QPainterPath toFile(QPainterPath path)
{
    path.addPath(lines({{{12.5, 8}, {12.5, 14}}, {{10, 11.5}, {12.5, 14}, {15, 11.5}}}));
    return path;
}

QPainterPath sliders()
{
    QPainterPath path = lines({{{2, 5}, {8, 5}}, {{12, 5}, {14, 5}}, {{2, 11}, {4, 11}}, {{8, 11}, {14, 11}}});
    path.addEllipse(QPointF(10, 5), 2, 2);
    path.addEllipse(QPointF(6, 11), 2, 2);
    return path;
}

QPainterPath picture()
{
    QPainterPath path =
        lines({{{8, 12}, {1.5, 12}, {1.5, 2.5}, {14.5, 2.5}, {14.5, 6}}, {{2, 11}, {5.5, 7}, {8.5, 10.5}}});
    path.addEllipse(QPointF(10, 5.5), 1.2, 1.2);
    return path;
}

QPainterPath table()
{
    return lines({{{8, 13}, {1.5, 13}, {1.5, 2.5}, {14.5, 2.5}, {14.5, 6}}, {{1.5, 6}, {14.5, 6}},
        {{1.5, 9.5}, {9, 9.5}}, {{6, 2.5}, {6, 13}}, {{10.5, 2.5}, {10.5, 6}}});
}

QPainterPath twoSheets()
{
    QPainterPath path = lines({{{4.5, 11.5}, {2, 11.5}, {2, 2}, {10.5, 2}, {10.5, 4.5}}});
    path.addRect(5, 5, 9, 9);
    return path;
}

QPainterPath corners()
{
    return lines({{{2, 6}, {2, 2}, {6, 2}}, {{10, 2}, {14, 2}, {14, 6}}, {{14, 10}, {14, 14}, {10, 14}},
        {{6, 14}, {2, 14}, {2, 10}}});
}

QPainterPath detached()
{
    return lines({{{7, 3}, {2, 3}, {2, 14}, {13, 14}, {13, 9}}, {{7, 9}, {14, 2}}, {{9.5, 2}, {14, 2}, {14, 6.5}}});
}

QPainterPath pathOf(Symbol symbol)
{
    switch (symbol) {
    case Symbol::Configure: return sliders();
    case Symbol::SavePicture: return toFile(picture());
    case Symbol::CopyPicture: return twoSheets();
    case Symbol::SaveData: return toFile(table());
    case Symbol::FullScreen: return corners();
    case Symbol::Close: return lines({{{4, 4}, {12, 12}}, {{12, 4}, {4, 12}}});
    case Symbol::Detach: return detached();
    case Symbol::Menu: return lines({{{4, 6}, {8, 10}, {12, 6}}});
    }
    return {};
}

class SymbolEngine : public DrawnIconEngine
{
public:
    SymbolEngine(Symbol symbol, const QWidget* on)
        : m_Symbol(symbol)
        , m_On(on)
    {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const QPalette palette = m_On ? m_On->palette() : QPalette();
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / FIELD, rect.height() / FIELD);
        const QPalette::ColorGroup group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        painter->setPen({palette.color(group, QPalette::WindowText), PEN, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
        painter->drawPath(pathOf(m_Symbol));
        painter->restore();
    }

    QIconEngine* clone() const override { return new SymbolEngine(m_Symbol, m_On); }

private:
    Symbol m_Symbol;
    QPointer<const QWidget> m_On;
};

} // namespace

QIcon symbolIcon(Symbol symbol, const QWidget* on)
{
    return QIcon(new SymbolEngine(symbol, on));
}

} // namespace tavo
