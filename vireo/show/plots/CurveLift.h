#pragma once

#include <QWidget>
#include <functional>

namespace tavo {

// Lies over the canvas of a plot, and draws one curve once more, thicker and above all others, so that nothing else
// has to be drawn again.
class CurveLift : public QWidget
{
public:
    explicit CurveLift(QWidget* canvas);

    void show(const std::function<void(QPainter&)>& draw);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::function<void(QPainter&)> m_Draw;
};

} // namespace tavo
