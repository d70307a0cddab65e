#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tavo/base/math/vectors.h"
#include "vireo/Export.h"
#include "vireo/displayers/GLEventObject.h"

namespace tavo {

// Draws polylines ("graphs"), each in a colour of its own (red, green, blue, alpha), and on request coordinate axes
// scaled to the data. To show graphs in the debug window, debugOutputGraph and debugOutputGraphs below take one call.
//
// Graphs are shown as they are, one unit a unit: a view shows data from -150 to 150 along each axis. Pressures in
// pascals or time stamps lie beyond its far plane, and are to be scaled or shifted first; a line in the log says so
// (see GLEventObject::getBoundingBox).
class VIREO_EXPORT GLGraphDisplayer : public GLEventObject
{
public:
    const MetaClass* getInstanceClass() const override;

    // Without graphs and without axes.
    GLGraphDisplayer();

    // As many graphs as there are both graphs and colours, each added by addGraph.
    GLGraphDisplayer(const std::vector<std::vector<float>>& graphs, const std::vector<RGBA8>& colours);
    GLGraphDisplayer(const std::vector<std::vector<Vector2f>>& graphs, const std::vector<RGBA8>& colours);
    GLGraphDisplayer(const std::vector<std::vector<Vector3f>>& graphs, const std::vector<RGBA8>& colours);

    GLGraphDisplayer(const GLGraphDisplayer& other);
    GLGraphDisplayer& operator=(const GLGraphDisplayer& other);
    ~GLGraphDisplayer() override;

    // Appends a graph. A series of n values becomes the points (i / n, value, 0), so that x stays below 1; points of
    // the plane get z = 0.
    void addGraph(const std::vector<float>& values, RGBA8 colour);
    void addGraph(const std::vector<Vector2f>& points, RGBA8 colour);
    void addGraph(const std::vector<Vector3f>& points, RGBA8 colour);

    // The box of all points; (0, 0, 0) to (1, 1, 1) if there are none.
    Box3f getBoundingBox() override;

    // As GLEventObject says. Throws std::out_of_range for a graph without a colour.
    void drawGL(QGLWidget* widget, Camera& camera) override;

    // A panel with a check box for the axes.
    GLEventConfiguration* createConfigWindow(QWidget* parent) override;

    // Takes over the graphs and colours of another GLGraphDisplayer; anything else is ignored.
    void updateData(GLEventObject* newer) override;

    // Both are good until there is another graph, or this object is assigned to, updated or destroyed.
    const std::vector<std::vector<Vector3f>>& getGraphs() const { return *m_Graphs; }
    const std::vector<RGBA8>& getColours() const { return m_Colours; }

    bool getShowCoords() const { return m_ShowCoords; }
    void setShowCoords(bool show) { m_ShowCoords = show; }

    // The class record, made by the first call; not to be asked for after shutdown.
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

// Show one graph, or several, in the debug window under that name; a later call with the same name updates what is
// shown.
VIREO_EXPORT void debugOutputGraph(std::string name, const std::vector<float>& values, RGBA8 colour);
VIREO_EXPORT void debugOutputGraph(std::string name, const std::vector<Vector2f>& points, RGBA8 colour);
VIREO_EXPORT void debugOutputGraph(std::string name, const std::vector<Vector3f>& points, RGBA8 colour);

VIREO_EXPORT void debugOutputGraphs(
    std::string name, const std::vector<std::vector<float>>& graphs, const std::vector<RGBA8>& colours);
VIREO_EXPORT void debugOutputGraphs(
    std::string name, const std::vector<std::vector<Vector2f>>& graphs, const std::vector<RGBA8>& colours);
VIREO_EXPORT void debugOutputGraphs(
    std::string name, const std::vector<std::vector<Vector3f>>& graphs, const std::vector<RGBA8>& colours);

} // namespace tavo
