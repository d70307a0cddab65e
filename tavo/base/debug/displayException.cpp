#include "tavo/base/debug/displayException.h"

#include <cstdio>

#include "tavo/base/debug/DebugOutput.h"

namespace tavo {

namespace {

// The last resort: when even reporting fails, for lack of memory say, the report is lost and the program goes on.
template <typename Text>
void report(Text&& makeText) noexcept
{
    try {
        debugOutput << makeText() + "\n";
    } catch (...) {
        std::fputs("tavo: an error could not be reported\n", stderr);
    }
}

} // namespace

SE_Exception::~SE_Exception() = default;

void displayPException(const PException& exception) noexcept
{
    report([&] { return "error: " + exception.getMessage(); });
}

void displaySTLException(const std::exception& exception) noexcept
{
    report([&] { return std::string("error: ") + exception.what(); });
}

void displayOSException(unsigned int code, const void* record) noexcept
{
    report([&] {
        char text[80];
        std::snprintf(text, sizeof(text), "error: operating-system exception 0x%08X (record %p)", code, record);
        return std::string(text);
    });
}

void warning(const std::string& text) noexcept
{
    report([&] { return "warning: " + text; });
}

void displayCurrentException() noexcept
{
    try {
        throw;
    } catch (const PException& exception) {
        displayPException(exception);
    } catch (const SE_Exception& exception) {
        displayOSException(exception.getCode(), exception.getRecord());
    } catch (const std::exception& exception) {
        displaySTLException(exception);
    } catch (...) {
        report([] { return std::string("error: an exception of unknown type"); });
    }
}

} // namespace tavo
