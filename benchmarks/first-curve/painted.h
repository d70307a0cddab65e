#pragma once

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <vector>

namespace vireo_bench {

// What every program shows.
inline std::vector<float> wave()
{
    std::vector<float> wave(500);
    for (std::size_t i = 0; i < wave.size(); ++i)
        wave[i] = 0.4f * std::sin(0.05f * static_cast<float>(i));
    return wave;
}

// Lets Qt work until a widget has been painted so many times, and then prints the time, in nanoseconds on the clock
// that all processes share.
class Painted : public QObject
{
public:
    Painted(QWidget& widget, int numPaints)
        : m_Missing(numPaints)
    {
        widget.installEventFilter(this);
        while (m_Missing > 0)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        const std::chrono::nanoseconds now = std::chrono::steady_clock::now().time_since_epoch();
        std::printf("%lld\n", static_cast<long long>(now.count()));
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            --m_Missing;
        return false;
    }

private:
    int m_Missing;
};

} // namespace vireo_bench
