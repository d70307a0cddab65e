#include "benchmarks/peers/Scene.h"

#include <algorithm>
#include <iterator>

namespace vireo_bench {

namespace {

std::vector<Showing>& allShowings()
{
    static std::vector<Showing> all;
    return all;
}

} // namespace

Showings::Showings(std::initializer_list<Showing> showings)
{
    std::copy(showings.begin(), showings.end(), std::back_inserter(allShowings()));
}

std::vector<Showing> showingsOf(Subject subject)
{
    std::vector<Showing> showings;
    for (const Showing& showing : allShowings())
        if (showing.subject == subject)
            showings.push_back(showing);
    std::stable_partition(
        showings.begin(), showings.end(), [](const Showing& showing) { return showing.name == "vireo"; });
    return showings;
}

} // namespace vireo_bench
