#pragma once

#include <atomic>
#include <bit>
#include <cstdint>
#include <limits>
#include <map>
#include <mutex>
#include <optional>

namespace tavo {

// One more with each call. Numbers begin so high that they are neither small integers nor addresses of a process.
inline std::uintptr_t nextHandleNumber()
{
    static std::atomic<std::uintptr_t> next{std::uintptr_t{0x67} << (std::numeric_limits<std::uintptr_t>::digits - 8)};
    return ++next;
}

// Gives handles to native objects: the same object has the same handle until it is forgotten, and no handle is ever
// given out twice, neither by this table nor by another. A handle is a number and not an address, so that a wrong one
// is found to be wrong without being looked into. May be used from several threads.
//
// Native is ordered by where the object lives; native.isStill(now) says whether what lives there now is the object
// known.
template <typename Handle, typename Native>
class HandleTable
{
public:
    // The object's handle; null if it has none.
    Handle find(const Native& native) const
    {
        const std::scoped_lock lock(m_Mutex);
        const auto known = m_Handles.find(native);
        return known != m_Handles.end() && known->first.isStill(native) ? known->second : Handle{};
    }

    // The object's handle, a new one if it has none. The handle of an object that lived there before is forgotten.
    Handle insert(const Native& native)
    {
        const std::scoped_lock lock(m_Mutex);
        if (const auto known = m_Handles.find(native); known != m_Handles.end()) {
            if (known->first.isStill(native))
                return known->second;
            m_Natives.erase(known->second);
            m_Handles.erase(known);
        }
        const Handle handle = std::bit_cast<Handle>(nextHandleNumber());
        m_Handles.emplace(native, handle);
        m_Natives.emplace(handle, native);
        return handle;
    }

    // The object that the handle stands for; nothing if the handle is unknown, null, or forgotten.
    std::optional<Native> getNative(Handle handle) const
    {
        const std::scoped_lock lock(m_Mutex);
        const auto known = m_Natives.find(handle);
        return known != m_Natives.end() ? std::optional(known->second) : std::nullopt;
    }

    void forget(Handle handle)
    {
        const std::scoped_lock lock(m_Mutex);
        if (const auto known = m_Natives.find(handle); known != m_Natives.end()) {
            m_Handles.erase(known->second);
            m_Natives.erase(known);
        }
    }

    void forgetDisplay(const void* display)
    {
        const std::scoped_lock lock(m_Mutex);
        std::erase_if(m_Handles, [display](const auto& entry) { return entry.first.display == display; });
        std::erase_if(m_Natives, [display](const auto& entry) { return entry.second.display == display; });
    }

private:
    mutable std::mutex m_Mutex;
    std::map<Native, Handle> m_Handles;
    std::map<Handle, Native> m_Natives;
};

} // namespace tavo
