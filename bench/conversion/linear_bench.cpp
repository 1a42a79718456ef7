// Cutting elements at their midnodes, against a copy of what is read and written.
#include "bench/conversion/meshes.h"

#include <vorel/tessalo2d.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

using namespace vorel;

namespace {

void count_items(benchmark::State& state, std::size_t elements)
{
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(elements));
}

void require(bool done)
{
    if (!done) std::abort();
}

/// Quadratic connectivity of 6 rows, or of 9 rows with some triangles.
dense2D<unsigned> quadratic(const benchmark::State& state)
{
    support::mesh m = state.range(1) == 6
                          ? bench::triangles(static_cast<std::size_t>(state.range(0)), false)
                          : bench::mixed(static_cast<std::size_t>(state.range(0)), false);
    require(tessalo2d::convert_into_quadratic(m.coords, m.connect) == 0);
    return m.connect;
}

void split_into_linear(benchmark::State& state)
{
    const dense2D<unsigned> connect = quadratic(state);
    dense2D<unsigned> result;
    for (auto _ : state) {
        result.clear();
        require(tessalo2d::split_into_linear(connect, result) == 0);
        benchmark::ClobberMemory();
    }
    count_items(state, connect.cols);
}

/// Bytes read and bytes written, half of each copied to the other.
void split_into_linear_memcpy(benchmark::State& state)
{
    const dense2D<unsigned> connect = quadratic(state);
    dense2D<unsigned> result;
    require(tessalo2d::split_into_linear(connect, result) == 0);
    const std::size_t half = (connect.size + result.size) / 2;
    const std::vector<unsigned> from(half, 1u);
    std::vector<unsigned> to(half);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), half * sizeof(unsigned));
        benchmark::ClobberMemory();
    }
    count_items(state, connect.cols);
}

void convert_into_linear(benchmark::State& state)
{
    dense2D<unsigned> connect = quadratic(state);
    const std::size_t rows = connect.rows;
    for (auto _ : state) {
        require(tessalo2d::convert_into_linear(connect) == 0);
        connect.rows = rows;
        benchmark::ClobberMemory();
    }
    count_items(state, connect.cols);
}

void convert_into_linear_memcpy(benchmark::State& state)
{
    const dense2D<unsigned> connect = quadratic(state);
    std::vector<unsigned> to(connect.size);
    for (auto _ : state) {
        std::memcpy(to.data(), connect.column(0), connect.size * sizeof(unsigned));
        benchmark::ClobberMemory();
    }
    count_items(state, connect.cols);
}

void rows_and_sizes(benchmark::internal::Benchmark* b)
{
    b->ArgNames({"elements", "rows"})->Unit(benchmark::kMicrosecond);
    for (const int elements : {10000, 100000, 1000000})
        for (const int rows : {6, 9}) b->Args({elements, rows});
}

BENCHMARK(split_into_linear_memcpy)->Apply(rows_and_sizes);
BENCHMARK(split_into_linear)->Apply(rows_and_sizes);
BENCHMARK(convert_into_linear_memcpy)->Apply(rows_and_sizes);
BENCHMARK(convert_into_linear)->Apply(rows_and_sizes);

/// Nodes, high-order connectivity and result are written at least.
void split_into_Q4_memcpy(benchmark::State& state)
{
    const support::mesh m = bench::mixed(static_cast<std::size_t>(state.range(0)), false);
    dense2D<double> coords = m.coords;
    dense2D<unsigned> result;
    require(tessalo2d::split_into_Q4(coords, m.connect, result, dense2D<unsigned>()) == 0);
    std::vector<double> nodes(coords.size);
    std::vector<unsigned> elements(result.size);
    std::vector<unsigned> between(9 * m.connect.cols);
    for (auto _ : state) {
        std::memcpy(nodes.data(), coords.column(0), coords.size * sizeof(double));
        std::memcpy(elements.data(), result.column(0), result.size * sizeof(unsigned));
        std::memcpy(between.data(), result.column(0), between.size() * sizeof(unsigned));
        benchmark::ClobberMemory();
    }
    count_items(state, m.connect.cols);
}

void split_into_Q4(benchmark::State& state)
{
    const support::mesh m = bench::mixed(static_cast<std::size_t>(state.range(0)), false);
    const std::size_t nodes = m.coords.cols;
    dense2D<double> coords = m.coords;
    dense2D<unsigned> result;
    for (auto _ : state) {
        coords.cols = nodes;
        coords.size = nodes * coords.ld;
        result.clear();
        require(tessalo2d::split_into_Q4(coords, m.connect, result, dense2D<unsigned>()) == 0);
        benchmark::ClobberMemory();
    }
    count_items(state, m.connect.cols);
}

BENCHMARK(split_into_Q4_memcpy)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(split_into_Q4)->Arg(10000)->Arg(100000)->Arg(1000000);

} // namespace
