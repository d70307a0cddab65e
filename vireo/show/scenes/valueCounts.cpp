#include "vireo/show/scenes/valueCounts.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace tavo {

namespace {

constexpr std::size_t LARGEST_CHOICE = std::size_t(1) << 20;
constexpr std::size_t PIECE = std::size_t(1) << 18; // from one look whether they are unwanted to the next

// Calls `use(value)` for every number, or every few, that is finite; until they are unwanted.
template <typename Use>
void forEachFinite(const NumberArray& numbers, std::size_t step, Use use, const std::atomic<bool>* isUnwanted = nullptr)
{
    numbers.visit([&](const auto* values, std::size_t size) {
        std::size_t i = 0;
        for (std::size_t end = 0; i < size && !(isUnwanted && *isUnwanted);) {
            end = std::min(end + PIECE, size);
            for (; i < end; i += step) {
                const auto value = static_cast<double>(values[i]);
                if (std::isfinite(value))
                    use(value);
            }
        }
    });
}

std::size_t stepOfChoice(const NumberArray& numbers)
{
    return numbers.size() / LARGEST_CHOICE + 1;
}

std::pair<double, double> finiteRangeOf(const NumberArray& numbers, const std::atomic<bool>* isUnwanted)
{
    double least = std::numeric_limits<double>::infinity();
    double greatest = -least;
    const auto extend = [&](double value) {
        least = std::min(least, value);
        greatest = std::max(greatest, value);
    };
    forEachFinite(numbers, 1, extend, isUnwanted);
    return least <= greatest ? std::pair(least, greatest) : std::pair(0.0, 0.0);
}

} // namespace

std::size_t ValueCounts::largest() const
{
    return *std::max_element(counts.begin(), counts.end());
}

std::pair<double, double> finiteRangeOf(const NumberArray& numbers)
{
    return finiteRangeOf(numbers, nullptr);
}

bool isAnyFinite(const NumberArray& numbers)
{
    return numbers.visit([](const auto* values, std::size_t size) {
        return std::any_of(values, values + size, [](auto value) { return std::isfinite(static_cast<double>(value)); });
    });
}

ValueCounts countValues(const NumberArray& numbers, const std::atomic<bool>* isUnwanted)
{
    const auto [least, greatest] = finiteRangeOf(numbers, isUnwanted);
    ValueCounts result{least, greatest, {}};
    const double scale = ValueCounts::SIZE / (greatest / 2 - least / 2); // halved, since the difference may overflow
    const auto countOne = [&, least = least, greatest = greatest](double value) {
        const double place = greatest > least ? (value / 2 - least / 2) * scale : ValueCounts::SIZE / 2.0;
        ++result.counts[std::min(static_cast<std::size_t>(place), ValueCounts::SIZE - 1)];
    };
    forEachFinite(numbers, stepOfChoice(numbers), countOne, isUnwanted);
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
