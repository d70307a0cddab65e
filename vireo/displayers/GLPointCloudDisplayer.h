#pragma once

#include "vireo/Export.h"
#include "vireo/displayers/GLEventObject.h"

namespace tavo {

class PointSet;

/// Draws the points of a PointSet in white, and coordinate axes fitted to them. Depth test, axes from the start and
/// axes of a least length are deliberately unlike those of GLGraphDisplayer.
///
///     #include <tavo/points/PointSet.h>
///
///     PointSet* const cloud = new PointSet(points);
///     sendGLEventObject("a cloud", new GLPointCloudDisplayer(cloud));
class VIREO_EXPORT GLPointCloudDisplayer : public GLEventObject
{
public:
    const MetaClass* getInstanceClass() const override;

    /// Shows a set, or nothing if it is null. To be drawn, the set needs an attribute "position" of three floats, at
    /// any address.
    /// @owns The displayer owns the set.
    explicit GLPointCloudDisplayer(PointSet* pointSet = nullptr);

    /// A copy points to the same set, deliberately; only one of the two may be destroyed.
    GLPointCloudDisplayer(const GLPointCloudDisplayer& other);
    GLPointCloudDisplayer& operator=(const GLPointCloudDisplayer& other);
    ~GLPointCloudDisplayer() override;

    /// The shown set.
    /// @owns The displayer owns it.
    PointSet* getPointSet() { return m_PointSet; }

    /// The set's box; (0, 0, 0) to (1, 1, 1) without a set.
    Box3f getBoundingBox() override;

    /// Draws the points in immediate mode (glBegin, glVertex3fv) and the axes if they are shown, which move and scale
    /// the current matrix (glTranslatef, glScalef); see GLEventObject::drawGL. A set without positions is not drawn,
    /// with a warning.
    /// @leaves The depth test is enabled.
    void drawGL(QGLWidget* widget, Camera& camera) override;

    /// Makes a panel with a check box for the axes.
    GLEventConfiguration* createConfigWindow(QWidget* parent) override;

    /// Takes the point set away from another GLPointCloudDisplayer, and frees its own. Ignores anything else.
    void updateData(GLEventObject* newer) override;

    bool getShowCoords() const { return m_ShowCoords; }
    void setShowCoords(bool show) { m_ShowCoords = show; }

    /// The class record, which the first call makes. Do not call this after shutdown().
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
