#include "tavo/platform/handles.h"

#include "tavo/platform/HandleTable.h"

namespace tavo {

namespace {

struct Tables
{
    HandleTable<HGLRC, NativeContext> contexts;
    HandleTable<HDC, NativeDrawable> drawables;
};

// Never destroyed: objects with static storage release their contexts, and displays are closed, until the process ends.
Tables& tables()
{
    static auto& instance = *new Tables;
    return instance;
}

template <typename Table, typename Native>
auto getHandleFrom(Table& table, const Native& native)
{
    if (const auto known = table.find(native))
        return known;
    // Not under the table's lock: this takes the display's, which another thread may hold while it asks for a handle.
    native.winsys->watchDisplay(native.display);
    return table.insert(native);
}

} // namespace

HGLRC getHandle(const NativeContext& context)
{
    return getHandleFrom(tables().contexts, context);
}

HDC getHandle(const NativeDrawable& drawable)
{
    return getHandleFrom(tables().drawables, drawable);
}

std::optional<NativeContext> getNative(HGLRC handle)
{
    return tables().contexts.getNative(handle);
}

std::optional<NativeDrawable> getNative(HDC handle)
{
    return tables().drawables.getNative(handle);
}

void forgetHandle(HGLRC handle)
{
    tables().contexts.forget(handle);
}

void forgetHandle(HDC handle)
{
    tables().drawables.forget(handle);
}

void forgetHandlesOf(const void* display)
{
    tables().contexts.forgetDisplay(display);
    tables().drawables.forgetDisplay(display);
}

} // namespace tavo
