#include "foundation/chained_hash.h"
#include "support/allocation.h"

#include <vorel/vector_num.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

using namespace vorel;
using support::allocations;
using support::failing_allocation;
using support::live_allocations;

namespace {

constexpr std::size_t LARGEST = std::numeric_limits<std::size_t>::max();

using edge_value = std::pair<elfes::edge2, unsigned>;

/// A table slot of 24 bytes, not a power of two, and one of 32.
using slot24 = triad<unsigned, std::size_t, std::size_t>;
using slot32 = triad<edge_value, std::size_t, std::size_t>;
static_assert(sizeof(slot24) == 24 && sizeof(slot32) == 32);

template <class T>
using block = vector_num<T, 8>;

} // namespace

TEST(VectorNum, FreshBlockHasNoStorage)
{
    const Ptr<block<double>> b(new block<double>);
    EXPECT_EQ(b->data, nullptr);
    EXPECT_EQ(b->capacity, 0u);
    EXPECT_EQ(b->shift, 0u);
}

TEST(VectorNum, FieldsStandInTheOrderThatInnerLoopsRead)
{
    const block<double> b;
    const auto* const begin = reinterpret_cast<const char*>(&b);
    const auto at = [&](const void* field) { return static_cast<const char*>(field) - begin; };
    EXPECT_LT(at(&b.count), at(&b.data));
    EXPECT_EQ(at(&b.capacity) - at(&b.data), 8);
    EXPECT_EQ(at(&b.shift) - at(&b.capacity), 8);
    EXPECT_EQ(sizeof(b.shift), 2u);
}

TEST(VectorNum, GrowthOfAFreshBlockYieldsTwoElementsAtLeast)
{
    const Ptr<block<double>> b(new block<double>);
    ASSERT_TRUE(b->__grow(1, 0, 2));
    EXPECT_EQ(b->capacity, 2u);
    ASSERT_NE(b->data, nullptr);
}

TEST(VectorNum, GrowthTakesTheLargerOfTheMultipleAndTheDemand)
{
    const Ptr<block<unsigned>> b(new block<unsigned>);
    ASSERT_TRUE(b->__grow(10, 0, 2));
    EXPECT_EQ(b->capacity, 10u);
    ASSERT_TRUE(b->__grow(11, 0, 2));
    EXPECT_EQ(b->capacity, 20u);
    ASSERT_TRUE(b->__grow(70, 0, 3));
    EXPECT_EQ(b->capacity, 70u);
}

TEST(VectorNum, GrowthBelowTheCapacityStillReallocates)
{
    const Ptr<block<unsigned>> b(new block<unsigned>);
    ASSERT_TRUE(b->__grow(10, 0, 1));
    const std::size_t before = allocations();
    ASSERT_TRUE(b->__grow(3, 0, 1));
    EXPECT_EQ(allocations(), before + 1);
    EXPECT_GE(b->capacity, 10u);
}

TEST(VectorNum, GrowthWithoutAFactorTakesTheDemandAlone)
{
    const Ptr<block<unsigned>> b(new block<unsigned>);
    ASSERT_TRUE(b->__grow(10, 0, 1));
    for (unsigned i = 0; i < 10; ++i) b->data[i] = i;
    ASSERT_TRUE(b->__grow(4, 10, 0));
    EXPECT_EQ(b->capacity, 4u);
    for (unsigned i = 0; i < 4; ++i) EXPECT_EQ(b->data[i], i);
}

TEST(VectorNum, GrowthKeepsTheElementsThatItIsToldToKeep)
{
    const Ptr<block<slot24>> b(new block<slot24>);
    ASSERT_TRUE(b->__grow(4, 0, 1));
    for (unsigned i = 0; i < 4; ++i) b->data[i] = slot24(7 + i, 1, 2);
    ASSERT_TRUE(b->__grow(9, 3, 1));
    ASSERT_EQ(b->capacity, 9u);
    for (unsigned i = 0; i < 3; ++i) {
        EXPECT_EQ(b->data[i].first, 7 + i);
        EXPECT_EQ(b->data[i].second, 1u);
        EXPECT_EQ(b->data[i].third, 2u);
    }
    for (unsigned i = 3; i < 9; ++i) EXPECT_EQ(b->data[i].first, 0u) << "a fresh key at " << i;
}

TEST(VectorNum, GrowthKeepsNoMoreThanThereIs)
{
    const Ptr<block<unsigned>> b(new block<unsigned>);
    ASSERT_TRUE(b->__grow(5, 1000, 1)) << "nothing to keep yet";
    for (unsigned i = 0; i < 5; ++i) b->data[i] = i;
    ASSERT_TRUE(b->__grow(6, 1000, 1)) << "more to keep than the block holds";
    for (unsigned i = 0; i < 5; ++i) EXPECT_EQ(b->data[i], i);
}

TEST(VectorNum, NewElementsAreDefaultConstructed)
{
    const Ptr<block<std::pair<double, std::size_t>>> pairs(
        new block<std::pair<double, std::size_t>>);
    ASSERT_TRUE(pairs->__grow(5, 0, 1));
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(pairs->data[i].first, 0.0);
        EXPECT_EQ(pairs->data[i].second, 0u);
    }
    const Ptr<block<slot32>> slots(new block<slot32>);
    ASSERT_TRUE(slots->__grow(5, 0, 1));
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(slots->data[i].first.first.a, 0xFFFFFFFFu);
        EXPECT_EQ(slots->data[i].first.first.b, 0xFFFFFFFFu);
        EXPECT_EQ(slots->data[i].first.second, 0u);
    }
}

TEST(VectorNum, StorageBeginsWhereTheBitsBelowTheElementSizeAreClear)
{
    // Blocks of different sizes, kept alive, come at different addresses.
    std::vector<Ptr<block<slot32>>> powers;
    std::vector<Ptr<block<slot24>>> others;
    for (std::size_t n = 1; n < 40; ++n) {
        powers.emplace_back(new block<slot32>);
        ASSERT_TRUE(powers.back()->__grow(n, 0, 1));
        const auto address = reinterpret_cast<std::uintptr_t>(powers.back()->data);
        EXPECT_EQ(address % 32, 0u);
        EXPECT_LT(powers.back()->shift, 32);
        EXPECT_EQ(powers.back()->capacity, std::max<std::size_t>(n, 2));
        const bool aligned = (address - powers.back()->shift) % 32 == 0;
        EXPECT_EQ(powers.back()->shift == 0, aligned) << "moved only as far as needed";

        others.emplace_back(new block<slot24>);
        ASSERT_TRUE(others.back()->__grow(n, 0, 1));
        const auto other = reinterpret_cast<std::uintptr_t>(others.back()->data);
        EXPECT_EQ(other & 23u, 0u) << "the bits of 23, which is no power of two less one";
        EXPECT_LT(others.back()->shift, 24);
        EXPECT_EQ(others.back()->capacity, std::max<std::size_t>(n, 2));
    }
}

TEST(VectorNum, RefusedGrowthLeavesTheBlockUntouched)
{
    const Ptr<block<unsigned>> b(new block<unsigned>);
    ASSERT_TRUE(b->__grow(5, 0, 1));
    for (unsigned i = 0; i < 5; ++i) b->data[i] = i;
    const unsigned* const data = b->data;
    const std::uint16_t shift = b->shift;
    {
        const failing_allocation armed(0);
        EXPECT_FALSE(b->__grow(100, 5, 2));
        EXPECT_TRUE(armed.fired());
    }
    EXPECT_EQ(b->data, data);
    EXPECT_EQ(b->capacity, 5u);
    EXPECT_EQ(b->shift, shift);
    for (unsigned i = 0; i < 5; ++i) EXPECT_EQ(b->data[i], i);
}

TEST(VectorNum, SizesThatDoNotFitAreRefusedWithoutARequest)
{
    const Ptr<block<double>> b(new block<double>);
    const std::size_t before = allocations();
    EXPECT_FALSE(b->__grow(LARGEST, 0, 1));
    EXPECT_FALSE(b->__grow(LARGEST / 8, 0, 1)) << "the alignment's slack does not fit";
    EXPECT_FALSE(b->__grow(LARGEST / 4, 0, 1));
    double element = 0.0;
    const Ptr<block<double>> large = block<double>::wrap(&element, LARGEST / 2 + 1);
    EXPECT_FALSE(large->__grow(1, 0, 2)) << "twice the capacity does not fit";
    EXPECT_FALSE(large->__grow(1, 0, LARGEST));
    EXPECT_EQ(allocations(), before);
    EXPECT_EQ(large->data, &element);
    EXPECT_EQ(b->data, nullptr);
}

TEST(VectorNum, FreesItsStorageOnce)
{
    const std::size_t live = live_allocations();
    {
        const Ptr<block<double>> b(new block<double>);
        ASSERT_TRUE(b->__grow(5, 0, 1));
        ASSERT_TRUE(b->__grow(50, 5, 1));
        EXPECT_EQ(live_allocations(), live + 1) << "the old storage went at the growth";
    }
    EXPECT_EQ(live_allocations(), live);
    {
        const block<double> without_storage;
    }
    EXPECT_EQ(live_allocations(), live);
}

TEST(VectorNum, ForeignStorageIsMarkedAndNeverFreed)
{
    const std::size_t live = live_allocations();
    double memory[4] = {1, 2, 3, 4};
    {
        const Ptr<block<double>> b = block<double>::wrap(memory, 4);
        EXPECT_EQ(b->data, memory);
        EXPECT_EQ(b->capacity, 4u);
        EXPECT_EQ(b->shift, 65535);
        b->data[2] = 30;
    }
    EXPECT_EQ(live_allocations(), live);
    EXPECT_EQ(memory[2], 30.0);
}

TEST(VectorNum, GrowthLeavesForeignStorageAsItIs)
{
    auto memory = std::make_unique<double[]>(4);
    for (int i = 0; i < 4; ++i) memory[static_cast<std::size_t>(i)] = i;
    const Ptr<block<double>> b = block<double>::wrap(memory.get(), 4);
    ASSERT_TRUE(b->__grow(5, 4, 1));
    EXPECT_NE(b->data, memory.get());
    EXPECT_LT(b->shift, 65535);
    b->data[1] = 77;
    EXPECT_EQ(memory[1], 1.0);
    memory.reset();
    EXPECT_EQ(b->data[1], 77.0);
    EXPECT_EQ(b->data[3], 3.0);
}
