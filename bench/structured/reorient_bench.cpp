#include "bench/structured/adjacent_mesh.h"
#include "bench/support/roof.h"

#include <vorel/tessalo2d.h>

using namespace bench_support;
using namespace vorel;

namespace {

/// Turns every second element at random.
void turn_some(adjacent_mesh& m)
{
    std::mt19937 draw(3);
    for (std::size_t e = 0; e < m.connect.cols; ++e)
        if (draw() % 2) std::swap(m.connect(0, e), m.connect(2, e));
    m.neighbors = neighbors_of(m.connect);
}

/// What a visit looks at, in an order that is known beforehand: the columns of the element in both
/// matrices, and those of its neighbors in `connect`.
unsigned visit_all(const adjacent_mesh& m, const std::vector<unsigned>& order)
{
    const std::size_t rows = m.connect.rows;
    const unsigned* const connect = m.connect.column(0);
    const unsigned* const neighbors = m.neighbors.column(0);
    unsigned sum = 0;
    for (const std::size_t e : order) {
        sum += connect[rows * e];
        for (std::size_t r = 0; r < rows; ++r) {
            const unsigned b = neighbors[rows * e + r];
            sum += connect[rows * (b == UNSET_ID ? e : b)];
        }
    }
    return sum;
}

/// A turned mesh is turned anew for each run, which is not measured.
template <form KIND, numbering ORDER, bool TURNED>
void mesh_reorient(benchmark::State& state)
{
    adjacent_mesh m = adjacent_grid(KIND, static_cast<std::size_t>(state.range(0)), ORDER);
    if (TURNED) turn_some(m);
    dense2D<unsigned> connect;
    dense2D<unsigned> neighbors;
    if (!connect.copy(m.connect) || !neighbors.copy(m.neighbors)) return;
    const std::vector<unsigned> order = element_order(connect.cols, ORDER);
    const double roof = best_seconds([&] { benchmark::DoNotOptimize(visit_all(m, order)); });
    against_roof watch(state, connect.cols, roof);
    for (auto _ : state) {
        watch.leave_out([&] {
            std::memcpy(connect.column(0), m.connect.column(0), bytes(connect));
            std::memcpy(neighbors.column(0), m.neighbors.column(0), bytes(neighbors));
        });
        benchmark::DoNotOptimize(tessalo2d::mesh_reorient(connect, neighbors, 0, 1));
        benchmark::ClobberMemory();
    }
}

constexpr numbering NATURAL = numbering::natural;
constexpr numbering SHUFFLED = numbering::shuffled;

BENCHMARK(mesh_reorient<form::T3, NATURAL, false>)->Apply(element_counts);
BENCHMARK(mesh_reorient<form::T3, NATURAL, true>)->Apply(element_counts);
BENCHMARK(mesh_reorient<form::T3, SHUFFLED, false>)->Apply(element_counts);
BENCHMARK(mesh_reorient<form::T3, SHUFFLED, true>)->Apply(element_counts);
BENCHMARK(mesh_reorient<form::mixed, NATURAL, true>)->Apply(element_counts);
BENCHMARK(mesh_reorient<form::mixed, SHUFFLED, true>)->Apply(element_counts);

} // namespace
