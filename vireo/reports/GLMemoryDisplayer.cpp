#include "vireo/reports/GLMemoryDisplayer.h"

#include <QHeaderView>
#include <QTreeWidget>
#include <new>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/objects/ClassRecord.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"

namespace tavo {

TAVO_CLASS_RECORD(GLMemoryDisplayer)

namespace {

using Statistics = GLRenderTextureCache::Statistics;

enum Column : int
{
    WHAT,
    NUMBER,
    BYTES
};

// The number of bytes in the user's language, with its full length, so that differences are seen.
QTreeWidgetItem* addRow(QTreeWidgetItem* parent, const QString& what, std::uint64_t number, std::uint64_t bytes)
{
    const QLocale locale;
    auto* const row =
        new QTreeWidgetItem(parent, {what, locale.toString(qulonglong(number)), locale.toString(qulonglong(bytes))});
    for (const int column : {NUMBER, BYTES})
        row->setTextAlignment(column, Qt::AlignRight);
    return row;
}

QTreeWidgetItem* addTitle(QTreeWidget& tree, const QString& title)
{
    return new QTreeWidgetItem(&tree, {title});
}

void addGroups(QTreeWidget& tree, const QString& title, const std::vector<LeakReport::Group>& groups)
{
    QTreeWidgetItem* const all = addTitle(tree, title);
    for (const LeakReport::Group& group : groups) {
        const QString className = QString::fromStdString(group.className);
        const QString kind = QString::fromStdString(group.kind);
        addRow(all, group.kind == "object" ? className : kind + " of " + className, group.count, group.bytes);
    }
}

QString describe(const Statistics::Kind& kind)
{
    using Target = GLRenderTextureFBO;
    QString text = QString("%1 x %2, %3 components").arg(kind.width).arg(kind.height).arg(kind.components);
    const std::pair<unsigned int, const char*> flags[] = {{Target::FLAG_RECTANGLE, ", rectangle"},
        {Target::FLAG_FLOAT16, ", 16 bits"}, {Target::FLAG_FLOAT32, ", 32 bits"}, {Target::FLAG_DEPTH, ", depths"},
        {Target::FLAG_STENCIL, ", stencil"}};
    for (const auto& [flag, name] : flags)
        if ((kind.flags & flag) != 0)
            text += name;
    return text + QString(" (%1 free)").arg(kind.numFree);
}

void addCache(QTreeWidget& tree, const GLMemoryDisplayer::CacheStatistics& cache)
{
    const Statistics& statistics = cache.second;
    QTreeWidgetItem* const all = addTitle(tree, "Cache " + QString::fromStdString(cache.first));
    addRow(all, "in use", statistics.numInUse, statistics.usedBytes);
    addRow(all, "free", statistics.numFree, statistics.freeBytes);
    new QTreeWidgetItem(all, {"requests served from it", QLocale().toString(qulonglong(statistics.hits))});
    new QTreeWidgetItem(all, {"requests for a new one", QLocale().toString(qulonglong(statistics.misses))});
    for (const Statistics::Kind& kind : statistics.kinds)
        addRow(all, describe(kind), kind.numFree + kind.numInUse, kind.bytes);
}

} // namespace

GLMemoryDisplayer::ShowMemory::ShowMemory(LeakReport report, std::vector<CacheStatistics> caches)
    : report(std::move(report))
    , caches(std::move(caches))
{}

GLMemoryDisplayer::ShowMemory::~ShowMemory() = default;

GLMemoryDisplayer::GLMemoryDisplayer() = default;
GLMemoryDisplayer::GLMemoryDisplayer(const GLMemoryDisplayer& other) = default;
GLMemoryDisplayer& GLMemoryDisplayer::operator=(const GLMemoryDisplayer& other) = default;
GLMemoryDisplayer::~GLMemoryDisplayer() = default;

QWidget* GLMemoryDisplayer::createSpecialWidget(QWidget* parent)
{
    m_Tree = new QTreeWidget(parent);
    m_Tree->setHeaderLabels({"What", "Number", "Bytes"});
    m_Tree->header()->setSectionResizeMode(WHAT, QHeaderView::Stretch);
    m_Tree->header()->setStretchLastSection(false);
    return m_Tree;
}

void GLMemoryDisplayer::displayEvent(const EventDisplayerEvent* event, const char*)
{
    const auto* const memory = dynamic_cast<const ShowMemory*>(event);
    if (!memory || !m_Tree)
        return;
    m_Tree->clear();
    if (LeakReport::getMode() == LeakReport::Mode::OFF) {
        addTitle(*m_Tree, "Objects are not counted: set VIREO_LEAKS=on");
    } else {
        addGroups(*m_Tree, "Objects", memory->report.getAlive());
        addGroups(*m_Tree, "Never deleted", memory->report.getNeverDeleted());
    }
    for (const CacheStatistics& cache : memory->caches)
        addCache(*m_Tree, cache);
    m_Tree->expandAll();
}

void debugOutputMemory(std::string name, const std::vector<GLMemoryDisplayer::CacheStatistics>& caches)
{
    const GLMemoryDisplayer::ShowMemory event(LeakReport::ofProcess(), caches);
    debugOutput.displayEvent(GLMemoryDisplayer::getClass(), std::move(name), &event);
}

} // namespace tavo
