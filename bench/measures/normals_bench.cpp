// Normals of elements and nodes, against a memcpy of what the call reads and writes.
#include "bench/support/meshes.h"
#include "bench/support/roof.h"

#include <cfloat>

using namespace bench_support;

namespace {

void element_normals(benchmark::State& state, form kind, numbering order)
{
    const mesh m = grid(kind, static_cast<std::size_t>(state.range(0)), 3, order);
    vorel::dense2D<double> vectors;
    (void)vorel::tessalo2d::normals(m.coords, m.connect, true, vectors);
    const against_roof watch(state, m.connect.cols,
                             memcpy_roof(bytes(m.coords) + bytes(m.connect) + bytes(vectors)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(vorel::tessalo2d::normals(m.coords, m.connect, true, vectors));
        benchmark::ClobberMemory();
    }
}

BENCHMARK_CAPTURE(element_normals, T3_natural, form::T3, numbering::natural)->Apply(element_counts);
BENCHMARK_CAPTURE(element_normals, mixed_natural, form::mixed, numbering::natural)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(element_normals, T3_shuffled, form::T3, numbering::shuffled)
    ->Apply(element_counts);

void node_normals(benchmark::State& state, double exponent, numbering order)
{
    const mesh m = grid(form::T3, static_cast<std::size_t>(state.range(0)), 3, order);
    vorel::dense2D<double> vectors;
    (void)vorel::tessalo2d::normals(m.coords, m.connect, exponent, true, vectors);
    const against_roof watch(state, m.connect.cols,
                             memcpy_roof(bytes(m.coords) + bytes(m.connect) + bytes(vectors)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            vorel::tessalo2d::normals(m.coords, m.connect, exponent, true, vectors));
        benchmark::ClobberMemory();
    }
}

BENCHMARK_CAPTURE(node_normals, alike_natural, 0.0, numbering::natural)->Apply(element_counts);
BENCHMARK_CAPTURE(node_normals, by_size_natural, 1.0, numbering::natural)->Apply(element_counts);
BENCHMARK_CAPTURE(node_normals, inverse_natural, -1.0, numbering::natural)->Apply(element_counts);
BENCHMARK_CAPTURE(node_normals, largest_natural, DBL_MAX, numbering::natural)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(node_normals, by_size_shuffled, 1.0, numbering::shuffled)->Apply(element_counts);

} // namespace
