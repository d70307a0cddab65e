#pragma once

#include <QTimer>
#include <memory>

#include "vireo/show/scenes/SceneView.h"
#include "vireo/show/slices/SlicesModel.h"

namespace tavo {

// The volume of slices beside its planes: a scene, which has its colours and its crosshair. It follows these when they
// rest, since drawing a volume takes longer than drawing slices.
class SliceVolume
{
public:
    // The scene is a child of the widget, and has the name of the slices.
    SliceVolume(QWidget& parent, const SlicesModel& model, const std::string& name);
    ~SliceVolume() { delete m_Scene; }
    SliceVolume(const SliceVolume&) = delete;
    SliceVolume& operator=(const SliceVolume&) = delete;

    SceneView& scene() { return *m_Scene; }

    // Frees the samples, which others will replace.
    void makeRoom() { m_Scene->makeRoom({true, {}}); }

    // Shows new samples.
    void showVolume();

    // Shows the window and the crosshair, soon or now.
    void followSoon() { m_FollowSoon.start(); }
    void follow();

private:
    const SlicesModel& m_Model;
    SceneView* m_Scene;
    QTimer m_FollowSoon;
};

} // namespace tavo
