#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <memory>

#include "vireo/show/scenes/DrawingFence.h"
#include "vireo/show/scenes/PointBudget.h"
#include "vireo/show/scenes/SceneCamera.h"
#include "vireo/show/scenes/SceneContext.h"
#include "vireo/show/scenes/SceneModel.h"

namespace tavo {

// How a scene is to look, beside its items.
struct SceneLook
{
    QColor ground;
    QColor ink; // of texts and lines
    QFont font;
    double scale = 1; // pixels of the picture for each of the widget's
    bool hasBearings = true;
    bool hasDepthLight = true;            // on clouds without normals, where the driver can
    unsigned int sliceStep = 1;           // of so many slices of volumes one is drawn
    unsigned int numLayers = MOST_LAYERS; // of translucent surfaces that are drawn by their depths
    bool mayBeCoarse = false;             // large volumes, rather than late

    static constexpr unsigned int MOST_LAYERS = 16;

    bool isGroundDark() const { return ground.lightness() < 128; }
};

// Draws a scene into pictures, in the context of all scenes.
class SceneRenderer
{
public:
    // Draws nothing if there is no context.
    SceneRenderer(std::shared_ptr<SceneContext> context, SceneModel& model)
        : m_Context(std::move(context))
        , m_Model(model)
    {}
    ~SceneRenderer();
    SceneRenderer(const SceneRenderer&) = delete;
    SceneRenderer& operator=(const SceneRenderer&) = delete;

    // With so many phases of the points of clouds. Null if it cannot be drawn.
    QImage draw(const SceneCamera& camera, const QSize& pixels, const SceneLook& look,
        std::size_t numPhases = PointPhases::ALL);

    // What the points of the last picture took.
    struct PointTime
    {
        std::size_t numPoints = 0;
        double seconds = 0;
        bool isTypical = true;       // nothing was written into buffers for it
        double secondsOfVolumes = 0; // if all their slices had been drawn
        double secondsOfLayers = 0;  // if all layers of depth had been drawn
    };
    const PointTime& getPointTime() const { return m_PointTime; }

    // A picture of all points, when they take longer than anybody waits: refine() draws some of them, beside any other
    // picture, and returns whether those were the last, which isRefined() says as well. First come the clouds that are
    // lit by their depths: of these, drawRefined() makes the picture of what there is, with so many phases, larger,
    // behind it and of all others. From when they are whole until everything is, there is nothing new to be shown. What
    // was begun holds until something else is to be drawn.
    void beginRefinement(const SceneCamera& camera, const QSize& pixels, const SceneLook& look);
    bool isRefined() const { return !m_Refinement.target || m_Refinement.isWhole(); }
    bool isAnythingNew() const { return isRefined() || !m_Refinement.areCloudsWhole(); }
    bool refine(double seconds, const PointBudget& budget);
    QImage drawRefined(std::size_t numPhasesBehind);

    // Waits for the points that refine() has left the driver to draw, for which drawRefined() would wait otherwise.
    // False if there are none.
    bool finishSlice();

    // Whether volumes were drawn coarsely in the last picture. Makes more of them, beside any picture, and returns
    // whether they would be whole now.
    bool areVolumesCoarse() const;
    bool refineVolumes(double seconds);

    // How far the one is that lacks most, from 0 to 1; lets them stay coarse.
    double progressOfVolumes() const;
    void giveUpVolumes();

    std::size_t numPointsInView(const SceneCamera& camera, const QSize& pixels);

private:
    using Placed = SceneModel::Placed;

    // What refine() has drawn.
    struct Refinement
    {
        SceneCamera camera;
        QSize pixels;
        SceneLook look;
        std::unique_ptr<GLRenderTargetFBO> target; // null if the driver has none
        PointBudget budget;                        // by what slices took
        std::unique_ptr<DrawingFence> lastSlice;   // null if there is none
        std::size_t numPoints = 0;                 // of the clouds that are lit by their depths
        std::size_t numSteps = 0;                  // with all others, whose points or else items are counted
        std::size_t numDrawn = 0;                  // the first ones
        bool isBegun = false;

        bool areCloudsWhole() const { return isBegun && numDrawn >= numPoints; }
        bool isWhole() const { return isBegun && numDrawn >= numSteps; }
    };

    QImage drawPart(const SceneCamera& camera, const QSize& pixels, const SceneLook& look, std::size_t numPhases);
    void setProjection(const SceneCamera& camera, const QSize& pixels) const;
    void drawBoxBehind(const SceneCamera& camera, const QSize& pixels, const SceneLook& look);
    QImage draw(
        const SceneCamera& camera, const QSize& pixels, const SceneLook& look, std::size_t numPhases, bool isRefined);
    void drawRefinedClouds(PointShare behind);
    void refineInTime(double seconds);
    void refineBy(std::size_t number);
    QImage readRefined();
    void light(const SceneCamera& camera, const QSize& pixels, const SceneLook& look);
    std::vector<Placed> restInOrder(const SceneCamera& camera);
    void drawSections(const SceneCamera& camera, const SceneLook& look);
    void begin(const SceneCamera& camera, const QSize& pixels, const SceneLook& look);
    void drawUnlitClouds(const SceneCamera& camera, const SceneLook& look, const PointShare& share);
    void drawItems(const SceneCamera& camera, const QSize& pixels, const SceneLook& look, std::size_t numPhases);
    void drawRest(const SceneCamera& camera, const SceneLook& look, const PointShare& share);
    void drawSurfaces(
        const std::vector<Placed>& surfaces, const SceneCamera& camera, const SceneLook& look, const PointShare& share);
    PointShare shareOf(const SceneCamera& camera, const QSize& pixels, std::size_t numPhases);
    void drawClouds(const SceneCamera& camera, const QSize& pixels, const SceneLook& look, const PointShare& share);
    void drawItem(const Placed& placed, const SceneCamera& camera, const SceneLook& look, const PointShare& share);
    std::size_t draw(const Placed& placed, const SceneCamera& camera, const SceneLook& look, PointShare share) const;
    void drawTexts(QImage& picture, const SceneCamera& camera, const SceneLook& look);

    std::shared_ptr<SceneContext> m_Context;
    SceneModel& m_Model;
    PointTime m_PointTime;
    Refinement m_Refinement;
    bool m_IsRefined = false; // the picture that is drawn
    QRect m_Part;             // of it, that is drawn
};

} // namespace tavo
