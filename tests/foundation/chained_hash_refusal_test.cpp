// What is left of the hash tables when storage is refused, on every path that asks for it.
#include "foundation/chained_hash.h"

#include "support/allocation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <random>
#include <set>
#include <utility>

using namespace vorel;
using elfes::edge2;
using support::failing_allocation;
using tessalo2d::chained_hash;

namespace {

constexpr std::size_t LARGEST = std::numeric_limits<std::size_t>::max();

using ID_set = chained_hash<unsigned>;
using edge_map = chained_hash<std::pair<edge2, unsigned>>;

} // namespace

TEST(ChainedHash, RefusedInitLeavesAnEmptyTable)
{
    ID_set table;
    {
        const failing_allocation armed(0);
        EXPECT_FALSE(table.init(23, 23));
    }
    EXPECT_EQ(table.bucket_count, 0u);
    EXPECT_EQ(table.generation, 1u);
    EXPECT_EQ(table.find(0), nullptr);
    EXPECT_EQ(table.find_or_insert(0, 0), nullptr);

    ASSERT_TRUE(table.init(23, 23));
    for (unsigned i = 0; i < 30; ++i) EXPECT_TRUE(table.insert(i));
    {
        const failing_allocation armed(0);
        EXPECT_FALSE(table.init(1000, 1000));
    }
    EXPECT_EQ(table.bucket_count, 23u) << "keeps its buckets";
    EXPECT_EQ(table.size, 30u);
    EXPECT_EQ(table.generation, 1u);
    EXPECT_EQ(table.count, 0u);
    for (unsigned i = 0; i < 30; ++i) EXPECT_EQ(table.find(i), nullptr) << i;
    std::size_t visited = 0;
    table.for_each([&](const ID_set::slot&) { ++visited; });
    EXPECT_EQ(visited, 0u);
    for (unsigned i = 0; i < 30; ++i) EXPECT_TRUE(table.insert(i)) << "usable again";
    EXPECT_EQ(table.size, 30u) << "in the slots that it kept";
}

TEST(ChainedHash, SizesThatDoNotFitAreRefused)
{
    ID_set table;
    EXPECT_FALSE(table.init(LARGEST, 23));
    EXPECT_FALSE(table.init(LARGEST / 2, LARGEST / 2));
    EXPECT_EQ(table.find(0), nullptr);
    ASSERT_TRUE(table.init(23, 23));
    EXPECT_FALSE(table.rehash(4294967291u)) << "more slots than the tests' allocator serves";
    EXPECT_EQ(table.bucket_count, 23u);
}

TEST(ChainedHash, RefusedSlotInsertsNothingAndOnlyTheCountShowsIt)
{
    ID_set table;
    ASSERT_TRUE(table.init(0, 23)); // no room for overflow
    EXPECT_EQ(table.block->capacity, 23u);
    EXPECT_TRUE(table.insert(5));
    {
        const failing_allocation armed(0);
        auto* const tail = table.find_or_insert(28);
        EXPECT_TRUE(armed.fired());
        EXPECT_EQ(tail, table.block->data + 5) << "the chain's last slot";
    }
    EXPECT_EQ(table.count, 1u);
    EXPECT_EQ(table.size, 23u);
    EXPECT_EQ(table.find(28), nullptr);
    {
        const failing_allocation armed(0);
        EXPECT_FALSE(table.insert(28));
    }
    EXPECT_TRUE(table.insert(28));
    EXPECT_EQ(table.count, 2u);
}

TEST(ChainedHash, RefusedRehashKeepsTheOldTable)
{
    edge_map map;
    ASSERT_TRUE(map.init(23, 23));
    for (unsigned i = 0; i < 46; ++i) EXPECT_TRUE(map.insert({edge2{i, i + 1}, i}));
    {
        const failing_allocation armed(0);
        EXPECT_FALSE(map.rehash(53));
        EXPECT_TRUE(armed.fired());
    }
    {
        const failing_allocation armed(0);
        EXPECT_FALSE(map.insert({edge2{100, 200}, 0})) << "the load rule's rebuild is refused";
    }
    EXPECT_EQ(map.bucket_count, 23u);
    EXPECT_EQ(map.count, 46u);
    for (unsigned i = 0; i < 46; ++i) {
        ASSERT_NE(map.find({edge2{i + 1, i}, 0}), nullptr);
        EXPECT_EQ(map.find({edge2{i + 1, i}, 0})->first.second, i);
    }
    EXPECT_TRUE(map.insert({edge2{100, 200}, 0}));
}

TEST(ChainedHash, RehashThatRunsOutHalfwayTellsSo)
{
    ID_set table;
    ASSERT_TRUE(table.init(23, 23));
    for (unsigned i = 0; i < 40; ++i) EXPECT_TRUE(table.insert(i * 53)); // one bucket of 53
    EXPECT_TRUE(table.rehash(53));
    const failing_allocation armed(1); // the table itself is served, its first growth is not
    EXPECT_FALSE(table.rehash(53));
    EXPECT_TRUE(armed.fired());
    std::size_t live = 0;
    table.for_each([&](const ID_set::slot&) { ++live; });
    EXPECT_EQ(table.count, live);
    EXPECT_LT(table.count, 40u);
}

TEST(ChainedHash, AnyRefusedRequestLeavesAConsistentTable)
{
    std::size_t refusals =
        support::each_refused_allocation([&](const auto& armed, const auto& told) {
            edge_map map;
            std::set<std::pair<unsigned, unsigned>> inserted;
            std::mt19937 draw(3);
            bool ready = false;
            std::size_t rebuilds_lost = 0;
            const bool refused = armed([&] {
                ready = map.init(23, 23);
                for (unsigned i = 0; i < 500; ++i) {
                    const unsigned a = static_cast<unsigned>(draw() % 40);
                    const unsigned b = static_cast<unsigned>(draw() % 40);
                    const std::size_t before = map.count;
                    if (map.insert({edge2{a, b}, i}))
                        inserted.insert(std::minmax(a, b));
                    else if (map.count < before)
                        ++rebuilds_lost;
                }
            });
            EXPECT_TRUE(ready || refused) << told;
            std::size_t live = 0;
            map.for_each([&](const edge_map::slot& s) {
                ++live;
                EXPECT_EQ(inserted.count(std::minmax(s.first.first.a, s.first.first.b)), 1u);
            });
            EXPECT_EQ(live, map.count) << told;
            if (rebuilds_lost == 0) {
                EXPECT_EQ(live, inserted.size()) << told;
            }
            EXPECT_TRUE(refused || rebuilds_lost == 0) << told;
        });
    EXPECT_GE(refusals, 8u);
}
