#include "vireo/show/scenes/ValueCounter.h"

#include <chrono>
#include <utility>

#include "tavo/base/debug/displayException.h"

namespace tavo {

namespace {

constexpr std::size_t FEW = 1 << 20; // which are counted in a few milliseconds
constexpr int UNTIL_ASKED = 20;      // in milliseconds, from one look whether they are counted to the next

bool areSame(const std::weak_ptr<const void>& one, const std::weak_ptr<const void>& other)
{
    return !one.owner_before(other) && !other.owner_before(one);
}

} // namespace

ValueCounter::ValueCounter(QObject* parent)
    : QObject(parent)
{
    m_AskSoon.setInterval(UNTIL_ASKED);
    connect(&m_AskSoon, &QTimer::timeout, this, [this] { runGuarded([this] { take(); }); });
}

ValueCounter::~ValueCounter()
{
    forget(); // the future waits for its thread
}

void ValueCounter::count(const NumberArray& numbers)
{
    if (areSame(m_Owner, numbers.getOwner()) && m_Data == numbers.getData())
        return;
    m_Owner = numbers.getOwner();
    m_Data = numbers.getData();
    if (m_Work.valid())
        m_Next = numbers;
    else if (numbers.size() <= FEW)
        emit counted(countValues(numbers));
    else
        begin(numbers);
}

void ValueCounter::begin(const NumberArray& numbers)
{
    m_IsUnwanted = std::make_shared<std::atomic<bool>>(false);
    m_Work = std::async(
        std::launch::async, [numbers, isUnwanted = m_IsUnwanted] { return countValues(numbers, isUnwanted.get()); });
    m_AskSoon.start();
}

void ValueCounter::take()
{
    if (m_Work.wait_for(std::chrono::seconds(0)) == std::future_status::timeout)
        return;
    m_AskSoon.stop();
    const ValueCounts counts = m_Work.get();
    if (!*m_IsUnwanted)
        emit counted(counts);
    if (!m_Next.isEmpty())
        begin(std::exchange(m_Next, {}));
}

void ValueCounter::forget()
{
    m_Owner.reset();
    m_Data = nullptr;
    m_Next = {};
    if (m_IsUnwanted)
        *m_IsUnwanted = true;
}

} // namespace tavo
