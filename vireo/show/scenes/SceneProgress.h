#pragma once

#include <QWidget>
#include <functional>

#include "vireo/show/scenes/Stopwatch.h"

class QLabel;
class QProgressBar;

namespace tavo {

// At the lower edge of a view, how far something is that takes long, with a button that gives it up. It is shown once
// that takes more than half a second.
class SceneProgress : public QWidget
{
public:
    SceneProgress(QWidget* view, std::function<void()> giveUp);

    // What is done, and how much of it, from 0 to 1.
    void show(const QString& what, double part);

    // There is nothing more to be done.
    void finish();

    // After how many seconds it is shown.
    void setDelay(double seconds) { m_Delay = seconds; }

private:
    void settle();

    QLabel* m_What;
    QProgressBar* m_Bar;
    Stopwatch m_Since;
    double m_Delay = 0.5;
    bool m_IsBusy = false;
};

} // namespace tavo
