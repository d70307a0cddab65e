#include "vireo/show/delivery/nothingToSee.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace tavo {

namespace {

bool isAnyFinite(const NumberArray& numbers)
{
    return numbers.visit([](const auto* first, std::size_t size) {
        using T = std::remove_cv_t<std::remove_pointer_t<decltype(first)>>;
        if constexpr (std::is_floating_point_v<T>)
            return std::any_of(first, first + size, [](T number) { return std::isfinite(number); });
        else
            return size > 0;
    });
}

} // namespace

std::string whyNothingIsSeen(const NumberArray& numbers, const char* what)
{
    if (numbers.isEmpty())
        return std::string("there are no ") + what + ", so that nothing is seen";
    if (!isAnyFinite(numbers))
        return std::string("none of the ") + what + " is finite, so that nothing is seen";
    return {};
}

} // namespace tavo
