#pragma once

#include <QPointer>
#include <string>
#include <utility>
#include <vector>

#include "tavo/base/debug/EventDisplayer.h"
#include "vireo/Export.h"
#include "vireo/context/LeakReport.h"
#include "vireo/offscreen/GLRenderTextureCache.h"

class QTreeWidget;

namespace tavo {

/// Shows in the debug window what the program holds in GL: objects and names that were never deleted, by class, and
/// render textures in caches, by kind, each with how many there are and their bytes. The program registers the class
/// once, and sends what there is whenever it should be seen:
///
///     GLMemoryDisplayer::init(EventDisplayer::getClass());
///
///     GLRenderTextureCache cache(&context);
///     // use it
///     debugOutputMemory("memory", {{"blur", cache.getStatistics()}});
///
/// Objects are counted where LeakReport is switched on.
class VIREO_EXPORT GLMemoryDisplayer : public EventDisplayer
{
public:
    /// The statistics of a cache, under a name for it.
    using CacheStatistics = std::pair<std::string, GLRenderTextureCache::Statistics>;

    /// Carries all that is to be shown, in place of what was.
    ///
    ///     const GLMemoryDisplayer::ShowMemory event(LeakReport::ofProcess(), {});
    ///     debugOutput.displayEvent(GLMemoryDisplayer::getClass(), "memory", &event);
    class VIREO_EXPORT ShowMemory : public EventDisplayerEvent
    {
    public:
        ShowMemory(LeakReport report, std::vector<CacheStatistics> caches);
        ~ShowMemory() override;

        LeakReport report;
        std::vector<CacheStatistics> caches;
    };

    const MetaClass* getInstanceClass() const override;

    GLMemoryDisplayer();
    GLMemoryDisplayer(const GLMemoryDisplayer& other);
    GLMemoryDisplayer& operator=(const GLMemoryDisplayer& other);
    ~GLMemoryDisplayer() override;

protected:
    QWidget* createSpecialWidget(QWidget* parent) override;

public:
    /// Shows a ShowMemory, and ignores other events.
    void displayEvent(const EventDisplayerEvent* event, const char* name) override;

    /// The class record, which the first call makes. Do not call this after shutdown().
    static const MetaClass* getClass();
    static void initMetaClass();
    static void init(const MetaClass* parent);
    static void shutdown();

    static MetaClass* GLMemoryDisplayerMetaClass;

private:
    static Object* newInstance();

    QPointer<QTreeWidget> m_Tree;
};

/// Shows in the section of that name what LeakReport knows of the process, and what these caches hold.
/// @needs The thread of the QApplication (see DebugOutput::displayEvent).
VIREO_EXPORT void debugOutputMemory(std::string name, const std::vector<GLMemoryDisplayer::CacheStatistics>& caches);

} // namespace tavo
