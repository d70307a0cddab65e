#pragma once

#include <QWidget>
#include <optional>
#include <string>

#include "vireo/show/scenes/ItemProperties.h"

class QTimer;

namespace tavo {

class ClipControls;
class SceneTree;
class SceneView;

// At the right of a scene: the tree of its items, how the selected one is shown, and what part of all is seen.
class ScenePanel : public QWidget
{
    Q_OBJECT

public:
    explicit ScenePanel(SceneView& view);

    // Shows, at most once a frame, what has become of the items.
    void noteChange();

    // That is selected in the tree.
    const std::optional<std::string>& selected() const;
    void select(const std::string& path);

    // The width that a person has chosen, or else one that is right for it.
    int getWantedWidth() const { return m_WantedWidth; }
    void setWantedWidth(int width) { m_WantedWidth = width; }

    // The width that it takes of a view.
    int widthIn(int widthOfView) const;

    bool eventFilter(QObject* object, QEvent* event) override;

signals:
    void widthWanted();

protected:
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void layOut();
    void connectAll();
    void follow();
    void selectFirst();
    void showSelected();

    SceneView& m_View;
    SceneTree* m_Tree;
    ClipControls* m_Clip;
    ItemProperties* m_Properties;
    QTimer* m_FollowSoon;
    int m_WantedWidth;
    int m_GripOffset = 0; // where the edge is held
};

} // namespace tavo
