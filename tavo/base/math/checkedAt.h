#pragma once

#include <cstddef>
#include <stdexcept>

namespace tavo {

// The element at index i of a vector-like container; an index beyond its end throws std::out_of_range with the one text
// that every checked access of the libraries has, whatever the standard library at hand would say.
template <typename Container>
auto& checkedAt(Container& container, std::size_t i)
{
    if (i >= container.size())
        throw std::out_of_range("invalid vector<T> subscript");
    return container[i];
}

} // namespace tavo
