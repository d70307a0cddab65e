#include "vireo/show/delivery/changeUpdate.h"

#include <algorithm>

#include "tavo/base/text/printable.h"
#include "vireo/show/delivery/isShowOff.h"

namespace tavo {

namespace {

constexpr std::size_t SHOWN_CHARACTERS = 80;

}

std::string callOf(const char* view, const ViewSlotPointer& slot, const char* operation, std::string_view name)
{
    return callWith(view, slot, operation, '"' + printable(name, SHOWN_CHARACTERS) + '"');
}

std::string callWith(const char* view, const ViewSlotPointer& slot, const char* operation, const std::string& arguments)
{
    return std::string(view) + "(\"" + printable(slot->name, SHOWN_CHARACTERS) + "\")." + operation + "(" + arguments +
           ")";
}

bool isSent(const ViewSlotPointer& slot) noexcept
{
    return slot && currentBatch() && !isShowOff();
}

void noteWhetherRefused(const ViewSlotPointer& slot, std::string_view item, bool isRefused)
{
    std::set<std::string, std::less<>>& refused = currentBatch()->partOf(slot).refused;
    if (isRefused)
        refused.emplace(item);
    else if (const auto found = refused.find(item); found != refused.end())
        refused.erase(found);
}

bool isRefused(const ViewSlotPointer& slot, std::string_view item) noexcept
{
    const std::vector<Batch::Part>& parts = currentBatch()->parts;
    return std::any_of(parts.begin(), parts.end(),
        [&slot, item](const Batch::Part& part) { return part.slot == slot && part.refused.contains(item); });
}

} // namespace tavo
