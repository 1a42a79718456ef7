// Interpolation between two metrics. Roofs: in space the `dspev` call that each pair needs, in the
// plane a copy of the field.
#include "bench/metrics/dspev_roof.h"
#include "bench/metrics/random_field.h"
#include "metrics/jacobi3.h"

using namespace bench_support;
using namespace vorel;

namespace {

template <std::size_t D>
void interpolate_metric_columns(benchmark::State& state)
{
    const auto nodes = static_cast<std::size_t>(state.range(0));
    const dense2D<double> field = bench::random_field(D * (D + 1) / 2, nodes + 1);
    const against_roof watch(state, nodes,
                             D == 3 ? bench::dspev_roof(field, nodes)
                                    : memcpy_roof(field.size * sizeof(double)));
    for (auto _ : state) {
        double sum = 0.0;
        for (std::size_t j = 0; j < nodes; ++j) {
            symmetric_fixed<double, D> m = {};
            (void)tessalo2d::interpolate_metric_columns<D>(field, 0.3, j, j + 1, m);
            sum += m.data[0];
        }
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(interpolate_metric_columns<2>)->Apply(element_counts);
BENCHMARK(interpolate_metric_columns<3>)->Apply(element_counts);

/// The matrices of the roof by plane rotations, as `minimum_metric` has them.
void jacobi_eigen3(benchmark::State& state)
{
    const auto nodes = static_cast<std::size_t>(state.range(0));
    const dense2D<double> field = bench::random_field(6, nodes);
    const against_roof watch(state, nodes, bench::dspev_roof(field, nodes));
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
}
BENCHMARK(jacobi_eigen3)->Apply(element_counts);

} // namespace
