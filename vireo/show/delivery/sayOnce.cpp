#include "vireo/show/delivery/sayOnce.h"

#include <atomic>
#include <cstring>
#include <map>
#include <mutex>
#include <set>

#include "tavo/base/debug/displayException.h"

namespace tavo {

namespace {

std::atomic<bool> theHasRefused = false;

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
    constexpr int MOST_OF_A_MISTAKE = 10;
    struct Said
    {
        std::mutex mutex;
        std::set<std::string> texts;
        std::map<std::string, int> mistakes; // and how often they were said
    };
    runGuarded([&text] {
        // Never deleted: destructors may have something to say.
        static Said* const said = new Said; // NOLINT(bugprone-unhandled-exception-at-new): it is guarded
        {
            const std::lock_guard<std::mutex> lock(said->mutex);
            if (said->texts.size() >= REMEMBERED) {
                said->texts.clear();
                said->mistakes.clear();
            }
            int& count = said->mistakes[mistakeIn(text)];
            if (count >= MOST_OF_A_MISTAKE || !said->texts.insert(text).second)
                return;
            ++count;
        }
        warning("tavo: " + text);
    });
}

bool refuse(const char* call, const char* why) noexcept
{
    theHasRefused = true;
    runGuarded([=] { sayOnce(std::string(call) + " shows nothing: " + why); });
    return false;
}

bool hasRefused() noexcept
{
    return theHasRefused;
}

} // namespace tavo
