#include "bench/structured/grid_mesh.h"

#include <benchmark/benchmark.h>

using namespace vorel;

namespace {

bench::adjacent_mesh mesh_of(benchmark::State& state)
{
    return bench::grid_mesh(static_cast<std::size_t>(state.range(0)),
                            static_cast<std::size_t>(state.range(1)),
                            static_cast<int>(state.range(2)));
}

/// Items are the elements listed: one for each corner of each element.
void get_connected_elements(benchmark::State& state)
{
    const bench::adjacent_mesh m = mesh_of(state);
    dense1D<unsigned, 8> offsets;
    dense1D<unsigned, 8> elements;
    for (auto _ : state) {
        benchmark::DoNotOptimize(tessalo2d::get_connected_elements(
            m.connect, m.neighbors, m.node_element, offsets, elements));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(elements.size));
}

/// Both columns of each listed element, in the order of the lists, which is known beforehand; and
/// the list written.
void connected_gather(benchmark::State& state)
{
    const bench::adjacent_mesh m = mesh_of(state);
    dense1D<unsigned, 8> offsets;
    dense1D<unsigned, 8> elements;
    (void)tessalo2d::get_connected_elements(m.connect, m.neighbors, m.node_element, offsets,
                                            elements);
    dense1D<unsigned, 8> list(elements.size, 0u);
    for (auto _ : state) {
        benchmark::DoNotOptimize(bench::gather_columns(m, elements.begin(), elements.size));
        std::copy(elements.begin(), elements.end(), list.begin());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(elements.size));
}

void shapes(benchmark::internal::Benchmark* b)
{
    for (const long rows : {3, 4})
        for (const long order : {bench::in_rows, bench::at_random})
            for (const long elements : {10000, 100000, 1000000}) b->Args({elements, rows, order});
}

BENCHMARK(get_connected_elements)->Apply(shapes);
BENCHMARK(connected_gather)->Name("get_connected_elements/gather")->Apply(shapes);

} // namespace
