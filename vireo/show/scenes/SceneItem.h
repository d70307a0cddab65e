#pragma once

#include <QColor>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "vireo/show/scenes/ItemBuffers.h"
#include "vireo/show/scenes/ItemChoice.h"
#include "vireo/show/scenes/ItemColours.h"
#include "vireo/show/scenes/ItemState.h"
#include "vireo/show/scenes/PickTarget.h"
#include "vireo/show/scenes/PointScale.h"
#include "vireo/show/scenes/PointShare.h"
#include "vireo/show/scenes/RoundPoints.h"
#include "vireo/show/scenes/SceneCamera.h"
#include "vireo/show/scenes/SceneUpdate.h"
#include "vireo/show/scenes/SentNumbers.h"
#include "vireo/show/scenes/drawnItem.h"
#include "vireo/show/scenes/sceneData.h"
#include "vireo/show/volumes/ItemVolume.h"
#include "vireo/show/volumes/VolumeRay.h"

namespace tavo {

// One item of a scene: what was sent of it, how it looks by what was sent and chosen, and how it is drawn.
class SceneItem
{
public:
    // The colour is that of items that are given none.
    explicit SceneItem(std::size_t paletteNumber)
        : m_PaletteNumber(paletteNumber)
    {}

    // Frees the shape, before another one takes its place.
    void dropShape();

    // Takes over what was sent, or chosen by a person, which wins. No GL is called.
    void apply(ItemUpdate& update);
    void choose(const ItemChoice& choice);

    // Changes with all that is sent to it or chosen of it. No two items have the same.
    std::size_t getRevision() const { return m_Revision; }

    // Changes with all that is sent to it.
    std::size_t getDataRevision() const { return m_DataRevision; }

    // Whether it is to be seen: there may be nothing to see of it.
    bool isWanted() const { return m_IsVisible; }

    // It must have a shape.
    ItemState state() const;

    bool areLabelsShown() const;

    // A few of its colours, opaque, in the order in which a map has them. None if it is in the colour of texts.
    std::vector<RGBA8> swatch(bool isGroundDark) const;

    bool isVisible() const { return m_IsVisible && m_Opacity > 0 && m_Shape; }
    bool isOpaque() const; // as far as it has been prepared
    bool isMesh() const { return m_Shape && kind() == ItemKind::Mesh; }
    bool isVolume() const { return m_Shape && kind() == ItemKind::Volume; }

    // Whether it is a volume of numbers of which none is one, so that nothing of it is seen.
    bool isVolumeOfNothing() const;

    // Whether it is a volume that is white where it is most opaque.
    bool isWhiteVolume() const;

    // How many samples of a volume are drawn; null before it has been.
    const Vector3i* drawnSize() const { return m_Volume.drawnSize(); }

    // Whether a volume was drawn coarsely, since all of it takes long. Makes more of it, for about so long, and returns
    // whether it would be whole now. The context must be current.
    bool isCoarse() const { return isVolume() && m_Volume.isCoarse(); }
    bool refineVolume(double seconds) { return m_Volume.refine(seconds); }

    // How much of that is done, from 0 to 1; lets it stay coarse.
    double progressOfVolume() const { return m_Volume.progress(); }
    void giveUpVolume() { m_Volume.giveUp(); }

    // Whether light should fall on the volume, and the driver cannot do that.
    bool isLightMissing() const { return m_IsLit && isVolume() && m_Volume.isLightMissing(); }

    // The sample of the volume that is seen along a ray: where it hides what is behind it, or the greatest. None if the
    // ray passes it, or goes through it and hardly anything is seen of it.
    std::optional<std::size_t> sampleAlong(const VolumeRay& ray) const;

    // What of which volume it is; null if it is what was sent.
    const IsosurfaceOf* isosurface() const { return m_Isosurface ? &*m_Isosurface : nullptr; }

    const SceneBox& box() const { return m_Drawn.box; }

    // A sentence on each thing that was sent and is not shown: for want of as many points or faces, or of what it
    // names.
    std::vector<std::string> waiting() const;

    // Of all that has no colours of its own, with the opacity.
    RGBA8 colour(const QColor& unlessGiven) const;

    // The same on a ground.
    RGBA8 oneColour(bool isGroundDark) const;

    // Whether it is a cloud on which no light falls.
    bool isUnlitCloud() const;

    // The numbers that its colours show.
    struct ShownScalars
    {
        std::string field;
        std::string colourMap;
        std::pair<double, double> range; // which have the first and the last colour
    };
    std::optional<ShownScalars> shownScalars() const;

    // The categories that its colours show, each with its name, or else its number; those of which there are no points
    // are left out.
    struct ShownLabels
    {
        std::string field;
        std::vector<std::pair<RGBA8, std::string>> categories;
    };
    std::optional<ShownLabels> shownLabels() const;

    // The name of a category; empty if it has none.
    std::string nameOfLabel(double value) const;

    // What is saved of it: its shape and what fits it; nothing if it has no shape.
    std::optional<ItemData> data() const;

    // The text that it is, and where it is.
    const std::string* text() const;

    // Writes what has changed into the buffers, and says whether anything had. Of a cloud they have so many phases
    // beside all points. The context must be current.
    bool prepare(GLContext& context, std::size_t numPhases);

    // Draws it at a scale of pixels, of clouds the share; it must have been prepared. GL's projection is that of the
    // camera. Returns how many points of a cloud were drawn.
    std::size_t draw(const Matrix4& modelView, bool isGroundDark, double scale, const PointShare& share);

    // Of a cloud; otherwise 0.
    std::size_t numPoints() const { return m_Drawn.phases ? m_Drawn.phases->numPoints() : 0; }

    // How many points of a cloud the share has.
    std::size_t numPointsOf(const PointShare& share, const Matrix4& modelView) const;

    // The point, vertex, arrow or box as sent, counted from 0, that a vertex as drawn is of.
    std::size_t sourceOf(std::size_t vertex) const { return m_Drawn.sourceOf(vertex); }

    // Draws ids instead of colours into the target, under a number; of clouds the chunks that are in view.
    void drawIds(
        GLContext& context, PickTarget& target, std::size_t number, const Matrix4& modelView, const PointShare& share);

    // Whether it is a surface with an inside. drawSheets() draws it in the colour that is set; it must have been
    // prepared.
    bool isClosedSurface() const;
    void drawSheets();

    // In pixels, of points and lines.
    double size() const;

    // The same at most, where points are as large as they are in the scene.
    double largestSize() const;

    // What was sent; null if nothing has been.
    const ItemShape* shape() const { return m_Shape ? &*m_Shape : nullptr; }
    const NumberTuples* normals() const { return m_Normals.used(); }
    std::vector<SceneField> fields() const;
    std::optional<RGBA8> colourSent(std::size_t source, std::size_t part) const
    {
        return m_Colours.sentAt(source, part);
    }

    const Vector3d& origin() const { return m_Drawn.origin; }

private:
    // What was sent of how it is to look.
    struct Style
    {
        std::optional<RGBA8> colour;
        std::optional<double> size;
        std::optional<double> opacity;
        std::optional<bool> isVisible;
        std::optional<bool> isSmooth;
        std::optional<bool> areEdgesSeen;
        std::optional<bool> areBackFacesSeen;
        std::optional<bool> isMaximum;
        std::optional<bool> isLit;
    };

    void applyStyle(ItemUpdate& update);
    bool settleStyle();
    void settleDrawn(bool isNew);
    bool fits(const NumberTuples& tuples) const;
    bool applySize(ItemUpdate& update);
    void addRadii();
    std::optional<std::pair<double, double>> radii() const;
    void upload(GLContext& context);
    void uploadRadii(GLContext& context);
    void uploadColours(GLContext& context);
    std::vector<float> radiiOf(const DrawnItem& drawn, std::size_t numVertices) const;
    bool preparePhases(GLContext& context, std::size_t numPhases);
    void prepareVolume(GLContext& context);
    void setSizes(double scale) const;
    PointRanges rangesInView(const Matrix4& modelView, const PointShare& share, double pointSize) const;
    void drawPoints(const PointRanges& ranges, const Matrix4& modelView, double scale, const PointShare& share);
    bool areRound(double scale) const;
    void drawFaces(const Matrix4& modelView, double edgeWidth);
    void drawEdges(const RGBA8& colour, double width);

    ItemKind kind() const { return m_Shape->kind; }

    std::size_t m_PaletteNumber;
    std::size_t m_Revision = 0;
    std::size_t m_DataRevision = 0;
    std::optional<ItemShape> m_Shape;
    std::optional<IsosurfaceOf> m_Isosurface;
    ItemColours m_Colours;
    SentNumbers m_Normals;
    SentNumbers m_Radii; // one, or as many as there are points
    Style m_Sent;
    ItemChoice m_Chosen;
    std::optional<RGBA8> m_Colour; // this and the following, as chosen or else as sent
    std::optional<double> m_Size;
    double m_LargestRadius = 0; // 0 if points have a size in pixels
    double m_Opacity = 1;
    bool m_IsVisible = true;
    bool m_IsSmooth = false;
    bool m_AreEdgesSeen = false;
    bool m_AreBackFacesSeen = true;
    bool m_IsMaximum = false;
    bool m_IsLit = false;

    DrawnItem m_Drawn; // after the upload, without what the buffers have
    ItemBuffers m_Buffers;
    ItemBuffers m_FewBuffers;               // of a cloud, the points of the first phases
    std::size_t m_NumPhases = 0;            // that those are of; 0 if none are there
    mutable std::optional<bool> m_IsClosed; // if it is known
    ItemVolume m_Volume;
    bool m_IsUploaded = false;
    bool m_AreColoursUploaded = false;
    bool m_AreColoursOpaque = true; // those that were uploaded
    bool m_AreEdgesUploaded = false;
    std::unique_ptr<PointScale> m_PointScale;   // null if all points are as large
    std::unique_ptr<RoundPoints> m_RoundPoints; // null if it is no cloud, or the driver has none
};

} // namespace tavo
