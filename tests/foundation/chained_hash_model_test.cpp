// The hash tables slot for slot against a table that is built the plain way, and entry for entry
// against the standard library's.
#include "foundation/chained_hash.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

using namespace vorel;
using elfes::edge2;
using tessalo2d::chained_hash;

namespace {

using edge_value = std::pair<edge2, unsigned>;
using ID_value = std::pair<unsigned, unsigned>;

/// The two numbers that name a key, the smaller first; one number twice for an ID.
ID_value name_of(unsigned key)
{
    return {key, key};
}
ID_value name_of(const ID_value& key)
{
    return {key.first, key.first};
}
ID_value name_of(const edge2& key)
{
    return std::minmax(key.a, key.b);
}
ID_value name_of(const edge_value& key)
{
    return name_of(key.first);
}

/// All numbers that a key holds.
std::vector<unsigned> numbers(unsigned key)
{
    return {key};
}
std::vector<unsigned> numbers(const ID_value& key)
{
    return {key.first, key.second};
}
std::vector<unsigned> numbers(const edge2& key)
{
    return {key.a, key.b};
}
std::vector<unsigned> numbers(const edge_value& key)
{
    return {key.first.a, key.first.b, key.second};
}

std::uint64_t plain_edge_hash(std::uint64_t a, std::uint64_t b)
{
    return (a ^ 2166136261u) * 16777619u + (b ^ 2166136261u) * 16777619u;
}
std::uint64_t plain_hash(unsigned key)
{
    return key;
}
std::uint64_t plain_hash(const ID_value& key)
{
    return key.first;
}
std::uint64_t plain_hash(const edge2& key)
{
    return plain_edge_hash(key.a, key.b);
}
std::uint64_t plain_hash(const edge_value& key)
{
    return plain_edge_hash(key.first.a, key.first.b);
}

void draw_key(std::mt19937& draw, unsigned range, unsigned& key)
{
    key = static_cast<unsigned>(draw()) % range;
    if (draw() % 50 == 0) key = ~key; // beside the largest IDs
}
void draw_key(std::mt19937& draw, unsigned range, ID_value& key)
{
    draw_key(draw, range, key.first);
    key.second = static_cast<unsigned>(draw());
}
void draw_key(std::mt19937& draw, unsigned range, edge2& key)
{
    draw_key(draw, range / 8 + 1, key.a);
    draw_key(draw, 9, key.b);
    if (draw() % 2) std::swap(key.a, key.b);
}
void draw_key(std::mt19937& draw, unsigned range, edge_value& key)
{
    draw_key(draw, range, key.first);
    key.second = static_cast<unsigned>(draw());
}

/// Buckets as lists of places, heads and overflow as they are made.
template <class Key>
class plain_table {
public:
    explicit plain_table(std::size_t buckets_) : buckets(buckets_), heads(buckets_), chain(buckets_)
    {
    }

    std::size_t count() const { return entries.size(); }

    /// True if the key was new.
    bool insert(const Key& key)
    {
        const std::size_t bucket = plain_hash(key) % buckets;
        for (const std::size_t entry : chain[bucket])
            if (name_of(entries[entry]) == name_of(key)) return false;
        if (chain[bucket].empty())
            heads[bucket] = entries.size();
        else
            overflow.push_back(entries.size());
        chain[bucket].push_back(entries.size());
        entries.push_back(key);
        return true;
    }

    /// The keys as they lie in storage.
    std::vector<Key> in_storage_order() const
    {
        std::vector<Key> order;
        for (const auto& head : heads)
            if (head) order.push_back(entries[*head]);
        for (const std::size_t entry : overflow) order.push_back(entries[entry]);
        return order;
    }

    plain_table rebuilt(std::size_t with_buckets) const
    {
        plain_table fresh(with_buckets);
        for (const Key& key : in_storage_order()) fresh.insert(key);
        return fresh;
    }

    void expect_same(const chained_hash<Key>& table, const std::string& told) const
    {
        ASSERT_EQ(table.bucket_count, buckets) << told;
        ASSERT_EQ(table.count, entries.size()) << told;
        ASSERT_EQ(table.size, buckets + overflow.size()) << told;
        ASSERT_EQ(table.generation, 1u) << told;
        ASSERT_GE(table.block->capacity, table.size) << told;
        const auto* const slots = table.block->data + table.offset;
        for (std::size_t bucket = 0; bucket < buckets; ++bucket) {
            ASSERT_EQ(slots[bucket].second, heads[bucket] ? 1u : 0u) << told;
            std::size_t at = bucket;
            for (std::size_t i = 0; i < chain[bucket].size(); ++i) {
                const std::size_t entry = chain[bucket][i];
                ASSERT_EQ(at, place_of(entry, bucket)) << told;
                ASSERT_EQ(slots[at].second, 1u) << told;
                ASSERT_EQ(numbers(slots[at].first), numbers(entries[entry])) << told;
                const bool last = i + 1 == chain[bucket].size();
                ASSERT_EQ(slots[at].third == 0, last) << told;
                at += slots[at].third;
            }
            ASSERT_TRUE(!chain[bucket].empty() || slots[bucket].third == 0) << told;
        }
    }

private:
    std::size_t place_of(std::size_t entry, std::size_t bucket) const
    {
        if (heads[bucket] == entry) return bucket;
        const auto at = std::find(overflow.begin(), overflow.end(), entry);
        return buckets + static_cast<std::size_t>(at - overflow.begin());
    }

    std::size_t buckets;
    std::vector<Key> entries;
    std::vector<std::optional<std::size_t>> heads;
    std::vector<std::size_t> overflow;
    std::vector<std::vector<std::size_t>> chain;
};

std::size_t prime_from(std::size_t n)
{
    for (const std::size_t prime : {13u, 23u, 53u, 97u, 193u, 389u, 769u, 1543u, 3079u, 6151u})
        if (prime >= n) return prime;
    return 0;
}

struct name_hash {
    std::size_t operator()(const ID_value& x) const
    {
        return std::size_t(x.first) * 1000003u + x.second;
    }
};

} // namespace

template <class Key>
class ChainedHashModel : public testing::Test {
};

using keys = testing::Types<unsigned, ID_value, edge2, edge_value>;
TYPED_TEST_SUITE(ChainedHashModel, keys, );

TYPED_TEST(ChainedHashModel, EverySlotIsWhereThePlainTableHasIt)
{
    for (unsigned seed = 1; seed <= 25; ++seed) {
        std::mt19937 draw(seed);
        chained_hash<TypeParam> table;
        ASSERT_TRUE(table.init(23, 23));
        plain_table<TypeParam> plain(23);
        const unsigned range = 1 + static_cast<unsigned>(draw() % 3000);
        for (int step = 0; step < 1200; ++step) {
            const std::string told =
                "seed " + std::to_string(seed) + " step " + std::to_string(step);
            if (draw() % 400 == 0) {
                const std::size_t buckets = prime_from(draw() % 900);
                ASSERT_EQ(table.rehash(buckets), buckets >= 23) << told;
                if (buckets >= 23) plain = plain.rebuilt(buckets);
            } else if (draw() % 700 == 0) {
                const std::size_t buckets = std::max<std::size_t>(23, draw() % 300);
                const std::size_t as_it_is = table.bucket_count;
                ASSERT_TRUE(table.init(draw() % 300, buckets)) << told;
                plain = plain_table<TypeParam>(buckets == as_it_is ? buckets : prime_from(buckets));
            } else {
                TypeParam key;
                draw_key(draw, range, key);
                if (plain.count() + 1 > 2 * table.bucket_count)
                    plain = plain.rebuilt(prime_from(plain.count() + 1));
                const bool fresh = plain.insert(key);
                ASSERT_EQ(table.insert(key), fresh) << told;
            }
            if (step % 40 == 0 || step > 1190) plain.expect_same(table, told);
        }
        plain.expect_same(table, "seed " + std::to_string(seed));
        std::vector<std::vector<unsigned>> visited;
        table.for_each([&](const auto& slot) { visited.push_back(numbers(slot.first)); });
        std::vector<std::vector<unsigned>> expected;
        for (const TypeParam& key : plain.in_storage_order()) expected.push_back(numbers(key));
        EXPECT_EQ(visited, expected) << "seed " << seed;
    }
}

TYPED_TEST(ChainedHashModel, HoldsWhatTheStandardTableHolds)
{
    std::mt19937 draw(7);
    chained_hash<TypeParam> table;
    ASSERT_TRUE(table.init(23, 23));
    std::unordered_map<ID_value, std::vector<unsigned>, name_hash> standard;
    for (int step = 0; step < 60000; ++step) {
        TypeParam key;
        draw_key(draw, 70000, key);
        const bool fresh = standard.insert({name_of(key), numbers(key)}).second;
        ASSERT_EQ(table.insert(key), fresh) << step;
    }
    EXPECT_EQ(table.count, standard.size());
    EXPECT_LE(table.count, 2 * table.bucket_count);
    for (int step = 0; step < 60000; ++step) {
        TypeParam key;
        draw_key(draw, 90000, key);
        const auto expected = standard.find(name_of(key));
        const auto* const found = table.find(key);
        ASSERT_EQ(found != nullptr, expected != standard.end()) << step;
        ASSERT_TRUE(!found || numbers(found->first) == expected->second) << step;
    }
}

TYPED_TEST(ChainedHashModel, PlacesByTheTrueRemainderForEveryBucketCount)
{
    // Hashes beside multiples of the bucket count and of 2^32 and 2^64.
    for (const std::size_t buckets : {23u, 53u, 97u, 24593u, 393241u, 1572869u}) {
        chained_hash<TypeParam> table;
        ASSERT_TRUE(table.init(0, buckets));
        ASSERT_EQ(table.bucket_count, buckets);
        std::mt19937_64 draw(buckets);
        const std::uint64_t top = ~std::uint64_t(0);
        std::vector<std::uint64_t> hashes{0, 1, top, top - 1, 0xFFFFFFFFu, 0x100000000u};
        for (int i = 0; i < 3000; ++i) {
            const std::uint64_t base = draw() >> (draw() % 64);
            const std::uint64_t multiple = base / buckets * buckets;
            for (const std::uint64_t h :
                 {base, multiple, multiple - 1, multiple + 1, top / buckets * buckets - base % 3})
                hashes.push_back(h);
        }
        const TypeParam key{};
        for (const std::uint64_t h : hashes) {
            // An entry of one's own in an empty table stands in the head.
            auto* const slot = table.find_or_insert(h, key);
            ASSERT_EQ(static_cast<std::size_t>(slot - table.block->data), h % buckets) << h;
            slot->second = 0;
            table.count = 0;
        }
    }
}
