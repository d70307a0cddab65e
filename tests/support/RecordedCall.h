#pragma once

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <tuple>
#include <utility>

#include "tests/support/CallFormats.h"
#include "tests/support/CallRecorder.h"

// A recorded function: writes the call down and passes it on.
//
//     RecordedCall<"glBindTexture", void(GLenum, GLuint), Enum, Value>
//
// The function proper comes from the next library that has one of the name, or was handed over to setReal.
namespace vireo_test {

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

    template <typename AnyFunction>
    static void setReal(AnyFunction* function)
    {
        s_Real = reinterpret_cast<Pointer>(function);
    }

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
            setReal(reinterpret_cast<void (*)()>(dlsym(RTLD_NEXT, name.text)));
        if (!s_Real) {
            std::fprintf(stderr, "RecordedCall::real() - no library of this program has %s\n", name.text);
            std::abort();
        }
        return s_Real;
    }

    static inline Pointer s_Real = nullptr;
};

// The parts of a function's type, for VIREO_RECORD.
template <typename Function>
struct FunctionParts;

template <typename R, typename... P>
struct FunctionParts<R(P...)>
{
    using Result = R;
    using Parameters = std::tuple<P...>;
};

template <typename Function>
using ResultOf = typename FunctionParts<Function>::Result;

template <typename Function, std::size_t I>
using ParameterOf = std::tuple_element_t<I, typename FunctionParts<Function>::Parameters>;

} // namespace vireo_test

#define VIREO_PARAMETERS_0(F)
#define VIREO_PARAMETERS_1(F) ::vireo_test::ParameterOf<F, 0> a0
#define VIREO_PARAMETERS_2(F) VIREO_PARAMETERS_1(F), ::vireo_test::ParameterOf<F, 1> a1
#define VIREO_PARAMETERS_3(F) VIREO_PARAMETERS_2(F), ::vireo_test::ParameterOf<F, 2> a2
#define VIREO_PARAMETERS_4(F) VIREO_PARAMETERS_3(F), ::vireo_test::ParameterOf<F, 3> a3
#define VIREO_PARAMETERS_5(F) VIREO_PARAMETERS_4(F), ::vireo_test::ParameterOf<F, 4> a4
#define VIREO_PARAMETERS_6(F) VIREO_PARAMETERS_5(F), ::vireo_test::ParameterOf<F, 5> a5
#define VIREO_PARAMETERS_7(F) VIREO_PARAMETERS_6(F), ::vireo_test::ParameterOf<F, 6> a6
#define VIREO_PARAMETERS_8(F) VIREO_PARAMETERS_7(F), ::vireo_test::ParameterOf<F, 7> a7
#define VIREO_PARAMETERS_9(F) VIREO_PARAMETERS_8(F), ::vireo_test::ParameterOf<F, 8> a8

#define VIREO_ARGUMENTS_0
#define VIREO_ARGUMENTS_1 a0
#define VIREO_ARGUMENTS_2 VIREO_ARGUMENTS_1, a1
#define VIREO_ARGUMENTS_3 VIREO_ARGUMENTS_2, a2
#define VIREO_ARGUMENTS_4 VIREO_ARGUMENTS_3, a3
#define VIREO_ARGUMENTS_5 VIREO_ARGUMENTS_4, a4
#define VIREO_ARGUMENTS_6 VIREO_ARGUMENTS_5, a5
#define VIREO_ARGUMENTS_7 VIREO_ARGUMENTS_6, a6
#define VIREO_ARGUMENTS_8 VIREO_ARGUMENTS_7, a7
#define VIREO_ARGUMENTS_9 VIREO_ARGUMENTS_8, a8

#define VIREO_PICK_COUNT(_, f0, f1, f2, f3, f4, f5, f6, f7, f8, count, ...) count
#define VIREO_COUNT(...) VIREO_PICK_COUNT(_ __VA_OPT__(, ) __VA_ARGS__, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0, _)
#define VIREO_JOIN_NOW(a, b) a##b
#define VIREO_JOIN(a, b) VIREO_JOIN_NOW(a, b)

// Defines a C function of this program in front of the library's: VIREO_RECORD(glBindTexture, Enum, Value).
// The function must be declared; one format per parameter.
#define VIREO_RECORD(function, ...)                                                                                    \
    extern "C" __attribute__((visibility("default"))) ::vireo_test::ResultOf<decltype(::function)> function(           \
        VIREO_JOIN(VIREO_PARAMETERS_, VIREO_COUNT(__VA_ARGS__))(decltype(::function)))                                 \
    {                                                                                                                  \
        return ::vireo_test::RecordedCall<#function, decltype(::function) __VA_OPT__(, ) __VA_ARGS__>::make(           \
            VIREO_JOIN(VIREO_ARGUMENTS_, VIREO_COUNT(__VA_ARGS__)));                                                   \
    }
