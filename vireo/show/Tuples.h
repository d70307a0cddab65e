#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "tavo/base/math/StaticVector.h"
#include "vireo/show/Numbers.h"

namespace tavo {

/// `N` numbers of type `T` that begin a structure; what follows them in it is left out.
template <Number T, std::size_t N>
struct Leading
{
    using Component = T;
    static constexpr std::size_t WIDTH = N;
};

/// Which numbers an element of a range is made of. Known are StaticVector, std::array, C arrays, and Eigen's vectors of
/// fixed size. One line makes it known of a structure that begins with x, y and z:
///
/// @code{.cpp}
///     struct Echo
///     {
///         double x, y, z;
///         float intensity;
///     };
///     template <>
///     struct tavo::TupleOf<Echo> : tavo::Leading<double, 3>
///     {};
/// @endcode
template <typename T>
struct TupleOf
{};

template <Number T, unsigned int N>
struct TupleOf<StaticVector<T, N>> : Leading<T, N>
{};

template <Number T, std::size_t N>
struct TupleOf<std::array<T, N>> : Leading<T, N>
{};

template <Number T, std::size_t N>
struct TupleOf<T[N]> : Leading<T, N>
{};

template <Strided T>
requires(T::SizeAtCompileTime > 0) struct TupleOf<T>
    : Leading<typename T::Scalar, static_cast<std::size_t>(T::SizeAtCompileTime)>
{};

/// Numbers of a call that belong together by a few, such as the three of a point: a range of what TupleOf knows, such
/// as a `std::vector<Vector3d>`; numbers one after the other, as Numbers takes them; or a matrix of Eigen's with as
/// many rows, or as many columns, as belong together. `Widths` are how many those may be. They are copied, and keep
/// their type; of a vector that is moved in, nothing is copied.
///
///     #include <array>
///     #include <vireo/show/Scene.h>
///
///     const std::vector<std::array<float, 3>> vertices{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
///     tavo::scene("world").mesh("triangle", vertices, {0, 1, 2});
template <std::size_t... Widths>
class Tuples : public TakenNumbers
{
public:
    Tuples() = default;

    template <typename Range>
    // NOLINTNEXTLINE(bugprone-forwarding-reference-overload): what is required leaves copies and moves alone
    requires(!std::derived_from<std::remove_cvref_t<Range>, NumberArray>) Tuples(Range&& range)
    {
        takeOrRefuse(std::forward<Range>(range));
    }

    template <typename T>
    requires(Number<T> || requires { TupleOf<T>::WIDTH; }) Tuples(std::initializer_list<T> values)
        : Tuples(std::vector<T>(values))
    {}
    Tuples(std::initializer_list<double> numbers) { takeFlat(Numbers(numbers)); }

    /// `count` numbers, one after the other.
    template <Number T>
    Tuples(const T* numbers, std::size_t count)
    {
        takeFlat(Numbers(numbers, count));
    }

    /// How many numbers belong together; 0 if they came one after the other, which says nothing about that.
    std::size_t width() const { return m_Width; }

protected:
    template <typename T>
    static constexpr bool isTuple()
    {
        if constexpr (requires { TupleOf<T>::WIDTH; })
            return ((TupleOf<T>::WIDTH == Widths) || ...);
        else
            return false;
    }

    template <typename Range>
    void takeOrRefuse(Range&& range)
    {
        using Plain = std::remove_cvref_t<Range>;
        if constexpr (isMatrix<Plain>()) {
            takeMatrix(range);
        } else if constexpr (Strided<Plain>) {
            takeFlat(Numbers(range));
        } else if constexpr (!Contiguous<Plain>) {
            static_assert(Contiguous<Plain>, "vireo: this is not a series of points, colours or faces: send what "
                                             "std::data and std::size know, such as a "
                                             "std::vector<tavo::Vector3d>. A std::vector<bool> has bits, no "
                                             "numbers.");
        } else {
            using T = ElementOf<Plain>;
            static_assert(Number<T> || isTuple<T>(),
                "vireo: these are not points, colours or faces: send StaticVectors or arrays of so many numbers, "
                "numbers one after the other, or structures that tavo::TupleOf knows.");
            if constexpr (Number<T>)
                takeFlat(Numbers(std::forward<Range>(range)));
            else if constexpr (isTuple<T>())
                takeTuples(std::forward<Range>(range));
        }
    }

    void takeFlat(const Numbers& numbers) { TakenNumbers::operator=(numbers); }

private:
    template <typename Matrix>
    static constexpr bool isMatrix()
    {
        if constexpr (Strided<Matrix>)
            return !Matrix::IsVectorAtCompileTime &&
                   (((Matrix::RowsAtCompileTime == static_cast<int>(Widths)) || ...) ||
                       ((Matrix::ColsAtCompileTime == static_cast<int>(Widths)) || ...));
        else
            return false;
    }

    template <typename Range>
    void takeTuples(Range&& range)
    {
        using T = ElementOf<Range>;
        using Component = typename TupleOf<T>::Component;
        m_Width = TupleOf<T>::WIDTH;
        if constexpr (std::same_as<Range, std::vector<T>> && sizeof(Component) <= sizeof(double) &&
                      sizeof(T) == sizeof(Component) * TupleOf<T>::WIDTH) {
            if (isShowOff())
                return;
            const std::size_t size = m_Width * range.size();
            takeWhatFits([&] {
                const auto kept = std::make_shared<const std::vector<T>>(std::forward<Range>(range));
                NumberArray::operator=(NumberArray(kept, kept->data(), size, numberTypeOf<Component>()));
            });
        } else {
            copy(std::data(range), static_cast<std::size_t>(std::size(range)));
        }
    }

    template <typename T>
    void copy(const T* values, std::size_t count)
    {
        using Component = typename TupleOf<T>::Component;
        takeWhatFits([=, this] {
            std::vector<Component> numbers;
            if constexpr (sizeof(T) == sizeof(Component) * TupleOf<T>::WIDTH) {
                const auto* const first = reinterpret_cast<const Component*>(values);
                numbers.assign(first, first + count * TupleOf<T>::WIDTH);
            } else {
                numbers.reserve(count * TupleOf<T>::WIDTH);
                for (std::size_t i = 0; i < count; ++i) {
                    const auto* const first = reinterpret_cast<const Component*>(values + i);
                    numbers.insert(numbers.end(), first, first + TupleOf<T>::WIDTH);
                }
            }
            takeFlat(Numbers(std::move(numbers)));
        });
    }

    template <typename Matrix>
    void takeMatrix(const Matrix& matrix)
    {
        constexpr bool areColumns = ((Matrix::RowsAtCompileTime == static_cast<int>(Widths)) || ...);
        const auto numTuples = areColumns ? matrix.cols() : matrix.rows();
        m_Width = static_cast<std::size_t>(areColumns ? matrix.rows() : matrix.cols());
        takeWhatFits([&] {
            std::vector<typename Matrix::Scalar> numbers;
            numbers.reserve(m_Width * static_cast<std::size_t>(numTuples));
            for (auto tuple = numTuples * 0; tuple < numTuples; ++tuple)
                for (auto i = numTuples * 0; i < static_cast<decltype(i)>(m_Width); ++i)
                    numbers.push_back(areColumns ? matrix(i, tuple) : matrix(tuple, i));
            takeFlat(Numbers(std::move(numbers)));
        });
    }

    std::size_t m_Width = 0;
};

/// Points or directions of a call: three numbers each.
using Points = Tuples<3>;

/// Colours of a call: red, green and blue, and maybe opacity. Of integers they go from 0 to 255, of floating-point
/// numbers from 0 to 1.
using Colours = Tuples<3, 4>;

/// Faces of a call: the numbers of their vertices, counted from 0. Triangles and quadrangles are sent as Tuples are.
/// Polygons with any number of corners each are a range of ranges, or all their vertices one after the other and how
/// many corners each has:
///
///     #include <vireo/show/Scene.h>
///
///     const std::vector<std::vector<int>> polygons{{0, 1, 2, 3, 4}, {4, 3, 5}};
///     tavo::scene("world").mesh("roof", corners, polygons);
///
///     const std::vector<int> vertices{0, 1, 2, 3, 4, 4, 3, 5};
///     const std::vector<int> numCorners{5, 3};
///     tavo::scene("world").mesh("roof", corners, {vertices, numCorners});
class Faces : public Tuples<3, 4>
{
public:
    Faces() = default;

    template <typename Range>
    // NOLINTNEXTLINE(bugprone-forwarding-reference-overload): what is required leaves copies and moves alone
    requires(!std::derived_from<std::remove_cvref_t<Range>, NumberArray>) Faces(Range&& range)
    {
        if constexpr (arePolygons<std::remove_cvref_t<Range>>())
            takePolygons(range);
        else
            takeOrRefuse(std::forward<Range>(range));
    }

    template <typename T>
    requires(Number<T> || requires { TupleOf<T>::WIDTH; }) Faces(std::initializer_list<T> values)
        : Tuples(values)
    {}
    Faces(std::initializer_list<double> numbers)
        : Tuples(numbers)
    {}
    Faces(std::initializer_list<std::initializer_list<int>> polygons) { takePolygons(polygons); }

    /// `count` numbers, one after the other.
    template <Number T>
    Faces(const T* numbers, std::size_t count)
        : Tuples(numbers, count)
    {}

    /// The vertices of polygons, and how many corners each polygon has.
    Faces(const Numbers& vertices, const Numbers& numCorners)
        : m_NumCorners(numCorners)
    {
        takeFlat(vertices);
    }

    /// How many corners each has; nothing if all have as many.
    const std::optional<Numbers>& getNumCorners() const { return m_NumCorners; }

    /// Whether memory ran out while copying. They are empty then.
    bool areTooMany() const { return Tuples::areTooMany() || (m_NumCorners && m_NumCorners->areTooMany()); }

private:
    template <typename Range>
    static constexpr bool arePolygons()
    {
        if constexpr (Strided<Range> || !Contiguous<Range>)
            return false;
        else if constexpr (isTuple<ElementOf<Range>>() || !Contiguous<ElementOf<Range>>)
            return false;
        else
            return Number<ElementOf<ElementOf<Range>>>;
    }

    template <typename Range>
    void takePolygons(const Range& polygons)
    {
        takeWhatFits([&] {
            std::vector<ElementOf<ElementOf<Range>>> vertices;
            std::vector<std::size_t> numCorners;
            for (const auto& polygon : polygons) {
                vertices.insert(vertices.end(), std::data(polygon), std::data(polygon) + std::size(polygon));
                numCorners.push_back(static_cast<std::size_t>(std::size(polygon)));
            }
            takeFlat(Numbers(std::move(vertices)));
            m_NumCorners = Numbers(std::move(numCorners));
        });
    }

    std::optional<Numbers> m_NumCorners;
};

} // namespace tavo
