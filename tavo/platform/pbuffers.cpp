#include "tavo/platform/pbuffers.h"

#include <bit>
#include <map>
#include <mutex>

#include "tavo/platform/HandleTable.h"
#include "tavo/platform/handles.h"

namespace tavo {

namespace {

// As WGL_ARB_pbuffer numbers them.
constexpr int PBUFFER_WIDTH = 0x2034;
constexpr int PBUFFER_HEIGHT = 0x2035;
constexpr int PBUFFER_LOST = 0x2036;

struct Pbuffer
{
    HDC deviceContext;
    int width;
    int height;
};

struct Pbuffers
{
    std::mutex mutex;
    std::map<HPBUFFERARB__*, Pbuffer> all;
};

// Never destroyed, as the handles are not.
Pbuffers& pbuffers()
{
    static auto& instance = *new Pbuffers;
    return instance;
}

std::optional<Pbuffer> find(HPBUFFERARB__* handle)
{
    const std::scoped_lock lock(pbuffers().mutex);
    const auto found = pbuffers().all.find(handle);
    return found != pbuffers().all.end() ? std::optional(found->second) : std::nullopt;
}

} // namespace

HPBUFFERARB__* createPbuffer(HDC deviceContext, int format, int width, int height, const int* attributes)
{
    const auto context = getNative(wglGetCurrentContext());
    const bool takesNoAttributes = !attributes || *attributes == 0;
    if (!context || format == 0 || format != GetPixelFormat(deviceContext) || width < 1 || height < 1 ||
        !takesNoAttributes)
        return nullptr;
    const auto drawable = context->winsys->makePbuffer(*context, width, height);
    if (!drawable)
        return nullptr;
    const auto handle = std::bit_cast<HPBUFFERARB__*>(nextHandleNumber());
    const std::scoped_lock lock(pbuffers().mutex);
    pbuffers().all[handle] = {getHandle(*drawable), width, height};
    return handle;
}

HDC getPbufferDC(HPBUFFERARB__* pbuffer)
{
    const auto found = find(pbuffer);
    return found ? found->deviceContext : nullptr;
}

int releasePbufferDC(HPBUFFERARB__* pbuffer, HDC deviceContext)
{
    return deviceContext && deviceContext == getPbufferDC(pbuffer);
}

int destroyPbuffer(HPBUFFERARB__* pbuffer)
{
    const auto found = find(pbuffer);
    if (!found)
        return 0;
    {
        const std::scoped_lock lock(pbuffers().mutex);
        pbuffers().all.erase(pbuffer);
    }
    // Unknown if its display was closed, and then it has gone with that.
    if (const auto drawable = getNative(found->deviceContext)) {
        drawable->winsys->destroyPbuffer(*drawable);
        forgetHandle(found->deviceContext);
    }
    return 1;
}

int queryPbuffer(HPBUFFERARB__* pbuffer, int attribute, int* value)
{
    const auto found = find(pbuffer);
    if (!found || !value)
        return 0;
    switch (attribute) {
    case PBUFFER_WIDTH: *value = found->width; return 1;
    case PBUFFER_HEIGHT: *value = found->height; return 1;
    case PBUFFER_LOST: *value = 0; return 1;
    default: return 0;
    }
}

} // namespace tavo
