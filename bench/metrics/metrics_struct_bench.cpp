// Fields over a square structured patch, by the interior node. Roofs: copying the bytes of the
// result for sizes, and one `dspev` a node for metrics in space (see `bare_dspev`).
#include "bench/metrics/random_field.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

using namespace vorel;

namespace {

void sides(benchmark::internal::Benchmark* b)
{
    b->Arg(101)->Arg(317)->Arg(1001)->Unit(benchmark::kMillisecond);
}

std::int64_t interior(const benchmark::State& state)
{
    return (state.range(0) - 1) * (state.range(0) - 1);
}

dense1D<unsigned, 8> boundary(std::size_t side)
{
    dense1D<unsigned, 8> ids;
    for (unsigned k = 0; k < 4 * side; ++k) ids.append(k);
    ids.append(0);
    return ids;
}

void metrics_struct_sizes(benchmark::State& state)
{
    const auto side = static_cast<std::size_t>(state.range(0));
    const dense1D<unsigned, 8> ids = boundary(side);
    dense1D<double, 8> sizes(4 * side, 1.5);
    for (auto _ : state) {
        // The storage stays, so that it is not the first touch of fresh pages that is measured.
        sizes.size = 4 * side;
        benchmark::DoNotOptimize(
            tessalo2d::metrics_struct(ids, static_cast<unsigned>(side), sizes));
    }
    state.SetItemsProcessed(state.iterations() * interior(state));
}
BENCHMARK(metrics_struct_sizes)->Apply(sides);

void copy_of_the_sizes(benchmark::State& state)
{
    const auto nodes = static_cast<std::size_t>(interior(state));
    const std::vector<double> from(nodes, 1.5);
    std::vector<double> to(nodes);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), nodes * sizeof(double));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * interior(state));
}
BENCHMARK(copy_of_the_sizes)->Apply(sides);

template <std::size_t ROWS>
void metrics_struct_metrics(benchmark::State& state)
{
    const auto side = static_cast<std::size_t>(state.range(0));
    const dense1D<unsigned, 8> ids = boundary(side);
    dense2D<double> metrics = bench::random_field(ROWS, 4 * side);
    for (auto _ : state) {
        metrics.cols = 4 * side;
        benchmark::DoNotOptimize(
            tessalo2d::metrics_struct(ids, static_cast<unsigned>(side), metrics));
    }
    state.SetItemsProcessed(state.iterations() * interior(state));
}
BENCHMARK(metrics_struct_metrics<3>)->Apply(sides);
BENCHMARK(metrics_struct_metrics<6>)->Apply(sides);

} // namespace
