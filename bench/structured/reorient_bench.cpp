#include "bench/structured/grid_mesh.h"

#include <benchmark/benchmark.h>

#include <cstring>

using namespace vorel;

namespace {

bench::adjacent_mesh mesh_of(benchmark::State& state)
{
    return bench::grid_mesh(static_cast<std::size_t>(state.range(0)),
                            static_cast<std::size_t>(state.range(1)),
                            static_cast<int>(state.range(2)));
}

/// Turns every second element at random, with its sides.
void turn_some(bench::adjacent_mesh& m)
{
    std::mt19937 draw(3);
    for (std::size_t e = 0; e < m.connect.cols; ++e) {
        if (draw() % 2) continue;
        std::swap(m.connect(0, e), m.connect(2, e));
        if (m.connect.rows == 3) {
            std::swap(m.neighbors(0, e), m.neighbors(2, e));
        } else {
            std::swap(m.neighbors(0, e), m.neighbors(1, e));
            std::swap(m.neighbors(2, e), m.neighbors(3, e));
        }
    }
}

void mesh_reorient(benchmark::State& state)
{
    bench::adjacent_mesh m = mesh_of(state);
    if (state.range(3)) turn_some(m);
    const bench::adjacent_mesh turned = m;
    dense2D<unsigned> connect;
    dense2D<unsigned> neighbors;
    (void)connect.copy(turned.connect);
    (void)neighbors.copy(turned.neighbors);
    const std::size_t bytes = connect.size * sizeof(unsigned);
    int flips = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::memcpy(connect.column(0), turned.connect.column(0), bytes);
        std::memcpy(neighbors.column(0), turned.neighbors.column(0), bytes);
        state.ResumeTiming();
        flips = tessalo2d::mesh_reorient(connect, neighbors, 0, 1);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(connect.cols));
    state.counters["flips"] = flips;
}

/// Both columns of every element, in an order that is known beforehand.
void reorient_gather(benchmark::State& state)
{
    const bench::adjacent_mesh m = mesh_of(state);
    const std::vector<unsigned> order =
        bench::numbers(m.connect.cols, static_cast<int>(state.range(2)), 5);
    for (auto _ : state)
        benchmark::DoNotOptimize(bench::gather_columns(m, order.data(), order.size()));
    state.SetItemsProcessed(state.iterations() * static_cast<long>(m.connect.cols));
}

void shapes(benchmark::internal::Benchmark* b, std::initializer_list<long> turned)
{
    for (const long rows : {3, 4})
        for (const long order : {bench::in_rows, bench::at_random})
            for (const long some : turned)
                for (const long elements : {10000, 100000, 1000000})
                    b->Args({elements, rows, order, some});
}

void all_shapes(benchmark::internal::Benchmark* b)
{
    shapes(b, {0, 1});
}

void roof_shapes(benchmark::internal::Benchmark* b)
{
    shapes(b, {0});
}

BENCHMARK(mesh_reorient)->Apply(all_shapes);
BENCHMARK(reorient_gather)->Name("mesh_reorient/gather")->Apply(roof_shapes);

} // namespace
