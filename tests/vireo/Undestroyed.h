#pragma once

#include <cstddef>
#include <new>
#include <utility>

namespace tavo {

// A value that is never destroyed. Of two GL objects with one name and one registry entry only one may be.
template <typename T>
class Undestroyed
{
public:
    template <typename... Arguments>
    explicit Undestroyed(Arguments&&... arguments)
        : m_Value(new (m_Storage) T(std::forward<Arguments>(arguments)...))
    {}
    Undestroyed(const Undestroyed&) = delete;
    Undestroyed& operator=(const Undestroyed&) = delete;

    T& operator*() const { return *m_Value; }
    T* operator->() const { return m_Value; }

private:
    alignas(T) std::byte m_Storage[sizeof(T)];
    T* m_Value;
};

} // namespace tavo
