#include "vireo/show/plots/CurveStore.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>

#include "tests/vireo/show/plots/curves.h"

namespace tavo {

namespace {

class CurveStoreTest : public testing::Test
{
protected:
    void send(std::vector<double> x, std::vector<double> y)
    {
        CurveUpdate update = samples(std::move(x), std::move(y));
        m_Store.apply(update);
    }

    void append(std::vector<double> x, std::vector<double> y)
    {
        CurveUpdate update;
        update.append({numbers(std::move(x)), numbers(std::move(y))});
        m_Store.apply(update);
    }

    CurveStore m_Store;
};

TEST_F(CurveStoreTest, MeasuresWhatIsFinite)
{
    send({0, 1, 2, 3, 4}, {NAN, 5, INFINITY, -3, NAN});
    EXPECT_EQ(m_Store.xExtent().from, 1);
    EXPECT_EQ(m_Store.xExtent().to, 3);
    EXPECT_EQ(m_Store.yExtent().from, -3);
    EXPECT_EQ(m_Store.yExtent().to, 5);
    EXPECT_EQ(m_Store.numInfinite(), 1u);
}

TEST_F(CurveStoreTest, KnowsWhetherXIsSorted)
{
    send({0, 1, 1, 2}, {0, 0, 0, 0});
    EXPECT_TRUE(m_Store.isSorted());
    send({0, 2, 1}, {0, 0, 0});
    EXPECT_FALSE(m_Store.isSorted());
    send({0, NAN, 1}, {0, 0, 0});
    EXPECT_FALSE(m_Store.isSorted());
    send({0, 1, INFINITY}, {0, 0, 0});
    EXPECT_FALSE(m_Store.isSorted());
    EXPECT_EQ(m_Store.xExtent().to, 1);
}

TEST_F(CurveStoreTest, FindsAnXFromAnyGuess)
{
    send({0, 1, 1, 1, 2, 5}, {0, 0, 0, 0, 0, 0});
    for (std::size_t guess = 0; guess < 9; ++guess) {
        EXPECT_EQ(m_Store.lowerBound(-1, guess), 0u);
        EXPECT_EQ(m_Store.lowerBound(1, guess), 1u);
        EXPECT_EQ(m_Store.lowerBound(1.5, guess), 4u);
        EXPECT_EQ(m_Store.lowerBound(6, guess), 6u);
    }
}

TEST_F(CurveStoreTest, KnowsWhatLogarithmicAxesCanShow)
{
    std::vector<double> x(5000);
    std::vector<double> y(5000);
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = static_cast<double>(i) - 1000;
        y[i] = i < 2000 ? 7.0 + static_cast<double>(i) : static_cast<double>(i % 10) - 4; // blocks of both kinds
    }
    y[0] = -1;
    y[3000] = 0.25;
    y[10] = NAN;
    y[11] = -INFINITY;
    const auto expect = [&](const CurveStore& store) {
        EXPECT_EQ(store.smallestPositiveX(), 1);
        EXPECT_EQ(store.smallestPositiveY(), 0.25);
        EXPECT_EQ(store.numNotPositive(false, false), 0u);
        EXPECT_EQ(store.numNotPositive(true, false), 999u) << "of the finite ones";
        EXPECT_EQ(store.numNotPositive(false, true), 1u + 5 * 300 - 1);
        EXPECT_EQ(store.numNotPositive(true, true), 999u + 5 * 300 - 1);
    };
    CurveStore sorted;
    CurveUpdate update = samples(x, y);
    sorted.apply(update);
    expect(sorted);

    std::swap(x[4000], x[4001]);
    CurveStore toAndFro;
    update = samples(x, y);
    toAndFro.apply(update);
    expect(toAndFro);

    update = {};
    update.append({9000, 0.125});
    toAndFro.apply(update);
    EXPECT_EQ(toAndFro.smallestPositiveY(), 0.125);
}

TEST_F(CurveStoreTest, KnowsWhetherNumbersAreSortedThatCameInThePlaceOfOthers)
{
    double place[] = {0, 1, 2};
    const auto sendThem = [&] {
        const auto owner = std::make_shared<int>();
        CurveUpdate update;
        update.samples = CurveSamples{{owner, place, 3, NumberType::Float64}, numbers({1, 2, 3}), {}, CurveKind::Line};
        CurveStore store;
        store.apply(update);
        return store.isSorted();
    };
    EXPECT_TRUE(sendThem());
    place[0] = 3;
    EXPECT_FALSE(sendThem());
}

TEST_F(CurveStoreTest, AppendsToWhatWasSentAndForgetsTheOldest)
{
    send({0, 1}, {10, 11});
    append({2, 3}, {12, INFINITY});
    EXPECT_EQ(m_Store.size(), 4u);
    EXPECT_EQ(m_Store.y(1), 11);
    CurveUpdate update;
    update.kept = 1000;
    m_Store.apply(update);
    for (int i = 0; i < 5000; ++i)
        append({4.0 + i}, {double(i)});
    EXPECT_EQ(m_Store.size(), 1000u);
    EXPECT_EQ(m_Store.yExtent().from, 4000);
    EXPECT_EQ(m_Store.yExtent().to, 4999);
    EXPECT_EQ(m_Store.xExtent().from, 4004);
    EXPECT_EQ(m_Store.numInfinite(), 0u);
    EXPECT_TRUE(m_Store.isSorted());
    const Extremes extremes = m_Store.extremes(100, 900);
    EXPECT_EQ(extremes.lowest, 100u);
    EXPECT_EQ(extremes.highest, 899u);
}

// Numbers that call when they go.
NumberArray numbersWithEnd(std::size_t size, std::function<void()> whenTheyGo)
{
    auto* const values = new std::vector<double>(size);
    const std::shared_ptr<const double> owner(values->data(), [values, whenTheyGo](const double*) {
        delete values;
        whenTheyGo();
    });
    return {owner, owner.get(), size, NumberType::Float64};
}

TEST_F(CurveStoreTest, HasEachAppendedPieceGoOnceItIsCopied)
{
    std::vector<std::size_t> sizes;
    CurveUpdate update;
    update.kept = 1000;
    for (int i = 0; i < 3; ++i)
        update.append(
            {numbers(std::vector<double>(800)), numbersWithEnd(800, [&] { sizes.push_back(m_Store.size()); })});
    m_Store.apply(update);
    EXPECT_EQ(sizes, std::vector<std::size_t>({800, 1000, 1000}));
}

TEST_F(CurveStoreTest, CopiesNoMoreOfWhatIsAppendedThanItKeeps)
{
    CurveUpdate update;
    update.kept = 3;
    m_Store.apply(update);
    send({0, 1, 2, 3, 4}, {5, 6, 7, 8, INFINITY});
    append({5}, {10});
    EXPECT_EQ(m_Store.size(), 3u);
    EXPECT_EQ(m_Store.y(0), 8);
    EXPECT_EQ(m_Store.numInfinite(), 1u);
    append({6, 7, 8, 9}, {11, 12, 13, 14});
    EXPECT_EQ(m_Store.size(), 3u);
    EXPECT_EQ(m_Store.x(0), 7);
    EXPECT_EQ(m_Store.y(2), 14);
    EXPECT_EQ(m_Store.numInfinite(), 0u);
}

TEST_F(CurveStoreTest, ForgetsFarMoreThanItKeeps)
{
    CurveUpdate update;
    update.kept = 10;
    m_Store.apply(update);
    for (int i = 0; i < 200'000; i += 100)
        append(std::vector<double>(100, i), std::vector<double>(100, -i));
    EXPECT_EQ(m_Store.size(), 10u);
    EXPECT_EQ(m_Store.yExtent().from, -199'900);
    EXPECT_EQ(m_Store.yExtent().to, -199'900);
}

TEST_F(CurveStoreTest, BeginsAnewWhereNothingWasKept)
{
    CurveUpdate update;
    update.kept = 0;
    m_Store.apply(update);
    append({1, 2}, {3, 4});
    EXPECT_EQ(m_Store.size(), 0u);
    update.kept = 10;
    m_Store.apply(update);
    append({5, 6}, {7, 8});
    EXPECT_EQ(m_Store.size(), 2u);
    EXPECT_EQ(m_Store.yExtent().from, 7);
    EXPECT_EQ(m_Store.yExtent().to, 8);
}

} // namespace

} // namespace tavo
