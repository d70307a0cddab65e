#pragma once

#include "vireo/Export.h"
#include "vireo/displayers/GLEventObject.h"

namespace tavo {

class PointSet;

// Draws the points of a PointSet in white, and coordinate axes fitted to them. Depth test, axes from the start and axes
// of a least length are deliberately unlike those of GLGraphDisplayer.
class VIREO_EXPORT GLPointCloudDisplayer : public GLEventObject
{
public:
    const MetaClass* getInstanceClass() const override;

    // Takes the set over, which needs an attribute "position" of three floats to be drawn, at whatever addresses its
    // layout puts them. Null shows nothing.
    explicit GLPointCloudDisplayer(PointSet* pointSet = nullptr);

    // A copy points to the same set, deliberately; only one of the two may be destroyed.
    GLPointCloudDisplayer(const GLPointCloudDisplayer& other);
    GLPointCloudDisplayer& operator=(const GLPointCloudDisplayer& other);
    ~GLPointCloudDisplayer() override;

    // The shown set, still the displayer's.
    PointSet* getPointSet() { return m_PointSet; }

    // The set's box; (0, 0, 0) to (1, 1, 1) without a set.
    Box3f getBoundingBox() override;

    // As GLEventObject says. Leaves the depth test enabled. A set without positions is warned of and not drawn.
    void drawGL(QGLWidget* widget, Camera& camera) override;

    // A panel with a check box for the axes.
    GLEventConfiguration* createConfigWindow(QWidget* parent) override;

    // Takes the point set of another GLPointCloudDisplayer away from it, and frees its own; anything else is ignored.
    void updateData(GLEventObject* newer) override;

    bool getShowCoords() const { return m_ShowCoords; }
    void setShowCoords(bool show) { m_ShowCoords = show; }

    // The class record, made by the first call; not to be asked for after shutdown.
    static const MetaClass* getClass();
    static void initMetaClass();
    static void init(const MetaClass* parent);
    static void shutdown();

    static MetaClass* GLPointCloudDisplayerMetaClass;

private:
    static Object* newInstance();

    void drawPoints();
    void drawAxes();

    PointSet* m_PointSet;
    bool m_ShowCoords;
};

} // namespace tavo
