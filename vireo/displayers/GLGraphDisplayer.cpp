#include "vireo/displayers/GLGraphDisplayer.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "tavo/base/math/checkedAt.h"
#include "tavo/base/objects/ClassRecord.h"
#include "tavo/platform/wgl.h"
#include "vireo/context/SavedState.h"
#include "vireo/displayers/GLEventDisplayer.h"
#include "vireo/displayers/GLGraphDisplayerConfig.h"
#include "vireo/displayers/fittedAxes.h"

#include <GL/gl.h>

namespace tavo {

TAVO_CLASS_RECORD(GLGraphDisplayer)

namespace {

void grow(Vector3f& min, Vector3f& max, const Vector3f& point)
{
    for (unsigned int axis = 0; axis < 3; ++axis) {
        // Put so that not-a-number replaces the minimum, and never the maximum: deliberate.
        if (!(point[axis] >= min[axis]))
            min[axis] = point[axis];
        if (point[axis] > max[axis])
            max[axis] = point[axis];
    }
}

} // namespace

GLGraphDisplayer::GLGraphDisplayer()
    : m_Graphs(std::make_shared<std::vector<Points>>())
    , m_Reserved(false)
    , m_ShowCoords(false)
{}

GLGraphDisplayer::GLGraphDisplayer(const std::vector<std::vector<float>>& graphs, const std::vector<RGBA8>& colours)
    : GLGraphDisplayer()
{
    addGraphs(graphs, colours);
}

GLGraphDisplayer::GLGraphDisplayer(const std::vector<std::vector<Vector2f>>& graphs, const std::vector<RGBA8>& colours)
    : GLGraphDisplayer()
{
    addGraphs(graphs, colours);
}

GLGraphDisplayer::GLGraphDisplayer(const std::vector<std::vector<Vector3f>>& graphs, const std::vector<RGBA8>& colours)
    : GLGraphDisplayer()
{
    addGraphs(graphs, colours);
}

GLGraphDisplayer::GLGraphDisplayer(const GLGraphDisplayer& other) = default;
GLGraphDisplayer& GLGraphDisplayer::operator=(const GLGraphDisplayer& other) = default;
GLGraphDisplayer::~GLGraphDisplayer() = default;

template <typename Graph>
void GLGraphDisplayer::addGraphs(const std::vector<Graph>& graphs, const std::vector<RGBA8>& colours)
{
    for (std::size_t i = 0; i < std::min(graphs.size(), colours.size()); ++i)
        addGraph(graphs[i], colours[i]);
}

void GLGraphDisplayer::addGraph(const std::vector<float>& values, RGBA8 colour)
{
    const auto n = static_cast<float>(values.size());
    Points points;
    points.reserve(values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        points.emplace_back(static_cast<float>(i) / n, values[i], 0.0f);
    append(std::move(points), colour);
}

void GLGraphDisplayer::addGraph(const std::vector<Vector2f>& points, RGBA8 colour)
{
    Points inSpace;
    inSpace.reserve(points.size());
    for (const Vector2f& point : points)
        inSpace.emplace_back(point[0], point[1], 0.0f);
    append(std::move(inSpace), colour);
}

void GLGraphDisplayer::addGraph(const std::vector<Vector3f>& points, RGBA8 colour)
{
    append(points, colour);
}

void GLGraphDisplayer::append(Points graph, const RGBA8& colour)
{
    if (m_Graphs.use_count() > 1)
        m_Graphs = std::make_shared<std::vector<Points>>(*m_Graphs);
    m_Graphs->push_back(std::move(graph));
    m_Colours.push_back(colour);
    m_BoundingBox.reset();
}

Box3f GLGraphDisplayer::getBoundingBox()
{
    if (!m_BoundingBox)
        m_BoundingBox = computeBoundingBox();
    return *m_BoundingBox;
}

Box3f GLGraphDisplayer::computeBoundingBox() const
{
    const auto first =
        std::find_if(m_Graphs->begin(), m_Graphs->end(), [](const Points& points) { return !points.empty(); });
    if (first == m_Graphs->end())
        return {{0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f}};

    Vector3f min = first->front();
    Vector3f max = min;
    for (const Points& points : *m_Graphs)
        for (const Vector3f& point : points)
            grow(min, max, point);
    return {min, max};
}

void GLGraphDisplayer::drawGL(QGLWidget*, Camera&)
{
    const SavedAttributes attributes;
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_LIGHTING);
    for (std::size_t i = 0; i < m_Graphs->size(); ++i) {
        glColor4ubv(checkedAt(m_Colours, i).data());
        const Primitive strip(GL_LINE_STRIP);
        for (const Vector3f& point : (*m_Graphs)[i])
            glVertex3fv(point.data());
    }
    if (m_ShowCoords) {
        const Box3f box = getBoundingBox();
        drawFittedAxes(box, box.getExtent());
    }
}

GLEventConfiguration* GLGraphDisplayer::createConfigWindow(QWidget* parent)
{
    return new (std::nothrow) GLGraphDisplayerConfig(parent, this);
}

void GLGraphDisplayer::updateData(GLEventObject* newer)
{
    if (const auto* graphs = dynamic_cast<GLGraphDisplayer*>(newer)) {
        m_Colours = graphs->m_Colours;
        m_Graphs = graphs->m_Graphs;
        m_BoundingBox = graphs->m_BoundingBox;
    }
}

namespace {

template <typename Graph>
void sendGraph(std::string name, const Graph& graph, RGBA8 colour)
{
    auto displayer = std::make_unique<GLGraphDisplayer>();
    displayer->addGraph(graph, colour);
    sendGLEventObject(std::move(name), displayer.release());
}

template <typename Graphs>
void sendGraphs(std::string name, const Graphs& graphs, const std::vector<RGBA8>& colours)
{
    sendGLEventObject(std::move(name), new GLGraphDisplayer(graphs, colours));
}

} // namespace

void debugOutputGraph(std::string name, const std::vector<float>& values, RGBA8 colour)
{
    sendGraph(std::move(name), values, colour);
}

void debugOutputGraph(std::string name, const std::vector<Vector2f>& points, RGBA8 colour)
{
    sendGraph(std::move(name), points, colour);
}

void debugOutputGraph(std::string name, const std::vector<Vector3f>& points, RGBA8 colour)
{
    sendGraph(std::move(name), points, colour);
}

void debugOutputGraphs(
    std::string name, const std::vector<std::vector<float>>& graphs, const std::vector<RGBA8>& colours)
{
    sendGraphs(std::move(name), graphs, colours);
}

void debugOutputGraphs(
    std::string name, const std::vector<std::vector<Vector2f>>& graphs, const std::vector<RGBA8>& colours)
{
    sendGraphs(std::move(name), graphs, colours);
}

void debugOutputGraphs(
    std::string name, const std::vector<std::vector<Vector3f>>& graphs, const std::vector<RGBA8>& colours)
{
    sendGraphs(std::move(name), graphs, colours);
}

} // namespace tavo
