#include "vireo/show/delivery/recentCopies.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <mutex>
#include <utility>

namespace tavo {

namespace {

// Enough for x and y of the curves that a few threads send in turn: x is found again for each of them.
constexpr std::size_t MOST_COPIES = 8;

struct Copy
{
    const void* source = nullptr;
    std::weak_ptr<const void> owner;
    const void* numbers = nullptr;
    std::size_t size = 0;
    NumberType type = NumberType::Float64;
};

struct State
{
    std::mutex mutex;
    std::array<Copy, MOST_COPIES> copies; // those that were of use last stand first
};

// Never destroyed, so that destructors of static objects may send.
State& state()
{
    static State* const theState = new State;
    return *theState;
}

// Most numbers that have changed have changed all over. A few of them, from the first to the last, tell that at once.
bool areProbesSame(const NumberArray& copy, const void* source)
{
    constexpr std::size_t PROBES = 16;
    return copy.visit([source](const auto* numbers, std::size_t size) {
        const auto* const sent = static_cast<decltype(numbers)>(source);
        for (std::size_t i = 0; i < PROBES; ++i) {
            const std::size_t probe = (size - 1) * i / (PROBES - 1);
            if (std::memcmp(numbers + probe, sent + probe, sizeof *numbers) != 0)
                return false;
        }
        return true;
    });
}

bool areSame(const NumberArray& copy, const void* source)
{
    return areProbesSame(copy, source) && copy.visit([source](const auto* numbers, std::size_t size) {
        return std::memcmp(numbers, source, size * sizeof *numbers) == 0;
    });
}

} // namespace

NumberArray findRecentCopy(const void* source, std::size_t size, NumberType type) noexcept
{
    NumberArray found;
    {
        const std::lock_guard lock(state().mutex);
        std::array<Copy, MOST_COPIES>& copies = state().copies;
        const auto copy = std::find_if(copies.begin(), copies.end(),
            [&](const Copy& known) { return known.source == source && known.size == size && known.type == type; });
        std::shared_ptr<const void> owner = copy != copies.end() ? copy->owner.lock() : nullptr;
        if (!owner)
            return {};
        found = NumberArray(std::move(owner), copy->numbers, size, type);
        std::rotate(copies.begin(), copy, copy + 1);
    }
    return areSame(found, source) ? found : NumberArray();
}

void rememberCopy(const void* source, const NumberArray& copy) noexcept
{
    const std::lock_guard lock(state().mutex);
    std::array<Copy, MOST_COPIES>& copies = state().copies;
    auto place = std::find_if(copies.begin(), copies.end(), [&](const Copy& known) { return known.source == source; });
    if (place == copies.end())
        --place;
    *place = {source, copy.getOwner(), copy.getData(), copy.size(), copy.getType()};
    std::rotate(copies.begin(), place, place + 1);
}

} // namespace tavo
