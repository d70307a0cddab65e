#include "vireo/show/delivery/sayOnce.h"

#include <mutex>
#include <set>

#include "tavo/base/debug/displayException.h"

namespace tavo {

void sayOnce(const std::string& text) noexcept
{
    constexpr std::size_t REMEMBERED = 1000;
    struct Said
    {
        std::mutex mutex;
        std::set<std::string> texts;
    };
    runGuarded([&text] {
        // Never deleted: destructors may have something to say.
        static Said* const said = new Said; // NOLINT(bugprone-unhandled-exception-at-new): it is guarded
        {
            const std::lock_guard<std::mutex> lock(said->mutex);
            if (said->texts.size() >= REMEMBERED)
                said->texts.clear();
            if (!said->texts.insert(text).second)
                return;
        }
        warning("tavo: " + text);
    });
}

bool refuse(const char* call, const char* why) noexcept
{
    runGuarded([=] { sayOnce(std::string(call) + " shows nothing: " + why); });
    return false;
}

} // namespace tavo
