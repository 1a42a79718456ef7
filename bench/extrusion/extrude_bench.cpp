// The three motions on long lines with few layers and on short lines with many, against a copy of
// the bytes that they write. Both write into storage that is there already: what the system takes
// to hand out pages would hide the work.
#include "bench/support/roof.h"

#include <vorel/tessalo2d.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

using namespace bench_support;
using namespace vorel;

namespace {

struct shape {
    unsigned edges;
    unsigned layers;
};

enum class edge_order {
    rising,  ///< along the line, as a mesher hands it out: numbered without look-ups
    closing, ///< the same but for the first edge, which closes a loop: through a table
    shuffled ///< in random order: the worst that memory can meet
};

/// A line along the x-axis.
struct line {
    line(unsigned edges, std::size_t rows, edge_order order)
        : coords(rows, edges + 1, 0.0), connect(2, edges)
    {
        for (unsigned k = 0; k <= edges; ++k) coords(0, k) = 1.0 + 1e-3 * k;
        std::vector<unsigned> place(edges);
        std::iota(place.begin(), place.end(), 0u);
        if (order == edge_order::shuffled)
            std::shuffle(place.begin(), place.end(), std::mt19937(1));
        for (unsigned e = 0; e < edges; ++e) {
            connect(0, place[e]) = e;
            connect(1, place[e]) = e + 1;
        }
        if (order == edge_order::closing) connect(0, 0) = edges;
    }

    dense2D<double> coords;
    dense2D<unsigned> connect;
};

/// `pieces` is the number of elements that a quadrilateral becomes.
shape shape_of(const benchmark::State& state, unsigned pieces)
{
    const auto layers = static_cast<unsigned>(state.range(0));
    return {static_cast<unsigned>(state.range(1)) / layers / pieces, layers};
}

/// Runs `extrude(coords, connect, layers, output)` again and again in the same storage. New nodes
/// get `written_rows` coordinates, more than the `rows` of the line when it is widened: then its
/// old nodes are written, too.
template <class Extrude>
void extrusion(benchmark::State& state, std::size_t rows, std::size_t written_rows, unsigned pieces,
               Extrude extrude, edge_order order = edge_order::rising)
{
    const shape s = shape_of(state, pieces);
    const line source(s.edges, rows, order);
    dense2D<double> coords;
    dense2D<unsigned> output;
    if (!coords.copy(source.coords)) return;
    const auto run = [&] {
        output.clear();
        // Close columns again, so that a widening happens each time; their values do not matter.
        coords.clear();
        if (!coords.resize(rows, source.coords.cols)) return;
        if (extrude(coords, source.connect, s.layers, output) != 0) state.SkipWithError("status");
        benchmark::ClobberMemory();
    };
    run();
    const std::size_t elements = std::size_t(s.edges) * s.layers * pieces;
    const std::size_t written_layers = s.layers + (written_rows > rows ? 1 : 0);
    const std::size_t nodes = (std::size_t(s.edges) + 1) * written_layers;
    const std::size_t corners = pieces == 1 ? 4 : 3;
    const against_roof watch(
        state, elements,
        memcpy_roof(written_rows * nodes * sizeof(double) + corners * elements * sizeof(unsigned)));
    for (auto _ : state) run();
}

const vector_fixed<double, 2> plane_vector = {{0.5, 2.0}};
const vector_fixed<double, 3> center = {{0.1, -0.2, 0.3}};
const vector_fixed<double, 3> rotation = {{0.4, 1.1, -0.7}};
const vector_fixed<double, 3> translation = {{0.5, 2.0, -1.0}};

void translate_plane_Q4(benchmark::State& state, edge_order order)
{
    const auto extrude = [](auto& coords, auto& connect, unsigned N, auto& output) {
        return tessalo2d::extrude_translate_Q4(coords, connect, plane_vector, N, output);
    };
    extrusion(state, 2, 2, 1, extrude, order);
}

void translate_plane_T3(benchmark::State& state)
{
    extrusion(state, 2, 2, 2, [](auto& coords, auto& connect, unsigned N, auto& output) {
        return tessalo2d::extrude_translate_T3(coords, connect, plane_vector, N, 2, output);
    });
}

void translate_space_Q4(benchmark::State& state)
{
    extrusion(state, 3, 3, 1, [](auto& coords, auto& connect, unsigned N, auto& output) {
        return tessalo2d::extrude_translate_Q4(coords, connect, translation, N, output);
    });
}

void translate_widening_Q4(benchmark::State& state)
{
    extrusion(state, 2, 3, 1, [](auto& coords, auto& connect, unsigned N, auto& output) {
        return tessalo2d::extrude_translate_Q4(coords, connect, translation, N, output);
    });
}

void rotate_plane_Q4(benchmark::State& state)
{
    extrusion(state, 2, 2, 1, [](auto& coords, auto& connect, unsigned N, auto& output) {
        return tessalo2d::extrude_rotate_Q4(coords, connect, plane_vector, 1.5, N, output);
    });
}

void rotate_space_Q4(benchmark::State& state)
{
    extrusion(state, 3, 3, 1, [](auto& coords, auto& connect, unsigned N, auto& output) {
        return tessalo2d::extrude_rotate_Q4(coords, connect, center, rotation, N, output);
    });
}

void rotate_space_T3(benchmark::State& state)
{
    extrusion(state, 3, 3, 2, [](auto& coords, auto& connect, unsigned N, auto& output) {
        return tessalo2d::extrude_rotate_T3(coords, connect, center, rotation, N, 2, output);
    });
}

void spiral_Q4(benchmark::State& state)
{
    extrusion(state, 3, 3, 1, [](auto& coords, auto& connect, unsigned N, auto& output) {
        return tessalo2d::extrude_spiral_Q4(coords, connect, center, rotation, translation, N,
                                            output);
    });
}

void spiral_T3(benchmark::State& state)
{
    extrusion(state, 3, 3, 2, [](auto& coords, auto& connect, unsigned N, auto& output) {
        return tessalo2d::extrude_spiral_T3(coords, connect, center, rotation, translation, N, 2,
                                            output);
    });
}

/// Layers, and elements in all.
void shapes(benchmark::internal::Benchmark* b)
{
    b->ArgNames({"layers", ""});
    b->Args({10, 10000})->Args({1000, 10000});
    b->Args({10, 100000})->Args({1000, 100000});
    b->Args({2, 1000000})->Args({10, 1000000})->Args({1000, 1000000})->Args({10000, 1000000});
}

} // namespace

BENCHMARK_CAPTURE(translate_plane_Q4, rising, edge_order::rising)->Apply(shapes);
BENCHMARK_CAPTURE(translate_plane_Q4, closing, edge_order::closing)->Apply(shapes);
BENCHMARK_CAPTURE(translate_plane_Q4, shuffled, edge_order::shuffled)->Apply(shapes);
BENCHMARK(rotate_plane_Q4)->Apply(shapes);
BENCHMARK(translate_plane_T3)->Apply(shapes);
BENCHMARK(translate_space_Q4)->Apply(shapes);
BENCHMARK(translate_widening_Q4)->Apply(shapes);
BENCHMARK(rotate_space_Q4)->Apply(shapes);
BENCHMARK(spiral_Q4)->Apply(shapes);
BENCHMARK(rotate_space_T3)->Apply(shapes);
BENCHMARK(spiral_T3)->Apply(shapes);
