// Intersections of metrics by the pair: of two that neither covers the other, of a metric that is
// covered, and of diagonal ones. The roof is one `dspev` a pair, which a pair that is covered or
// diagonal goes below.
#include "bench/metrics/dspev_roof.h"
#include "bench/metrics/random_field.h"

using namespace bench_support;
using namespace vorel;

namespace {

/// Intersects each column with its neighbour.
void intersect_columns(benchmark::State& state, const dense2D<double>& field)
{
    const std::size_t pairs = field.cols - 1;
    const against_roof watch(state, pairs, bench::dspev_roof(field, pairs));
    for (auto _ : state) {
        double sum = 0.0;
        for (std::size_t j = 0; j < pairs; ++j) {
            symmetric_fixed<double, 3> m;
            (void)tessalo::minimum_metric(tessalo2d::metric_column<3>(field, j),
                                          tessalo2d::metric_column<3>(field, j + 1), m);
            sum += m.data[0];
        }
        benchmark::DoNotOptimize(sum);
    }
}

void minimum_metric_general(benchmark::State& state)
{
    intersect_columns(state, bench::random_field(6, static_cast<std::size_t>(state.range(0)) + 1));
}
BENCHMARK(minimum_metric_general)->Apply(element_counts);

void minimum_metric_covered(benchmark::State& state)
{
    dense2D<double> field = bench::random_field(6, static_cast<std::size_t>(state.range(0)) + 1);
    for (std::size_t j = 0; j < field.cols; j += 2)
        for (std::size_t k = 0; k < 6; ++k) field(k, j) *= 1e4;
    intersect_columns(state, field);
}
BENCHMARK(minimum_metric_covered)->Apply(element_counts);

void minimum_metric_diagonal(benchmark::State& state)
{
    dense2D<double> field = bench::random_field(6, static_cast<std::size_t>(state.range(0)) + 1);
    for (std::size_t j = 0; j < field.cols; ++j)
        for (const std::size_t k : {1u, 3u, 4u}) field(k, j) = 0.0;
    intersect_columns(state, field);
}
BENCHMARK(minimum_metric_diagonal)->Apply(element_counts);

} // namespace
