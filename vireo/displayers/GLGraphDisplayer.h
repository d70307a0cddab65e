#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tavo/base/math/vectors.h"
#include "vireo/Export.h"
#include "vireo/displayers/GLEventObject.h"

namespace tavo {

/// Draws polylines ("graphs"), each in its own colour, and coordinate axes scaled to the data on request. To show
/// graphs in the debug window, call debugOutputGraph or debugOutputGraphs below; to do more with them, send a displayer
/// of your own:
///
///     GLGraphDisplayer* const graphs = new GLGraphDisplayer;
///     graphs->addGraph({0.1f, 0.4f, 0.2f}, RGBA8(255, 200, 0, 255));
///     graphs->setShowCoords(true);
///     sendGLEventObject("measurements", graphs);
///
/// A displayer keeps one copy of the samples, 12 bytes each. Each paint sends all of them in immediate mode, so its
/// time is linear in their number.
///
/// Graphs are not scaled: a view shows data from -150 to 150 along each axis. Send pressures in pascals and time stamps
/// to tavo::plot (vireo/show/show.h), which shows any range, or scale or shift them first; a line in the log says if
/// they are out of view (see GLEventObject::getBoundingBox).
class VIREO_EXPORT GLGraphDisplayer : public GLEventObject
{
public:
    const MetaClass* getInstanceClass() const override;

    /// Makes a displayer without graphs and without axes.
    GLGraphDisplayer();

    /// Adds as many graphs as there are both graphs and colours (see addGraph).
    GLGraphDisplayer(const std::vector<std::vector<float>>& graphs, const std::vector<RGBA8>& colours);
    GLGraphDisplayer(const std::vector<std::vector<Vector2f>>& graphs, const std::vector<RGBA8>& colours);
    GLGraphDisplayer(const std::vector<std::vector<Vector3f>>& graphs, const std::vector<RGBA8>& colours);

    GLGraphDisplayer(const GLGraphDisplayer& other);
    GLGraphDisplayer& operator=(const GLGraphDisplayer& other);
    ~GLGraphDisplayer() override;

    /// Appends a graph. A series of n values becomes the points (i / n, value, 0), so x stays below 1. Points of the
    /// plane get z = 0.
    void addGraph(const std::vector<float>& values, RGBA8 colour);
    void addGraph(const std::vector<Vector2f>& points, RGBA8 colour);
    void addGraph(const std::vector<Vector3f>& points, RGBA8 colour);

    /// The box of all points; (0, 0, 0) to (1, 1, 1) if there are none.
    Box3f getBoundingBox() override;

    /// Draws the graphs as line strips without depth test and lighting, and the axes if they are shown (glColor4ubv,
    /// glBegin, glVertex3fv; see GLEventObject::drawGL). The axes move and scale the current matrix (glTranslatef,
    /// glScalef), which stays so.
    /// @throws std::out_of_range At a graph without a colour.
    void drawGL(QGLWidget* widget, Camera& camera) override;

    /// Makes a panel with a check box for the axes.
    GLEventConfiguration* createConfigWindow(QWidget* parent) override;

    /// Takes over the graphs and colours of another GLGraphDisplayer. Ignores anything else.
    void updateData(GLEventObject* newer) override;

    /// Valid until a graph is added, or this object is assigned to, updated or destroyed.
    const std::vector<std::vector<Vector3f>>& getGraphs() const { return *m_Graphs; }
    const std::vector<RGBA8>& getColours() const { return m_Colours; }

    bool getShowCoords() const { return m_ShowCoords; }
    void setShowCoords(bool show) { m_ShowCoords = show; }

    /// The class record, which the first call makes. Do not call this after shutdown().
    static const MetaClass* getClass();
    static void initMetaClass();
    static void init(const MetaClass* parent);
    static void shutdown();

    static MetaClass* GLGraphDisplayerMetaClass;

private:
    using Points = std::vector<Vector3f>;

    static Object* newInstance();

    template <typename Graph>
    void addGraphs(const std::vector<Graph>& graphs, const std::vector<RGBA8>& colours);

    void append(Points graph, const RGBA8& colour);
    Box3f computeBoundingBox() const;

    // Never null. Copies share the graphs until one of them gets another one.
    std::shared_ptr<std::vector<Points>> m_Graphs;
    std::vector<RGBA8> m_Colours;
    // Computed when it is asked for, and kept until there is another graph.
    std::optional<Box3f> m_BoundingBox;
    // Copied with the object, and read by nothing.
    bool m_Reserved;
    bool m_ShowCoords;
};

/// Shows one graph in the debug window under that name, or updates the one that is shown there.
VIREO_EXPORT void debugOutputGraph(std::string name, const std::vector<float>& values, RGBA8 colour);
VIREO_EXPORT void debugOutputGraph(std::string name, const std::vector<Vector2f>& points, RGBA8 colour);
VIREO_EXPORT void debugOutputGraph(std::string name, const std::vector<Vector3f>& points, RGBA8 colour);

/// Shows several graphs in one view of the debug window under that name, or updates those that are shown there.
VIREO_EXPORT void debugOutputGraphs(
    std::string name, const std::vector<std::vector<float>>& graphs, const std::vector<RGBA8>& colours);
VIREO_EXPORT void debugOutputGraphs(
    std::string name, const std::vector<std::vector<Vector2f>>& graphs, const std::vector<RGBA8>& colours);
VIREO_EXPORT void debugOutputGraphs(
    std::string name, const std::vector<std::vector<Vector3f>>& graphs, const std::vector<RGBA8>& colours);

} // namespace tavo
