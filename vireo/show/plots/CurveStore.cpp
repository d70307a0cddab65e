#include "vireo/show/plots/CurveStore.h"

#include <algorithm>
#include <cmath>

namespace tavo {

namespace {

constexpr std::size_t BLOCK = 512;

void convert(const NumberArray& numbers, std::size_t i, std::size_t count, double* converted)
{
    numbers.visit([=](const auto* all, std::size_t) { std::copy(all + i, all + i + count, converted); });
}

} // namespace

void Extent::include(double value)
{
    if (!std::isfinite(value))
        return;
    from = std::min(from, value);
    to = std::max(to, value);
}

void Extent::include(const Extent& other)
{
    include(other.from);
    include(other.to);
}

void CurveStore::apply(CurveUpdate& update)
{
    if (update.isRemoved)
        *this = CurveStore();
    if (update.kept)
        m_Kept = *update.kept;
    if (update.samples) {
        m_Sent = std::move(*update.samples);
        m_AppendedX.clear();
        m_AppendedY.clear();
    }
    for (const AppendedSamples& piece : update.appended)
        append(piece);
    if (update.isRemoved || update.samples || !update.appended.empty() || update.kept)
        measure();
}

double CurveStore::x(std::size_t i) const
{
    if (!m_AppendedX.empty())
        return m_AppendedX[i];
    return m_Sent.x.isEmpty() ? static_cast<double>(i) : m_Sent.x[i];
}

double CurveStore::y(std::size_t i) const
{
    return m_AppendedY.empty() ? m_Sent.y[i] : m_AppendedY[i];
}

void CurveStore::read(std::size_t i, std::size_t count, double* x, double* y) const
{
    if (!m_AppendedX.empty()) {
        std::copy_n(m_AppendedX.begin() + static_cast<std::ptrdiff_t>(i), count, x);
        std::copy_n(m_AppendedY.begin() + static_cast<std::ptrdiff_t>(i), count, y);
        return;
    }
    convert(m_Sent.y, i, count, y);
    if (!m_Sent.x.isEmpty())
        convert(m_Sent.x, i, count, x);
    else
        for (std::size_t j = 0; j < count; ++j)
            x[j] = static_cast<double>(i + j);
}

std::size_t CurveStore::lowerBound(double value) const
{
    std::size_t first = 0;
    std::size_t last = size();
    while (first < last) {
        const std::size_t middle = first + (last - first) / 2;
        if (x(middle) < value)
            first = middle + 1;
        else
            last = middle;
    }
    return first;
}

void CurveStore::append(const AppendedSamples& samples)
{
    // What was sent before is the beginning of what is appended to.
    if (m_AppendedX.empty() && !m_Sent.y.isEmpty()) {
        std::deque<double> sentX(m_Sent.y.size());
        std::deque<double> sentY(m_Sent.y.size());
        for (std::size_t i = 0; i < sentX.size(); ++i) {
            sentX[i] = x(i);
            sentY[i] = y(i);
        }
        m_AppendedX.swap(sentX);
        m_AppendedY.swap(sentY);
    }
    m_AppendedX.insert(m_AppendedX.end(), samples.x.begin(), samples.x.end());
    m_AppendedY.insert(m_AppendedY.end(), samples.y.begin(), samples.y.end());
    m_Sent.x = {};
    m_Sent.y = {};
}

void CurveStore::measure()
{
    if (m_AppendedX.size() > m_Kept) {
        const auto numOld = static_cast<std::ptrdiff_t>(m_AppendedX.size() - m_Kept);
        m_AppendedX.erase(m_AppendedX.begin(), m_AppendedX.begin() + numOld);
        m_AppendedY.erase(m_AppendedY.begin(), m_AppendedY.begin() + numOld);
    }
    m_XExtent = {};
    m_YExtent = {};
    m_NumInfinite = 0;
    m_IsSorted = true;
    double before = -std::numeric_limits<double>::infinity();
    double x[BLOCK];
    double y[BLOCK];
    for (std::size_t i = 0; i < size(); i += BLOCK) {
        const std::size_t count = std::min(BLOCK, size() - i);
        read(i, count, x, y);
        for (std::size_t j = 0; j < count; ++j) {
            m_IsSorted = m_IsSorted && x[j] >= before;
            before = x[j];
            m_NumInfinite += std::isinf(x[j]) || std::isinf(y[j]);
            if (std::isfinite(x[j]) && std::isfinite(y[j])) {
                m_XExtent.include(x[j]);
                m_YExtent.include(y[j]);
            }
        }
    }
}

} // namespace tavo
