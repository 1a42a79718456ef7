// The hash tables against others on the same keys, all distinct, in the order of a mesh and in
// random order. The roof is a memcpy of the slots.
#include "bench/support/roof.h"

#include "foundation/chained_hash.h"

#include <random>
#include <string>
#include <unordered_set>
#if defined(TESSALO2D_HAS_ROBIN_MAP)
#include <tsl/robin_set.h>
#endif

using namespace bench_support;
using vorel::elfes::edge2;
using vorel::tessalo2d::chained_hash;
using vorel::tessalo2d::hash_policy;

namespace {

using ID_value = std::pair<unsigned, unsigned>;
using edge_value = std::pair<edge2, unsigned>;

enum class order { mesh, random };

/// Key number i of a mesh: node i, or edge i of a strip of triangles along nodes 0, 1, 2, ...
void make(unsigned i, unsigned& key)
{
    key = i;
}
void make(unsigned i, ID_value& key)
{
    key = {i, i + 7};
}
void make(unsigned i, edge2& key)
{
    key = {i / 2 + 1 + i % 2, i / 2};
}
void make(unsigned i, edge_value& key)
{
    make(i, key.first);
    key.second = i;
}

template <class Key>
std::vector<Key> keys(std::size_t n, order o)
{
    std::vector<Key> all(n);
    for (std::size_t i = 0; i < n; ++i) make(static_cast<unsigned>(i), all[i]);
    std::mt19937 draw(1);
    if (o == order::random) std::shuffle(all.begin(), all.end(), draw);
    return all;
}

// The other tables get the same hash and the same notion of equality.

template <class Key>
struct hash_of {
    std::size_t operator()(const Key& key) const { return hash_policy<Key>::hash(key); }
};
template <class Key>
struct equal_to {
    bool operator()(const Key& x, const Key& y) const { return hash_policy<Key>::equal(x, y); }
};
/// One interface for all tables.
template <class Key>
class ours {
public:
    ours() { (void)table.init(23, 23); }
    void expect(std::size_t n) { table.expect(n); }
    void insert(const Key& key) { table.insert(key); }
    bool find(const Key& key) { return table.find(key) != nullptr; }

private:
    chained_hash<Key> table;
};

template <class Key, class Set>
class other {
public:
    void expect(std::size_t n) { set.reserve(n); }
    void insert(const Key& key) { set.insert(key); }
    bool find(const Key& key) { return set.find(key) != set.end(); }

private:
    Set set;
};

template <class Key>
using standard = other<Key, std::unordered_set<Key, hash_of<Key>, equal_to<Key>>>;
#if defined(TESSALO2D_HAS_ROBIN_MAP)
template <class Key>
using robin = other<Key, tsl::robin_set<Key, hash_of<Key>, equal_to<Key>>>;
template <class Key>
using prime_robin = other<Key, tsl::robin_pg_set<Key, hash_of<Key>, equal_to<Key>>>;
#endif

template <class Key>
double roof(std::size_t n)
{
    return memcpy_roof(n * sizeof(typename chained_hash<Key>::slot));
}

template <template <class> class Table, class Key>
void insert(benchmark::State& state, order o, bool expected)
{
    const auto n = static_cast<std::size_t>(state.range(0));
    const std::vector<Key> all = keys<Key>(n, o);
    const against_roof watch(state, n, roof<Key>(n));
    for (auto _ : state) {
        Table<Key> table;
        if (expected) table.expect(n);
        for (const Key& key : all) table.insert(key);
        benchmark::DoNotOptimize(table);
    }
}

/// Half of the keys that are looked for are there.
template <template <class> class Table, class Key>
void find(benchmark::State& state, order o)
{
    const auto n = static_cast<std::size_t>(state.range(0));
    const std::vector<Key> all = keys<Key>(2 * n, o);
    Table<Key> table;
    for (std::size_t i = 0; i < 2 * n; i += 2) table.insert(all[i]);
    const against_roof watch(state, n, roof<Key>(n));
    for (auto _ : state) {
        std::size_t found = 0;
        for (std::size_t i = 0; i < n; ++i) found += table.find(all[i]);
        benchmark::DoNotOptimize(found);
    }
}

template <template <class> class Table, class Key>
void add(const std::string& name)
{
    for (const auto& [o, in_order] : {std::pair(order::mesh, "mesh"), {order::random, "random"}}) {
        benchmark::RegisterBenchmark((name + "/insert/" + in_order).c_str(), insert<Table, Key>, o,
                                     false)
            ->Apply(element_counts);
        benchmark::RegisterBenchmark((name + "/insert_expected/" + in_order).c_str(),
                                     insert<Table, Key>, o, true)
            ->Apply(element_counts);
        benchmark::RegisterBenchmark((name + "/find/" + in_order).c_str(), find<Table, Key>, o)
            ->Apply(element_counts);
    }
}

template <class Key>
void add_all(const std::string& keys_name)
{
    add<ours, Key>("chained_hash/" + keys_name);
    add<standard, Key>("unordered_set/" + keys_name);
#if defined(TESSALO2D_HAS_ROBIN_MAP)
    add<robin, Key>("robin_set/" + keys_name);
    add<prime_robin, Key>("robin_pg_set/" + keys_name);
#endif
}

const bool added = [] {
    add_all<unsigned>("ID_set");
    add_all<ID_value>("ID_map");
    add_all<edge2>("edge_set");
    add_all<edge_value>("edge_map");
    return true;
}();

} // namespace
