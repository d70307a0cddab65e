#pragma once

#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "vireo/show/scenes/PickReceiver.h"
#include "vireo/show/scenes/PointBudget.h"
#include "vireo/show/scenes/SceneCamera.h"
#include "vireo/show/scenes/SceneMarks.h"
#include "vireo/show/scenes/SceneModel.h"
#include "vireo/show/scenes/ScenePicker.h"
#include "vireo/show/scenes/SceneRenderer.h"
#include "vireo/show/scenes/Stopwatch.h"
#include "vireo/show/scenes/sceneOverlays.h"
#include "vireo/show/scenes/sceneTexts.h"
#include "vireo/show/volumes/SliceMotion.h"
#include "vireo/show/window/View.h"

namespace tavo {

class ClipHandles;
class OrientationMark;
class SceneGestures;
class ScenePanel;
class SceneProgress;
class SceneWalk;

// A scene: its items, and from where they are seen. It is drawn in the context of all scenes, and shows the picture.
class SceneView : public View
{
public:
    explicit SceneView(const std::string& name);
    ~SceneView() override;

    void makeRoom(const Replaced& replaced) override;
    void apply(ViewUpdate& update) override;
    void sayWhatWaits() override { m_Model.sayWhatWaits(); }
    QImage picture(QSize size) override;
    std::string saveData(const QString& file) override;
    std::function<void()> configuration() override;
    std::vector<Gesture> gestures() const override;

    // From where it is seen. Whoever changes the camera for a person says so: what is sent leaves it alone then.
    SceneCamera& getCamera() { return m_Camera; }
    const SceneCamera& getCamera() const { return m_Camera; }
    void showChoice();

    // Shows all that is there, now and as it changes.
    void showAll();

    // Looks from a side, for a person.
    void lookFrom(SceneCamera::Side side);

    // Between perspective and orthographic, for a person.
    void switchProjection();

    // Shows the bearings, or hides them, for a person.
    void switchBearings();

    // Changes, for a person, the box outside of which nothing is seen, given the box of all that is there.
    void changeClipBox(const std::function<void(ClipBox& clip, const SceneBox& all)>& change);

    // Shows all that is there, or only what is in that box; a thin one along an axis, or what it was before.
    void switchClipBox();
    void switchSlab(std::size_t axis);

    // Shows all but what is in that box, which at first is the nearest corner, or no longer.
    void switchCutOut();

    bool isChosen() const { return m_IsChosen; }

    // What the points of frames take, and so how many are drawn while the view moves.
    PointBudget& getPointBudget() { return m_PointBudget; }

    // Which share of them that is.
    const PointMotion& getPointMotion() const { return m_PointMotion; }

    // The same of the slices of volumes.
    SliceMotion& getSliceMotion() { return m_SliceMotion; }

    // Whether points, or all of a volume, are still to be drawn: it moves, or has just come to rest.
    bool isBusy() const { return m_RestTimer.isActive() || m_RefinementTimer.isActive() || m_VolumeTimer.isActive(); }

    // Of what takes long.
    SceneProgress& getProgress() { return *m_Progress; }

    const SceneModel& getModel() const { return m_Model; }

    // Of all that is visible.
    SceneBox box() { return m_Model.box(); }

    // Has a person choose how items are shown: calls `choose(SceneChoices&)`, or changes what was chosen of one that
    // is there.
    void choose(const std::function<void(SceneChoices&)>& choose);
    void chooseOf(
        const std::string& path, const std::function<void(ItemChoice& choice, const ItemState& state)>& change);

    // The panel of the items.
    bool isPanelShown() const;
    void switchPanel();

    // Selects an item, in the panel, too.
    void select(const std::string& path);

    // Shows the next of what the selected item can be coloured by. Returns whether there is any.
    bool showNextField();

    // Makes points larger or smaller by so many pixels, and lines wider: of the selected item, or of all if there is
    // none.
    void changeSizes(double pixels);

    // Of the volume that is selected, or else of the first one, makes the range so much wider, as a part of it, and
    // moves it up by as much.
    void changeWindow(double wider, double up);

    // The place of what is drawn at a pixel of the widget, or within a few pixels of it.
    std::optional<Vector3d> hitAt(const QPointF& pixel);

    // Says what is drawn at a pixel, or within a few pixels of it, until the next call; nothing without a pixel.
    void hover(const std::optional<QPoint>& pixel);

    // Pins what is drawn there, and tells the program of it.
    void click(const QPoint& pixel);

    // A double click begins with a click, which it takes back.
    void takeBackClick();

    // Returns whether there were any pins.
    bool clearPins();

    // The way of a person through the scene.
    const SceneWalk& getWalk() const { return *m_Walk; }

    const SceneMarks& getMarks() const { return m_Marks; }

    SceneCamera::Size viewSize() const;

    // Where the orientation mark is, if there is room for it.
    std::optional<QRectF> markRoom() const { return room(sceneSize()).mark(); }

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QSize sceneSize() const;
    std::optional<ScenePick> pickAt(const QPoint& pixel);
    std::optional<SceneText> textAt(const QPointF& pixel);
    void recallPanel();
    void rememberPanel() const;
    void settlePanel();
    void takeSurfaces();
    void fitToNews();
    void fit();
    void changed();
    SceneLook look(double scale) const;
    void move();
    void rest();
    void beginRefinement();
    void refine();
    void refineVolumes();
    void showProgress();
    void giveUp();
    void drawPicture();
    void measure(const SceneRenderer::PointTime& time, double seconds);
    void paintOverlays(QPainter& painter, const OverlayRoom& room, const SceneCamera& camera,
        std::optional<SceneCamera::Side> lit = {});
    std::vector<SceneOverlays::ColourBar> colourBars();
    OverlayRoom room(const QSizeF& size) const;
    SceneCamera cameraFor(const QSizeF& size);

    std::shared_ptr<SceneContext> m_Context; // outlives the items
    SceneModel m_Model;
    SceneRenderer m_Renderer; // of the model
    ScenePicker m_Picker;     // in the model
    SceneMarks m_Marks;
    std::shared_ptr<const PickReceiver> m_PickReceiver; // null if nobody is told
    SceneCamera m_Camera;
    SceneBox m_FittedBox;
    bool m_IsChosen = false; // the camera, by a person
    bool m_IsOrthographyChosen = false;
    bool m_HasBearings = true;
    bool m_AreBearingsChosen = false;
    bool m_HasPinned = false; // by the last click
    PointBudget m_PointBudget;
    PointMotion m_PointMotion;
    SliceMotion m_SliceMotion;
    SliceMotion m_LayerMotion; // the same of the layers of translucent surfaces
    QTimer m_SurfaceTimer;     // goes while surfaces of volumes are still to come
    QTimer m_VolumeTimer;      // goes while volumes are coarse
    QTimer m_RestTimer;
    QTimer m_RefinementTimer;      // goes while points are still to be drawn
    Stopwatch m_SinceShown;        // the last picture of a refinement
    double m_SecondsOfShowing = 0; // that it took
    QImage m_Picture;              // null if it has to be drawn
    std::unique_ptr<SceneGestures> m_Gestures;
    std::unique_ptr<OrientationMark> m_Mark; // sees events before the gestures do
    std::unique_ptr<SceneWalk> m_Walk;
    std::unique_ptr<ClipHandles> m_ClipHandles; // see them first
    ScenePanel* m_Panel;                        // this and the next one are children of the widget
    SceneProgress* m_Progress;
    std::optional<bool> m_IsPanelWanted; // by a person
    bool m_WasShown = false;
};

} // namespace tavo
