// Fields over a square structured patch, by the interior node. Roofs: copying the bytes of the
// result, and one `dspev` a node for metrics in space.
#include "bench/metrics/dspev_roof.h"
#include "bench/metrics/random_field.h"

#include <cmath>

using namespace bench_support;
using namespace vorel;

namespace {

/// A patch of about as many interior nodes as the benchmark's size.
struct patch {
    explicit patch(const benchmark::State& state)
        : side(static_cast<std::size_t>(std::lround(std::sqrt(double(state.range(0))))) + 1),
          interior((side - 1) * (side - 1))
    {
        for (unsigned k = 0; k < 4 * side; ++k) ids.append(k);
        ids.append(0);
    }

    std::size_t side;
    std::size_t interior;
    dense1D<unsigned, 8> ids;
};

void metrics_struct_sizes(benchmark::State& state)
{
    const patch p(state);
    dense1D<double, 8> sizes(4 * p.side, 1.5);
    const against_roof watch(state, p.interior, memcpy_roof(p.interior * sizeof(double)));
    for (auto _ : state) {
        // The storage stays, so that it is not the first touch of fresh pages that is measured.
        sizes.size = 4 * p.side;
        benchmark::DoNotOptimize(
            tessalo2d::metrics_struct(p.ids, static_cast<unsigned>(p.side), sizes));
    }
}
BENCHMARK(metrics_struct_sizes)->Apply(element_counts);

template <std::size_t ROWS>
void metrics_struct_metrics(benchmark::State& state)
{
    const patch p(state);
    dense2D<double> metrics = bench::random_field(ROWS, 4 * p.side);
    const against_roof watch(state, p.interior,
                             ROWS == 6 ? bench::dspev_roof(metrics, p.interior)
                                       : memcpy_roof(ROWS * p.interior * sizeof(double)));
    for (auto _ : state) {
        metrics.cols = 4 * p.side;
        benchmark::DoNotOptimize(
            tessalo2d::metrics_struct(p.ids, static_cast<unsigned>(p.side), metrics));
    }
}
BENCHMARK(metrics_struct_metrics<3>)->Apply(element_counts);
BENCHMARK(metrics_struct_metrics<6>)->Apply(element_counts);

} // namespace
