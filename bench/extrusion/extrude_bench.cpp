// The three motions on long lines with few layers and on short lines with many, next to a copy of
// the bytes that they write. Both write into storage that is there already: what the system takes
// to hand out pages would hide the work.
#include <vorel/tessalo2d.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>

using namespace vorel;

namespace {

struct shape {
    unsigned edges;
    unsigned layers;
};

/// An open line along the x-axis, its columns in line order.
struct line {
    line(unsigned edges, std::size_t rows) : coords(rows, edges + 1, 0.0), connect(2, edges)
    {
        for (unsigned k = 0; k <= edges; ++k) coords(0, k) = 1.0 + 1e-3 * k;
        for (unsigned e = 0; e < edges; ++e) {
            connect(0, e) = e;
            connect(1, e) = e + 1;
        }
    }

    dense2D<double> coords;
    dense2D<unsigned> connect;
};

shape shape_of(const benchmark::State& state)
{
    return {static_cast<unsigned>(state.range(0)), static_cast<unsigned>(state.range(1))};
}

/// Runs `extrude(coords, connect, layers, output)` again and again in the same storage. `pieces` is
/// the number of elements a quadrilateral becomes.
template <class Extrude>
void extrusion(benchmark::State& state, std::size_t rows, unsigned pieces, Extrude extrude)
{
    const shape s = shape_of(state);
    const line source(s.edges, rows);
    const unsigned layers = s.layers / pieces;
    dense2D<double> coords;
    dense2D<unsigned> output;
    if (!coords.copy(source.coords)) return;
    for (auto _ : state) {
        output.clear();
        // Close columns again, so that a widening happens each time; their values do not matter.
        coords.clear();
        if (!coords.resize(rows, source.coords.cols)) return;
        if (extrude(coords, source.connect, layers, output) != 0) state.SkipWithError("status");
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * s.edges * layers * pieces);
}

const vector_fixed<double, 2> plane_vector = {{0.5, 2.0}};
const vector_fixed<double, 3> center = {{0.1, -0.2, 0.3}};
const vector_fixed<double, 3> rotation = {{0.4, 1.1, -0.7}};
const vector_fixed<double, 3> translation = {{0.5, 2.0, -1.0}};

void translate_plane_Q4(benchmark::State& state)
{
    extrusion(state, 2, 1, [](auto& coords, auto& connect, unsigned N, auto& output) {
        return tessalo2d::extrude_translate_Q4(coords, connect, plane_vector, N, output);
    });
}

void translate_plane_T3(benchmark::State& state)
{
    extrusion(state, 2, 2, [](auto& coords, auto& connect, unsigned N, auto& output) {
        return tessalo2d::extrude_translate_T3(coords, connect, plane_vector, N, 2, output);
    });
}

void translate_space_Q4(benchmark::State& state)
{
    extrusion(state, 3, 1, [](auto& coords, auto& connect, unsigned N, auto& output) {
        return tessalo2d::extrude_translate_Q4(coords, connect, translation, N, output);
    });
}

void translate_widening_Q4(benchmark::State& state)
{
    extrusion(state, 2, 1, [](auto& coords, auto& connect, unsigned N, auto& output) {
        return tessalo2d::extrude_translate_Q4(coords, connect, translation, N, output);
    });
}

void rotate_plane_Q4(benchmark::State& state)
{
    extrusion(state, 2, 1, [](auto& coords, auto& connect, unsigned N, auto& output) {
        return tessalo2d::extrude_rotate_Q4(coords, connect, plane_vector, 1.5, N, output);
    });
}

void rotate_space_Q4(benchmark::State& state)
{
    extrusion(state, 3, 1, [](auto& coords, auto& connect, unsigned N, auto& output) {
        return tessalo2d::extrude_rotate_Q4(coords, connect, center, rotation, N, output);
    });
}

void rotate_space_T3(benchmark::State& state)
{
    extrusion(state, 3, 2, [](auto& coords, auto& connect, unsigned N, auto& output) {
        return tessalo2d::extrude_rotate_T3(coords, connect, center, rotation, N, 2, output);
    });
}

void spiral_Q4(benchmark::State& state)
{
    extrusion(state, 3, 1, [](auto& coords, auto& connect, unsigned N, auto& output) {
        return tessalo2d::extrude_spiral_Q4(coords, connect, center, rotation, translation, N,
                                            output);
    });
}

void spiral_T3(benchmark::State& state)
{
    extrusion(state, 3, 2, [](auto& coords, auto& connect, unsigned N, auto& output) {
        return tessalo2d::extrude_spiral_T3(coords, connect, center, rotation, translation, N, 2,
                                            output);
    });
}

/// Copies the bytes of all new nodes and elements.
void roof(benchmark::State& state, std::size_t rows, unsigned pieces)
{
    const shape s = shape_of(state);
    const std::size_t layers = s.layers / pieces;
    const std::size_t elements = s.edges * layers * pieces;
    const dense1D<double, 8> points(rows * (s.edges + 1) * layers, 1.0);
    const dense1D<unsigned, 8> columns((pieces == 1 ? 4 : 3) * elements, 1u);
    dense1D<double, 8> coords(points.size, 0.0);
    dense1D<unsigned, 8> output(columns.size, 0u);
    for (auto _ : state) {
        std::memcpy(coords.begin(), points.begin(), points.size * sizeof(double));
        std::memcpy(output.begin(), columns.begin(), columns.size * sizeof(unsigned));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(elements));
}

void roof_plane_Q4(benchmark::State& state)
{
    roof(state, 2, 1);
}
void roof_plane_T3(benchmark::State& state)
{
    roof(state, 2, 2);
}
void roof_space_Q4(benchmark::State& state)
{
    roof(state, 3, 1);
}
void roof_space_T3(benchmark::State& state)
{
    roof(state, 3, 2);
}

/// Edges of the line and layers of quadrilaterals (triangles take half as many layers).
void shapes(benchmark::internal::Benchmark* b)
{
    b->ArgNames({"edges", "layers"});
    b->Args({1000, 10})->Args({10, 1000});
    b->Args({10000, 10})->Args({100, 1000});
    b->Args({500000, 2})->Args({100000, 10})->Args({1000, 1000})->Args({100, 10000});
}

} // namespace

BENCHMARK(roof_plane_Q4)->Apply(shapes);
BENCHMARK(translate_plane_Q4)->Apply(shapes);
BENCHMARK(rotate_plane_Q4)->Apply(shapes);
BENCHMARK(roof_plane_T3)->Apply(shapes);
BENCHMARK(translate_plane_T3)->Apply(shapes);
BENCHMARK(roof_space_Q4)->Apply(shapes);
BENCHMARK(translate_space_Q4)->Apply(shapes);
BENCHMARK(translate_widening_Q4)->Apply(shapes);
BENCHMARK(rotate_space_Q4)->Apply(shapes);
BENCHMARK(spiral_Q4)->Apply(shapes);
BENCHMARK(roof_space_T3)->Apply(shapes);
BENCHMARK(rotate_space_T3)->Apply(shapes);
BENCHMARK(spiral_T3)->Apply(shapes);
