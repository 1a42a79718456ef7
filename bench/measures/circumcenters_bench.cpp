#include "bench/support/meshes.h"
#include "bench/support/roof.h"

#include <vorel/tessalo2d.h>

using namespace bench_support;
using namespace vorel;

namespace {

/// Gathers the corners and writes a point for each triangle, with next to no arithmetic.
template <std::size_t DIMENSION>
void sum_corners(const mesh& m, dense2D<double>& sums)
{
    const double* const points = m.coords.column(0);
    const unsigned* column = m.connect.column(0);
    double* to = sums.column(0);
    for (std::size_t e = 0; e < m.connect.cols; ++e, column += 3, to += DIMENSION)
        for (std::size_t d = 0; d < DIMENSION; ++d)
            to[d] = points[DIMENSION * column[0] + d] + points[DIMENSION * column[1] + d] +
                    points[DIMENSION * column[2] + d];
}

template <std::size_t DIMENSION, numbering ORDER>
void circumcenters(benchmark::State& state)
{
    const mesh m = grid(form::T3, static_cast<std::size_t>(state.range(0)), DIMENSION, ORDER);
    dense2D<double> centers(DIMENSION, m.connect.cols, 0.0);
    const double roof = best_seconds([&] {
        sum_corners<DIMENSION>(m, centers);
        benchmark::ClobberMemory();
    });
    const against_roof watch(state, m.connect.cols, roof);
    for (auto _ : state) {
        benchmark::DoNotOptimize(tessalo2d::circumcenters(m.coords, m.connect, centers));
        benchmark::ClobberMemory();
    }
}

BENCHMARK(circumcenters<2, numbering::natural>)->Apply(element_counts);
BENCHMARK(circumcenters<2, numbering::shuffled>)->Apply(element_counts);
BENCHMARK(circumcenters<3, numbering::natural>)->Apply(element_counts);
BENCHMARK(circumcenters<3, numbering::shuffled>)->Apply(element_counts);

} // namespace
