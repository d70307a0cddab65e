#pragma once

#include <QWidget>
#include <array>

class QCheckBox;
class QPushButton;

namespace tavo {

class ClipBox;
class SceneView;

// Switches the clip box of a scene on and off, makes a slab of it along an axis, and cuts it out.
class ClipControls : public QWidget
{
public:
    explicit ClipControls(SceneView& view);

    void show(const ClipBox& clip);

private:
    SceneView& m_View;
    QCheckBox* m_IsOn;
    QCheckBox* m_IsCutOut;
    std::array<QPushButton*, 3> m_Slabs;
};

} // namespace tavo
