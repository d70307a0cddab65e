#include "vireo/show/delivery/recentCopies.h"

#include <gtest/gtest.h>
#include <numeric>
#include <sys/mman.h>
#include <unistd.h>

#include "vireo/show/Numbers.h"

namespace tavo {
namespace {

// Numbers of whole pages, which can be taken away from who reads them.
class RecentCopiesTest : public testing::Test
{
protected:
    static constexpr std::size_t NUM_PAGES = 64;

    RecentCopiesTest()
        : m_Size(NUM_PAGES * m_PageSize / sizeof(double))
        , m_Numbers(static_cast<double*>(
              mmap(nullptr, NUM_PAGES * m_PageSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)))
    {
        std::iota(m_Numbers, m_Numbers + m_Size, 0.0);
    }

    ~RecentCopiesTest() override { munmap(m_Numbers, NUM_PAGES * m_PageSize); }

    bool isFound() const { return !findRecentCopy(m_Numbers, m_Size, NumberType::Float64).isEmpty(); }

    // Pages without any of the numbers that are looked at first.
    void takePagesAway() { mprotect(m_Numbers + m_PageSize / sizeof(double), 3 * m_PageSize, PROT_NONE); }

    const std::size_t m_PageSize = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t m_Size;
    double* const m_Numbers;
};

TEST_F(RecentCopiesTest, AreNotReadThroughWhereNumbersHaveChangedAllOver)
{
    const Numbers copy(m_Numbers, m_Size);
    EXPECT_TRUE(isFound());
    // The second half: who reads from the start reads the pages.
    for (std::size_t i = m_Size / 2; i < m_Size; ++i)
        m_Numbers[i] += 0.5;
    takePagesAway();
    EXPECT_FALSE(isFound());
}

TEST_F(RecentCopiesTest, AreTakenForNoOthersWhereASingleNumberHasChanged)
{
    const Numbers copy(m_Numbers, m_Size);
    for (const std::size_t i : {std::size_t(0), std::size_t(1), m_Size / 2 + 1, m_Size - 2, m_Size - 1}) {
        m_Numbers[i] += 0.5;
        EXPECT_FALSE(isFound()) << i;
        m_Numbers[i] -= 0.5;
        EXPECT_TRUE(isFound()) << i;
    }
}

} // namespace
} // namespace tavo
