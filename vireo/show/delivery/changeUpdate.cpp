#include "vireo/show/delivery/changeUpdate.h"

#include "tavo/base/text/printable.h"
#include "vireo/show/delivery/isShowOff.h"

namespace tavo {

std::string callOf(const char* view, const ViewSlotPointer& slot, const char* operation, std::string_view name)
{
    constexpr std::size_t SHOWN_CHARACTERS = 80;
    return std::string(view) + "(\"" + printable(slot->name, SHOWN_CHARACTERS) + "\")." + operation + "(\"" +
           printable(name, SHOWN_CHARACTERS) + "\")";
}

bool isSent(const ViewSlotPointer& slot) noexcept
{
    return slot && currentBatch() && !isShowOff();
}

} // namespace tavo
