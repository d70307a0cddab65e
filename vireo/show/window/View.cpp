#include "vireo/show/window/View.h"

#include <QKeyEvent>

namespace tavo {

void View::openHelp()
{
    openGestureHelp(*this, gestures());
}

// What has the focus within the view passes keys on that it does not use itself.
void View::keyPressEvent(QKeyEvent* event)
{
    const bool isHelp = event->key() == Qt::Key_F1 || event->key() == Qt::Key_Question;
    if (!isHelp || gestures().empty())
        return QWidget::keyPressEvent(event);
    openHelp();
}

} // namespace tavo
