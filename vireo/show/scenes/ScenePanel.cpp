#include "vireo/show/scenes/ScenePanel.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollArea>
#include <QSplitter>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "vireo/show/scenes/ClipControls.h"
#include "vireo/show/scenes/SceneTree.h"
#include "vireo/show/scenes/SceneView.h"

namespace tavo {

namespace {

constexpr int GRIP = 4;        // in pixels, the edge by which the panel is made wider
constexpr int FRAME = 16;      // in milliseconds
constexpr int LEAST_ROWS = 4;  // of the tree
constexpr int LEAST_ROOM = 40; // in pixels, of the scene beside it

// What is in it is as wide as it, and scrolls up and down.
class PropertiesArea : public QScrollArea
{
public:
    explicit PropertiesArea(QWidget* content)
    {
        setWidget(content);
        setWidgetResizable(true);
        setFrameShape(NoFrame);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        viewport()->setAutoFillBackground(false);
        content->setAutoFillBackground(false);
    }

    QSize sizeHint() const override { return widget()->sizeHint(); }
    QSize minimumSizeHint() const override { return {1, 1}; }
};

} // namespace

ScenePanel::ScenePanel(SceneView& view)
    : QWidget(&view)
    , m_View(view)
    , m_Tree(new SceneTree)
    , m_Clip(new ClipControls(view))
    , m_Properties(new ItemProperties)
    , m_FollowSoon(new QTimer(this))
    , m_WantedWidth(std::max(m_Properties->fontMetrics().averageCharWidth() * 36, 200))
{
    setObjectName("scenePanel");
    setAttribute(Qt::WA_NoMousePropagation); // what is done here is not done to the scene
    setAutoFillBackground(true);
    setCursor(Qt::ArrowCursor);
    setMouseTracking(true);
    m_Tree->setObjectName("items");
    m_Tree->installEventFilter(this);
    m_FollowSoon->setObjectName("followSoon");
    m_FollowSoon->setSingleShot(true);
    m_FollowSoon->setInterval(FRAME);
    layOut();
    connectAll();
}

void ScenePanel::layOut()
{
    auto* const splitter = new QSplitter(Qt::Vertical);
    splitter->setCursor(Qt::ArrowCursor);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(m_Tree);
    splitter->addWidget(new PropertiesArea(m_Properties));
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 0);
    m_Tree->setMinimumSize(1, LEAST_ROWS * (fontMetrics().height() + 6));
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(GRIP, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(splitter, 1);
    layout->addWidget(m_Clip);
}

void ScenePanel::connectAll()
{
    connect(m_FollowSoon, &QTimer::timeout, this, &ScenePanel::follow);
    connect(m_Tree, &SceneTree::pathSelected, this, &ScenePanel::showSelected);
    connect(m_Tree, &SceneTree::visibilityWanted, this, [this](const std::string& branch, bool isVisible) {
        m_View.choose([&](SceneChoices& choices) { choices.setVisible(branch, isVisible); });
    });
    connect(m_Properties, &ItemProperties::choiceMade, this, [this](const ItemProperties::Change& change) {
        m_View.chooseOf(selected().value_or(std::string()), change);
        showSelected();
    });
    connect(m_Properties, &ItemProperties::resetWanted, this, [this] {
        m_View.choose([this](SceneChoices& choices) { choices.reset(selected().value_or(std::string())); });
        showSelected();
    });
}

// The tree would look for a name that begins with a p.
bool ScenePanel::eventFilter(QObject*, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (key.key() != Qt::Key_P || key.modifiers())
        return false;
    m_View.switchPanel();
    return true;
}

void ScenePanel::noteChange()
{
    if (isVisible() && !m_FollowSoon->isActive())
        m_FollowSoon->start();
}

void ScenePanel::follow()
{
    m_FollowSoon->stop();
    const std::map<std::string, SceneItem>& items = m_View.getModel().items();
    if (!selected())
        selectFirst();
    m_Tree->follow(items);
    m_Clip->show(m_View.getModel().getClipBox());
    showSelected();
}

// Where there is a colour map, if anywhere.
void ScenePanel::selectFirst()
{
    const std::map<std::string, SceneItem>& items = m_View.getModel().items();
    const auto hasFields = [](const auto& entry) {
        return entry.second.shape() && !entry.second.state().fields.empty();
    };
    auto first = std::find_if(items.begin(), items.end(), hasFields);
    if (first == items.end())
        first = items.begin();
    if (first != items.end())
        m_Tree->select(first->first);
}

void ScenePanel::showSelected()
{
    if (!m_Tree->currentItem())
        return m_Properties->showNothing();
    const std::map<std::string, SceneItem>& items = m_View.getModel().items();
    const auto found = items.find(*selected());
    m_Properties->show(*selected(), found != items.end() ? &found->second : nullptr,
        m_View.getModel().getChoices().areAnyIn(*selected()));
}

const std::optional<std::string>& ScenePanel::selected() const
{
    return m_Tree->selected();
}

void ScenePanel::select(const std::string& path)
{
    m_Tree->select(path);
    if (isVisible())
        follow();
}

// At most half of the view, unless that is too narrow for anything.
int ScenePanel::widthIn(int widthOfView) const
{
    const int least = std::min(m_Properties->minimumSizeHint().width() + GRIP, widthOfView - LEAST_ROOM);
    return std::clamp(m_WantedWidth, std::max(least, 1), std::max({least, widthOfView / 2, 1}));
}

void ScenePanel::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        noteChange();
    QWidget::changeEvent(event);
}

void ScenePanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    follow();
}

void ScenePanel::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    m_FollowSoon->stop();
}

void ScenePanel::mousePressEvent(QMouseEvent* event)
{
    m_GripOffset = event->pos().x();
}

void ScenePanel::mouseMoveEvent(QMouseEvent* event)
{
    setCursor(event->buttons() || event->pos().x() < GRIP ? Qt::SplitHCursor : Qt::ArrowCursor);
    if (!(event->buttons() & Qt::LeftButton) || m_GripOffset >= GRIP)
        return;
    m_WantedWidth = width() - (event->pos().x() - m_GripOffset);
    emit widthWanted();
}

void ScenePanel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(0, 0, 1, height(), palette().color(QPalette::Mid));
}

} // namespace tavo
