// Curvature estimates. Parametric ones stand against a memcpy of what they move, principal ones
// against what they can't avoid: one eigen-decomposition a node and one arc tangent an interior
// edge.
#include "bench/support/meshes.h"
#include "bench/support/roof.h"
#include "metrics/lapack.h"

#include <cmath>

using namespace bench_support;

namespace {

void parametric_curvatures(benchmark::State& state, numbering order)
{
    const mesh m = grid(form::T3, static_cast<std::size_t>(state.range(0)), 2, order);
    vorel::dense2D<double> derivatives(6, m.coords.cols);
    for (std::size_t i = 0; i < m.coords.cols; ++i) {
        const double column[] = {1, 0, m.coords(0, i) * 0.01, 0, 1, m.coords(1, i) * 0.03};
        std::copy(column, column + 6, derivatives.column(i));
    }
    vorel::dense2D<double> forms;
    const std::size_t moved =
        bytes(m.coords) + bytes(m.connect) + bytes(derivatives) + 3 * 8 * m.coords.cols;
    const against_roof watch(state, m.connect.cols, memcpy_roof(moved));
    for (auto _ : state)
        benchmark::DoNotOptimize(
            vorel::tessalo2d::parametric_curvatures(m.coords, m.connect, derivatives, forms));
}

BENCHMARK_CAPTURE(parametric_curvatures, natural, numbering::natural)->Apply(element_counts);
BENCHMARK_CAPTURE(parametric_curvatures, shuffled, numbering::shuffled)->Apply(element_counts);

/// Seconds for `nodes` eigen-decompositions and `edges` arc tangents.
double principal_roof(std::size_t nodes, std::size_t edges)
{
    constexpr std::size_t SAMPLE = 4096;
    double sum = 0.0;
    const double eigen = best_seconds([&] {
        for (std::size_t i = 0; i < SAMPLE; ++i) {
            const auto x = static_cast<double>(i) * 1e-3;
            double packed[] = {1.0 + x, 0.1, 2.0, 0.3 * x, 0.2, 3.0};
            double values[3];
            double vectors[9];
            double work[10] = {};
            sum += vorel::lapack::dspev('V', 'U', 3, packed, values, vectors, 3, work);
            sum += values[0];
        }
        benchmark::DoNotOptimize(sum);
    });
    const double arc = best_seconds([&] {
        for (std::size_t i = 0; i < SAMPLE; ++i)
            sum += std::atan2(0.1 + static_cast<double>(i) * 1e-4, 1.0);
        benchmark::DoNotOptimize(sum);
    });
    return (static_cast<double>(nodes) * eigen + static_cast<double>(edges) * arc) / SAMPLE;
}

/// Patches of a radius of three edge lengths. The items are nodes.
void principal_curvatures(benchmark::State& state, numbering order)
{
    const mesh m = grid(form::T3, static_cast<std::size_t>(state.range(0)), 3, order);
    const vorel::dense2D<unsigned> neighbors = neighbors_of(m.connect);
    const vorel::dense2D<unsigned> no_ridges;
    vorel::dense2D<double> curvatures;
    const against_roof watch(state, m.coords.cols,
                             principal_roof(m.coords.cols, m.connect.cols * 3 / 2));
    for (auto _ : state)
        benchmark::DoNotOptimize(vorel::tessalo2d::principal_curvatures(
            m.coords, m.connect, neighbors, 3.0, 1.5, 1000, no_ridges, curvatures));
}

BENCHMARK_CAPTURE(principal_curvatures, natural, numbering::natural)->Apply(element_counts);
BENCHMARK_CAPTURE(principal_curvatures, shuffled, numbering::shuffled)->Apply(element_counts);

/// A metric field from a surface, against one eigen-decomposition for each of the three
/// intersections of a triangle.
void metrics_gen_aniso3d(benchmark::State& state, numbering order)
{
    const mesh m = grid(form::T3, static_cast<std::size_t>(state.range(0)), 3, order);
    const against_roof watch(state, m.connect.cols, principal_roof(3 * m.connect.cols, 0));
    for (auto _ : state) {
        vorel::dense2D<double> metrics;
        benchmark::DoNotOptimize(
            vorel::tessalo2d::metrics_gen_aniso3d(m.coords, m.connect, 0.1, metrics));
    }
}

BENCHMARK_CAPTURE(metrics_gen_aniso3d, natural, numbering::natural)->Apply(element_counts);
BENCHMARK_CAPTURE(metrics_gen_aniso3d, shuffled, numbering::shuffled)->Apply(element_counts);

} // namespace
