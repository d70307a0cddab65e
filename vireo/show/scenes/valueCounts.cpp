#include "vireo/show/scenes/valueCounts.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace tavo {

namespace {

constexpr std::size_t LARGEST_CHOICE = std::size_t(1) << 20;

// Calls `use(value)` for every number, or every few, that is finite.
template <typename Use>
void forEachFinite(const NumberArray& numbers, std::size_t step, Use use)
{
    numbers.visit([&](const auto* values, std::size_t size) {
        for (std::size_t i = 0; i < size; i += step) {
            const auto value = static_cast<double>(values[i]);
            if (std::isfinite(value))
                use(value);
        }
    });
}

std::size_t stepOfChoice(const NumberArray& numbers)
{
    return numbers.size() / LARGEST_CHOICE + 1;
}

} // namespace

std::size_t ValueCounts::largest() const
{
    return *std::max_element(counts.begin(), counts.end());
}

std::pair<double, double> finiteRangeOf(const NumberArray& numbers)
{
    double least = std::numeric_limits<double>::infinity();
    double greatest = -least;
    forEachFinite(numbers, 1, [&](double value) {
        least = std::min(least, value);
        greatest = std::max(greatest, value);
    });
    return least <= greatest ? std::pair(least, greatest) : std::pair(0.0, 0.0);
}

bool isAnyFinite(const NumberArray& numbers)
{
    return numbers.visit([](const auto* values, std::size_t size) {
        return std::any_of(values, values + size, [](auto value) { return std::isfinite(static_cast<double>(value)); });
    });
}

ValueCounts countValues(const NumberArray& numbers)
{
    const auto [least, greatest] = finiteRangeOf(numbers);
    ValueCounts result{least, greatest, {}};
    const double scale = ValueCounts::SIZE / (greatest / 2 - least / 2); // halved, since the difference may overflow
    forEachFinite(numbers, stepOfChoice(numbers), [&, least = least, greatest = greatest](double value) {
        const double place = greatest > least ? (value / 2 - least / 2) * scale : ValueCounts::SIZE / 2.0;
        ++result.counts[std::min(static_cast<std::size_t>(place), ValueCounts::SIZE - 1)];
    });
    return result;
}

std::pair<double, double> quantiles(const NumberArray& numbers, double first, double second)
{
    std::vector<double> values;
    values.reserve(std::min(numbers.size(), LARGEST_CHOICE + 1));
    forEachFinite(numbers, stepOfChoice(numbers), [&values](double value) { values.push_back(value); });
    if (values.empty())
        return {0, 0};
    const auto at = [&values](double part) {
        const auto place = values.begin() + std::lround(part * (double(values.size()) - 1));
        std::nth_element(values.begin(), place, values.end());
        return *place;
    };
    const double low = at(first);
    return {low, at(second)};
}

} // namespace tavo
