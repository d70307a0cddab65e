#pragma once

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "vireo/show/slices/SliceDistance.h"
#include "vireo/show/slices/SliceSight.h"
#include "vireo/show/slices/SlicesModel.h"
#include "vireo/show/window/View.h"

namespace tavo {

class SliceVolume;
class SlicesGestures;
class SlicesPanel;

// A volume in three planes, which go through its crosshair, and as a whole beside them. The planes are drawn by the
// processor, at the resolution of the screen; a plane again when what is in it has changed.
class SlicesView : public View
{
public:
    explicit SlicesView(const std::string& name);
    ~SlicesView() override;

    void makeRoom(const Replaced& replaced) override;
    void apply(ViewUpdate& update) override;
    QImage picture(QSize size) override;
    std::string saveData(const QString& file) override;
    std::vector<Gesture> gestures() const override;
    std::function<void()> configuration() override;

    const SlicesModel& getModel() const { return m_Model; }

    // Has a person change how it is shown.
    void change(const std::function<void(SlicesModel& model)>& change);

    // Moves the crosshair, for a person.
    void moveTo(const Vector3i& voxel);

    // What is seen. Places and cells are in pixels of the screen.
    const SliceSight& getSight() const { return m_Sight; }
    SliceCells cells() const;

    // Shows that part, for a person: what is sent leaves it alone then.
    void setSight(const SliceSight& sight);
    void zoom(double factor, std::size_t plane, const QPointF& place);
    bool isChosen() const { return m_IsChosen; }

    // Shows all of it, now and as it changes.
    void showAll();

    // Has a person measure: a click begins a line, whose end follows the pointer up to the next one. Measuring no
    // longer, the line goes.
    void setMeasuring(bool isMeasuring);
    bool isMeasuring() const { return m_IsMeasuring; }
    void clickDistance(std::size_t plane, const QPointF& place);
    void moveDistance(std::size_t plane, const QPointF& place);
    const std::optional<SliceDistance>& getDistance() const { return m_Distance; }

    // Shows the volume as a whole, or hides it, for a person.
    void switchVolume();
    bool isVolumeShown() const { return m_IsVolumeShown; }

    // Null if there is none.
    SliceVolume* getVolume() { return m_Volume.get(); }

    // The panel of the slices.
    bool isPanelShown() const;
    void switchPanel();

    // Which plane is at a place of the widget; none beside them.
    std::optional<std::size_t> planeAt(const QPointF& place) const;
    QPointF onScreen(const QPointF& place) const { return place * devicePixelRatioF(); }

    // What a plane shows at a place of the widget, counted in samples.
    Vector3d indexAt(std::size_t plane, const QPointF& place) const;

    // Says what is there; of what is at the crosshair without it.
    void hover(const std::optional<Vector3d>& index);

    // What is said below the slices: about what the pointer is on, and about the volume.
    QString textOfPlace() const;
    QString textOfVolume() const;

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void changed();
    std::string nameInLog() const;
    void sayWhatIsWrong();
    void settleVolume();
    void placeVolume();
    int barHeight() const;
    int slicesWidth() const;
    void settlePanel();
    QSize slicesSize() const;
    SliceSight fitting(const SliceCells& cells) const;
    SliceSight sightFor(const SliceCells& cells) const;
    void paintMarks(
        QPainter& painter, std::size_t plane, const SliceSight& sight, const QRect& cell, double ratio) const;
    QImage drawPlane(std::size_t plane, const SliceSight& sight, const QSize& size) const;
    void paintBar(QPainter& painter) const;
    void paintLegend(QPainter& painter, const SliceSight& sight, const SliceCells& cells, const QRect& place) const;

    std::string m_Name;
    SlicesModel m_Model;
    SliceSight m_Sight;
    bool m_IsChosen = false; // the sight, by a person
    std::optional<Vector3d> m_Hovered;
    std::array<QImage, 3> m_Pictures; // of the planes; null if they have to be drawn
    bool m_IsMeasuring = false;
    std::optional<SliceDistance> m_Distance;
    std::unique_ptr<SliceVolume> m_Volume; // null unless it is shown
    bool m_IsVolumeShown = true;
    std::unique_ptr<SlicesGestures> m_Gestures;
    SlicesPanel* m_Panel;                // a child of the widget
    std::optional<bool> m_IsPanelWanted; // by a person
};

} // namespace tavo
