#include "vireo/show/scenes/ClipControls.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QPushButton>
#include <QSignalBlocker>

#include "vireo/show/scenes/SceneView.h"

namespace tavo {

ClipControls::ClipControls(SceneView& view)
    : m_View(view)
    , m_IsOn(new QCheckBox(tr("Clip box")))
    , m_IsCutOut(new QCheckBox(tr("Cut out")))
{
    auto* const layout = new QGridLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->setSpacing(4);
    m_IsOn->setObjectName("clipBox");
    m_IsOn->setToolTip(tr("Only what is in a box is seen, whose faces can be dragged (c in the scene)"));
    layout->addWidget(m_IsOn, 0, 0);
    layout->setColumnStretch(0, 1);
    m_IsCutOut->setObjectName("cutOut");
    m_IsCutOut->setToolTip(tr("What is in the box is taken away, a corner at first (Shift+c in the scene)"));
    layout->addWidget(m_IsCutOut, 1, 0, 1, 4);
    connect(m_IsCutOut, &QCheckBox::toggled, this, [this] { m_View.switchCutOut(); });
    connect(m_IsOn, &QCheckBox::toggled, this, [this] { m_View.switchClipBox(); });
    for (std::size_t axis = 0; axis < m_Slabs.size(); ++axis) {
        const QString name = QStringLiteral("xyz").mid(int(axis), 1);
        auto* const button = m_Slabs[axis] = new QPushButton(name);
        button->setObjectName("slab" + name.toUpper());
        button->setAccessibleName(tr("Slab along %1").arg(name));
        button->setToolTip(tr("A thin box along %1 (%1 in the scene); Shift and the wheel move it").arg(name));
        button->setCheckable(true);
        button->setFixedWidth(2 * fontMetrics().height());
        layout->addWidget(button, 0, 1 + int(axis));
        connect(button, &QPushButton::toggled, this, [this, axis] { m_View.switchSlab(axis); });
    }
}

void ClipControls::show(const ClipBox& clip)
{
    const QSignalBlocker quiet(m_IsOn);
    m_IsOn->setChecked(clip.shown().has_value());
    const QSignalBlocker quietCut(m_IsCutOut);
    m_IsCutOut->setChecked(clip.isCutOut());
    for (std::size_t axis = 0; axis < m_Slabs.size(); ++axis) {
        const QSignalBlocker quietToo(m_Slabs[axis]);
        m_Slabs[axis]->setChecked(clip.shown() && clip.slabAxis() == axis);
    }
}

} // namespace tavo
