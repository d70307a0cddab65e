#include "python/NumberArgument.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <span>
#include <utility>

#include "python/recycledMemory.h"

namespace tavo::python {

namespace {

NumberType numberTypeOfKind(char kind, py::ssize_t bytes)
{
    if (kind == 'f')
        return bytes == 4 ? NumberType::Float32 : NumberType::Float64;
    const bool isSigned = kind == 'i';
    switch (bytes) {
    case 1: return isSigned ? NumberType::Int8 : NumberType::UInt8;
    case 2: return isSigned ? NumberType::Int16 : NumberType::UInt16;
    case 4: return isSigned ? NumberType::Int32 : NumberType::UInt32;
    default: return isSigned ? NumberType::Int64 : NumberType::UInt64;
    }
}

// Numbers need not lie where the processor would like them.
template <typename T>
T numberAt(const char* place)
{
    T number;
    std::memcpy(&number, place, sizeof number);
    return number;
}

template <typename T>
void appendNumbers(
    const char* first, std::span<const std::size_t> shape, std::span<const std::ptrdiff_t> strides, T*& next)
{
    if (shape.empty()) {
        *next++ = numberAt<T>(first);
        return;
    }
    const bool isLast = shape.size() == 1;
    for (std::size_t i = 0; i < shape[0]; ++i, first += strides[0])
        if (isLast)
            *next++ = numberAt<T>(first);
        else
            appendNumbers(first, shape.subspan(1), strides.subspan(1), next);
}

// A copy in memory of an earlier one.
class Copied : public Numbers
{
public:
    // Of many numbers that lie side by side.
    template <typename T>
    Copied(const T* first, std::size_t size)
    {
        takeWhatFits([&] {
            NumberArray::operator=(findRecentCopy(first, size, numberTypeOf<T>()));
            if (!isEmpty())
                return;
            fill<T>(size, [&](T* numbers) { std::memcpy(numbers, first, size * sizeof(T)); });
            rememberCopy(first, *this);
        });
    }

    // Of numbers that lie apart.
    template <typename T>
    Copied(T, const char* first, std::span<const std::size_t> shape, std::span<const std::ptrdiff_t> strides,
        std::size_t size)
    {
        takeWhatFits([&] { fill<T>(size, [&](T* numbers) { appendNumbers(first, shape, strides, numbers); }); });
    }

private:
    template <typename T, typename Fill>
    void fill(std::size_t size, Fill fillIt)
    {
        if (size == 0)
            return;
        const std::shared_ptr<std::byte> memory = recycledMemory(size * sizeof(T));
        auto* const numbers = reinterpret_cast<T*>(memory.get());
        fillIt(numbers);
        NumberArray::operator=(NumberArray(memory, numbers, size, numberTypeOf<T>()));
    }
};

std::string textOf(const py::handle& object)
{
    return py::cast<std::string>(py::str(object));
}

py::object numpy(const char* name)
{
    return py::module_::import("numpy").attr(name);
}

// NaN where an element is masked.
py::array withoutMask(const py::handle& masked)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    return py::array::ensure(masked.attr("astype")("f8").attr("filled")(nan));
}

py::array seconds(const py::array& moments)
{
    const py::object since = moments.attr("__sub__")(numpy("datetime64")(0, "s"));
    return py::array::ensure(since.attr("__truediv__")(numpy("timedelta64")(1, "s")));
}

// The same of dates and times of Python's, which are local where they name no time zone; none if anything else is among
// them.
std::optional<py::array> secondsOfPythonsMoments(const py::array& objects)
{
    const py::module_ datetime = py::module_::import("datetime");
    const py::object date = datetime.attr("date");
    const py::object dateAndTime = datetime.attr("datetime"); // which is a date, too
    const py::object midnight = datetime.attr("time")();
    py::array_t<double> seconds(std::vector<py::ssize_t>(objects.shape(), objects.shape() + objects.ndim()));
    double* next = seconds.mutable_data();
    for (const py::handle object : objects.attr("flat")) {
        auto moment = py::reinterpret_borrow<py::object>(object);
        if (!py::isinstance(moment, date))
            return {};
        if (!py::isinstance(moment, dateAndTime))
            moment = dateAndTime.attr("combine")(moment, midnight);
        *next++ = py::cast<double>(moment.attr("timestamp")());
    }
    return seconds;
}

} // namespace

NumberArgument::NumberArgument(const py::handle& argument, const char* what)
    : m_What(what)
{
    if (isShowOff())
        return;
    m_IsLookedAt = true;
    takeNumbers(argument);
    convertToPlainNumbers();
    m_Type = numberTypeOfKind(m_Array.dtype().kind(), m_Array.itemsize());
    m_Data = static_cast<const char*>(m_Array.data());
    m_Size = static_cast<std::size_t>(m_Array.size());
    for (py::ssize_t i = 0; i < m_Array.ndim(); ++i) {
        m_Shape.push_back(static_cast<std::size_t>(m_Array.shape(i)));
        m_Strides.push_back(m_Array.strides(i));
    }
    const auto has = [this](int flag) { return (m_Array.flags() & flag) != 0; };
    m_IsSideBySide = has(py::array::c_style) && has(py::detail::npy_api::NPY_ARRAY_ALIGNED_);
}

void NumberArgument::takeNumbers(const py::handle& argument)
{
    m_Array = py::array::ensure(argument);
    if (!m_Array)
        refuse(
            "is a " + textOf(py::type::handle_of(argument).attr("__name__")) + ", which numpy cannot make an array of");
    if (m_Array.dtype().kind() == 'O' && m_Array.size() > 0)
        takePythonsMoments();
    switch (m_Array.dtype().kind()) {
    case 'i':
    case 'u':
    case 'f':
    case 'M':
    case 'm': break;
    case 'b': refuse("is made of bool, which .astype(int) turns into numbers");
    case 'c': refuse("is made of complex numbers: send .real, .imag or abs() of them");
    default: refuse("is made of " + textOf(m_Array.dtype()) + ", which is not a type of numbers");
    }
    if (py::isinstance<py::array>(argument) && py::hasattr(argument, "filled"))
        m_Array = withoutMask(argument);
}

void NumberArgument::takePythonsMoments()
{
    if (const std::optional<py::array> seconds = secondsOfPythonsMoments(m_Array)) {
        m_Array = *seconds;
        m_AreMoments = true;
    }
}

// Of the types that C++ has: half a float and more than a double are others, and so is another order of bytes.
void NumberArgument::convertToPlainNumbers()
{
    const char kind = m_Array.dtype().kind();
    m_AreMoments |= kind == 'M';
    if (kind == 'M')
        m_Array = seconds(m_Array);
    else if (kind == 'm')
        m_Array = py::array::ensure(m_Array.attr("__truediv__")(numpy("timedelta64")(1, "s")));
    else if (kind == 'f' && m_Array.itemsize() == 2)
        m_Array = py::array::ensure(m_Array.attr("astype")("f4"));
    else if (kind == 'f' && m_Array.itemsize() > 8)
        m_Array = py::array::ensure(m_Array.attr("astype")("f8"));
    else if (!py::cast<bool>(m_Array.dtype().attr("isnative")))
        m_Array = py::array::ensure(m_Array.attr("astype")(m_Array.dtype().attr("newbyteorder")("=")));
}

void NumberArgument::requireSeries() const
{
    if (m_IsLookedAt && m_Shape.size() != 1)
        refuseShape("(n,): send one row or column");
}

void NumberArgument::requireTuples(std::initializer_list<std::size_t> widths) const
{
    if (!m_IsLookedAt || m_Shape.size() == 1)
        return;
    if (m_Shape.size() == 2 && std::find(widths.begin(), widths.end(), m_Shape[1]) != widths.end())
        return;
    std::string wanted;
    for (const std::size_t width : widths)
        wanted += (wanted.empty() ? "(n, " : " or (n, ") + std::to_string(width) + ")";
    refuseShape(wanted);
}

void NumberArgument::requireOne() const
{
    if (m_IsLookedAt && !m_Shape.empty())
        refuseShape("(): send one number");
}

void NumberArgument::requireWholeNumbers() const
{
    if (m_Type != NumberType::Float32 && m_Type != NumberType::Float64)
        return;
    const Numbers numbers = copy();
    for (std::size_t i = 0; i < numbers.size(); ++i)
        if (!isWhole(numbers[i]))
            refuse("has " + textOf(py::float_(numbers[i])) + ", which is not a whole number");
}

void NumberArgument::refuseShape(const std::string& wanted) const
{
    refuse("has the shape " + textOf(m_Array.attr("shape")) + " instead of " + wanted);
}

void NumberArgument::refuse(const std::string& why) const
{
    throw py::type_error(m_What + " " + why);
}

bool isWhole(double number)
{
    constexpr double LARGEST = 9007199254740992.0; // beyond which not every whole number is a double
    return std::abs(number) <= LARGEST && number == std::floor(number);
}

double NumberArgument::number() const
{
    const Numbers numbers = copy();
    return numbers.isEmpty() ? 0.0 : numbers[0];
}

Numbers NumberArgument::copy() const
{
    if (!m_IsLookedAt)
        return {};
    const NumberArray numbers(nullptr, m_Data, m_Size, m_Type);
    return numbers.visit([this]<typename T>(const T* first, std::size_t size) -> Numbers {
        if (!m_IsSideBySide)
            return Copied(T(), m_Data, m_Shape, m_Strides, m_Size);
        return areFewBytes(size * sizeof(T)) ? Numbers(first, size) : Copied(first, size);
    });
}

} // namespace tavo::python
