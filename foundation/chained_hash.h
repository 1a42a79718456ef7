// Sets and maps of IDs and of edges in one prime-sized chained table.
//
// All slots lie in a single block: bucket heads first, overflow slots behind them in order of
// creation, chained by forward distances. A table of any size is one allocation and grows by
// rebuilding. A table belongs to one call and has no locks.
#pragma once

#include "foundation/prefetch.h"

#include <vorel/vector_num.h>

#include <cstddef>
#include <cstdint>
#include <utility>

namespace vorel {

/// Three values in a row. A fresh one has its first value only: the others are written when the
/// slot comes into use, so that growth touches the key alone.
template <class A, class B, class C>
struct triad {
    triad() : first() {}
    triad(const A& a, const B& b, const C& c) : first(a), second(b), third(c) {}

    A first;
    B second;
    C third;
};

namespace elfes {

/// Two node IDs without an order between them: (a, b) equals (b, a).
struct edge2 {
    unsigned a = 0xFFFFFFFFu;
    unsigned b = 0xFFFFFFFFu;

    friend bool operator==(const edge2& x, const edge2& y)
    {
        return (x.a == y.a && x.b == y.b) || (x.a == y.b && x.b == y.a);
    }
    friend bool operator!=(const edge2& x, const edge2& y) { return !(x == y); }
};

} // namespace elfes

namespace tessalo2d {

/// Symmetric in the two IDs: each gets its own term and the terms are added.
inline std::size_t edge_hash(unsigned a, unsigned b)
{
    constexpr std::uint64_t PRIME = 16777619u;
    constexpr std::uint32_t BASIS = 0x811C9DC5u;
    return std::uint64_t(a ^ BASIS) * PRIME + std::uint64_t(b ^ BASIS) * PRIME;
}

/// What the four kinds of key differ in: the hash, what counts as the same key, the fresh value.
template <class Key>
struct hash_policy;

/// A set of IDs.
template <>
struct hash_policy<unsigned> {
    static std::size_t hash(unsigned key) { return key; }
    static bool equal(unsigned x, unsigned y) { return x == y; }
    static unsigned fresh() { return 0; }
};

/// A map from ID to ID.
template <>
struct hash_policy<std::pair<unsigned, unsigned>> {
    using key_type = std::pair<unsigned, unsigned>;
    static std::size_t hash(const key_type& key) { return key.first; }
    static bool equal(const key_type& x, const key_type& y) { return x.first == y.first; }
    static key_type fresh() { return {0, 0}; }
};

/// A set of edges.
template <>
struct hash_policy<elfes::edge2> {
    static std::size_t hash(const elfes::edge2& key) { return edge_hash(key.a, key.b); }
    static bool equal(const elfes::edge2& x, const elfes::edge2& y) { return x == y; }
    static elfes::edge2 fresh() { return {}; }
};

/// A map from edge to ID. The key keeps the orientation of its first insertion.
template <>
struct hash_policy<std::pair<elfes::edge2, unsigned>> {
    using key_type = std::pair<elfes::edge2, unsigned>;
    static std::size_t hash(const key_type& key) { return edge_hash(key.first.a, key.first.b); }
    static bool equal(const key_type& x, const key_type& y) { return x.first == y.first; }
    static key_type fresh() { return {elfes::edge2(), 0}; }
};

/// The first bucket count of the table that is not below `n`; above the last one, the last one.
unsigned next_prime(unsigned n);

template <class Key>
class chained_hash {
public:
    using policy = hash_policy<Key>;
    using slot = triad<Key, std::size_t, std::size_t>;
    using block_type = vector_num<slot, 8>;

    /// A table without storage; `init(23, 23)` makes it usable. Throws `std::bad_alloc` when the
    /// block object can't be had.
    chained_hash() : block(new block_type) {}

    /// Empties the table and sizes it for `expected` keys in at least `min_buckets` buckets. False
    /// when the storage can't be had: the table keeps its old buckets and holds nothing.
    [[nodiscard]] bool init(std::size_t expected, std::size_t min_buckets);

    /// Rebuilds the table with exactly `buckets` buckets. False, and no change, when that is not a
    /// bucket count of the table of primes from 23 up or when storage for the new table can't be
    /// had. False too when the new table runs out of storage halfway: the entries that found no
    /// place are then lost (kept: insertion sites look at the count alone).
    [[nodiscard]] bool rehash(std::size_t buckets);

    /// The live slot of the key, inserted if absent; a map keeps the value of the first insertion.
    /// When no storage can be had for a new slot nothing is inserted, which only `count` shows, and
    /// the chain's last slot comes back; null when the table has no buckets. It goes down one chain,
    /// as `find` does.
    slot* find_or_insert(std::size_t hash, const Key& key);
    slot* find_or_insert(const Key& key) { return find_or_insert(policy::hash(key), key); }

    /// The live slot of the key, or null. A link leads to a slot further behind in the storage, so
    /// a chain ends after as many steps as there are slots, if not sooner.
    slot* find(const Key& key);

    /// The load rule, to be applied before each insertion: a table that would hold more than two
    /// keys a bucket is rebuilt for about one. False when that rebuild is refused.
    [[nodiscard]] bool prepare_insertion()
    {
        if (count + 1 <= 2 * bucket_count) return true;
        return rehash(next_prime(static_cast<unsigned>(count + 1)));
    }

    /// Rebuilds ahead of the insertion of `keys` keys in all. A convenience: a refused rebuild is
    /// made up for by the load rule.
    void expect(std::size_t keys)
    {
        if (keys > bucket_count) (void)rehash(next_prime(static_cast<unsigned>(keys)));
    }

    /// Applies the load rule and inserts. True if the key was new and storage could be had.
    bool insert(const Key& key)
    {
        if (!prepare_insertion()) return false;
        const std::size_t before = count;
        (void)find_or_insert(key);
        return count != before;
    }

    /// Calls `visit(slot)` for each live slot in storage order: heads by bucket, then overflow.
    template <class Visit>
    void for_each(Visit visit)
    {
        slot* const slots = block->data + offset;
        for (std::size_t i = 0; i < size; ++i)
            if (slots[i].second == generation) visit(slots[i]);
    }

    /// Slot storage; bucket head i stands at index offset + i.
    Ptr<block_type> block;
    /// Slots in use: bucket heads and overflow slots.
    std::size_t size = 0;
    std::size_t offset = 0;
    std::size_t bucket_count = 0;
    /// The stamp of live slots.
    std::size_t generation = 0;
    /// Number of live entries.
    std::size_t count = 0;

private:
    /// `hash` modulo the bucket count by a multiplication: the reciprocal is short by less than one
    /// unit in 2^64, so the quotient is the true one or one less.
    std::size_t bucket_of(std::size_t hash) const
    {
        const std::uint64_t quotient =
            static_cast<std::uint64_t>((static_cast<wide>(hash) * reciprocal) >> 64);
        const std::uint64_t rest = hash - quotient * bucket_count;
        return rest >= bucket_count ? rest - bucket_count : rest;
    }

    void prefetch(std::size_t hash) const
    {
        tessalo2d::prefetch_to_write(block->data + offset + bucket_of(hash));
    }

    __extension__ using wide = unsigned __int128;

    /// Whole part of 2^64 / bucket_count.
    std::uint64_t reciprocal = 0;
};

template <class Key>
bool chained_hash<Key>::init(std::size_t expected, std::size_t min_buckets)
{
    constexpr std::size_t LARGEST = ~std::size_t(0);
    std::size_t b = min_buckets > 23 ? min_buckets : 23;
    generation = 1;
    count = 0;
    if (b != bucket_count) b = next_prime(static_cast<unsigned>(b));
    // The collisions to expect when the keys fall into the buckets.
    const double keys = static_cast<double>(expected);
    const double overflow = keys / (keys + static_cast<double>(b)) * keys;
    const bool fits = overflow < 9.0e18 && static_cast<std::size_t>(overflow) <= LARGEST - b;
    const std::size_t total = fits ? b + static_cast<std::size_t>(overflow) : LARGEST;
    const std::size_t room = block->capacity > offset ? block->capacity - offset : 0;
    if (total > room &&
        (total > LARGEST - offset || !block->__grow(offset + total, offset + size, 1))) {
        // Nothing is live any more, but the generation starts anew at the same stamp.
        for (std::size_t i = 0; i < size; ++i) block->data[offset + i].second = 0;
        return false;
    }
    bucket_count = b;
    reciprocal = LARGEST / b;
    size = b;
    slot* const heads = block->data + offset;
    const slot empty(policy::fresh(), 0, 0);
    for (std::size_t i = 0; i < b; ++i) heads[i] = empty;
    return true;
}

template <class Key>
bool chained_hash<Key>::rehash(std::size_t buckets)
{
    chained_hash fresh;
    if (!fresh.init(buckets, buckets) || fresh.bucket_count != buckets) return false;
    const std::size_t old_count = count;
    if (old_count != 0) {
        // The heads that keys go to lie anywhere: they are called for ahead of their use.
        constexpr std::size_t AHEAD = 8;
        const slot* const slots = block->data + offset;
        for (std::size_t i = 0; i < size; ++i) {
            if (i + AHEAD < size) fresh.prefetch(policy::hash(slots[i + AHEAD].first));
            if (slots[i].second == generation) (void)fresh.find_or_insert(slots[i].first);
        }
    }
    *this = fresh;
    return count == old_count;
}

template <class Key>
auto chained_hash<Key>::find_or_insert(std::size_t hash, const Key& key) -> slot*
{
    if (bucket_count == 0) return nullptr;
    std::size_t last = offset + bucket_of(hash);
    slot* slots = block->data;
    slot* vacant = nullptr;
    for (;;) {
        slot& s = slots[last];
        if (s.second == generation) {
            if (policy::equal(s.first, key)) return &s;
        } else if (!vacant) {
            vacant = &s;
        }
        if (s.third == 0) break;
        last += s.third;
    }
    if (vacant) {
        vacant->first = key;
        vacant->second = generation;
        ++count;
        return vacant;
    }
    const std::size_t index = offset + size;
    if (index >= block->capacity && !block->__grow(index + 1, index, 2)) return &slots[last];
    slots = block->data;
    slots[index] = slot(key, generation, 0);
    ++size;
    slots[last].third = index - last;
    ++count;
    return &slots[index];
}

template <class Key>
auto chained_hash<Key>::find(const Key& key) -> slot*
{
    if (bucket_count == 0) return nullptr;
    slot* s = block->data + offset + bucket_of(policy::hash(key));
    for (;;) {
        if (s->second == generation && policy::equal(s->first, key)) return s;
        if (s->third == 0) return nullptr;
        s += s->third;
    }
}

} // namespace tessalo2d

} // namespace vorel
