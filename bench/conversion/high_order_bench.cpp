// Order conversion: T3 to T6 and mixed to Q9, against a copy of the outputs, and against one hash
// table for all edges.
#include "bench/conversion/meshes.h"
#include "foundation/chained_hash.h"

#include <vorel/tessalo2d.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

using namespace vorel;

namespace {

enum numbering { NATURAL, RANDOM };

support::mesh mesh_for(const benchmark::State& state)
{
    return bench::triangles(static_cast<std::size_t>(state.range(0)), state.range(1) == RANDOM);
}

void count_items(benchmark::State& state, std::size_t elements)
{
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(elements));
}

void require(bool done)
{
    if (!done) std::abort();
}

/// The bytes that a conversion must write at least, copied from memory that was written before.
void copy_of_outputs(benchmark::State& state, const support::mesh& m)
{
    dense2D<double> coords = m.coords;
    dense2D<unsigned> result;
    require(tessalo2d::convert_into_high_order(coords, m.connect, 1, 1, 0, result,
                                               dense2D<unsigned>()) == 0);
    std::vector<double> coords_copy(coords.size);
    std::vector<unsigned> result_copy(result.size);
    for (auto _ : state) {
        std::memcpy(coords_copy.data(), coords.column(0), coords.size * sizeof(double));
        std::memcpy(result_copy.data(), result.column(0), result.size * sizeof(unsigned));
        benchmark::ClobberMemory();
    }
    count_items(state, m.connect.cols);
}

/// Outputs keep their storage from call to call, as with a caller that reserves.
void convert(benchmark::State& state, const support::mesh& m)
{
    const std::size_t nodes = m.coords.cols;
    dense2D<double> coords = m.coords;
    dense2D<unsigned> result;
    for (auto _ : state) {
        coords.cols = nodes;
        coords.size = nodes * coords.ld;
        require(tessalo2d::convert_into_high_order(coords, m.connect, 1, 1, 0, result,
                                                   dense2D<unsigned>()) == 0);
        benchmark::ClobberMemory();
    }
    count_items(state, m.connect.cols);
}

void T3_to_T6_memcpy(benchmark::State& state)
{
    copy_of_outputs(state, mesh_for(state));
}

void T3_to_T6(benchmark::State& state)
{
    convert(state, mesh_for(state));
}

support::mesh copy_of(const support::mesh& m)
{
    support::mesh copy;
    require(copy.coords.copy(m.coords) && copy.connect.copy(m.connect));
    return copy;
}

/// Gives storage back outside the measured time.
void drop(support::mesh& m, benchmark::State& state)
{
    state.PauseTiming();
    m = support::mesh();
    state.ResumeTiming();
}

/// The same copy into storage that is asked for anew, as an in-place conversion must do.
void T3_to_T6_in_place_memcpy(benchmark::State& state)
{
    support::mesh m = mesh_for(state);
    require(tessalo2d::convert_into_quadratic(m.coords, m.connect) == 0);
    for (auto _ : state) {
        support::mesh copy = copy_of(m);
        benchmark::ClobberMemory();
        drop(copy, state);
    }
    count_items(state, m.connect.cols);
}

void T3_to_T6_in_place(benchmark::State& state)
{
    const support::mesh m = mesh_for(state);
    for (auto _ : state) {
        state.PauseTiming();
        support::mesh copy = copy_of(m);
        state.ResumeTiming();
        require(tessalo2d::convert_into_quadratic(copy.coords, copy.connect) == 0);
        benchmark::ClobberMemory();
        drop(copy, state);
    }
    count_items(state, m.connect.cols);
}

/// The same with every edge in one hash table.
void T3_to_T6_hash(benchmark::State& state)
{
    using elfes::edge2;
    const support::mesh m = mesh_for(state);
    const std::size_t nodes = m.coords.cols;
    const std::size_t elements = m.connect.cols;
    dense2D<double> coords = m.coords;
    dense2D<unsigned> result;
    for (auto _ : state) {
        coords.cols = nodes;
        coords.size = nodes * coords.ld;
        result.clear();
        tessalo2d::chained_hash<std::pair<edge2, unsigned>> table;
        require(table.init(23, 23));
        table.expect(2 * elements);
        require(result.resize(6, elements));
        auto next = static_cast<unsigned>(nodes);
        for (std::size_t e = 0; e < elements; ++e) {
            const unsigned* const c = m.connect.column(e);
            unsigned* const out = result.column(e);
            std::copy(c, c + 3, out);
            const edge2 sides[3] = {{c[1], c[2]}, {c[2], c[0]}, {c[0], c[1]}};
            for (std::size_t k = 0; k < 3; ++k) {
                require(table.prepare_insertion());
                const auto* const slot = table.find_or_insert({sides[k], next});
                out[3 + k] = slot->first.second;
                next += slot->first.second == next;
            }
        }
        require(coords.resize(2, next));
        table.for_each([&](const auto& slot) {
            const auto& [edge, node] = slot.first;
            for (std::size_t i = 0; i < 2; ++i)
                coords(i, node) = coords(i, edge.a) + 0.5 * (coords(i, edge.b) - coords(i, edge.a));
        });
        benchmark::ClobberMemory();
    }
    count_items(state, elements);
}

support::mesh mixed_for(const benchmark::State& state)
{
    return bench::mixed(static_cast<std::size_t>(state.range(0)), state.range(1) == RANDOM);
}

void mixed_to_Q9_memcpy(benchmark::State& state)
{
    copy_of_outputs(state, mixed_for(state));
}

void mixed_to_Q9(benchmark::State& state)
{
    convert(state, mixed_for(state));
}

void sizes_and_numberings(benchmark::internal::Benchmark* b)
{
    b->ArgNames({"elements", "random"})->Unit(benchmark::kMillisecond);
    for (const int elements : {10000, 100000, 1000000})
        for (const int numbering : {NATURAL, RANDOM}) b->Args({elements, numbering});
}

BENCHMARK(T3_to_T6_memcpy)->Apply(sizes_and_numberings);
BENCHMARK(T3_to_T6)->Apply(sizes_and_numberings);
BENCHMARK(T3_to_T6_in_place_memcpy)->Apply(sizes_and_numberings);
BENCHMARK(T3_to_T6_in_place)->Apply(sizes_and_numberings);
BENCHMARK(T3_to_T6_hash)->Apply(sizes_and_numberings);
BENCHMARK(mixed_to_Q9_memcpy)->Apply(sizes_and_numberings);
BENCHMARK(mixed_to_Q9)->Apply(sizes_and_numberings);

} // namespace
