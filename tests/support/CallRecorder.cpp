#include "tests/support/CallRecorder.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <stdexcept>

namespace tavo {

namespace {

thread_local CallRecorder* activeRecorder = nullptr;
thread_local unsigned int pauses = 0;

std::string joinLines(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + '\n';
    return text;
}

} // namespace

CallRecorder::CallRecorder()
{
    if (activeRecorder)
        throw std::logic_error("CallRecorder::CallRecorder() - another recorder is at work");
    activeRecorder = this;
}

CallRecorder::~CallRecorder()
{
    activeRecorder = nullptr;
}

void CallRecorder::namePointer(const void* start, const std::string& name, std::size_t sizeInBytes)
{
    m_NamedRanges.push_back({static_cast<const char*>(start), sizeInBytes, name});
}

CallRecorder::Pause::Pause()
{
    ++pauses;
}

CallRecorder::Pause::~Pause()
{
    --pauses;
}

CallRecorder* CallRecorder::listening()
{
    return pauses == 0 ? activeRecorder : nullptr;
}

void CallRecorder::add(std::string call)
{
    m_Calls.push_back(std::move(call));
    if (m_Look) {
        const Pause callsOfTheTest;
        m_Look();
    }
}

std::string CallRecorder::describePointer(const void* pointer) const
{
    if (!pointer)
        return "null";
    const auto address = reinterpret_cast<std::uintptr_t>(pointer);
    for (const NamedRange& range : m_NamedRanges) {
        const auto offset = address - reinterpret_cast<std::uintptr_t>(range.start);
        if (offset < range.size)
            return offset == 0 ? range.name : range.name + '+' + std::to_string(offset);
    }
    // No object lies this low: it is an offset into a bound buffer object.
    constexpr std::uintptr_t lowestAddress = 0x10000;
    return address < lowestAddress ? std::to_string(address) : "ptr";
}

void expectCalls(const CallRecorder& recorder, const std::vector<std::string>& expected, const char* file, int line)
{
    const testing::ScopedTrace caller(file, line, "recorded calls");
    EXPECT_EQ(joinLines(expected), joinLines(recorder.calls()));
}

} // namespace tavo
