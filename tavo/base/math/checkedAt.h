#pragma once

#include <cstddef>
#include <stdexcept>

namespace tavo {

/// Element `i` of a vector-like container.
///
///     const double first = checkedAt(pressures, 0);
///
/// @throws std::out_of_range Beyond the last element. Every checked access of the libraries throws it with this one
/// text, whatever the standard library would say.
template <typename Container>
auto& checkedAt(Container& container, std::size_t i)
{
    if (i >= container.size())
        throw std::out_of_range("invalid vector<T> subscript");
    return container[i];
}

} // namespace tavo
