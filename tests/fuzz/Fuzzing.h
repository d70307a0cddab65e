#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

// A fuzz target is a source with this function, which gives a reader any bytes whatever and sees that the reader keeps
// its word. libFuzzer looks for bytes with which it does not; replay.cpp runs it over files.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace vireo_fuzz {

// A reader did not keep its word. No target catches it.
class BrokenRule : public std::logic_error
{
public:
    using std::logic_error::logic_error;
};

// Throws BrokenRule with the rule unless it holds.
void require(bool holds, const std::string& rule);

// What a reader says of bad input is one line for people: not empty, without control characters, and of less than 400
// characters.
void requireGoodMessage(std::string_view message);

// Writes a file of that name into a folder of the process's own, in place of the one before.
std::filesystem::path writeFile(const std::string& name, std::string_view bytes);

// What the target was given.
inline std::string_view bytesOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

} // namespace vireo_fuzz
