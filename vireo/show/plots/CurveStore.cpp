#include "vireo/show/plots/CurveStore.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>
#include <utility>

namespace tavo {

namespace {

constexpr std::size_t BLOCK = 512;

void convert(const NumberArray& numbers, std::size_t i, std::size_t count, double* converted)
{
    numbers.visit([=](const auto* all, std::size_t) { std::copy(all + i, all + i + count, converted); });
}

// Appends the last `count` of some numbers.
void addLast(NumberQueue& all, const NumberArray& numbers, std::size_t count)
{
    numbers.visit([&](const auto* first, std::size_t size) { all.append(first + (size - count), count); });
}

// Numbers that are counted from the first that ever was.
class Counted
{
public:
    Counted(const NumberQueue& numbers, std::size_t numDropped)
        : m_Numbers(numbers)
        , m_NumDropped(numDropped)
    {}

    double operator[](std::size_t i) const { return m_Numbers[i - m_NumDropped]; }

private:
    const NumberQueue& m_Numbers;
    std::size_t m_NumDropped;
};

template <typename Values>
std::size_t numInfiniteOf(const Values& values, std::size_t first, std::size_t last)
{
    std::size_t number = 0;
    for (std::size_t i = first; i < last; ++i)
        number += std::isinf(static_cast<double>(values[i]));
    return number;
}

template <typename Values>
bool isSorted(const Values& values, std::size_t first, std::size_t last)
{
    constexpr std::size_t LANES = 4; // several at once
    std::size_t numRight[LANES] = {};
    const std::size_t second = std::max<std::size_t>(first, 1);
    std::size_t i = second;
    for (; i + LANES <= last; i += LANES)
        for (std::size_t lane = 0; lane < LANES; ++lane)
            numRight[lane] += values[i + lane - 1] <= values[i + lane];
    for (; i < last; ++i)
        numRight[0] += values[i - 1] <= values[i];
    const bool isRight = second >= last || std::accumulate(numRight, numRight + LANES, std::size_t{0}) == last - second;
    const auto isFinite = [&values](std::size_t i) { return std::isfinite(static_cast<double>(values[i])); };
    return isRight && (first == last || (isFinite(first) && isFinite(last - 1)));
}

// Curves that come together often stand over the same numbers, which are looked at once.
bool isSorted(const NumberArray& numbers)
{
    struct Known
    {
        std::weak_ptr<const void> owner;
        NumberArray numbers; // not kept alive
        bool areSorted = false;
    };
    thread_local Known known;
    const std::shared_ptr<const void>& owner = numbers.getOwner();
    if (owner && known.numbers.isSame(numbers) && known.owner.lock() == owner)
        return known.areSorted;
    const bool areSorted = numbers.visit([](const auto* first, std::size_t size) { return isSorted(first, 0, size); });
    known = {owner, {nullptr, numbers.getData(), numbers.size(), numbers.getType()}, areSorted};
    return areSorted;
}

// Looks around the guess first, farther and farther.
template <typename Values>
std::size_t lowerBound(const Values& values, std::size_t size, double value, std::size_t guess)
{
    const auto isBefore = [&](std::size_t i) { return static_cast<double>(values[i]) < value; };
    std::size_t first = std::min(guess, size);
    std::size_t last = first;
    for (std::size_t step = 1; first > 0 && !isBefore(first - 1); step *= 2) {
        last = first - 1;
        first -= std::min(first, step);
    }
    for (std::size_t step = 1; last < size && isBefore(last); step *= 2) {
        first = last + 1;
        last += std::min(size - last, step);
    }
    while (first < last) {
        const std::size_t middle = first + (last - first) / 2;
        if (isBefore(middle))
            first = middle + 1;
        else
            last = middle;
    }
    return first;
}

} // namespace

void CurveStore::apply(CurveUpdate& update)
{
    if (update.isRemoved)
        *this = CurveStore();
    m_SmallestPositiveX.reset();
    m_SmallestPositiveY.reset();
    if (update.kept)
        m_Kept = *update.kept;
    if (update.samples)
        take(std::move(*update.samples));
    const bool isChanged = update.isReplacing() || update.kept || !update.appended.empty();
    for (; !update.appended.empty(); update.appended.pop_front()) // each goes once it is copied
        append(update.appended.front());
    dropOldSamples();
    if (isChanged)
        measureExtents();
}

void CurveStore::clear()
{
    const std::size_t kept = m_Kept;
    *this = CurveStore();
    m_Kept = kept;
}

void CurveStore::replace(CurveSamples samples)
{
    take(std::move(samples));
    measureExtents();
}

void CurveStore::take(CurveSamples&& samples)
{
    clear();
    m_Sent = std::move(samples);
    m_Sent.y.visit([this](const auto* y, std::size_t) { m_Pyramid = Pyramid(sizeof *y); });
    measureX(0);
    measureY(0);
}

double CurveStore::x(std::size_t i) const
{
    if (isAppended())
        return m_AppendedX[i];
    return m_Sent.x.isEmpty() ? static_cast<double>(i) : m_Sent.x[i];
}

double CurveStore::y(std::size_t i) const
{
    return isAppended() ? m_AppendedY[i] : m_Sent.y[i];
}

void CurveStore::read(std::size_t i, std::size_t count, double* x, double* y) const
{
    if (isAppended()) {
        m_AppendedX.read(i, count, x);
        m_AppendedY.read(i, count, y);
        return;
    }
    convert(m_Sent.y, i, count, y);
    if (!m_Sent.x.isEmpty())
        convert(m_Sent.x, i, count, x);
    else
        for (std::size_t j = 0; j < count; ++j)
            x[j] = static_cast<double>(i + j);
}

Extremes CurveStore::extremes(std::size_t first, std::size_t last) const
{
    if (!isAppended())
        return m_Sent.y.visit([&](const auto* y, std::size_t) { return m_Pyramid.extremes(y, first, last); });
    Extremes found = m_Pyramid.extremes(Counted(m_AppendedY, m_NumDropped), m_NumDropped + first, m_NumDropped + last);
    if (!found.extent.isEmpty()) {
        found.lowest -= m_NumDropped;
        found.highest -= m_NumDropped;
    }
    return found;
}

Extent CurveStore::yExtentWithin(double firstX, double lastX) const
{
    if (!m_IsSorted || m_XExtent.isEmpty() || (firstX <= m_XExtent.from && lastX >= m_XExtent.to))
        return m_YExtent;
    const std::size_t first = lowerBound(firstX);
    const std::size_t last = lowerBound(std::nextafter(lastX, INFINITY), first);
    const bool isBetween = first == last && first > 0 && last < size();
    return (isBetween ? extremes(first - 1, last + 1) : extremes(first, last)).extent;
}

template <typename Visit>
void CurveStore::visitEach(std::size_t first, std::size_t last, const Visit& visit) const
{
    double x[BLOCK];
    double y[BLOCK];
    for (; first < last; first += std::min(BLOCK, last - first)) {
        const std::size_t count = std::min(BLOCK, last - first);
        read(first, count, x, y);
        for (std::size_t i = 0; i < count; ++i)
            visit(x[i], y[i]);
    }
}

template <typename Visit>
void CurveStore::visitFinite(std::size_t first, std::size_t last, const Visit& visit) const
{
    visitEach(first, last, [&visit](double x, double y) {
        if (std::isfinite(x) && std::isfinite(y))
            visit(x, y);
    });
}

std::size_t CurveStore::firstPositive() const
{
    return lowerBound(std::numeric_limits<double>::denorm_min());
}

double CurveStore::smallestPositiveX() const
{
    if (m_SmallestPositiveX)
        return *m_SmallestPositiveX;
    double smallest = INFINITY;
    if (m_IsSorted)
        smallest = firstPositive() < size() ? x(firstPositive()) : INFINITY;
    else
        visitFinite(0, size(), [&](double x, double) { smallest = x > 0 ? std::min(x, smallest) : smallest; });
    m_SmallestPositiveX = smallest;
    return smallest;
}

double CurveStore::smallestPositiveY() const
{
    if (!m_SmallestPositiveY)
        m_SmallestPositiveY = m_YExtent.from > 0 ? m_YExtent.from : positiveYs(0, size()).smallest;
    return *m_SmallestPositiveY;
}

CurveStore::Positive CurveStore::positiveYs(std::size_t first, std::size_t last) const
{
    Positive found;
    const auto isWanted = [&found](const Extent& extent) {
        if (!extent.isEmpty() && extent.from > 0)
            found.smallest = std::min(found.smallest, extent.from);
        return !extent.isEmpty() && extent.from <= 0;
    };
    visit(first, last, isWanted, [&](std::size_t from, std::size_t to) {
        visitFinite(from, to, [&found](double, double y) {
            found.numOthers += !(y > 0);
            found.smallest = y > 0 ? std::min(found.smallest, y) : found.smallest;
        });
    });
    return found;
}

std::size_t CurveStore::numNotPositive(bool isXLog, bool isYLog) const
{
    std::size_t number = 0;
    std::size_t first = 0; // of those that have a place on the axis of x
    if (isXLog) {
        first = m_IsSorted ? firstPositive() : size();
        visitFinite(0, first, [&](double x, double y) { number += !(x > 0) || (isYLog && !(y > 0)); });
    }
    return number + (isYLog ? positiveYs(first, size()).numOthers : 0);
}

std::size_t CurveStore::lowerBound(double value, std::size_t guess) const
{
    if (isAppended())
        return tavo::lowerBound(m_AppendedX, size(), value, guess);
    if (m_Sent.x.isEmpty())
        return static_cast<std::size_t>(std::clamp(std::ceil(value), 0.0, static_cast<double>(size())));
    return m_Sent.x.visit([&](const auto* x, std::size_t count) { return tavo::lowerBound(x, count, value, guess); });
}

void CurveStore::append(const AppendedSamples& samples)
{
    if (!isAppended())
        continueSent();
    const std::size_t count = std::min(samples.size(), m_Kept);
    dropOldSamples(count);
    const std::size_t numBefore = m_AppendedX.size();
    addLast(m_AppendedX, samples.x(), count);
    addLast(m_AppendedY, samples.y(), count);
    measureX(numBefore);
    measureY(numBefore);
}

// What was sent before is the beginning of what is appended to.
void CurveStore::continueSent()
{
    const std::size_t size = m_Sent.y.size();
    const std::size_t count = std::min(size, m_Kept);
    if (m_Sent.x.isEmpty())
        for (std::size_t i = size - count; i < size; ++i)
            m_AppendedX.push_back(static_cast<double>(i));
    else
        addLast(m_AppendedX, std::exchange(m_Sent.x, {}), count);
    addLast(m_AppendedY, std::exchange(m_Sent.y, {}), count);
    m_Pyramid = Pyramid();
    m_NumDropped = 0;
    m_NumInfinite = 0;
    measureY(0);
}

// Makes room for new ones, too, of which there are no more than are kept.
void CurveStore::dropOldSamples(std::size_t numNew)
{
    if (m_AppendedX.size() + numNew <= m_Kept)
        return;
    const std::size_t numOld = m_AppendedX.size() + numNew - m_Kept;
    m_NumInfinite -= numInfiniteOf(m_AppendedY, 0, numOld);
    m_AppendedX.drop(numOld);
    m_AppendedY.drop(numOld);
    m_NumDropped += numOld;
    m_Pyramid.drop(m_NumDropped);
}

void CurveStore::measureX(std::size_t first)
{
    if (isAppended())
        m_IsSorted = m_IsSorted && tavo::isSorted(m_AppendedX, first, m_AppendedX.size());
    else
        m_IsSorted = tavo::isSorted(m_Sent.x);
}

void CurveStore::measureY(std::size_t first)
{
    if (isAppended()) {
        m_Pyramid.extend(Counted(m_AppendedY, m_NumDropped), m_NumDropped + m_AppendedY.size(), m_NumDropped);
        m_NumInfinite += numInfiniteOf(m_AppendedY, first, m_AppendedY.size());
        return;
    }
    m_Sent.y.visit([this](const auto* y, std::size_t size) {
        m_NumInfinite = m_Pyramid.extend(y, size);
        m_NumInfinite += numInfiniteOf(y, m_Pyramid.end(), size);
    });
}

void CurveStore::measureExtents()
{
    m_XExtent = {};
    m_YExtent = {};
    m_NumInfiniteX = 0;
    if (m_IsSorted)
        return measureSortedExtents();
    visitEach(0, size(), [this](double x, double y) {
        m_NumInfiniteX += std::isinf(x);
        if (!std::isfinite(x) || !std::isfinite(y))
            return;
        m_XExtent.include(x);
        m_YExtent.include(y);
    });
}

void CurveStore::measureSortedExtents()
{
    m_YExtent = extremes(0, size()).extent;
    if (m_YExtent.isEmpty())
        return;
    std::size_t first = 0;
    std::size_t last = size() - 1;
    while (!std::isfinite(y(first)))
        ++first;
    while (!std::isfinite(y(last)))
        --last;
    m_XExtent.include(x(first));
    m_XExtent.include(x(last));
}

} // namespace tavo
