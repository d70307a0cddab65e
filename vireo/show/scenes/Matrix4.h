#pragma once

#include <array>
#include <cstddef>

#include "tavo/base/math/vectors.h"

namespace tavo {

// A transformation of space: 16 numbers, column by column, as OpenGL has them.
struct Matrix4
{
    std::array<double, 16> numbers{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    double& at(std::size_t row, std::size_t column) { return numbers[4 * column + row]; }
    double at(std::size_t row, std::size_t column) const { return numbers[4 * column + row]; }

    // Where it takes a point, of an affine transformation.
    Vector3d operator*(const Vector3d& point) const { return turned(point) + Vector3d(at(0, 3), at(1, 3), at(2, 3)); }

    // Where it takes a direction.
    Vector3d turned(const Vector3d& direction) const
    {
        Vector3d result;
        for (std::size_t row = 0; row < 3; ++row)
            result[row] = at(row, 0) * direction[0] + at(row, 1) * direction[1] + at(row, 2) * direction[2];
        return result;
    }

    // First the other one, then this one.
    Matrix4 operator*(const Matrix4& other) const
    {
        Matrix4 product;
        for (std::size_t row = 0; row < 4; ++row) {
            for (std::size_t column = 0; column < 4; ++column) {
                product.at(row, column) = 0;
                for (std::size_t i = 0; i < 4; ++i)
                    product.at(row, column) += at(row, i) * other.at(i, column);
            }
        }
        return product;
    }

    bool operator==(const Matrix4&) const = default;
};

inline Matrix4 translation(const Vector3d& by)
{
    Matrix4 matrix;
    for (std::size_t row = 0; row < 3; ++row)
        matrix.at(row, 3) = by[row];
    return matrix;
}

} // namespace tavo
