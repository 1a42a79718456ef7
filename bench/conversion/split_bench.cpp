// Cutting quadrilaterals into triangles, against a memcpy of what the call reads and writes.
#include "bench/support/meshes.h"
#include "bench/support/roof.h"

using namespace bench_support;
using namespace vorel::tessalo2d;

namespace {

void split_fixed(benchmark::State& state, form kind)
{
    const mesh m = grid(kind, static_cast<std::size_t>(state.range(0)));
    vorel::dense2D<unsigned> result;
    (void)split_Q4_into_T3(m.connect, result);
    const against_roof watch(state, m.connect.cols, memcpy_roof(bytes(m.connect) + bytes(result)));
    for (auto _ : state) {
        result.clear();
        benchmark::DoNotOptimize(split_Q4_into_T3(m.connect, result));
        benchmark::ClobberMemory();
    }
}

BENCHMARK_CAPTURE(split_fixed, Q4, form::Q4)->Apply(element_counts);
BENCHMARK_CAPTURE(split_fixed, mixed, form::mixed)->Apply(element_counts);

void split_by_quality(benchmark::State& state, form kind, std::size_t dimension, numbering order)
{
    const mesh m = grid(kind, static_cast<std::size_t>(state.range(0)), dimension, order);
    vorel::dense2D<unsigned> result;
    (void)split_Q4_into_T3(m.coords, m.connect, result);
    const against_roof watch(state, m.connect.cols,
                             memcpy_roof(bytes(m.coords) + bytes(m.connect) + bytes(result)));
    for (auto _ : state) {
        result.clear();
        benchmark::DoNotOptimize(split_Q4_into_T3(m.coords, m.connect, result));
        benchmark::ClobberMemory();
    }
}

BENCHMARK_CAPTURE(split_by_quality, Q4_plane_natural, form::Q4, 2, numbering::natural)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(split_by_quality, Q4_space_natural, form::Q4, 3, numbering::natural)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(split_by_quality, mixed_plane_natural, form::mixed, 2, numbering::natural)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(split_by_quality, Q4_plane_shuffled, form::Q4, 2, numbering::shuffled)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(split_by_quality, Q4_space_shuffled, form::Q4, 3, numbering::shuffled)
    ->Apply(element_counts);

/// Unit cells, in which every decision is a tie.
void split_ties(benchmark::State& state, std::size_t dimension)
{
    mesh m = grid(form::Q4, static_cast<std::size_t>(state.range(0)), dimension);
    for (std::size_t j = 0; j < m.coords.cols; ++j)
        for (std::size_t i = 0; i < dimension; ++i)
            m.coords(i, j) = i < 2 ? std::round(m.coords(i, j)) : 0.0;
    vorel::dense2D<unsigned> result;
    (void)split_Q4_into_T3(m.coords, m.connect, result);
    const against_roof watch(state, m.connect.cols,
                             memcpy_roof(bytes(m.coords) + bytes(m.connect) + bytes(result)));
    for (auto _ : state) {
        result.clear();
        benchmark::DoNotOptimize(split_Q4_into_T3(m.coords, m.connect, result));
        benchmark::ClobberMemory();
    }
}

BENCHMARK_CAPTURE(split_ties, plane, 2)->Apply(element_counts);
BENCHMARK_CAPTURE(split_ties, space, 3)->Apply(element_counts);

/// Thresholds that cut some of the quadrilaterals.
void split_gated(benchmark::State& state, std::size_t dimension, int criterion)
{
    const mesh m = grid(form::Q4, static_cast<std::size_t>(state.range(0)), dimension);
    vorel::dense2D<unsigned> result;
    vorel::dense1D<unsigned> kept;
    vorel::dense1D<unsigned> split;
    const auto call = [&] {
        result.clear();
        kept.clear();
        split.clear();
        return split_Q4_into_T3(m.coords, m.connect, 0.6, 0.7, 0.9, criterion, kept, split, result);
    };
    state.counters["cut"] = static_cast<double>(call()) / static_cast<double>(m.connect.cols);
    const against_roof watch(state, m.connect.cols,
                             memcpy_roof(bytes(m.coords) + bytes(m.connect) + bytes(result)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(call());
        benchmark::ClobberMemory();
    }
}

BENCHMARK_CAPTURE(split_gated, plane_quality, 2, DIAGONAL_BEST_QUALITY)->Apply(element_counts);
BENCHMARK_CAPTURE(split_gated, space_quality, 3, DIAGONAL_BEST_QUALITY)->Apply(element_counts);
BENCHMARK_CAPTURE(split_gated, space_fold, 3, DIAGONAL_LEAST_FOLD)->Apply(element_counts);

} // namespace
