#pragma once

#include <QPointer>
#include <memory>

#include "apps/vireo-view/Histogram.h"
#include "apps/vireo-view/TransferFunction.h"
#include "tavo/points/RegularVolume.h"
#include "vireo/displayers/GLEventObject.h"
#include "vireo/volume/SliceVolumeRenderer.h"

class QGLWidget;

namespace vireo_view {

class VolumeDisplayerConfig;

// Draws a volume with a channel "density" through a transfer function, upright (Z) and with its front (Y) to the
// viewer, as large as everything that is shown (see FITTED_EXTENT). Its textures live in the context of the view that
// it was last drawn in, until the volume is replaced or it dies.
class VolumeDisplayer : public tavo::GLEventObject
{
public:
    const tavo::MetaClass* getInstanceClass() const override;

    // Null shows nothing.
    explicit VolumeDisplayer(std::unique_ptr<tavo::RegularVolume> volume = nullptr);

    // Makes the view's context current to delete the textures, and then again the one that was before.
    ~VolumeDisplayer() override;
    VolumeDisplayer(const VolumeDisplayer&) = delete;
    VolumeDisplayer& operator=(const VolumeDisplayer&) = delete;

    // Null if there is none.
    const tavo::RegularVolume* getVolume() const { return m_Volume.get(); }
    const Histogram& getHistogram() const { return m_Histogram; }

    const TransferFunction& getTransferFunction() const { return m_TransferFunction; }

    // The next drawing shows it.
    void setTransferFunction(const TransferFunction& transferFunction);

    // The box of what is drawn; without a volume that of nothing at the origin.
    tavo::Box3f getBoundingBox() override;

    // As GLEventObject says, but as the camera is now. Textures that are missing are made, while a PreparationBar says
    // how far they are.
    void drawGL(QGLWidget* widget, tavo::Camera& camera) override;

    // A VolumeDisplayerConfig.
    tavo::GLEventConfiguration* createConfigWindow(QWidget* parent) override;

    // Takes the volume of another VolumeDisplayer away from it, and keeps the transfer function; an open panel shows
    // it. Anything else is ignored.
    void updateData(GLEventObject* newer) override;

    // The class record, made by the first call; not to be asked for after shutdown.
    static const tavo::MetaClass* getClass();
    static void initMetaClass();
    static void init(const tavo::MetaClass* parent);
    static void shutdown();

private:
    static tavo::Object* newInstance();
    static tavo::RGBA8 colourOf(void* self, const tavo::StaticVector<float, 1>& density);

    float getScale() const;

    static tavo::MetaClass* VolumeDisplayerMetaClass;

    std::unique_ptr<tavo::RegularVolume> m_Volume;
    Histogram m_Histogram;
    TransferFunction m_TransferFunction;
    tavo::SliceVolumeRenderer m_Renderer;
    QPointer<QGLWidget> m_View; // that has the textures
    QPointer<VolumeDisplayerConfig> m_Panel;
};

} // namespace vireo_view
