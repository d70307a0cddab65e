#include "vireo/show/delivery/nothingToSee.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>
#include <type_traits>

namespace tavo {

namespace {

// The first place from `place` on where the numbers are finite, and not too large; behind the last one if there is
// none.
std::size_t nextFinite(const SentToBeSeen& sent, std::size_t place)
{
    const double largest = std::min(sent.largest, std::numeric_limits<double>::max());
    return sent.numbers->visit([&sent, place, largest](const auto* numbers, std::size_t size) {
        using T = std::remove_cv_t<std::remove_pointer_t<decltype(numbers)>>;
        const std::size_t end = size / sent.width;
        std::size_t next = std::min(place, end);
        if constexpr (std::is_floating_point_v<T>)
            while (next < end && !std::all_of(numbers + next * sent.width, numbers + (next + 1) * sent.width,
                                     [largest](T number) { return std::abs(number) <= largest; }))
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

std::string text(double number)
{
    std::ostringstream written;
    written << number;
    return written.str();
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
        if (!sent.numbers || isAnywhereFinite(sent))
            continue;
        const std::string none = std::string("none of the ") + sent.what;
        const SentToBeSeen anyFinite{sent.numbers, sent.what, sent.width};
        return isAnywhereFinite(anyFinite) ? none + " is within " + text(sent.largest) + " of zero"
                                           : none + " is finite";
    }
    return areAnywhereFiniteTogether(all) ? "" : "nowhere are " + namesOf(all) + " finite together";
}

} // namespace tavo
