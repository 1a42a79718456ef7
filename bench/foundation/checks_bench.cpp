// The ID checks against a memcpy of the bytes that they read.
#include "bench/support/meshes.h"
#include "bench/support/roof.h"

using namespace bench_support;
using vorel::tessalo::check_IDs;

namespace {

unsigned nodes_of(const mesh& m)
{
    return static_cast<unsigned>(m.coords.cols);
}

void check_IDs_typed(benchmark::State& state, form kind, vorel::element_type type, std::size_t gap)
{
    mesh m = grid(kind, static_cast<std::size_t>(state.range(0)));
    if (gap > 0) {
        // Columns further apart than they need, as after a cut of rows.
        vorel::dense2D<unsigned> wide(m.connect.rows + gap, m.connect.cols, 0);
        for (std::size_t e = 0; e < m.connect.cols; ++e)
            std::copy(m.connect.column(e), m.connect.column(e) + m.connect.rows, wide.column(e));
        (void)wide.resize(m.connect.rows, m.connect.cols); // cannot fail: it is a cut
        m.connect = wide;
    }
    const against_roof watch(state, m.connect.cols,
                             memcpy_roof(m.connect.ld * m.connect.cols * sizeof(unsigned)));
    for (auto _ : state) benchmark::DoNotOptimize(check_IDs(m.connect, type, nodes_of(m)));
}

void check_IDs_untyped(benchmark::State& state)
{
    const mesh m = grid(form::mixed, static_cast<std::size_t>(state.range(0)));
    const against_roof watch(state, m.connect.cols, memcpy_roof(bytes(m.connect)));
    for (auto _ : state) benchmark::DoNotOptimize(check_IDs(m.connect, nodes_of(m)));
}

void check_IDs_run(benchmark::State& state)
{
    const mesh m = grid(form::T3, static_cast<std::size_t>(state.range(0)));
    vorel::dense1D<unsigned> ids = m.connect.as_vector();
    ids.size = m.connect.cols;
    const against_roof watch(state, ids.size, memcpy_roof(ids.size * sizeof(unsigned)));
    for (auto _ : state) benchmark::DoNotOptimize(check_IDs(ids, nodes_of(m)));
}

BENCHMARK_CAPTURE(check_IDs_typed, T3, form::T3, vorel::ELEMENT_T3, 0)->Apply(element_counts);
BENCHMARK_CAPTURE(check_IDs_typed, T3_ld_6, form::T3, vorel::ELEMENT_T3, 3)->Apply(element_counts);
BENCHMARK_CAPTURE(check_IDs_typed, mixed, form::mixed, vorel::ELEMENT_ANY_FACE, 0)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(check_IDs_typed, mixed_ld_9, form::mixed, vorel::ELEMENT_ANY_FACE, 5)
    ->Apply(element_counts);
BENCHMARK(check_IDs_untyped)->Apply(element_counts);
BENCHMARK(check_IDs_run)->Apply(element_counts);

} // namespace
