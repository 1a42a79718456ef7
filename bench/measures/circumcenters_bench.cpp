#include "bench/structured/grid_mesh.h"

#include <benchmark/benchmark.h>

using namespace vorel;

namespace {

struct triangles {
    dense2D<double> coords;
    dense2D<unsigned> connect;
};

/// A grid of triangles with moved nodes, so that no side is always the longest.
triangles mesh_of(benchmark::State& state)
{
    const bench::adjacent_mesh m = bench::grid_mesh(static_cast<std::size_t>(state.range(0)), 3,
                                                    static_cast<int>(state.range(2)));
    const std::size_t dimension = static_cast<std::size_t>(state.range(1));
    const std::size_t nodes = m.node_element.size;
    const std::size_t n = static_cast<std::size_t>(std::lround(std::sqrt(nodes)));
    const std::vector<unsigned> number = bench::numbers(nodes, static_cast<int>(state.range(2)), 1);
    triangles t{dense2D<double>(dimension, nodes), m.connect};
    std::mt19937 draw(8);
    std::uniform_real_distribution<double> move(-0.3, 0.3);
    for (std::size_t k = 0; k < nodes; ++k) {
        double* const p = t.coords.column(number[k]);
        p[0] = static_cast<double>(k % n) + move(draw);
        p[1] = static_cast<double>(k / n) + move(draw);
        if (dimension == 3) p[2] = move(draw);
    }
    return t;
}

void circumcenters(benchmark::State& state)
{
    const triangles t = mesh_of(state);
    dense2D<double> centers;
    for (auto _ : state) {
        benchmark::DoNotOptimize(tessalo2d::circumcenters(t.coords, t.connect, centers));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(t.connect.cols));
}

/// Gathers the corners and writes a point for each triangle, with the least arithmetic.
void circumcenters_gather(benchmark::State& state)
{
    const triangles t = mesh_of(state);
    const std::size_t dimension = t.coords.rows;
    dense2D<double> sums(dimension, t.connect.cols, 0.0);
    for (auto _ : state) {
        const double* const points = t.coords.column(0);
        const unsigned* column = t.connect.column(0);
        double* to = sums.column(0);
        for (std::size_t e = 0; e < t.connect.cols; ++e, column += 3, to += dimension)
            for (std::size_t d = 0; d < dimension; ++d)
                to[d] = points[dimension * column[0] + d] + points[dimension * column[1] + d] +
                        points[dimension * column[2] + d];
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(t.connect.cols));
}

void shapes(benchmark::internal::Benchmark* b)
{
    for (const long dimension : {2, 3})
        for (const long order : {bench::in_rows, bench::at_random})
            for (const long elements : {10000, 100000, 1000000})
                b->Args({elements, dimension, order});
}

BENCHMARK(circumcenters)->Apply(shapes);
BENCHMARK(circumcenters_gather)->Name("circumcenters/gather")->Apply(shapes);

} // namespace
