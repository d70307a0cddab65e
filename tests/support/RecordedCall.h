#pragma once

#include <cstdio>
#include <cstdlib>
#include <tuple>
#include <utility>

#include "replaceFunction.h" // of the platform
#include "tests/support/CallFormats.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/libraryFunction.h"

// A recorded function: writes the call down and passes it on.
//
//     RecordedCall<"glBindTexture", void(GLenum, GLuint), Enum, Value>
//
// The function proper is a library's of that name, or was handed over to setReal.
namespace tavo {

template <std::size_t N>
struct FunctionName
{
    consteval FunctionName(const char (&name)[N])
    {
        for (std::size_t i = 0; i < N; ++i)
            text[i] = name[i];
    }

    char text[N];
};

template <FunctionName name, typename Function, typename... Formats>
class RecordedCall;

template <FunctionName name, typename Result, typename... Parameters, typename... Formats>
class RecordedCall<name, Result(Parameters...), Formats...>
{
    static_assert(sizeof...(Parameters) == sizeof...(Formats), "one format per parameter");

public:
    using Pointer = Result (*)(Parameters...);

    static Result make(Parameters... arguments)
    {
        if (CallRecorder* recorder = CallRecorder::listening())
            recorder->add(describe(*recorder, std::make_index_sequence<sizeof...(Parameters)>(), arguments...));
        const Pointer function = real();
        const CallRecorder::Pause callsOfTheDriver;
        return function(arguments...);
    }

    static void setReal(AnyFunction function) { s_Real = reinterpret_cast<Pointer>(function); }

private:
    template <std::size_t... I>
    static std::string describe(const CallRecorder& recorder, std::index_sequence<I...>, Parameters... arguments)
    {
        [[maybe_unused]] const std::tuple<Parameters...> all(arguments...);
        std::string text;
        [[maybe_unused]] auto append = [&](const std::string& argument) {
            text += (text.empty() ? "" : ", ") + argument;
        };
        (append(Formats::template text<I>(recorder, all)), ...);
        return std::string(name.text) + '(' + text + ')';
    }

    static Pointer real()
    {
        if (!s_Real)
            setReal(libraryFunction(name.text));
        if (!s_Real) {
            std::fprintf(stderr, "RecordedCall::real() - no library of this program has %s\n", name.text);
            std::abort();
        }
        return s_Real;
    }

    static inline Pointer s_Real = nullptr;
};

} // namespace tavo

#define VIREO_PICK_COUNT(_, f0, f1, f2, f3, f4, f5, f6, f7, f8, count, ...) count
#define VIREO_COUNT(...) VIREO_PICK_COUNT(_ __VA_OPT__(, ) __VA_ARGS__, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0, _)

// Records a function of a library: VIREO_RECORD(glBindTexture, Enum, Value).
// The function must be declared; one format per parameter.
#define VIREO_RECORD(function, ...)                                                                                    \
    VIREO_REPLACE(function, #function,                                                                                 \
        (::tavo::RecordedCall<#function, decltype(::function) __VA_OPT__(, ) __VA_ARGS__>::make),                      \
        VIREO_COUNT(__VA_ARGS__))
