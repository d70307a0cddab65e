#include "vireo/show/scenes/SceneProgress.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <algorithm>
#include <cmath>
#include <utility>

#include "vireo/show/scenes/panelWidgets.h"

namespace tavo {

namespace {

constexpr int SPACING = 6; // in pixels
constexpr int MARGIN = 10;
constexpr int PERCENT = 100;

} // namespace

SceneProgress::SceneProgress(QWidget* view, std::function<void()> giveUp)
    : QWidget(view)
    , m_What(new QLabel)
    , m_Bar(made(new QProgressBar, "progressBar", tr("Progress"), {}))
{
    setObjectName("sceneProgress");
    setAttribute(Qt::WA_NoMousePropagation); // what is done here is not done to the scene
    setAutoFillBackground(true);
    setCursor(Qt::ArrowCursor);
    m_Bar->setRange(0, PERCENT);
    auto* const button = made(new QPushButton(tr("Cancel")), "giveUp", tr("Cancel"), tr("Leaves it as it is"));
    button->setFocusPolicy(Qt::NoFocus);
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(SPACING, SPACING, SPACING, SPACING);
    layout->setSpacing(SPACING);
    layout->addWidget(m_What);
    layout->addWidget(m_Bar, 1);
    layout->addWidget(button);
    connect(button, &QPushButton::clicked, this, std::move(giveUp));
    hide();
}

void SceneProgress::show(const QString& what, double part)
{
    if (!std::exchange(m_IsBusy, true))
        m_Since = {};
    m_What->setText(what);
    m_Bar->setValue(static_cast<int>(std::lround(PERCENT * part)));
    if (m_Since.seconds() < m_Delay)
        return;
    settle();
    setVisible(true);
}

void SceneProgress::finish()
{
    m_IsBusy = false;
    hide();
}

void SceneProgress::settle()
{
    const QSize size(std::min(sizeHint().width(), parentWidget()->width()), sizeHint().height());
    setGeometry(QRect(QPoint(MARGIN, parentWidget()->height() - size.height() - MARGIN), size));
}

} // namespace tavo
