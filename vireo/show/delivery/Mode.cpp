#include "vireo/show/delivery/Mode.h"

#include <atomic>
#include <cstdlib>
#include <string_view>

#include "tavo/base/debug/displayException.h"
#include "tavo/base/text/printable.h"

namespace tavo {

namespace {

constexpr std::string_view PICTURES = "pictures:";
constexpr int NOT_READ = -1;

constinit std::atomic<int> theMode{NOT_READ};
constinit std::atomic<int> isOff{NOT_READ};

std::string_view environment()
{
    const char* const text = std::getenv("VIREO_SHOW");
    return text ? text : "";
}

Mode modeOf(std::string_view text)
{
    if (text.starts_with(PICTURES) && text.size() > PICTURES.size())
        return Mode::Pictures;
    if (text == "off")
        return Mode::Off;
    if (text == "fresh")
        return Mode::Fresh;
    if (!text.empty())
        warning("VIREO_SHOW is \"" + printable(text, 100) +
                "\", which means nothing: it may be \"off\", \"fresh\" or \"pictures:\" and a folder.");
    return Mode::Window;
}

Mode readMode() noexcept
{
    int unread = NOT_READ;
    Mode mode = Mode::Window;
    runGuarded([&mode] { mode = modeOf(environment()); });
    theMode.compare_exchange_strong(unread, static_cast<int>(mode));
    return static_cast<Mode>(theMode.load());
}

} // namespace

Mode showMode() noexcept
{
    const int mode = theMode.load(std::memory_order_relaxed);
    return mode == NOT_READ ? readMode() : static_cast<Mode>(mode);
}

bool isShowOff() noexcept
{
    const int known = isOff.load(std::memory_order_relaxed);
    if (known != NOT_READ)
        return known != 0;
    int unread = NOT_READ;
    isOff.compare_exchange_strong(unread, showMode() == Mode::Off ? 1 : 0);
    return isOff.load() != 0;
}

std::string picturesFolder()
{
    return std::string(environment().substr(PICTURES.size()));
}

void switchShowOff() noexcept
{
    isOff = 1;
}

} // namespace tavo
