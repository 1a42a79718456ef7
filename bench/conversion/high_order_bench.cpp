// Order conversion: T3 to T6 and mixed to Q9, against a copy of the outputs, and against one hash
// table for all edges.
#include "bench/conversion/require.h"
#include "bench/support/meshes.h"
#include "bench/support/roof.h"
#include "foundation/chained_hash.h"

#include <malloc.h>
#include <utility>

using namespace bench_support;
using namespace vorel;

namespace {

mesh mesh_for(const benchmark::State& state, form kind, numbering order)
{
    return grid(kind, static_cast<std::size_t>(state.range(0)), 2, order);
}

/// Outputs keep their storage from call to call, as with a caller that reserves. The roof copies
/// them, into memory that was written before.
void convert_into_high_order(benchmark::State& state, form kind, numbering order)
{
    const mesh m = mesh_for(state, kind, order);
    dense2D<double> coords = m.coords;
    dense2D<unsigned> result;
    const auto call = [&] {
        coords.cols = m.coords.cols;
        coords.size = m.coords.cols * coords.ld;
        require(tessalo2d::convert_into_high_order(coords, m.connect, 1, 1, 0, result,
                                                   dense2D<unsigned>()) == 0);
        benchmark::ClobberMemory();
    };
    call();
    const against_roof watch(state, m.connect.cols, memcpy_roof(bytes(coords) + bytes(result)));
    for (auto _ : state) call();
}

mesh copy_of(const mesh& m)
{
    mesh copy;
    require(copy.coords.copy(m.coords) && copy.connect.copy(m.connect));
    return copy;
}

/// Gives the storage of a mesh back to the system.
void drop(mesh& m)
{
    m = mesh();
    (void)malloc_trim(0);
}

/// Seconds of a copy into pages that were never touched, as an in-place conversion must grow into.
double fresh_copy_roof(const mesh& m)
{
    double best = std::numeric_limits<double>::infinity();
    for (int round = 0; round < 5; ++round) {
        const double start = processor_seconds();
        mesh copy = copy_of(m);
        benchmark::ClobberMemory();
        best = std::min(best, processor_seconds() - start);
        drop(copy);
    }
    return best;
}

void convert_into_quadratic(benchmark::State& state, numbering order)
{
    const mesh m = mesh_for(state, form::T3, order);
    mesh copy = copy_of(m);
    require(tessalo2d::convert_into_quadratic(copy.coords, copy.connect) == 0);
    against_roof watch(state, m.connect.cols, fresh_copy_roof(copy));
    for (auto _ : state) {
        watch.leave_out([&] {
            drop(copy);
            copy = copy_of(m);
        });
        require(tessalo2d::convert_into_quadratic(copy.coords, copy.connect) == 0);
        benchmark::ClobberMemory();
    }
}

/// The same with every edge in one hash table.
void one_hash_table(benchmark::State& state, numbering order)
{
    using elfes::edge2;
    const mesh m = mesh_for(state, form::T3, order);
    const std::size_t nodes = m.coords.cols;
    const std::size_t elements = m.connect.cols;
    dense2D<double> coords = m.coords;
    dense2D<unsigned> result;
    const auto call = [&] {
        coords.cols = nodes;
        coords.size = nodes * coords.ld;
        result.clear();
        tessalo2d::chained_hash<std::pair<edge2, unsigned>> table;
        require(table.init(23, 23));
        table.expect(2 * elements);
        require(result.resize(6, elements));
        auto next = static_cast<unsigned>(nodes);
        for (std::size_t e = 0; e < elements; ++e) {
            const unsigned* const c = m.connect.column(e);
            unsigned* const out = result.column(e);
            std::copy(c, c + 3, out);
            const edge2 sides[3] = {{c[1], c[2]}, {c[2], c[0]}, {c[0], c[1]}};
            for (std::size_t k = 0; k < 3; ++k) {
                require(table.prepare_insertion());
                const auto* const slot = table.find_or_insert({sides[k], next});
                out[3 + k] = slot->first.second;
                next += slot->first.second == next;
            }
        }
        require(coords.resize(2, next));
        table.for_each([&](const auto& slot) {
            const auto& [edge, node] = slot.first;
            for (std::size_t i = 0; i < 2; ++i)
                coords(i, node) = coords(i, edge.a) + 0.5 * (coords(i, edge.b) - coords(i, edge.a));
        });
        benchmark::ClobberMemory();
    };
    call();
    const against_roof watch(state, elements, memcpy_roof(bytes(coords) + bytes(result)));
    for (auto _ : state) call();
}

constexpr auto NATURAL = numbering::natural;
constexpr auto SHUFFLED = numbering::shuffled;

BENCHMARK_CAPTURE(convert_into_high_order, T3_to_T6_natural, form::T3, NATURAL)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(convert_into_high_order, T3_to_T6_shuffled, form::T3, SHUFFLED)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(convert_into_high_order, mixed_to_Q9_natural, form::mixed, NATURAL)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(convert_into_high_order, mixed_to_Q9_shuffled, form::mixed, SHUFFLED)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(convert_into_quadratic, natural, NATURAL)->Apply(element_counts);
BENCHMARK_CAPTURE(convert_into_quadratic, shuffled, SHUFFLED)->Apply(element_counts);
BENCHMARK_CAPTURE(one_hash_table, T3_to_T6_natural, NATURAL)->Apply(element_counts);
BENCHMARK_CAPTURE(one_hash_table, T3_to_T6_shuffled, SHUFFLED)->Apply(element_counts);

} // namespace
