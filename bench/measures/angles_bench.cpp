// Corner angles of elements, against the time of their arc tangents.
#include "bench/support/meshes.h"
#include "bench/support/roof.h"

#include "measures/corner_angles.h"

using namespace bench_support;
using namespace vorel::tessalo2d;

namespace {

/// The roof: the arc tangents of this mesh's own corners.
double arc_tangent_roof(const mesh& m)
{
    std::vector<scaled_direction> direction;
    const double* const points = m.coords.column(0);
    const std::size_t ld = m.coords.ld;
    const bool plane = ld == 2;
    for (std::size_t e = 0; e < m.connect.cols; ++e) {
        const unsigned* const c = m.connect.column(e);
        const bool quad = m.connect.rows == 4 && c[3] != vorel::UNSET_ID;
        for (int k = 0; k < (quad ? 4 : 3); ++k)
            direction.push_back(quad ? (plane ? corner_direction<2, 4>(points, ld, c, k)
                                              : corner_direction<3, 4>(points, ld, c, k))
                                     : (plane ? corner_direction<2, 3>(points, ld, c, k)
                                              : corner_direction<3, 3>(points, ld, c, k)));
    }
    std::vector<double> angle(direction.size());
    return best_seconds([&] {
        for (std::size_t i = 0; i < angle.size(); ++i) angle[i] = angle_of(direction[i]);
        benchmark::ClobberMemory();
    });
}

void angles(benchmark::State& state, form kind, std::size_t dimension, numbering order)
{
    const mesh m = grid(kind, static_cast<std::size_t>(state.range(0)), dimension, order);
    vorel::dense1D<double> low;
    vorel::dense1D<double> high;
    const against_roof watch(state, m.connect.cols, arc_tangent_roof(m));
    for (auto _ : state) {
        benchmark::DoNotOptimize(vorel::tessalo2d::angles(m.coords, m.connect, true, low, high));
        benchmark::ClobberMemory();
    }
}

BENCHMARK_CAPTURE(angles, T3_plane_natural, form::T3, 2, numbering::natural)->Apply(element_counts);
BENCHMARK_CAPTURE(angles, T3_space_natural, form::T3, 3, numbering::natural)->Apply(element_counts);
BENCHMARK_CAPTURE(angles, Q4_plane_natural, form::Q4, 2, numbering::natural)->Apply(element_counts);
BENCHMARK_CAPTURE(angles, Q4_space_natural, form::Q4, 3, numbering::natural)->Apply(element_counts);
BENCHMARK_CAPTURE(angles, mixed_plane_natural, form::mixed, 2, numbering::natural)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(angles, T3_plane_shuffled, form::T3, 2, numbering::shuffled)
    ->Apply(element_counts);

} // namespace
