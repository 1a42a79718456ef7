// Cutting quadrilaterals into triangles, beside a memcpy of what each call must read and write.
#include "bench/grid.h"

#include <benchmark/benchmark.h>

#include <cstring>

using namespace vorel;
using bench::cells;
using bench::numbering;

namespace {

void report(benchmark::State& state, std::size_t elements)
{
    const auto count = static_cast<std::int64_t>(elements);
    state.SetItemsProcessed(state.iterations() * count);
    state.counters["ns/element"] = benchmark::Counter(
        static_cast<double>(count) * 1e-9,
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// The roof: reads `in` bytes and writes `out` bytes for each element, both warm.
void copy_bytes(benchmark::State& state, std::size_t in, std::size_t out)
{
    const auto elements = static_cast<std::size_t>(state.range(0));
    // A memcpy moves each byte twice.
    const std::size_t bytes = elements * (in + out) / 2;
    std::vector<char> from(bytes, 'a');
    std::vector<char> to(bytes, 'b');
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), bytes);
        benchmark::ClobberMemory();
    }
    report(state, elements);
}

template <cells KIND>
void split_fixed(benchmark::State& state)
{
    const bench::mesh m = bench::grid(static_cast<std::size_t>(state.range(0)), 2, KIND);
    dense2D<unsigned> result;
    for (auto _ : state) {
        result.clear();
        benchmark::DoNotOptimize(tessalo2d::split_Q4_into_T3(m.connect, result));
        benchmark::ClobberMemory();
    }
    report(state, m.connect.cols);
}

template <int D, cells KIND, numbering ORDER>
void split_by_quality(benchmark::State& state)
{
    const bench::mesh m = bench::grid(static_cast<std::size_t>(state.range(0)), D, KIND, ORDER);
    dense2D<unsigned> result;
    for (auto _ : state) {
        result.clear();
        benchmark::DoNotOptimize(tessalo2d::split_Q4_into_T3(m.coords, m.connect, result));
        benchmark::ClobberMemory();
    }
    report(state, m.connect.cols);
}

/// The thresholds cut about a third of the quadrilaterals.
template <int D, int CRITERION>
void split_gated(benchmark::State& state)
{
    const bench::mesh m = bench::grid(static_cast<std::size_t>(state.range(0)), D, cells::quads);
    dense2D<unsigned> result;
    dense1D<unsigned, 8> kept, split;
    for (auto _ : state) {
        result.clear();
        kept.size = 0;
        split.size = 0;
        benchmark::DoNotOptimize(tessalo2d::split_Q4_into_T3(m.coords, m.connect, 0.5, 0.5, 0.9,
                                                             CRITERION, kept, split, result));
        benchmark::ClobberMemory();
    }
    report(state, m.connect.cols);
    state.counters["cut"] = static_cast<double>(split.size) / static_cast<double>(m.connect.cols);
}

/// Reading the corner coordinates of each quadrilateral and nothing else.
template <int D, numbering ORDER>
void gather(benchmark::State& state)
{
    const bench::mesh m =
        bench::grid(static_cast<std::size_t>(state.range(0)), D, cells::quads, ORDER);
    for (auto _ : state) {
        double sum[4] = {};
        for (std::size_t e = 0; e < m.connect.cols; ++e)
            for (int k = 0; k < 4; ++k) sum[k] += m.coords.column(m.connect.column(e)[k])[1];
        benchmark::DoNotOptimize(sum);
    }
    report(state, m.connect.cols);
}

void sizes(benchmark::internal::Benchmark* b)
{
    b->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMicrosecond);
}

} // namespace

BENCHMARK_CAPTURE(copy_bytes, fixed_quads, 16, 24)->Apply(sizes);
BENCHMARK(split_fixed<cells::quads>)->Apply(sizes);
BENCHMARK_CAPTURE(copy_bytes, fixed_mixed, 16, 16)->Apply(sizes);
BENCHMARK(split_fixed<cells::mixed>)->Apply(sizes);

BENCHMARK_CAPTURE(copy_bytes, quality_plane, 16 + 16, 24)->Apply(sizes);
BENCHMARK(gather<2, numbering::natural>)->Apply(sizes);
BENCHMARK(split_by_quality<2, cells::quads, numbering::natural>)->Apply(sizes);
BENCHMARK(split_by_quality<2, cells::mixed, numbering::natural>)->Apply(sizes);
BENCHMARK(split_by_quality<3, cells::quads, numbering::natural>)->Apply(sizes);
BENCHMARK(gather<3, numbering::random>)->Apply(sizes);
BENCHMARK(split_by_quality<3, cells::quads, numbering::random>)->Apply(sizes);

BENCHMARK(split_gated<2, tessalo2d::DIAGONAL_BEST_QUALITY>)->Apply(sizes);
BENCHMARK(split_gated<3, tessalo2d::DIAGONAL_BEST_QUALITY>)->Apply(sizes);
BENCHMARK(split_gated<3, tessalo2d::DIAGONAL_LEAST_FOLD>)->Apply(sizes);
