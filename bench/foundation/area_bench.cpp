// The area of a mesh against a memcpy of the bytes that it reads.
#include "bench/support/meshes.h"
#include "bench/support/roof.h"

using namespace bench_support;

namespace {

void area(benchmark::State& state, form kind, std::size_t dimension, numbering order)
{
    const mesh m = grid(kind, static_cast<std::size_t>(state.range(0)), dimension, order);
    double result = 0.0;
    const against_roof watch(state, m.connect.cols,
                             memcpy_roof(bytes(m.coords) + bytes(m.connect)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(vorel::tessalo2d::area(m.coords, m.connect, result));
        benchmark::DoNotOptimize(result);
    }
}

BENCHMARK_CAPTURE(area, T3_plane_natural, form::T3, 2, numbering::natural)->Apply(element_counts);
BENCHMARK_CAPTURE(area, T3_space_natural, form::T3, 3, numbering::natural)->Apply(element_counts);
BENCHMARK_CAPTURE(area, mixed_plane_natural, form::mixed, 2, numbering::natural)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(area, mixed_space_natural, form::mixed, 3, numbering::natural)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(area, T3_plane_shuffled, form::T3, 2, numbering::shuffled)->Apply(element_counts);
BENCHMARK_CAPTURE(area, T3_space_shuffled, form::T3, 3, numbering::shuffled)->Apply(element_counts);
BENCHMARK_CAPTURE(area, mixed_plane_shuffled, form::mixed, 2, numbering::shuffled)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(area, mixed_space_shuffled, form::mixed, 3, numbering::shuffled)
    ->Apply(element_counts);

} // namespace
