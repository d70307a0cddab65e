#include "vireo/show/delivery/nothingToSee.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace tavo {

namespace {

// The first place from `place` on where the numbers are finite; behind the last one if there is none.
std::size_t nextFinite(const SentToBeSeen& sent, std::size_t place)
{
    return sent.numbers->visit([&sent, place](const auto* numbers, std::size_t size) {
        using T = std::remove_cv_t<std::remove_pointer_t<decltype(numbers)>>;
        const std::size_t end = size / sent.width;
        std::size_t next = std::min(place, end);
        if constexpr (std::is_floating_point_v<T>)
            while (next < end && !std::all_of(numbers + next * sent.width, numbers + (next + 1) * sent.width,
                                     [](T number) { return std::isfinite(number); }))
                ++next;
        return next;
    });
}

bool isAnywhereFinite(const SentToBeSeen& sent)
{
    return nextFinite(sent, 0) < sent.numbers->size() / sent.width;
}

// Of as many of each.
bool areAnywhereFiniteTogether(std::initializer_list<SentToBeSeen> all)
{
    std::size_t place = 0;
    for (bool isMoved = true; isMoved;) {
        isMoved = false;
        for (const SentToBeSeen& sent : all) {
            if (!sent.numbers)
                continue;
            const std::size_t next = nextFinite(sent, place);
            if (next == sent.numbers->size() / sent.width)
                return false;
            isMoved = isMoved || next > place;
            place = next;
        }
    }
    return true;
}

std::string namesOf(std::initializer_list<SentToBeSeen> all)
{
    std::string names;
    for (const SentToBeSeen& sent : all)
        if (sent.numbers)
            names += (names.empty() ? "" : " and ") + std::string(sent.what);
    return names;
}

} // namespace

std::string whyNothingIsSeen(std::initializer_list<SentToBeSeen> all)
{
    for (const SentToBeSeen& sent : all) {
        if (sent.numbers && sent.numbers->isEmpty())
            return std::string("there are no ") + sent.what + " to show";
        if (sent.numbers && !isAnywhereFinite(sent))
            return std::string("none of the ") + sent.what + " is finite";
    }
    return areAnywhereFiniteTogether(all) ? "" : "nowhere are " + namesOf(all) + " finite together";
}

} // namespace tavo
