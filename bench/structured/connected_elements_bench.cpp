#include "bench/structured/adjacent_mesh.h"
#include "bench/support/roof.h"

#include <vorel/tessalo2d.h>

using namespace bench_support;
using namespace vorel;

namespace {

/// Both columns of each listed element, in the order of the lists, which is known beforehand; and
/// the list written.
void list_again(const adjacent_mesh& m, const dense1D<unsigned, 8>& elements,
                std::vector<unsigned>& list)
{
    const std::size_t rows = m.connect.rows;
    const unsigned* const connect = m.connect.column(0);
    const unsigned* const neighbors = m.neighbors.column(0);
    const unsigned* const listed = elements.begin();
    for (std::size_t k = 0; k < elements.size; ++k)
        list[k] = connect[rows * listed[k]] + neighbors[rows * listed[k]];
}

/// Items are the elements listed: one for each corner of each element.
template <form KIND, numbering ORDER>
void get_connected_elements(benchmark::State& state)
{
    const adjacent_mesh m = adjacent_grid(KIND, static_cast<std::size_t>(state.range(0)), ORDER);
    dense1D<unsigned, 8> offsets;
    dense1D<unsigned, 8> elements;
    const auto run = [&] {
        return tessalo2d::get_connected_elements(m.connect, m.neighbors, m.node_element, offsets,
                                                 elements);
    };
    (void)run(); // for the roof; its status is 0 by construction
    std::vector<unsigned> list(elements.size);
    const double roof = best_seconds([&] {
        list_again(m, elements, list);
        benchmark::ClobberMemory();
    });
    const against_roof watch(state, elements.size, roof);
    for (auto _ : state) {
        benchmark::DoNotOptimize(run());
        benchmark::ClobberMemory();
    }
}

BENCHMARK(get_connected_elements<form::T3, numbering::natural>)->Apply(element_counts);
BENCHMARK(get_connected_elements<form::T3, numbering::shuffled>)->Apply(element_counts);
BENCHMARK(get_connected_elements<form::mixed, numbering::natural>)->Apply(element_counts);
BENCHMARK(get_connected_elements<form::mixed, numbering::shuffled>)->Apply(element_counts);

} // namespace
