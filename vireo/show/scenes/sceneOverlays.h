#pragma once

#include <QColor>
#include <QFontMetricsF>
#include <QRectF>
#include <QSizeF>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "vireo/show/scenes/SceneCamera.h"
#include "vireo/show/scenes/SceneModel.h"
#include "vireo/show/scenes/bearings.h"
#include "vireo/show/scenes/labelLegend.h"
#include "vireo/show/scenes/scaleBar.h"

class QPainter;

namespace tavo {

// What stands over the picture of a scene, so that places, lengths and colours can be read: numbers at the edges of the
// box around the data, a bar of length where the view is orthographic, bars of colours, and the orientation mark. Each
// has a room of its own in the picture; what finds none is left out.
struct SceneOverlays
{
    struct ColourBar
    {
        QString field;
        QString colourMap;
        std::pair<double, double> range;
        QRectF bar;
        QRectF room;                            // with its numbers and its title
        std::vector<LegendRow> categories = {}; // instead of numbers
    };

    struct LengthBar
    {
        ScaleBar bar;
        QPointF leftEnd;
        QRectF room;
    };

    std::vector<Bearing> bearings;
    std::vector<ColourBar> colourBars;
    std::optional<LengthBar> scaleBar;
    std::optional<QRectF> mark;
};

// The numbers and the categories that colours show: those of the item of that path, or else of the first two items that
// have any. If there are several, or a path is needed to tell them apart, it is in the title. Places are empty.
std::vector<SceneOverlays::ColourBar> colourBarsOf(SceneModel& model, const std::string& selected);

// What the places depend on. Sizes are in the pixels of the widget, whatever those of the picture are.
struct OverlayRoom
{
    QSizeF size;
    QFontMetricsF font;
    bool hasBearings = true;

    std::optional<QRectF> mark() const;
    bool hasRoomForNumbers() const;
    SceneCamera::Size cameraSize() const { return {size.width(), size.height()}; }
};

ToPicture toPicture(const SceneCamera& camera, const SceneCamera::Size& size);

// Finds a place for everything. The box may be empty.
SceneOverlays placeOverlays(const OverlayRoom& room, const SceneCamera& camera, const SceneBox& box,
    std::vector<SceneOverlays::ColourBar> colourBars);

// Backs off until the box is seen, with the numbers around it, beside the bars.
void fitWithOverlays(SceneCamera& camera, const OverlayRoom& room, const SceneBox& box,
    std::vector<SceneOverlays::ColourBar> colourBars);

// Draws all but the mark, with the font that is set.
void drawOverlays(QPainter& painter, const SceneOverlays& overlays, const QColor& ink, const QColor& ground);

} // namespace tavo
