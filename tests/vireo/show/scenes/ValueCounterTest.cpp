#include "vireo/show/scenes/ValueCounter.h"

#include <gtest/gtest.h>
#include <optional>
#include <vector>

#include "tests/support/userEvents.h"

namespace tavo {
namespace {

NumberArray arrayOf(std::size_t size, float last)
{
    auto owner = std::make_shared<std::vector<float>>(size);
    owner->back() = last;
    return {owner, owner->data(), owner->size(), NumberType::Float32};
}

// Who shows what was counted.
class ValueCounterTest : public testing::Test
{
protected:
    ValueCounterTest()
    {
        QObject::connect(m_Counter.get(), &ValueCounter::counted, [this](const ValueCounts& counts) {
            m_Counts = counts;
            ++m_NumTold;
        });
    }

    bool waitFor(double greatest)
    {
        return QTest::qWaitFor([&] { return m_Counts && m_Counts->greatest == greatest; }, 60000);
    }

    static constexpr std::size_t MANY = 3'000'000;

    std::unique_ptr<ValueCounter> m_Counter = std::make_unique<ValueCounter>(nullptr);
    std::optional<ValueCounts> m_Counts;
    int m_NumTold = 0;
};

TEST_F(ValueCounterTest, CountsFewAtOnce)
{
    m_Counter->count(arrayOf(100, 7));
    ASSERT_TRUE(m_Counts);
    EXPECT_EQ(m_Counts->counts, countValues(arrayOf(100, 7)).counts);
}

TEST_F(ValueCounterTest, CountsManyMeanwhile)
{
    const NumberArray numbers = arrayOf(MANY, 7);
    m_Counter->count(numbers);
    EXPECT_FALSE(m_Counts) << "nobody waits for them";
    ASSERT_TRUE(waitFor(7));
    EXPECT_EQ(m_Counts->counts, countValues(numbers).counts);
    m_Counter->count(numbers);
    QTest::qWait(50);
    EXPECT_EQ(m_NumTold, 1) << "once";
}

TEST_F(ValueCounterTest, TheNewestAreNext)
{
    for (const float last : {1.0F, 2.0F, 3.0F, 4.0F})
        m_Counter->count(arrayOf(MANY, last));
    ASSERT_TRUE(waitFor(4));
    EXPECT_LE(m_NumTold, 2) << "those in between are left out";
}

TEST_F(ValueCounterTest, OfWhatIsForgottenNothingIsTold)
{
    m_Counter->count(arrayOf(MANY, 1));
    m_Counter->forget();
    m_Counter->count(arrayOf(MANY, 2));
    ASSERT_TRUE(waitFor(2));
    EXPECT_EQ(m_NumTold, 1);
}

TEST_F(ValueCounterTest, MayGoWhileItCounts)
{
    m_Counter->count(arrayOf(MANY, 1));
    m_Counter.reset();
    QTest::qWait(20);
    EXPECT_EQ(m_NumTold, 0);
}

// What would take long ends early.
TEST_F(ValueCounterTest, CountingEndsOnceItIsUnwanted)
{
    const std::atomic<bool> isUnwanted = true;
    EXPECT_TRUE(countValues(arrayOf(MANY, 1), &isUnwanted).areNone());
}

} // namespace
} // namespace tavo
