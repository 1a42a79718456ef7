// Corner angles of elements, beside the rate of the arc tangent.
#include "bench/grid.h"

#include <benchmark/benchmark.h>

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

/// The roof: `corners` arc tangents for each element, of the sines and cosines of such a mesh in
/// the order in which they come.
void arc_tangents(benchmark::State& state, std::size_t corners)
{
    const auto elements = static_cast<std::size_t>(state.range(0));
    const std::size_t count = elements * corners;
    std::mt19937 draw(1);
    std::uniform_real_distribution<double> number(0.2, 1.0);
    std::vector<double> sine(count);
    std::vector<double> cosine(count);
    std::vector<double> angle(count);
    for (std::size_t i = 0; i < count; ++i) {
        sine[i] = number(draw);
        cosine[i] = number(draw) - 0.4;
    }
    for (auto _ : state) {
        for (std::size_t i = 0; i < count; ++i) angle[i] = std::atan2(sine[i], cosine[i]);
        benchmark::ClobberMemory();
    }
    report(state, elements);
}

template <int D, cells KIND, numbering ORDER>
void angles(benchmark::State& state)
{
    const bench::mesh m = bench::grid(static_cast<std::size_t>(state.range(0)), D, KIND, ORDER);
    dense1D<double, 8> low, high;
    for (auto _ : state) {
        benchmark::DoNotOptimize(tessalo2d::angles(m.coords, m.connect, true, low, high));
        benchmark::ClobberMemory();
    }
    report(state, m.connect.cols);
}

void sizes(benchmark::internal::Benchmark* b)
{
    b->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMicrosecond);
}

} // namespace

BENCHMARK_CAPTURE(arc_tangents, triangles, 3)->Apply(sizes);
BENCHMARK(angles<2, cells::triangles, numbering::natural>)->Apply(sizes);
BENCHMARK(angles<3, cells::triangles, numbering::natural>)->Apply(sizes);
BENCHMARK(angles<2, cells::triangles, numbering::random>)->Apply(sizes);
BENCHMARK_CAPTURE(arc_tangents, quads, 4)->Apply(sizes);
BENCHMARK(angles<2, cells::quads, numbering::natural>)->Apply(sizes);
BENCHMARK(angles<2, cells::mixed, numbering::natural>)->Apply(sizes);
BENCHMARK(angles<3, cells::quads, numbering::natural>)->Apply(sizes);
