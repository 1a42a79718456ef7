// Interpolation between two metrics, next to the bare rate of the `dspev` call that each pair in
// space needs.
#include "bench/metrics/random_field.h"
#include "metrics/jacobi3.h"
#include "metrics/lapack.h"
#include "metrics/metric_pair.h"

#include <benchmark/benchmark.h>

using namespace vorel;

namespace {

void sizes(benchmark::internal::Benchmark* b)
{
    b->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
}

template <std::size_t D>
void interpolate_metric_columns(benchmark::State& state)
{
    const auto nodes = static_cast<std::size_t>(state.range(0));
    const dense2D<double> field = bench::random_field(D * (D + 1) / 2, nodes + 1);
    for (auto _ : state) {
        double sum = 0.0;
        for (std::size_t j = 0; j < nodes; ++j) {
            symmetric_fixed<double, D> m = {};
            (void)tessalo2d::interpolate_metric_columns<D>(field, 0.3, j, j + 1, m);
            sum += m.data[0];
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(interpolate_metric_columns<2>)->Apply(sizes);
BENCHMARK(interpolate_metric_columns<3>)->Apply(sizes);

/// The roof: what LAPACK takes for one matrix a pair.
void bare_dspev(benchmark::State& state)
{
    const auto nodes = static_cast<std::size_t>(state.range(0));
    const dense2D<double> field = bench::random_field(6, nodes);
    for (auto _ : state) {
        double sum = 0.0;
        for (std::size_t j = 0; j < nodes; ++j) {
            symmetric_fixed<double, 3> m = tessalo2d::metric_column<3>(field, j);
            double values[3];
            double vectors[9];
            double work[10];
            (void)lapack::dspev('V', 'U', 3, m.data, values, vectors, 3, work);
            sum += values[0];
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(bare_dspev)->Apply(sizes);

/// The same matrices by plane rotations, as `minimum_metric` has them.
void jacobi_eigen3(benchmark::State& state)
{
    const auto nodes = static_cast<std::size_t>(state.range(0));
    const dense2D<double> field = bench::random_field(6, nodes);
    for (auto _ : state) {
        double sum = 0.0;
        for (std::size_t j = 0; j < nodes; ++j) {
            const double* const m = field.column(j);
            tessalo2d::matrix3 a = {{{m[0], m[1], m[3]}, {m[1], m[2], m[4]}, {m[3], m[4], m[5]}}};
            tessalo2d::matrix3 vectors;
            tessalo2d::jacobi_eigen3(a, vectors);
            sum += a[0][0];
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(jacobi_eigen3)->Apply(sizes);

} // namespace
