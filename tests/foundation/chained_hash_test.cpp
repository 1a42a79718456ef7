// What the hash tables promise, case by case.
#include "foundation/chained_hash.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

using namespace vorel;
using elfes::edge2;
using tessalo2d::chained_hash;
using tessalo2d::edge_hash;
using tessalo2d::next_prime;

namespace {

constexpr std::size_t LARGEST = std::numeric_limits<std::size_t>::max();

using ID_set = chained_hash<unsigned>;
using ID_map = chained_hash<std::pair<unsigned, unsigned>>;
using edge_set = chained_hash<edge2>;
using edge_map = chained_hash<std::pair<edge2, unsigned>>;

constexpr unsigned PRIMES[] = {13,        23,        53,        97,         193,        389,
                               769,       1543,      3079,      6151,       12289,      24593,
                               49157,     98317,     196613,    393241,     786433,     1572869,
                               3145739,   6291469,   12582917,  25165843,   50331653,   100663319,
                               201326611, 402653189, 805306457, 1610612741, 3221225473, 4294967291};

} // namespace

TEST(NextPrime, IsTheFirstNotBelow)
{
    EXPECT_EQ(next_prime(0), 13u);
    EXPECT_EQ(next_prime(23), 23u);
    EXPECT_EQ(next_prime(24), 53u);
    EXPECT_EQ(next_prime(47), 53u);
    for (std::size_t i = 0; i < 30; ++i) {
        EXPECT_EQ(next_prime(PRIMES[i]), PRIMES[i]);
        EXPECT_EQ(next_prime(PRIMES[i] - 1), PRIMES[i]);
        EXPECT_EQ(next_prime(PRIMES[i] + 1), PRIMES[i < 29 ? i + 1 : 29]);
    }
    EXPECT_EQ(next_prime(0xFFFFFFFFu), 4294967291u) << "above the last entry, the last entry";
}

TEST(Edge2, HasNoOrderBetweenItsNodes)
{
    EXPECT_TRUE((edge2{3, 7} == edge2{7, 3}));
    EXPECT_TRUE((edge2{3, 7} == edge2{3, 7}));
    EXPECT_TRUE((edge2{3, 7} != edge2{3, 8}));
    EXPECT_TRUE((edge2{3, 3} != edge2{3, 7}));
    EXPECT_EQ(edge2().a, 0xFFFFFFFFu);
    EXPECT_EQ(edge2().b, 0xFFFFFFFFu);
}

TEST(EdgeHash, IsTheSumOfTheTermsInSixtyFourBits)
{
    // 0x811C9DC5 = 2166136261; times 16777619 is 36342608889142559, which does not fit 32 bits.
    EXPECT_EQ(edge_hash(0, 0), 2u * 36342608889142559u);
    // 1 xor basis = 2166136260: one factor less.
    EXPECT_EQ(edge_hash(1, 0), 2u * 36342608889142559u - 16777619u);
    EXPECT_EQ(edge_hash(0, 1), edge_hash(1, 0));
    // All ones xor basis = 4294967295 - 2166136261 = 2128831034.
    EXPECT_EQ(edge_hash(0xFFFFFFFFu, 0), 36342608889142559u + 2128831034ull * 16777619u);
}

TEST(ChainedHash, FieldsStandBehindBlockSizeAndOffset)
{
    const ID_set table;
    const auto* const begin = reinterpret_cast<const char*>(&table);
    const auto at = [&](const void* field) { return static_cast<const char*>(field) - begin; };
    EXPECT_EQ(at(&table.block), 0);
    EXPECT_EQ(at(&table.size), 8);
    EXPECT_EQ(at(&table.offset), 16);
    EXPECT_EQ(at(&table.bucket_count), 24);
    EXPECT_EQ(at(&table.generation), 32);
    EXPECT_EQ(at(&table.count), 40);
}

TEST(ChainedHash, NewTableIsEmptyAndFindsNothing)
{
    ID_set table;
    ASSERT_TRUE(table.block);
    EXPECT_EQ(table.block->capacity, 0u);
    EXPECT_EQ(table.size + table.offset + table.bucket_count, 0u);
    EXPECT_EQ(table.generation + table.count, 0u);
    EXPECT_EQ(table.find(0), nullptr);
    EXPECT_EQ(table.find_or_insert(5, 5), nullptr) << "without buckets";
    EXPECT_FALSE(table.insert(5));
    EXPECT_EQ(table.count, 0u);
}

TEST(ChainedHash, InitGivesTwentyThreeBucketsAndRoomForThirtyFourSlots)
{
    ID_set table;
    ASSERT_TRUE(table.init(23, 23));
    EXPECT_EQ(table.bucket_count, 23u);
    EXPECT_EQ(table.size, 23u);
    EXPECT_EQ(table.block->capacity, 34u);
    EXPECT_EQ(table.generation, 1u);
    EXPECT_EQ(table.count, 0u);
    for (std::size_t i = 0; i < 23; ++i) {
        EXPECT_EQ(table.block->data[i].first, 0u);
        EXPECT_EQ(table.block->data[i].second, 0u);
        EXPECT_EQ(table.block->data[i].third, 0u);
    }
}

TEST(ChainedHash, InitTakesTheNextPrimeFromTwentyThreeUp)
{
    const struct {
        std::size_t expected, min_buckets, buckets, slots;
    } table[] = {
        {0, 0, 23, 23},                                 // no keys, no collisions
        {1, 1, 23, 23},                                 // 1/24
        {100, 23, 23, 23 + 81},                         // 100/123 * 100 = 81.3
        {10, 24, 53, 53 + 1},                           // 10/63 * 10 = 1.58
        {1543, 1000, 1543, 1543 + 771},                 // half of 1543
        {50, (std::size_t(1) << 32) + 60, 97, 97 + 17}, // cut to 32 bits; 50/147 * 50 = 17.007
    };
    for (const auto& row : table) {
        ID_set t;
        ASSERT_TRUE(t.init(row.expected, row.min_buckets));
        EXPECT_EQ(t.bucket_count, row.buckets);
        EXPECT_EQ(t.block->capacity, row.slots) << row.expected << " " << row.min_buckets;
    }
}

TEST(ChainedHash, InitTakesThePresentBucketCountAsItIs)
{
    ID_set table;
    ASSERT_TRUE(table.init(53, 53));
    table.bucket_count = 24; // no prime
    ASSERT_TRUE(table.init(0, 24));
    EXPECT_EQ(table.bucket_count, 24u);
}

TEST(ChainedHash, InitEmptiesATableInUse)
{
    ID_set table;
    ASSERT_TRUE(table.init(23, 23));
    for (unsigned i = 0; i < 40; ++i) EXPECT_TRUE(table.insert(23 * i));
    const std::size_t capacity = table.block->capacity;
    ASSERT_TRUE(table.init(23, 23));
    EXPECT_EQ(table.count, 0u);
    EXPECT_EQ(table.size, 23u);
    EXPECT_EQ(table.generation, 1u);
    EXPECT_EQ(table.block->capacity, capacity) << "keeps the storage";
    for (unsigned i = 0; i < 40; ++i) EXPECT_EQ(table.find(23 * i), nullptr);
    EXPECT_TRUE(table.insert(0));
}

TEST(ChainedHash, KeyZeroIsNotInAFreshTable)
{
    ID_set ids;
    ASSERT_TRUE(ids.init(23, 23));
    EXPECT_EQ(ids.find(0), nullptr);
    ID_map map;
    ASSERT_TRUE(map.init(23, 23));
    EXPECT_EQ(map.find({0, 0}), nullptr);
    edge_set edges;
    ASSERT_TRUE(edges.init(23, 23));
    EXPECT_EQ(edges.find(edge2()), nullptr) << "nor the fresh edge";
    edge_map edge_IDs;
    ASSERT_TRUE(edge_IDs.init(23, 23));
    EXPECT_EQ(edge_IDs.find({edge2(), 0}), nullptr);
    EXPECT_TRUE(ids.insert(0));
    ASSERT_NE(ids.find(0), nullptr);
    EXPECT_FALSE(ids.insert(0));
}

TEST(ChainedHash, FirstEntryOfABucketStandsInItsHeadAndOthersBehindAll)
{
    ID_set table;
    ASSERT_TRUE(table.init(23, 23));
    const auto* const slots = table.block->data;
    EXPECT_EQ(table.find_or_insert(5), slots + 5);
    EXPECT_EQ(table.find_or_insert(28), slots + 23) << "28 = 5 modulo 23";
    EXPECT_EQ(table.find_or_insert(7), slots + 7);
    EXPECT_EQ(table.find_or_insert(51), slots + 24);
    EXPECT_EQ(table.find_or_insert(30), slots + 25);
    EXPECT_EQ(slots[5].third, 18u) << "forward distance from 5 to 23";
    EXPECT_EQ(slots[23].third, 1u);
    EXPECT_EQ(slots[24].third, 0u);
    EXPECT_EQ(slots[7].third, 18u);
    EXPECT_EQ(slots[25].third, 0u);
    EXPECT_EQ(table.size, 26u);
    EXPECT_EQ(table.count, 5u);
    EXPECT_EQ(table.find_or_insert(51), slots + 24) << "found, not inserted";
    EXPECT_EQ(table.count, 5u);
    EXPECT_EQ(table.find(28), slots + 23);
    EXPECT_EQ(table.find(74), nullptr) << "5 modulo 23 as well";
}

TEST(ChainedHash, TheHashGivenPlacesTheKey)
{
    ID_set table;
    ASSERT_TRUE(table.init(23, 23));
    EXPECT_EQ(table.find_or_insert(LARGEST, 3), table.block->data + LARGEST % 23);
    EXPECT_EQ(table.find(3), nullptr) << "looked for at its own hash";
}

TEST(ChainedHash, MapsKeepTheFirstValue)
{
    ID_map map;
    ASSERT_TRUE(map.init(23, 23));
    EXPECT_EQ(map.find_or_insert({4, 40})->first.second, 40u);
    EXPECT_EQ(map.find_or_insert({4, 41})->first.second, 40u);
    EXPECT_EQ(map.count, 1u);
    EXPECT_FALSE(map.insert({4, 42}));
    map.find_or_insert({4, 0})->first.second = 43; // the last value wins by hand
    EXPECT_EQ(map.find({4, 0})->first.second, 43u);
}

TEST(ChainedHash, BothDirectionsOfAnEdgeShareASlot)
{
    edge_map map;
    ASSERT_TRUE(map.init(23, 23));
    auto* const first = map.find_or_insert({edge2{3, 7}, 1});
    auto* const second = map.find_or_insert({edge2{7, 3}, 2});
    EXPECT_EQ(first, second);
    EXPECT_EQ(map.count, 1u);
    EXPECT_EQ(first->first.second, 1u);
    EXPECT_EQ(first->first.first.a, 3u) << "the orientation of the first insertion";
    EXPECT_EQ(first->first.first.b, 7u);
    EXPECT_EQ(map.find({edge2{7, 3}, 99}), first);
}

TEST(ChainedHash, GrowsWhenMoreThanTwoKeysABucketWouldStand)
{
    ID_set table;
    ASSERT_TRUE(table.init(23, 23));
    for (unsigned i = 0; i < 46; ++i) {
        EXPECT_TRUE(table.insert(i * 3));
        EXPECT_EQ(table.bucket_count, 23u);
    }
    EXPECT_EQ(table.count, 46u);
    EXPECT_TRUE(table.insert(1000));
    EXPECT_EQ(table.bucket_count, 53u) << "the next prime of 47";
    EXPECT_EQ(table.count, 47u);
    for (unsigned i = 0; i < 46; ++i) EXPECT_NE(table.find(i * 3), nullptr);
}

TEST(ChainedHash, RehashTakesTablePrimesFromTwentyThreeUpOnly)
{
    ID_set table;
    ASSERT_TRUE(table.init(23, 23));
    EXPECT_TRUE(table.insert(5));
    const auto* const data = table.block->data;
    for (const std::size_t refused : {13u, 0u, 1u, 22u, 24u, 54u, 1000u}) {
        EXPECT_FALSE(table.rehash(refused)) << refused;
        EXPECT_EQ(table.bucket_count, 23u);
        EXPECT_EQ(table.size, 23u);
        EXPECT_EQ(table.count, 1u);
        EXPECT_EQ(table.block->data, data);
        EXPECT_NE(table.find(5), nullptr);
    }
    for (const std::size_t taken : {23u, 53u, 6151u, 97u, 23u}) {
        EXPECT_TRUE(table.rehash(taken)) << taken;
        EXPECT_EQ(table.bucket_count, taken);
        EXPECT_NE(table.find(5), nullptr);
    }
}

TEST(ChainedHash, RehashWalksHeadsByBucketAndThenByAge)
{
    ID_set table;
    ASSERT_TRUE(table.init(23, 23));
    // Heads 1 and 2 in the end hold 24 and 2, overflow 1 and 25 in this order.
    for (const unsigned id : {24u, 1u, 47u, 2u}) EXPECT_TRUE(table.insert(id));
    std::vector<unsigned> order;
    table.for_each([&](const ID_set::slot& s) { order.push_back(s.first); });
    EXPECT_EQ(order, (std::vector<unsigned>{24, 2, 1, 47}));
    // All of 24, 2 + 53 k land in the order of that walk.
    ASSERT_TRUE(table.rehash(53));
    EXPECT_EQ(table.block->data[24].first, 24u);
    EXPECT_EQ(table.block->data[2].first, 2u);
    EXPECT_EQ(table.block->data[1].first, 1u);
    EXPECT_EQ(table.block->data[47].first, 47u);
    EXPECT_EQ(table.size, 53u);
}

TEST(ChainedHash, ExpectRebuildsAheadOnlyWhenKeysOutnumberBuckets)
{
    ID_set table;
    ASSERT_TRUE(table.init(23, 23));
    table.expect(23);
    EXPECT_EQ(table.bucket_count, 23u);
    table.expect(24);
    EXPECT_EQ(table.bucket_count, 53u);
    table.expect(5);
    EXPECT_EQ(table.bucket_count, 53u);
}

TEST(ChainedHash, CopiesShareTheirSlots)
{
    ID_set table;
    ASSERT_TRUE(table.init(23, 23));
    EXPECT_TRUE(table.insert(5));
    ID_set copy = table;
    EXPECT_TRUE(copy.block == table.block);
    EXPECT_NE(copy.find(5), nullptr);
}

TEST(ChainedHash, WorksBehindAnOffset)
{
    ID_set table;
    table.offset = 7;
    ASSERT_TRUE(table.init(23, 23));
    EXPECT_EQ(table.block->capacity, 41u);
    for (unsigned i = 0; i < 46; ++i) EXPECT_TRUE(table.insert(i));
    EXPECT_EQ(table.find(5), table.block->data + 12);
    EXPECT_EQ(table.find(28), table.block->data + 7 + 23 + 5);
    ASSERT_TRUE(table.init(23, 23));
    EXPECT_EQ(table.find(5), nullptr);
}
