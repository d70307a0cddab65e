#include "vireo/show/scenes/isAnySeen.h"

#include <cstdlib>

#include "vireo/show/scenes/fetchEntryPoint.h"

namespace tavo {

namespace {

struct Queries
{
    PFNGLGENQUERIESPROC generate = nullptr;
    PFNGLDELETEQUERIESPROC remove = nullptr;
    PFNGLBEGINQUERYPROC begin = nullptr;
    PFNGLENDQUERYPROC end = nullptr;
    PFNGLGETQUERYOBJECTUIVPROC get = nullptr;

    bool fetch()
    {
        return fetchEntryPoint(generate, "glGenQueries") && fetchEntryPoint(remove, "glDeleteQueries") &&
               fetchEntryPoint(begin, "glBeginQuery") && fetchEntryPoint(end, "glEndQuery") &&
               fetchEntryPoint(get, "glGetQueryObjectuiv");
    }
};

} // namespace

bool canAskWhatIsSeen()
{
    constexpr double FIRST_VERSION = 1.5;
    const auto* const version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    return version && std::atof(version) >= FIRST_VERSION && Queries().fetch();
}

bool isAnySeen(const std::function<void()>& draw)
{
    Queries queries;
    queries.fetch();
    unsigned int query = 0;
    queries.generate(1, &query);
    queries.begin(GL_SAMPLES_PASSED, query);
    draw();
    queries.end(GL_SAMPLES_PASSED);
    unsigned int number = 0;
    queries.get(query, GL_QUERY_RESULT, &number);
    queries.remove(1, &query);
    return number > 0;
}

} // namespace tavo
