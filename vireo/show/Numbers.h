#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <exception>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "vireo/show/delivery/NumberArray.h"
#include "vireo/show/delivery/beyondDouble.h"
#include "vireo/show/delivery/isShowOff.h"
#include "vireo/show/delivery/recentCopies.h"

namespace tavo {

/// Integers and floating-point numbers, except characters and `bool`.
template <typename T>
concept Number =
    std::is_arithmetic_v<T> && !std::same_as<T, bool> && !std::same_as<T, char> && !std::same_as<T, wchar_t> &&
    !std::same_as<T, char8_t> && !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

/// A time point of a clock of `std::chrono`.
template <typename T>
concept Moment = requires(const T& moment)
{
    typename T::clock;
    typename T::period;
    moment.time_since_epoch();
};

/// Seconds since the clock of the moment began.
template <Moment T>
double secondsOf(const T& moment)
{
    return std::chrono::duration<double>(moment.time_since_epoch()).count();
}

/// Whether moments of that type are dates, and not only distances in time.
template <Moment T>
inline constexpr bool IS_DATE = std::same_as<typename T::clock, std::chrono::system_clock>;

template <Number T>
constexpr NumberType numberTypeOf()
{
    if constexpr (std::is_floating_point_v<T>)
        return sizeof(T) == sizeof(float) ? NumberType::Float32 : NumberType::Float64;
    else if constexpr (sizeof(T) == 1)
        return std::is_signed_v<T> ? NumberType::Int8 : NumberType::UInt8;
    else if constexpr (sizeof(T) == 2)
        return std::is_signed_v<T> ? NumberType::Int16 : NumberType::UInt16;
    else if constexpr (sizeof(T) == 4)
        return std::is_signed_v<T> ? NumberType::Int32 : NumberType::UInt32;
    else
        return std::is_signed_v<T> ? NumberType::Int64 : NumberType::UInt64;
}

template <typename Range>
using ElementOf = std::remove_cvref_t<decltype(*std::data(std::declval<const std::remove_reference_t<Range>&>()))>;

/// What lies side by side in memory: a vector, an array, a span, a QVector, a C array.
template <typename Range>
concept Contiguous = requires(const std::remove_reference_t<Range>& range)
{
    *std::data(range);
    {
        std::size(range)
        } -> std::convertible_to<std::size_t>;
};

/// A vector, row, column or block of Eigen's, whose elements may lie apart.
template <typename Vector>
concept Strided = requires(const std::remove_reference_t<Vector>& vector)
{
    vector.data();
    vector.innerStride();
    vector.outerStride();
    vector.rows();
    vector.cols();
};

/// What was taken of the numbers of a call: all, or none where memory ran out.
class TakenNumbers : public NumberArray
{
public:
    /// Whether memory ran out while copying. They are empty then.
    bool areTooMany() const { return m_AreTooMany; }

protected:
    // Nothing is thrown at the caller.
    template <typename Take>
    void takeWhatFits(Take takeThem) noexcept
    {
        if (isShowOff())
            return;
        try {
            takeThem();
        } catch (const std::exception&) {
            m_AreTooMany = true;
        }
    }

private:
    bool m_AreTooMany = false;
};

/// Numbers of a call: a range of any arithmetic type, such as a `std::vector<double>`, a `std::array`, a span, a C
/// array or a vector of Eigen's; `{1, 2, 3}`; or a pointer and a count. They are copied, and keep their type; of a
/// vector that is moved in, nothing is copied. Where nothing is shown, nothing is copied or moved at all. Time points
/// of `std::chrono` are seconds since their clock began.
///
///     const std::vector<double> pressures{100.2, 100.9, 101.1};
///     tavo::plot("pressure").curve("inlet", pressures).curve("limits", {100.0, 101.5});
class Numbers : public TakenNumbers
{
public:
    Numbers() = default;

    template <typename Range>
    // NOLINTNEXTLINE(bugprone-forwarding-reference-overload): what is required leaves copies and moves alone
    requires(!std::derived_from<std::remove_cvref_t<Range>, NumberArray>) Numbers(Range&& range)
    {
        takeOrRefuse(std::forward<Range>(range));
    }

    template <Number T>
    Numbers(std::initializer_list<T> numbers)
    {
        copy(numbers.begin(), numbers.size(), 1);
    }
    Numbers(std::initializer_list<double> numbers) { copy(numbers.begin(), numbers.size(), 1); }

    template <Moment T>
    Numbers(std::initializer_list<T> moments)
    {
        copyMoments(moments.begin(), moments.size());
    }

    template <Number T>
    Numbers(const T* numbers, std::size_t count)
    {
        copy(numbers, numbers ? count : 0, 1);
    }

    /// Whether they are seconds since 1970, of time points of the system's clock.
    bool areDates() const { return m_AreDates; }

private:
    template <typename Range>
    void takeOrRefuse(Range&& range)
    {
        using Plain = std::remove_cvref_t<Range>;
        if constexpr (Strided<Plain>) {
            static_assert(Plain::IsVectorAtCompileTime,
                "vireo: a matrix is not a series of numbers: send one of its rows or columns.");
            copy(range.data(), static_cast<std::size_t>(range.size()), range.innerStride());
        } else if constexpr (!Contiguous<Plain>) {
            static_assert(Contiguous<Plain>,
                "vireo: this is not a series of numbers: send what std::data and std::size "
                "know, such as a std::vector<double>. A std::vector<bool> has bits, no "
                "numbers.");
        } else if constexpr (Moment<ElementOf<Plain>>) {
            copyMoments(std::data(range), static_cast<std::size_t>(std::size(range)));
        } else {
            static_assert(Number<ElementOf<Plain>>,
                "vireo: these are not numbers: characters, bool and structures have no place on an axis.");
            if constexpr (Number<ElementOf<Plain>>)
                take(std::forward<Range>(range));
        }
    }

    template <typename Range>
    void take(Range&& range)
    {
        using T = ElementOf<Range>;
        if constexpr (std::same_as<Range, std::vector<T>> && sizeof(T) <= sizeof(double))
            takeWhatFits([&] { keep(std::forward<Range>(range)); });
        else
            copy(std::data(range), static_cast<std::size_t>(std::size(range)), 1);
    }

    // Numbers wider than a double are copied as doubles.
    template <Number T>
    void copy(const T* numbers, std::size_t count, std::ptrdiff_t stride)
    {
        using Kept = std::conditional_t<(sizeof(T) > sizeof(double)), double, T>;
        takeWhatFits([=, this] {
            if constexpr (std::same_as<Kept, T>)
                if (stride == 1 && !areFewBytes(count * sizeof(T)))
                    return share(numbers, count);
            std::vector<Kept> copied;
            if (stride == 1) {
                copied.assign(numbers, numbers + count);
            } else {
                copied.reserve(count);
                for (std::size_t i = 0; i < count; ++i)
                    copied.push_back(static_cast<Kept>(numbers[static_cast<std::ptrdiff_t>(i) * stride]));
            }
            if constexpr (!std::same_as<Kept, T>)
                sayIfBeyondDouble(numbers, stride, copied);
            keep(std::move(copied));
        });
    }

    template <Moment T>
    void copyMoments(const T* moments, std::size_t count)
    {
        takeWhatFits([=, this] {
            std::vector<double> seconds(count);
            std::transform(moments, moments + count, seconds.begin(), secondsOf<T>);
            keep(std::move(seconds));
            m_AreDates = IS_DATE<T>;
        });
    }

    template <Number T>
    static void sayIfBeyondDouble(const T* numbers, std::ptrdiff_t stride, const std::vector<double>& copied)
    {
        for (std::size_t i = 0; i < copied.size(); ++i)
            if (std::isinf(copied[i]) && !std::isinf(numbers[static_cast<std::ptrdiff_t>(i) * stride]))
                return sayBeyondDouble();
    }

    // Copies them, unless there is a copy.
    template <Number T>
    void share(const T* numbers, std::size_t count)
    {
        NumberArray::operator=(findRecentCopy(numbers, count, numberTypeOf<T>()));
        if (!isEmpty())
            return;
        keep(std::vector<T>(numbers, numbers + count));
        rememberCopy(numbers, *this);
    }

    template <Number T>
    void keep(std::vector<T>&& numbers)
    {
        const auto kept = std::make_shared<const std::vector<T>>(std::move(numbers));
        NumberArray::operator=(NumberArray(kept, kept->data(), kept->size(), numberTypeOf<T>()));
    }

    bool m_AreDates = false;
};

} // namespace tavo
