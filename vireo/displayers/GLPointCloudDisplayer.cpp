#include "vireo/displayers/GLPointCloudDisplayer.h"

#include <algorithm>
#include <new>
#include <utility>

#include "tavo/base/debug/displayException.h"
#include "tavo/base/objects/ClassRecord.h"
#include "tavo/platform/wgl.h"
#include "tavo/points/PointSet.h"
#include "vireo/context/SavedState.h"
#include "vireo/displayers/GLPointCloudDisplayerConfig.h"
#include "vireo/displayers/fittedAxes.h"

#include <GL/gl.h>

namespace tavo {

TAVO_CLASS_RECORD(GLPointCloudDisplayer)

namespace {

constexpr char POSITION[] = "position";

// OpenGL wants its floats at multiples of four bytes: those that lie elsewhere pass through a vector.
void sendPositions(const PointSet& points)
{
    if (!points.providesAAT(POSITION)) {
        points.forEach3f(POSITION, [](const Vector3f& position) { glVertex3fv(position.data()); });
        return;
    }
    const AttributeAccessToken position = points.getAAT(POSITION);
    for (unsigned int i = 0; i < points.getNumPoints(); ++i)
        glVertex3fv(points.get3f(i, position));
}

} // namespace

GLPointCloudDisplayer::GLPointCloudDisplayer(PointSet* pointSet)
    : m_PointSet(pointSet)
    , m_ShowCoords(true)
{}

GLPointCloudDisplayer::GLPointCloudDisplayer(const GLPointCloudDisplayer& other) = default;
GLPointCloudDisplayer& GLPointCloudDisplayer::operator=(const GLPointCloudDisplayer& other) = default;

GLPointCloudDisplayer::~GLPointCloudDisplayer()
{
    delete m_PointSet;
}

Box3f GLPointCloudDisplayer::getBoundingBox()
{
    if (!m_PointSet)
        return {{0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f}};
    return m_PointSet->getBoundingBox();
}

void GLPointCloudDisplayer::drawGL(QGLWidget*, Camera&)
{
    glEnable(GL_DEPTH_TEST);
    if (!m_PointSet)
        return;
    if (!m_PointSet->getDescr().providesAttribute(POSITION, 3, VertexAttribDescriptor::TYPE_FLOAT)) {
        warning("GLPointCloudDisplayer::drawGL() - position3f channel not found.");
        return;
    }
    drawPoints();
    if (m_ShowCoords)
        drawAxes();
}

void GLPointCloudDisplayer::drawPoints()
{
    const SavedAttributes attributes;
    glDisable(GL_LIGHTING);
    glPointSize(1.0f);
    glColor3f(1.0f, 1.0f, 1.0f);
    const Primitive points(GL_POINTS);
    sendPositions(*m_PointSet);
}

void GLPointCloudDisplayer::drawAxes()
{
    const Box3f box = getBoundingBox();
    Vector3f scale = box.getExtent();
    // A flat set still gets visible axes.
    const float smallest = std::max({scale[0], scale[1], scale[2]}) * 0.01f;
    for (unsigned int axis = 0; axis < 3; ++axis)
        if (!(scale[axis] > smallest))
            scale[axis] = smallest;
    drawFittedAxes(box, scale);
}

GLEventConfiguration* GLPointCloudDisplayer::createConfigWindow(QWidget* parent)
{
    return new (std::nothrow) GLPointCloudDisplayerConfig(parent, this);
}

void GLPointCloudDisplayer::updateData(GLEventObject* newer)
{
    auto* cloud = dynamic_cast<GLPointCloudDisplayer*>(newer);
    if (!cloud || cloud == this)
        return;
    delete m_PointSet;
    m_PointSet = std::exchange(cloud->m_PointSet, nullptr);
}

} // namespace tavo
