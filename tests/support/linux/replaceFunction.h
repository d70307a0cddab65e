#pragma once

#include <tuple>

// VIREO_REPLACE(function, symbol, replacement, parameterCount)
// Has every call of a library's function go to `replacement`. The function must be declared, under the symbol's name.
//
// Here the program defines the function itself, and the dynamic linker finds that definition before the library's.
#define VIREO_REPLACE(function, symbol, replacement, parameterCount)                                                   \
    extern "C" __attribute__((visibility("default"))) ::tavo::ResultOf<decltype(::function)> function(                 \
        VIREO_JOIN(VIREO_PARAMETERS_, parameterCount)(decltype(::function)))                                           \
    {                                                                                                                  \
        return replacement(VIREO_JOIN(VIREO_ARGUMENTS_, parameterCount));                                              \
    }

namespace tavo {

// The parts of a function's type.
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

} // namespace tavo

#define VIREO_PARAMETERS_0(F)
#define VIREO_PARAMETERS_1(F) ::tavo::ParameterOf<F, 0> a0
#define VIREO_PARAMETERS_2(F) VIREO_PARAMETERS_1(F), ::tavo::ParameterOf<F, 1> a1
#define VIREO_PARAMETERS_3(F) VIREO_PARAMETERS_2(F), ::tavo::ParameterOf<F, 2> a2
#define VIREO_PARAMETERS_4(F) VIREO_PARAMETERS_3(F), ::tavo::ParameterOf<F, 3> a3
#define VIREO_PARAMETERS_5(F) VIREO_PARAMETERS_4(F), ::tavo::ParameterOf<F, 4> a4
#define VIREO_PARAMETERS_6(F) VIREO_PARAMETERS_5(F), ::tavo::ParameterOf<F, 5> a5
#define VIREO_PARAMETERS_7(F) VIREO_PARAMETERS_6(F), ::tavo::ParameterOf<F, 6> a6
#define VIREO_PARAMETERS_8(F) VIREO_PARAMETERS_7(F), ::tavo::ParameterOf<F, 7> a7
#define VIREO_PARAMETERS_9(F) VIREO_PARAMETERS_8(F), ::tavo::ParameterOf<F, 8> a8

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

#define VIREO_JOIN_NOW(a, b) a##b
#define VIREO_JOIN(a, b) VIREO_JOIN_NOW(a, b)
