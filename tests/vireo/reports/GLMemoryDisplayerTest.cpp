#include "vireo/reports/GLMemoryDisplayer.h"

#include <QTreeWidget>
#include <gmock/gmock.h>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugSection.h"
#include "tavo/base/debug/DebugWindow.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

class GLMemoryDisplayerTest : public testing::Test
{
protected:
    GLMemoryDisplayerTest() { GLMemoryDisplayer::init(EventDisplayer::getClass()); }
    ~GLMemoryDisplayerTest() override { LeakReport::setMode(LeakReport::Mode::OFF); }

    // A row for each line, with its columns apart, indented below its title.
    static std::vector<std::string> rows()
    {
        const std::vector<DebugSection*> sections = debugOutput.getWindow()->getSections();
        const auto* const tree = dynamic_cast<QTreeWidget*>(sections.front()->getDisplayerWidget());
        std::vector<std::string> all;
        for (QTreeWidgetItemIterator item(const_cast<QTreeWidget*>(tree)); *item; ++item) {
            QString row = (*item)->parent() ? "  " : "";
            for (int column = 0; column < 3; ++column)
                row += (column == 0 ? "" : "|") + (*item)->text(column);
            all.push_back(row.toStdString());
            EXPECT_TRUE((*item)->childCount() == 0 || (*item)->isExpanded());
        }
        return all;
    }

    static GLRenderTextureCache::Statistics statistics()
    {
        GLRenderTextureCache::Statistics made;
        made.kinds.push_back(
            {640, 480, 4, GLRenderTextureFBO::FLAG_RECTANGLE | GLRenderTextureFBO::FLAG_DEPTH, 2, 1, 7372800});
        made.numFree = 2;
        made.numInUse = 1;
        made.freeBytes = 4915200;
        made.usedBytes = 2457600;
        made.hits = 17;
        made.misses = 3;
        return made;
    }
};

TEST_F(GLMemoryDisplayerTest, ShowsWhatCachesHold)
{
    QLocale::setDefault(QLocale::c());
    debugOutputMemory("memory", {{"blur", statistics()}, {"light", {}}});
    EXPECT_THAT(
        rows(), ElementsAre("Objects are not counted: set VIREO_LEAKS=on||", "Cache blur||", "  in use|1|2457600",
                    "  free|2|4915200", "  requests served from it|17|", "  requests for a new one|3|",
                    "  640 x 480, 4 components, rectangle, depths (2 free)|3|7372800", "Cache light||", "  in use|0|0",
                    "  free|0|0", "  requests served from it|0|", "  requests for a new one|0|"));
}

TEST_F(GLMemoryDisplayerTest, ShowsTheNewestInOneSection)
{
    LeakReport::setMode(LeakReport::Mode::COUNTS);
    debugOutputMemory("memory", {{"blur", statistics()}});
    debugOutputMemory("memory", {});
    EXPECT_THAT(debugOutput.getWindow()->getSections(), SizeIs(1));
    EXPECT_THAT(rows(), ElementsAre("Objects||", "Never deleted||"));
}

TEST_F(GLMemoryDisplayerTest, IgnoresOtherEvents)
{
    debugOutputMemory("memory", {{"blur", statistics()}});
    const std::vector<std::string> before = rows();
    const EventDisplayerEvent other;
    debugOutput.displayEvent(GLMemoryDisplayer::getClass(), "memory", &other);
    EXPECT_EQ(rows(), before);
}

} // namespace
} // namespace tavo
