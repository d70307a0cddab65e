#pragma once

#include <QElapsedTimer>
#include <QProgressBar>
#include <memory>

namespace vireo_view {

// Shows how far the preparation of what a view draws is, by a bar right below the view, while the view is painting. The
// bar is painted at once, without an event loop. It does not come where the preparation is short, or where there is
// nothing but the view in the window.
class PreparationBar
{
public:
    static constexpr int DELAY = 250; // milliseconds

    // The view must outlive the bar. Waits so many milliseconds before it shows anything.
    explicit PreparationBar(QWidget& view, int delay = DELAY);

    void update(unsigned int numDone, unsigned int numAll);

private:
    void show();

    QWidget& m_View;
    int m_Delay;
    QElapsedTimer m_SinceStart;
    std::unique_ptr<QProgressBar> m_Bar;
};

} // namespace vireo_view
