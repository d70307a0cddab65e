#pragma once

#include <array>
#include <cstddef>
#include <type_traits>

#include "vireo/show/Numbers.h"

namespace tavo {

/// A transformation of a call: 16 numbers column by column; or what has rows and columns, as it is written: a C array
/// `T[4][4]` or a matrix of Eigen's.
///
///     #include <vireo/show/Scene.h>
///
///     const double upwards[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 2.5}, {0, 0, 0, 1}};
///     tavo::scene("world").transform("car", upwards);
class Transformation
{
public:
    template <typename Range>
    requires(!std::same_as<std::remove_cvref_t<Range>, Transformation>) Transformation(const Range& range)
    {
        if constexpr (Strided<Range>)
            takeCells([&range](int row, int column) { return range(row, column); }, range.rows(), range.cols());
        else
            takeColumns(Numbers(range));
    }

    template <Number T>
    Transformation(const T (&rows)[4][4])
    {
        takeCells([&rows](int row, int column) { return rows[row][column]; }, 4, 4);
    }

    template <Number T>
    Transformation(std::initializer_list<T> numbers)
    {
        takeColumns(Numbers(numbers));
    }

    /// How many numbers came; 16 are a transformation.
    std::size_t getNumNumbers() const { return m_NumNumbers; }

    /// Column by column.
    const std::array<double, 16>& getNumbers() const { return m_Numbers; }

private:
    template <typename Cell>
    void takeCells(Cell cell, std::ptrdiff_t numRows, std::ptrdiff_t numColumns)
    {
        m_NumNumbers = static_cast<std::size_t>(numRows * numColumns);
        if (numRows != 4 || numColumns != 4)
            return;
        for (int i = 0; i < 16; ++i)
            m_Numbers[static_cast<std::size_t>(i)] = static_cast<double>(cell(i % 4, i / 4));
    }

    void takeColumns(const Numbers& numbers)
    {
        m_NumNumbers = numbers.size();
        for (std::size_t i = 0; i < numbers.size() && i < m_Numbers.size(); ++i)
            m_Numbers[i] = numbers[i];
    }

    std::array<double, 16> m_Numbers{};
    std::size_t m_NumNumbers = 0;
};

} // namespace tavo
