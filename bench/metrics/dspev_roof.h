// The roof of what needs an eigen-decomposition for each metric in space.
#pragma once

#include "bench/support/roof.h"
#include "metrics/lapack.h"
#include "metrics/metric_pair.h"

namespace bench {

/// Seconds that LAPACK takes for `count` matrices, from a sample of the 6-row `field`.
inline double dspev_roof(const vorel::dense2D<double>& field, std::size_t count)
{
    const std::size_t sample = std::min<std::size_t>(field.cols, 4096);
    double sum = 0.0;
    const double seconds = bench_support::best_seconds([&] {
        for (std::size_t j = 0; j < sample; ++j) {
            vorel::symmetric_fixed<double, 3> m = vorel::tessalo2d::metric_column<3>(field, j);
            double values[3];
            double vectors[9];
            double work[10];
            (void)vorel::lapack::dspev('V', 'U', 3, m.data, values, vectors, 3, work);
            sum += values[0];
        }
        benchmark::DoNotOptimize(sum);
    });
    return seconds / static_cast<double>(sample) * static_cast<double>(count);
}

} // namespace bench
