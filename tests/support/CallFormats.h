#pragma once

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "tests/support/CallRecorder.h"

// How the arguments of a recorded call are written: one type per meaning, whose `text` sees the recorder, the position
// of its argument and all arguments of the call (a count often stands beside the array it belongs to).
namespace tavo::format {

std::string enumerantText(unsigned int value);
std::string primitiveText(unsigned int value);
std::string blendFactorText(unsigned int value);
std::string errorText(unsigned int value);
std::string enumerantOrNumberText(long value);
std::string booleanText(unsigned char value);
std::string bufferBitsText(unsigned int bits);
std::string attribBitsText(unsigned int bits);
std::string clientAttribBitsText(unsigned int bits);
std::string quotedText(std::string_view text);
std::size_t parameterLength(unsigned int parameterName);

template <typename Number>
std::string numberText(Number number)
{
    std::array<char, 64> buffer;
    auto write = [&](auto... how) {
        return std::string(
            buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, how...).ptr);
    };
    if constexpr (std::is_floating_point_v<Number>) {
        const bool handy = number == 0 || (std::abs(number) >= Number(1e-5) && std::abs(number) < Number(1e15));
        return handy ? write(std::chars_format::fixed) : write();
    } else
        return write();
}

template <typename Number>
std::string vectorText(const Number* values, std::size_t length)
{
    std::string text = "(";
    for (std::size_t i = 0; i < length; ++i)
        text += (i ? ", " : "") + numberText(values[i]);
    return text + ')';
}

// A number, or a pointer to what is not looked into.
struct Value
{
    template <std::size_t I, typename Arguments>
    static std::string text(const CallRecorder& recorder, const Arguments& arguments)
    {
        const auto value = std::get<I>(arguments);
        if constexpr (std::is_pointer_v<decltype(value)>)
            return recorder.describePointer(reinterpret_cast<const void*>(value));
        else
            return numberText(value);
    }
};

// One argument that a function turns into text.
template <auto textOf>
struct As
{
    template <std::size_t I, typename Arguments>
    static std::string text(const CallRecorder&, const Arguments& arguments)
    {
        return textOf(std::get<I>(arguments));
    }
};

using Enum = As<enumerantText>;
using Primitive = As<primitiveText>;
using BlendFactor = As<blendFactorText>;
// A parameter that is an enumerant or a plain number, as the parameter's name decides.
using EnumOrNumber = As<[](auto value) { return enumerantOrNumberText(static_cast<long>(value)); }>;
// The same of a floating-point parameter, which keeps its fraction.
using EnumOrFloat = As<[](float value) {
    return value == std::floor(value) && std::abs(value) < 1e9f ? enumerantOrNumberText(std::lround(value))
                                                                : numberText(value);
}>;
using Boolean = As<booleanText>;
using BufferBits = As<bufferBitsText>;
using AttribBits = As<attribBitsText>;
using ClientAttribBits = As<clientAttribBitsText>;

// A null-terminated string.
using Text = As<[](const char* text) { return text ? quotedText(text) : std::string("null"); }>;

// A pointer to `length(arguments)` values.
template <auto length>
struct Array
{
    template <std::size_t I, typename Arguments>
    static std::string text(const CallRecorder&, const Arguments& arguments)
    {
        const auto* values = std::get<I>(arguments);
        return values ? vectorText(values, static_cast<std::size_t>(length(arguments))) : "null";
    }
};

template <std::size_t N>
using Vector = Array<[](const auto&) { return N; }>;
using Matrix = Vector<16>;

// As many values as argument `countIndex` says.
template <std::size_t countIndex>
using Counted = Array<[](const auto& arguments) { return std::get<countIndex>(arguments); }>;

// As many values as the parameter named by argument `nameIndex` has.
template <std::size_t nameIndex>
using ParameterValues = Array<[](const auto& arguments) { return parameterLength(std::get<nameIndex>(arguments)); }>;

// A string of as many characters as argument `lengthIndex` says.
template <std::size_t lengthIndex>
struct CountedText
{
    template <std::size_t I, typename Arguments>
    static std::string text(const CallRecorder&, const Arguments& arguments)
    {
        return quotedText({static_cast<const char*>(std::get<I>(arguments)),
            static_cast<std::size_t>(std::get<lengthIndex>(arguments))});
    }
};

} // namespace tavo::format
