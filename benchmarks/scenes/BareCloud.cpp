#include "benchmarks/scenes/BareCloud.h"

#include "benchmarks/scenes/clouds.h"
#include "tavo/base/objects/PException.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/show/scenes/pictureProjection.h"

namespace vireo_bench {

BareCloud::BareCloud()
    : m_Context(tavo::SceneContext::get())
{
    if (!m_Context)
        throw tavo::PException("there is no context");
    const tavo::SceneContext::Scope scope(*m_Context);
    m_Target = m_Context->makeTarget(VIEW_SIZE);
    if (!m_Target)
        throw tavo::PException("the driver has no targets of depths");
    tavo::glGenBuffersARB(1, &m_Buffer);
}

BareCloud::~BareCloud()
{
    const tavo::SceneContext::Scope scope(*m_Context);
    tavo::glDeleteBuffersARB(1, &m_Buffer);
    m_Target.reset();
}

void BareCloud::upload(const Points& points)
{
    m_Box = {};
    for (const tavo::Vector3f& point : points)
        m_Box.extend({point[0], point[1], point[2]});
    const tavo::Vector3d centre = m_Box.centre();
    m_Points = points;
    m_NumPoints = static_cast<int>(points.size());
    for (tavo::Vector3f& point : m_Points)
        for (unsigned int axis = 0; axis < 3; ++axis)
            point[axis] = static_cast<float>(point[axis] - centre[axis]);
    const tavo::SceneContext::Scope scope(*m_Context);
    tavo::glBindBufferARB(GL_ARRAY_BUFFER_ARB, m_Buffer);
    tavo::glBufferDataARB(GL_ARRAY_BUFFER_ARB, static_cast<GLsizeiptrARB>(m_Points.size() * sizeof(tavo::Vector3f)),
        m_Points.data(), GL_STATIC_DRAW_ARB);
    tavo::glBindBufferARB(GL_ARRAY_BUFFER_ARB, 0);
}

QImage BareCloud::draw(const tavo::SceneCamera& camera) const
{
    const tavo::SceneContext::Scope scope(*m_Context);
    m_Target->activate();
    glViewport(0, 0, VIEW_SIZE.width(), VIEW_SIZE.height());
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glClearColor(1, 1, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
    glDisable(GL_LIGHTING);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(
        tavo::pictureProjection(camera, m_Box, {double(VIEW_SIZE.width()), double(VIEW_SIZE.height())}).numbers.data());
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(camera.modelView({}, m_Box.centre()).numbers.data());
    glColor4ubv(COLOUR_OF_CLOUD.data());
    glPointSize(2);
    tavo::glBindBufferARB(GL_ARRAY_BUFFER_ARB, m_Buffer);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, nullptr);
    glDrawArrays(GL_POINTS, 0, m_NumPoints);
    glDisableClientState(GL_VERTEX_ARRAY);
    tavo::glBindBufferARB(GL_ARRAY_BUFFER_ARB, 0);
    QImage picture = m_Context->readPicture(VIEW_SIZE);
    m_Target->deactivate();
    return picture;
}

} // namespace vireo_bench
