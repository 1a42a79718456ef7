#include "support/allocation.h"
#include "support/matrices.h"

#include <memory>
#include <numeric>
#include <random>
#include <type_traits>

using namespace vorel;
using support::elements;
using support::failing_allocation;

namespace {

constexpr std::size_t LARGEST = std::numeric_limits<std::size_t>::max();

using run = dense1D<unsigned, 8>;

} // namespace

TEST(Dense1D, DefaultViewHoldsAnEmptyBlockOfItsOwn)
{
    const run v;
    const run w;
    ASSERT_TRUE(v.block);
    EXPECT_EQ(v.block->capacity, 0u);
    EXPECT_EQ(v.size, 0u);
    EXPECT_EQ(v.offset, 0u);
    EXPECT_TRUE(v.is_empty());
    EXPECT_FALSE(v.block == w.block);
    EXPECT_EQ(v.begin(), v.end());
}

TEST(Dense1D, FieldsStandInTheOrderThatInnerLoopsRead)
{
    const run v;
    const auto* const begin = reinterpret_cast<const char*>(&v);
    EXPECT_EQ(reinterpret_cast<const char*>(&v.block) - begin, 0);
    EXPECT_EQ(reinterpret_cast<const char*>(&v.size) - begin, 8);
    EXPECT_EQ(reinterpret_cast<const char*>(&v.offset) - begin, 16);
    EXPECT_EQ(sizeof(v), 24u);
}

TEST(Dense1D, ConstructorsGiveSizeAndValues)
{
    EXPECT_EQ(run(5).size, 5u);
    EXPECT_EQ(elements(run(3, 7u)), (std::vector<unsigned>{7, 7, 7}));
    EXPECT_EQ(elements(run{3, 7}), (std::vector<unsigned>{3, 7}));
    EXPECT_EQ(run(0).size, 0u);
    EXPECT_EQ(run(std::initializer_list<unsigned>{}).size, 0u);
}

TEST(Dense1D, CopiesShareTheBlock)
{
    run v{1, 2, 3};
    v.offset = 1;
    v.size = 2;
    run w = v;
    EXPECT_TRUE(v.block == w.block);
    EXPECT_EQ(w.size, 2u);
    EXPECT_EQ(w.offset, 1u);
    EXPECT_EQ(v.block->count.load(), 2);
    w[0] = 20;
    EXPECT_EQ(v[0], 20u);
    run x;
    x = v;
    EXPECT_TRUE(x.block == v.block);
    EXPECT_EQ(elements(x), elements(v));
}

TEST(Dense1D, GrowthThroughOneViewMovesTheStorageOfAll)
{
    run v{1, 2, 3};
    run w = v;
    ASSERT_TRUE(w.resize(100, 9u));
    EXPECT_EQ(v.begin(), w.begin());
    EXPECT_EQ(elements(v), (std::vector<unsigned>{1, 2, 3}));
    EXPECT_EQ(w.size, 100u);
    EXPECT_EQ(w[99], 9u);
}

TEST(Dense1D, DeepCopySharesNothing)
{
    run v{0, 1, 2, 3};
    v.offset = 1;
    v.size = 3;
    run w{9};
    ASSERT_TRUE(w.copy(v));
    EXPECT_EQ(elements(w), (std::vector<unsigned>{1, 2, 3}));
    EXPECT_EQ(w.offset, 0u);
    w[0] = 10;
    EXPECT_EQ(v[0], 1u);
    ASSERT_TRUE(w.copy(w)) << "of itself";
    EXPECT_EQ(elements(w), (std::vector<unsigned>{10, 2, 3}));
    {
        const failing_allocation armed(0);
        EXPECT_FALSE(w.copy(v));
    }
    EXPECT_EQ(elements(w), (std::vector<unsigned>{10, 2, 3}));
    ASSERT_TRUE(w.copy(run()));
    EXPECT_TRUE(w.is_empty());
}

TEST(Dense1D, MovedFromViewIsEmptyAndUsable)
{
    run v{1, 2, 3};
    run w(std::move(v));
    ASSERT_TRUE(v.block);
    EXPECT_EQ(v.size, 0u);
    EXPECT_FALSE(v.block == w.block);
    v.append(5);
    EXPECT_EQ(elements(v), (std::vector<unsigned>{5}));
    EXPECT_EQ(elements(w), (std::vector<unsigned>{1, 2, 3}));
    w = std::move(v);
    EXPECT_EQ(elements(w), (std::vector<unsigned>{5}));
    ASSERT_TRUE(v.block);
}

TEST(Dense1D, ResizeKeepsElementsAndFillsNewOnes)
{
    run v{1, 2, 3};
    ASSERT_TRUE(v.resize(5, 8u));
    EXPECT_EQ(elements(v), (std::vector<unsigned>{1, 2, 3, 8, 8}));
    ASSERT_TRUE(v.resize(2, 9u));
    EXPECT_EQ(elements(v), (std::vector<unsigned>{1, 2}));
    ASSERT_TRUE(v.resize(4));
    EXPECT_EQ(v.size, 4u);
    EXPECT_EQ(v[1], 2u);
    ASSERT_TRUE(v.resize(0));
    EXPECT_TRUE(v.is_empty());
}

TEST(Dense1D, ResizeWithAnElementOfItselfAsFill)
{
    run v{1, 2, 3};
    ASSERT_TRUE(v.resize(1000, v[2]));
    EXPECT_EQ(v[999], 3u);
}

TEST(Dense1D, SizesCountFromTheOffset)
{
    run v = support::placed_run(run{1, 2, 3}, 7);
    EXPECT_EQ(v.block->capacity, 10u);
    ASSERT_TRUE(v.resize(5, 4u));
    EXPECT_GE(v.block->capacity, 12u);
    EXPECT_EQ(elements(v), (std::vector<unsigned>{1, 2, 3, 4, 4}));
    EXPECT_EQ(v.offset, 7u);
    EXPECT_EQ(v.block->data[6], 0x5A5A5A5Au) << "the elements before the view go along";
}

TEST(Dense1D, ReserveChangesNeitherSizeNorContents)
{
    run v{1, 2, 3};
    ASSERT_TRUE(v.reserve(10, 1));
    EXPECT_EQ(v.block->capacity, 10u);
    EXPECT_EQ(elements(v), (std::vector<unsigned>{1, 2, 3}));
    const unsigned* const data = v.begin();
    ASSERT_TRUE(v.reserve(10, 5));
    EXPECT_EQ(v.begin(), data) << "room enough";
    ASSERT_TRUE(v.reserve(11, 3));
    EXPECT_EQ(v.block->capacity, 30u) << "the factor multiplies the old capacity";
    ASSERT_TRUE(v.resize(30));
    EXPECT_EQ(v[2], 3u);
}

TEST(Dense1D, RefusedSizesChangeNothing)
{
    run v{1, 2, 3};
    const unsigned* const data = v.begin();
    {
        const failing_allocation armed(0, support::failure::for_good);
        EXPECT_FALSE(v.resize(4));
        EXPECT_FALSE(v.resize(4, 0u));
        EXPECT_FALSE(v.reserve(4, 2));
    }
    EXPECT_FALSE(v.resize(LARGEST));
    EXPECT_FALSE(v.resize(LARGEST / 4, 1u));
    v.offset = 2;
    v.size = 1;
    EXPECT_FALSE(v.resize(LARGEST - 1)) << "fits alone, but not behind the offset";
    EXPECT_FALSE(v.reserve(LARGEST, 1));
    EXPECT_EQ(v.begin(), data + 2);
    EXPECT_EQ(elements(v), (std::vector<unsigned>{3}));
}

TEST(Dense1D, ConstructionWithoutStorageIsEmpty)
{
    const failing_allocation armed(0, support::failure::for_good);
    EXPECT_EQ(run(5).size, 0u);
    EXPECT_EQ(run(5, 1u).size, 0u);
    EXPECT_EQ((run{1, 2}).size, 0u);
}

TEST(Dense1D, AppendDoublesTheCapacity)
{
    run v;
    std::vector<std::size_t> capacities;
    for (unsigned i = 0; i < 33; ++i) {
        v.append(i);
        if (capacities.empty() || capacities.back() != v.block->capacity)
            capacities.push_back(v.block->capacity);
    }
    EXPECT_EQ(capacities, (std::vector<std::size_t>{2, 4, 8, 16, 32, 64}));
    ASSERT_EQ(v.size, 33u);
    for (unsigned i = 0; i < 33; ++i) EXPECT_EQ(v[i], i);
}

TEST(Dense1D, AppendThatFindsNoStorageDropsTheValue)
{
    run v{1, 2};
    {
        const failing_allocation armed(0);
        v.append(3);
        EXPECT_TRUE(armed.fired());
    }
    EXPECT_EQ(elements(v), (std::vector<unsigned>{1, 2}));
    v.append(4);
    EXPECT_EQ(elements(v), (std::vector<unsigned>{1, 2, 4}));
}

TEST(Dense1D, AppendOfAnElementOfItself)
{
    run v{1, 2};
    v.append(v[1]);
    EXPECT_EQ(elements(v), (std::vector<unsigned>{1, 2, 2}));
}

TEST(Dense1D, ClearKeepsTheStorage)
{
    run v{1, 2, 3};
    const unsigned* const data = v.begin();
    v.clear();
    EXPECT_TRUE(v.is_empty());
    ASSERT_TRUE(v.resize(3));
    EXPECT_EQ(v.begin(), data);
}

TEST(Dense1D, WrapsMemoryThatOutlivesTheView)
{
    unsigned memory[4] = {1, 2, 3, 4};
    {
        run v = run::wrap(memory, 4);
        EXPECT_EQ(v.size, 4u);
        v[0] = 10;
        ASSERT_TRUE(v.resize(2)) << "a cut stays in place";
        EXPECT_EQ(v.begin(), memory);
        ASSERT_TRUE(v.resize(4));
        v.append(5);
        v[1] = 20;
        EXPECT_EQ(elements(v), (std::vector<unsigned>{10, 20, 3, 4, 5}));
    }
    EXPECT_EQ(memory[0], 10u);
    EXPECT_EQ(memory[1], 2u) << "left untouched from the growth on";
}

TEST(Dense1D, OutlivesTheMemoryThatItLeft)
{
    run v;
    {
        const auto memory = std::make_unique<unsigned[]>(2);
        memory[0] = 1;
        memory[1] = 2;
        v = run::wrap(memory.get(), 2);
        ASSERT_TRUE(v.resize(3, 3u));
    }
    EXPECT_EQ(elements(v), (std::vector<unsigned>{1, 2, 3}));
}

TEST(Dense1D, WrapsConstantMemory)
{
    const std::vector<double> memory{1, 2, 3};
    const auto v = dense1D<double>::wrap(memory.data(), memory.size());
    EXPECT_EQ(std::accumulate(v.begin(), v.end(), 0.0), 6.0);
    EXPECT_EQ(v.begin(), memory.data());
}

TEST(Dense1D, ServesTheUsualIdioms)
{
    run v = {3, 1, 2};
    std::sort(v.begin(), v.end());
    unsigned sum = 0;
    for (const unsigned x : v) sum = 10 * sum + x;
    EXPECT_EQ(sum, 123u);
    for (unsigned& x : v) x += 1;
    const run& constant = v;
    EXPECT_EQ(constant[0], 2u);
    EXPECT_TRUE((std::is_same_v<decltype(constant[0]), const unsigned&>));
    v = {7};
    EXPECT_EQ(elements(v), (std::vector<unsigned>{7}));
    std::vector<run> many;
    for (unsigned i = 0; i < 20; ++i) many.push_back(run(i, i));
    for (unsigned i = 0; i < 20; ++i) EXPECT_EQ(many[i].size, i);
    EXPECT_TRUE((std::is_same_v<run::value_type, unsigned>));
}

TEST(Dense1D, BehavesAsAPlainVectorOnRandomCalls)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        std::mt19937 draw(seed);
        run v = support::placed_run(run(), draw() % 4);
        std::vector<unsigned> expected;
        for (int step = 0; step < 200; ++step) {
            const unsigned value = static_cast<unsigned>(draw());
            const std::size_t n = draw() % 50;
            switch (draw() % 5) {
            case 0:
                ASSERT_TRUE(v.resize(n, value));
                expected.resize(n, value);
                break;
            case 1:
                ASSERT_TRUE(v.reserve(n, 1 + draw() % 3));
                break;
            case 2: {
                const failing_allocation armed(0, support::failure::for_good);
                const std::size_t room = v.block->capacity - v.offset;
                EXPECT_EQ(v.resize(n), n <= room || n == 0);
                if (n <= room || n == 0) {
                    // A cut, or elements of unspecified value.
                    for (std::size_t i = expected.size(); i < n; ++i) v[i] = value;
                    expected.resize(n, value);
                }
                break;
            }
            default:
                v.append(value);
                expected.push_back(value);
            }
            ASSERT_EQ(elements(v), expected) << "seed " << seed << " step " << step;
        }
    }
}
