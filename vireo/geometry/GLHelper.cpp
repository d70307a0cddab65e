#include "vireo/geometry/GLHelper.h"

#include <QFont>
#include <QGLWidget>
#include <QString>
#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

#include "tavo/base/objects/PException.h"
#include "tavo/points/VertexDescriptor.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/SavedState.h"

#include <GL/glu.h>

namespace tavo {

namespace {

struct Segment
{
    std::array<float, 3> from;
    std::array<float, 3> to;
};

// The segments are the axis, the two of its arrow, and those of its letter.
struct Axis
{
    std::array<float, 3> colour;
    std::span<const Segment> segments;
};

constexpr std::size_t AXIS_ONLY = 1;
constexpr std::size_t AXIS_AND_ARROW = 3;
constexpr std::size_t AXIS_ARROW_AND_LETTER = 6;

constexpr std::array<Segment, 5> X_SEGMENTS{{
    {{0, 0, 0}, {1, 0, 0}},
    {{0.95f, 0.05f, 0}, {1, 0, 0}},
    {{0.95f, -0.05f, 0}, {1, 0, 0}},
    {{0.94f, -0.1f, 0}, {1, -0.2f, 0}},
    {{1, -0.1f, 0}, {0.94f, -0.2f, 0}},
}};

// The letter lies on its side.
constexpr std::array<Segment, 6> Y_SEGMENTS{{
    {{0, 0, 0}, {0, 1, 0}},
    {{0.05f, 0.95f, 0}, {0, 1, 0}},
    {{-0.05f, 0.95f, 0}, {0, 1, 0}},
    {{-0.15f, 0.97f, 0}, {-0.1f, 1, 0}},
    {{-0.1f, 0.94f, 0}, {-0.15f, 0.97f, 0}},
    {{-0.15f, 0.97f, 0}, {-0.2f, 0.97f, 0}},
}};

constexpr std::array<Segment, 6> Z_SEGMENTS{{
    {{0, 0, 0}, {0, 0, 1}},
    {{0.05f, 0, 0.95f}, {0, 0, 1}},
    {{-0.05f, 0, 0.95f}, {0, 0, 1}},
    {{-0.2f, 0, 1}, {-0.2f, 0, 0.94f}},
    {{-0.2f, 0, 0.94f}, {-0.1f, 0, 1}},
    {{-0.1f, 0, 1}, {-0.1f, 0, 0.94f}},
}};

constexpr std::array<Axis, 3> AXES{{
    {{1, 0.5f, 0.5f}, X_SEGMENTS},
    {{0.5f, 1, 0.5f}, Y_SEGMENTS},
    {{0.5f, 0.5f, 1}, Z_SEGMENTS},
}};

void sendVertex(const std::array<float, 3>& vertex)
{
    glVertex3f(vertex[0], vertex[1], vertex[2]);
}

// At most that many segments of each axis.
void sendAxes(std::size_t segmentsPerAxis)
{
    constexpr float alpha = 0.1f;
    for (const Axis& axis : AXES) {
        glColor4f(axis.colour[0], axis.colour[1], axis.colour[2], alpha);
        for (const Segment& segment : axis.segments.first(std::min(segmentsPerAxis, axis.segments.size()))) {
            sendVertex(segment.from);
            sendVertex(segment.to);
        }
    }
}

} // namespace

void GLHelper::bindSoftwareVertexBuffer(
    const char* data, const VertexDescriptor* source, const VertexDescriptor* target)
{
    for (unsigned int i = 0; i < target->getNumAttributes(); ++i) {
        const VertexAttribDescriptor& attribute = target->getAttribute(i);
        if (attribute.getType() != VertexAttribDescriptor::TYPE_FLOAT ||
            !source->providesAttribute(attribute.getName()))
            continue;
        const unsigned int offset = source->getAttributeOffset(source->getIndex(attribute.getName()));
        glEnableVertexAttribArrayARB(i);
        glVertexAttribPointerARB(i, static_cast<GLint>(attribute.getNumComponents()), GL_FLOAT, GL_FALSE,
            static_cast<GLsizei>(source->getSize()), data + offset);
    }
}

void GLHelper::unbindSoftwareVertexBuffer(const VertexDescriptor*, const VertexDescriptor* target)
{
    for (unsigned int i = 0; i < target->getNumAttributes(); ++i)
        glDisableVertexAttribArrayARB(i);
}

void GLHelper::drawBuffer(const char* data, unsigned int sizeInBytes, const VertexDescriptor* source,
    const VertexDescriptor* target, unsigned int mode)
{
    if (source->getSize() == 0)
        throw PException("GLHelper::drawBuffer() - vertices without attributes");
    const unsigned int count = sizeInBytes / source->getSize();
    bindSoftwareVertexBuffer(data, source, target);
    glDrawArrays(mode, 0, static_cast<GLsizei>(count));
    unbindSoftwareVertexBuffer(source, target);
}

void GLHelper::drawCoords()
{
    const SavedAttributes attributes;
    glDisable(GL_LIGHTING);
    const Primitive lines(GL_LINES);
    drawCoordsSendVertices();
}

void GLHelper::drawCoordsSendVertices()
{
    sendAxes(AXIS_ARROW_AND_LETTER);
}

void GLHelper::drawCoordsSendVerticesNoXYZ()
{
    sendAxes(AXIS_AND_ARROW);
}

void GLHelper::drawCoordsSendVerticesNoXYZNoArrows()
{
    sendAxes(AXIS_ONLY);
}

void GLHelper::pushMVP()
{
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
}

void GLHelper::popMVP()
{
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
}

void GLHelper::begin2D(float width, float height)
{
    pushMVP();
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluOrtho2D(0, width, 0, height);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}

void GLHelper::end2D()
{
    popMVP();
}

void GLHelper::drawText(GLContext* context, const Vector3f& position, const std::string& text)
{
    QGLWidget* widget = context->getQGLWidget();
    if (!widget)
        throw PException("GLHelper::drawText() - the context has no widget");
    const QString string(text.c_str());
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
    constexpr int listBase = 2000;
    widget->renderText(position[0], position[1], position[2], string, QFont(), listBase);
#else
    // Qt 5 draws text without display lists.
    widget->renderText(position[0], position[1], position[2], string, QFont());
#endif
}

} // namespace tavo
