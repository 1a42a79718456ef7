// Cutting elements at their midnodes, against a copy of what is read and written.
#include "bench/conversion/require.h"
#include "bench/support/meshes.h"
#include "bench/support/roof.h"

using namespace bench_support;
using namespace vorel;

namespace {

/// Quadratic connectivity of 6 rows, or of 9 rows with some triangles.
dense2D<unsigned> quadratic(const benchmark::State& state, form kind)
{
    mesh m = grid(kind, static_cast<std::size_t>(state.range(0)));
    require(tessalo2d::convert_into_quadratic(m.coords, m.connect) == 0);
    return m.connect;
}

/// A memcpy of half the bytes reads that half and writes the other.
void split_into_linear(benchmark::State& state, form kind)
{
    const dense2D<unsigned> connect = quadratic(state, kind);
    dense2D<unsigned> result;
    require(tessalo2d::split_into_linear(connect, result) == 0);
    const against_roof watch(state, connect.cols,
                             memcpy_roof((bytes(connect) + bytes(result)) / 2));
    for (auto _ : state) {
        result.clear();
        require(tessalo2d::split_into_linear(connect, result) == 0);
        benchmark::ClobberMemory();
    }
}

/// From 6 rows nothing is moved: far below the roof.
void convert_into_linear(benchmark::State& state, form kind)
{
    dense2D<unsigned> connect = quadratic(state, kind);
    const std::size_t rows = connect.rows;
    const against_roof watch(state, connect.cols, memcpy_roof(bytes(connect)));
    for (auto _ : state) {
        require(tessalo2d::convert_into_linear(connect) == 0);
        connect.rows = rows;
        benchmark::ClobberMemory();
    }
}

/// Nodes, high-order connectivity and result are written at least.
void split_into_Q4(benchmark::State& state, form kind)
{
    const mesh m = grid(kind, static_cast<std::size_t>(state.range(0)));
    dense2D<double> coords = m.coords;
    dense2D<unsigned> result;
    const auto call = [&] {
        coords.cols = m.coords.cols;
        coords.size = m.coords.cols * coords.ld;
        result.clear();
        require(tessalo2d::split_into_Q4(coords, m.connect, result, dense2D<unsigned>()) == 0);
        benchmark::ClobberMemory();
    };
    call();
    const std::size_t between = 9 * m.connect.cols * sizeof(unsigned);
    const against_roof watch(state, m.connect.cols,
                             memcpy_roof(bytes(coords) + between + bytes(result)));
    for (auto _ : state) call();
}

BENCHMARK_CAPTURE(split_into_linear, T6, form::T3)->Apply(element_counts);
BENCHMARK_CAPTURE(split_into_linear, Q9, form::mixed)->Apply(element_counts);
BENCHMARK_CAPTURE(convert_into_linear, T6, form::T3)->Apply(element_counts);
BENCHMARK_CAPTURE(convert_into_linear, Q9, form::mixed)->Apply(element_counts);
BENCHMARK_CAPTURE(split_into_Q4, mixed, form::mixed)->Apply(element_counts);

} // namespace
