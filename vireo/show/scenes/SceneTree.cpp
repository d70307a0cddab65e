#include "vireo/show/scenes/SceneTree.h"

#include <QEvent>
#include <QHeaderView>
#include <algorithm>
#include <utility>
#include <vector>

#include "vireo/show/plots/NumberFormat.h"
#include "vireo/show/scenes/colourIcon.h"
#include "vireo/show/window/shownText.h"

namespace tavo {

namespace {

constexpr int SWATCH_WIDTH = 18;
constexpr int SWATCH_HEIGHT = 12;
constexpr int DETAILS_MARGIN = 6;
constexpr int ROW_PADDING = 3;
constexpr std::size_t LONGEST_NAME = 200;

// Up to four digits, or three and a prefix.
QString shortCount(std::size_t count)
{
    if (count < 10'000)
        return writtenOut(double(count), 0);
    double shown = double(count);
    const char* prefix = "";
    for (const char* larger : {"k", "M", "G"}) {
        if (shown < 999.5)
            break;
        shown /= 1000;
        prefix = larger;
    }
    const int decimals = shown < 9.995 ? 2 : shown < 99.95 ? 1 : 0;
    return QString("%1 %2").arg(shown, 0, 'f', decimals).arg(prefix);
}

bool hasPoints(const ItemShape& shape)
{
    return shape.kind != ItemKind::Frame && shape.kind != ItemKind::Text;
}

} // namespace

QString kindText(ItemKind kind)
{
    switch (kind) {
    case ItemKind::Cloud: return SceneTree::tr("cloud");
    case ItemKind::Mesh: return SceneTree::tr("mesh");
    case ItemKind::Lines: return SceneTree::tr("lines");
    case ItemKind::Segments: return SceneTree::tr("segments");
    case ItemKind::Vectors: return SceneTree::tr("vectors");
    case ItemKind::Boxes: return SceneTree::tr("boxes");
    case ItemKind::Frame: return SceneTree::tr("frame");
    case ItemKind::Text: return SceneTree::tr("text");
    case ItemKind::Volume: return SceneTree::tr("volume");
    }
    return {};
}

QString countText(const ItemShape& shape)
{
    return hasPoints(shape) ? shortCount(shape.numPoints()) : QString();
}

class SceneTree::Row : public QTreeWidgetItem
{
public:
    explicit Row(std::string path)
        : m_Path(std::move(path))
    {
        const QString name = shownText(m_Path.substr(m_Path.rfind('/') + 1), LONGEST_NAME);
        setText(0, name.isEmpty() ? SceneTree::tr("(no name)") : name);
        setToolTip(0, shownText(m_Path, LONGEST_NAME));
        setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        setCheckState(0, Qt::Checked);
        setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    }

    const std::string m_Path;
    std::size_t m_Pass = 0;     // in which it was there
    std::size_t m_Revision = 0; // of the item that it shows; 0 if there is none
    bool m_IsWanted = true;
};

SceneTree::SceneTree(QWidget* parent)
    : QTreeWidget(parent)
{
    setColumnCount(2);
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setIndentation(fontMetrics().height());
    setIconSize({SWATCH_WIDTH, SWATCH_HEIGHT});
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(1);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    header()->setSectionResizeMode(1, QHeaderView::Fixed);
    setAccessibleName(tr("Items of the scene"));
    connect(this, &QTreeWidget::itemChanged, this, [this](const QTreeWidgetItem* item) {
        if (!m_IsFollowing)
            emit visibilityWanted(static_cast<const Row*>(item)->m_Path, item->checkState(0) == Qt::Checked);
    });
    connect(this, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* item) {
        if (m_IsFollowing || !item)
            return;
        m_Selected = static_cast<const Row*>(item)->m_Path;
        emit pathSelected();
    });
    connect(this, &QTreeWidget::itemCollapsed, this,
        [this](const QTreeWidgetItem* item) { m_Closed.insert(static_cast<const Row*>(item)->m_Path); });
    connect(this, &QTreeWidget::itemExpanded, this,
        [this](const QTreeWidgetItem* item) { m_Closed.erase(static_cast<const Row*>(item)->m_Path); });
}

SceneTree::~SceneTree() = default;

void SceneTree::follow(const std::map<std::string, SceneItem>& items)
{
    m_IsFollowing = true;
    ++m_Pass;
    bool areNew = m_IsLookNew; // the details
    for (const auto& [path, item] : items) {
        if (!item.shape())
            continue;
        Row& row = rowAt(path);
        for (auto* above = static_cast<QTreeWidgetItem*>(&row); above; above = above->parent())
            static_cast<Row*>(above)->m_Pass = m_Pass;
        if (row.m_Revision != item.getRevision() || m_IsLookNew)
            areNew = showItem(row, item) || areNew;
    }
    m_IsLookNew = false;
    for (auto& [path, row] : m_Rows) // what is a branch only
        if (row->m_Revision != 0 && (items.count(path) == 0 || !items.at(path).shape())) {
            row->m_Revision = 0;
            row->setText(1, {});
            row->setIcon(0, {});
        }
    removeOthers();
    for (int i = 0; i < topLevelItemCount(); ++i)
        settleCheck(static_cast<Row&>(*topLevelItem(i)));
    settleSelection();
    if (areNew)
        setDetailsWidth();
    m_IsFollowing = false;
}

SceneTree::Row& SceneTree::rowAt(const std::string& path)
{
    Row*& row = m_Rows[path];
    if (row)
        return *row;
    row = new Row(path);
    row->setSizeHint(0, {1, fontMetrics().height() + 2 * ROW_PADDING});
    const std::size_t slash = path.rfind('/');
    QTreeWidgetItem* const branch = slash == std::string::npos ? invisibleRootItem() : &rowAt(path.substr(0, slash));
    int first = 0;
    for (int last = branch->childCount(); first < last;) {
        const int middle = (first + last) / 2;
        if (static_cast<const Row*>(branch->child(middle))->m_Path < path)
            first = middle + 1;
        else
            last = middle;
    }
    branch->insertChild(first, row);
    if (slash != std::string::npos)
        branch->setExpanded(m_Closed.count(path.substr(0, slash)) == 0);
    return *row;
}

void SceneTree::removeOthers()
{
    std::vector<Row*> others;
    for (const auto& [path, row] : m_Rows)
        if (row->m_Pass != m_Pass)
            others.push_back(row);
    std::sort(others.begin(), others.end(),
        [](const Row* a, const Row* b) { return a->m_Path.size() > b->m_Path.size(); }); // what is in others first
    for (Row* row : others) {
        m_Rows.erase(row->m_Path);
        delete row;
    }
}

// Returns whether its details are new.
bool SceneTree::showItem(Row& row, const SceneItem& item)
{
    row.m_Revision = item.getRevision();
    row.m_IsWanted = item.isWanted();
    const ItemShape& shape = *item.shape();
    const QString count = countText(shape);
    const QString details = count.isEmpty() ? kindText(shape.kind) : kindText(shape.kind) + "  " + count;
    const bool isGroundDark = palette().color(QPalette::Base).lightness() < 128;
    std::vector<RGBA8> colours = item.swatch(isGroundDark);
    if (colours.empty()) {
        const QColor ink = palette().color(QPalette::Text);
        colours.emplace_back(ink.red(), ink.green(), ink.blue(), 255);
    }
    row.setIcon(0, colourIcon(colours, item.areLabelsShown()));
    const bool areNew = row.text(1) != details;
    row.setText(1, details);
    const QString points = hasPoints(shape) ? tr(", %1 points").arg(writtenOut(double(shape.points.size()), 0)) : "";
    row.setToolTip(1, kindText(shape.kind) + points);
    return areNew;
}

// Checked if all that is in it is.
Qt::CheckState SceneTree::settleCheck(Row& row)
{
    bool areAny = row.m_Revision != 0 && row.m_IsWanted;
    bool areAll = row.m_Revision == 0 || row.m_IsWanted;
    for (int i = 0; i < row.childCount(); ++i) {
        const Qt::CheckState state = settleCheck(static_cast<Row&>(*row.child(i)));
        areAny = areAny || state != Qt::Unchecked;
        areAll = areAll && state == Qt::Checked;
    }
    const Qt::CheckState state = areAll ? Qt::Checked : areAny ? Qt::PartiallyChecked : Qt::Unchecked;
    if (row.checkState(0) != state)
        row.setCheckState(0, state);
    return state;
}

void SceneTree::settleSelection()
{
    const auto found = m_Selected ? m_Rows.find(*m_Selected) : m_Rows.end();
    QTreeWidgetItem* const row = found != m_Rows.end() ? found->second : nullptr;
    if (currentItem() != row)
        setCurrentItem(row);
}

void SceneTree::select(const std::string& path)
{
    m_Selected = path;
    m_IsFollowing = true;
    settleSelection();
    m_IsFollowing = false;
    if (currentItem())
        scrollToItem(currentItem());
}

// As wide as the widest of them.
void SceneTree::setDetailsWidth()
{
    int width = 0;
    for (const auto& [path, row] : m_Rows)
        width = std::max(width, fontMetrics().horizontalAdvance(row->text(1)));
    header()->resizeSection(1, width + 2 * DETAILS_MARGIN);
}

// Styles draw the outlines of boxes in a shade of the window, which is not seen on a dark ground.
void SceneTree::settleOutlines()
{
    const bool isGroundDark = palette().color(QPalette::Base).lightness() < 128;
    const QColor wanted = isGroundDark ? QColor(160, 160, 160) : QColor(239, 239, 239);
    if (palette().color(QPalette::Window) == wanted)
        return;
    QPalette outlined = palette();
    outlined.setColor(QPalette::Window, wanted);
    setPalette(outlined);
}

void SceneTree::changeEvent(QEvent* event)
{
    const bool isPaletteNew = event->type() == QEvent::PaletteChange;
    m_IsLookNew = m_IsLookNew || isPaletteNew || event->type() == QEvent::FontChange;
    if (isPaletteNew)
        settleOutlines();
    QTreeWidget::changeEvent(event);
}

} // namespace tavo
