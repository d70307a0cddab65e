#pragma once

#include <cstddef>
#include <initializer_list>
#include <pybind11/numpy.h>
#include <string>
#include <type_traits>
#include <vector>

#include "vireo/show/Numbers.h"

namespace tavo::python {

namespace py = pybind11;

// The numbers of an argument: an array of numpy's of any type and layout, what has a buffer, or what numpy makes an
// array of, such as a list. It keeps them alive. Everything but the constructor and copy() needs nothing of Python's.
//
//     const NumberArgument y(argument, "y"); // may throw a TypeError
//     y.requireSeries();
//     withoutGil([&] { plot.curve("a", y.copy()); });
//
// Where nothing is shown, nothing is looked at.
class NumberArgument
{
public:
    // `what` is the name of the argument, for errors. Throws a TypeError if it is not made of numbers.
    NumberArgument(const py::handle& argument, const char* what);

    // Throw a TypeError if it has another shape: (); (n,); (n, width) for one of the widths, or numbers one after the
    // other.
    void requireOne() const;
    void requireSeries() const;
    void requireTuples(std::initializer_list<std::size_t> widths) const;

    // Throws a TypeError if anything is behind a decimal point.
    void requireWholeNumbers() const;

    // Throws a TypeError that says which shape is wanted.
    [[noreturn]] void refuseShape(const std::string& wanted) const;

    std::size_t getNumDimensions() const { return m_Shape.size(); }
    std::size_t getExtent(std::size_t dimension) const { return m_Shape[dimension]; }
    bool isLookedAt() const { return m_IsLookedAt; }

    // Whether they were moments, which are seconds since 1970 now.
    bool areMoments() const { return m_AreMoments; }

    // The only one, or the first; 0 where there is none.
    double number() const;

    // All of them, the last index fastest. One copy; to be called without the interpreter's lock.
    Numbers copy() const;

private:
    void takeNumbers(const py::handle& argument);
    void takePythonsMoments();
    void convertToPlainNumbers();
    [[noreturn]] void refuse(const std::string& why) const;

    py::array m_Array;
    std::string m_What;
    NumberType m_Type = NumberType::Float64;
    const char* m_Data = nullptr;
    std::vector<std::size_t> m_Shape;
    std::vector<std::ptrdiff_t> m_Strides; // in bytes
    std::size_t m_Size = 0;
    bool m_IsSideBySide = false;
    bool m_AreMoments = false;
    bool m_IsLookedAt = false;
};

// Whether it is a whole number, and as precise as one.
bool isWhole(double number);

// Numbers that were copied before, as the tuples that the front door takes, which they become without another copy.
template <typename Tuples>
class CopiedTuples : public Tuples
{
public:
    explicit CopiedTuples(const Numbers& numbers) { this->takeFlat(numbers); }
};

} // namespace tavo::python
