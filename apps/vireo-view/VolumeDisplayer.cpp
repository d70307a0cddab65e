#include "apps/vireo-view/VolumeDisplayer.h"

#include <QGLWidget>
#include <QScopeGuard>
#include <algorithm>
#include <array>
#include <new>
#include <utility>

#include "apps/vireo-view/NiftiReader.h"
#include "apps/vireo-view/PreparationBar.h"
#include "apps/vireo-view/SceneFitting.h"
#include "apps/vireo-view/VolumeDisplayerConfig.h"
#include "tavo/base/gui/Camera.h"
#include "tavo/base/objects/ClassRecord.h"
#include "vireo/context/SavedState.h"
#include "vireo/displayers/loadCamera.h"

#include <GL/gl.h>

namespace vireo_view {

namespace {

// The volume's axes as they are shown: X, which points to the right of the person in it, to the viewer's left, Z
// upwards and Y to the viewer.
tavo::Vector3f turned(const tavo::Vector3f& v)
{
    return {-v[0], v[2], v[1]};
}

// The turn is its own inverse.
tavo::Vector3f turnedBack(const tavo::Vector3f& v)
{
    return turned(v);
}

// Enough for every value of 12 bits.
constexpr unsigned int TABLE_SIZE = 4096;

} // namespace

TAVO_CLASS_RECORD(VolumeDisplayer)

VolumeDisplayer::VolumeDisplayer(std::unique_ptr<tavo::RegularVolume> volume)
    : m_Volume(std::move(volume))
    , m_Histogram(m_Volume ? Histogram(*m_Volume) : Histogram())
    , m_TransferFunction(m_Histogram)
{
    m_Renderer.setTableSize(TABLE_SIZE);
}

VolumeDisplayer::~VolumeDisplayer()
{
    if (!m_View)
        return;
    const tavo::CurrentContextGuard guard;
    m_View->makeCurrent();
    m_Renderer.disposeTextures();
}

void VolumeDisplayer::setTransferFunction(const TransferFunction& transferFunction)
{
    if (m_TransferFunction == transferFunction)
        return;
    m_TransferFunction = transferFunction;
    m_Renderer.invalidate();
}

float VolumeDisplayer::getScale() const
{
    const tavo::Vector3f extent = m_Volume->getBoundingBox().getExtent();
    return static_cast<float>(FITTED_EXTENT / std::max({extent[0], extent[1], extent[2]}));
}

tavo::Box3f VolumeDisplayer::getBoundingBox()
{
    if (!m_Volume)
        return {{0.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 0.0f}};
    tavo::Vector3f corner = turned(m_Volume->getBoundingBox().getExtent() * (getScale() / 2));
    corner[0] = -corner[0];
    return {corner * -1.0f, corner};
}

void VolumeDisplayer::drawGL(QGLWidget* widget, tavo::Camera& camera)
{
    if (!m_Volume) {
        m_Renderer.disposeTextures();
        return;
    }
    m_View = widget;
    // The matrix that is loaded is of the paint before: with that, a new volume would be drawn twice until it is seen
    // right.
    const tavo::SavedAttributes mode(GL_TRANSFORM_BIT);
    const tavo::SavedMatrix matrix(GL_MODELVIEW);
    tavo::loadCamera(camera);
    const std::array<float, 16> turn = {-1, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 1};
    glMultMatrixf(turn.data());
    glScalef(getScale(), getScale(), getScale());
    const tavo::Box3f& box = m_Volume->getBoundingBox();
    const tavo::Vector3f middle = (box.getMin() + box.getMax()) * 0.5f;
    glTranslatef(-middle[0], -middle[1], -middle[2]);

    PreparationBar bar(*widget);
    m_Renderer.setProgress([&bar](unsigned int numDone, unsigned int numSlices) { bar.update(numDone, numSlices); });
    const auto forgetBar = qScopeGuard([this] { m_Renderer.setProgress(nullptr); });
    m_Renderer.drawVolume(m_Volume.get(), turnedBack(camera.getLookAtPoint() - camera.getEyePoint()),
        std::string(DENSITY), &colourOf, this);
}

tavo::RGBA8 VolumeDisplayer::colourOf(void* self, const tavo::StaticVector<float, 1>& density)
{
    return static_cast<const VolumeDisplayer*>(self)->m_TransferFunction.look(double{density[0]});
}

tavo::GLEventConfiguration* VolumeDisplayer::createConfigWindow(QWidget* parent)
{
    m_Panel = new (std::nothrow) VolumeDisplayerConfig(parent, this);
    return m_Panel;
}

void VolumeDisplayer::updateData(GLEventObject* newer)
{
    auto* const displayer = dynamic_cast<VolumeDisplayer*>(newer);
    if (!displayer || displayer == this)
        return;
    m_Volume = std::move(displayer->m_Volume);
    m_Histogram = std::exchange(displayer->m_Histogram, Histogram());
    if (m_Panel)
        m_Panel->showAll();
}

} // namespace vireo_view
