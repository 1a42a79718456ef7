// Normals of elements and nodes, beside a memcpy of what each call must read and write.
#include "bench/grid.h"

#include <benchmark/benchmark.h>

#include <cfloat>
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

/// The roof: IDs and coordinates in, normals out, both warm.
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

template <cells KIND, numbering ORDER, bool UNIT>
void element_normals(benchmark::State& state)
{
    const bench::mesh m = bench::grid(static_cast<std::size_t>(state.range(0)), 3, KIND, ORDER);
    dense2D<double> vectors;
    for (auto _ : state) {
        benchmark::DoNotOptimize(tessalo2d::normals(m.coords, m.connect, UNIT, vectors));
        benchmark::ClobberMemory();
    }
    report(state, m.connect.cols);
}

template <cells KIND, numbering ORDER>
void node_normals(benchmark::State& state, double exponent)
{
    const bench::mesh m = bench::grid(static_cast<std::size_t>(state.range(0)), 3, KIND, ORDER);
    dense2D<double> vectors;
    for (auto _ : state) {
        benchmark::DoNotOptimize(tessalo2d::normals(m.coords, m.connect, exponent, true, vectors));
        benchmark::ClobberMemory();
    }
    report(state, m.connect.cols);
}

void sizes(benchmark::internal::Benchmark* b)
{
    b->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMicrosecond);
}

constexpr cells T3 = cells::triangles;

} // namespace

BENCHMARK_CAPTURE(copy_bytes, triangles, 12 + 12, 24)->Apply(sizes);
BENCHMARK(element_normals<T3, numbering::natural, false>)->Apply(sizes);
BENCHMARK(element_normals<T3, numbering::natural, true>)->Apply(sizes);
BENCHMARK(element_normals<T3, numbering::random, true>)->Apply(sizes);
BENCHMARK(element_normals<cells::mixed, numbering::natural, true>)->Apply(sizes);
BENCHMARK_CAPTURE(node_normals_natural, alike, 0.0)->Apply(sizes);
BENCHMARK_CAPTURE(node_normals_natural, by_size, 1.0)->Apply(sizes);
BENCHMARK_CAPTURE(node_normals_natural, by_inverse_size, -1.0)->Apply(sizes);
BENCHMARK_CAPTURE(node_normals_natural, largest, DBL_MAX)->Apply(sizes);
BENCHMARK_CAPTURE(node_normals_random, by_size, 1.0)->Apply(sizes);
