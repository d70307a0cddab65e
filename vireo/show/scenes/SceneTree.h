#pragma once

#include <QTreeWidget>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>

#include "vireo/show/scenes/SceneItem.h"

namespace tavo {

// The items of a scene as a tree of their paths: "car/lidar" is in "car". Each has its colours, its kind and the number
// of its points, and a box that shows and hides it with all that is in it.
class SceneTree : public QTreeWidget
{
    Q_OBJECT

public:
    explicit SceneTree(QWidget* parent = nullptr);
    ~SceneTree() override;

    // Follows the items. What is selected or closed stays so, and is again when it comes again.
    void follow(const std::map<std::string, SceneItem>& items);

    // The path that is selected, whether there is anything or not.
    const std::optional<std::string>& selected() const { return m_Selected; }
    void select(const std::string& path);

signals:
    void pathSelected();
    void visibilityWanted(const std::string& branch, bool isVisible);

protected:
    void changeEvent(QEvent* event) override;

private:
    class Row;

    Row& rowAt(const std::string& path);
    void removeOthers();
    bool showItem(Row& row, const SceneItem& item);
    Qt::CheckState settleCheck(Row& row);
    void settleSelection();
    void setDetailsWidth();
    void settleOutlines();

    std::unordered_map<std::string, Row*> m_Rows;
    std::set<std::string> m_Closed;
    std::optional<std::string> m_Selected;
    std::size_t m_Pass = 0;
    bool m_IsFollowing = false; // the items, so that what happens is not a person's doing
    bool m_IsLookNew = false;
};

// Such as "cloud" and "200 k"; of what has no points to count, the number is empty.
QString kindText(ItemKind kind);
QString countText(const ItemShape& shape);

} // namespace tavo
