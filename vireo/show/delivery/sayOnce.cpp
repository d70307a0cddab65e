#include "vireo/show/delivery/sayOnce.h"

#include <cstring>
#include <mutex>
#include <set>

#include "tavo/base/debug/displayException.h"

namespace tavo {

namespace {

// Without the digits that stand in no name.
std::string mistakeIn(const std::string& text)
{
    std::string mistake;
    bool isInName = false;
    for (const char character : text) {
        isInName ^= character == '"';
        if (isInName || !std::strchr("0123456789", character))
            mistake += character;
    }
    return mistake;
}

} // namespace

void sayOnce(const std::string& text) noexcept
{
    constexpr std::size_t REMEMBERED = 1000;
    struct Said
    {
        std::mutex mutex;
        std::set<std::string> mistakes;
    };
    runGuarded([&text] {
        // Never deleted: destructors may have something to say.
        static Said* const said = new Said; // NOLINT(bugprone-unhandled-exception-at-new): it is guarded
        {
            const std::lock_guard<std::mutex> lock(said->mutex);
            if (said->mistakes.size() >= REMEMBERED)
                said->mistakes.clear();
            if (!said->mistakes.insert(mistakeIn(text)).second)
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
