#include <vorel/tessalo2d.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <vector>

using namespace vorel;

namespace {

/// A loop around n x n cells, and room for what they need.
struct square {
    explicit square(std::size_t cells, std::size_t dimension)
        : n(static_cast<unsigned>(std::lround(std::sqrt(static_cast<double>(cells))))),
          coords(dimension, 4 * std::size_t(n), 0.5)
    {
        for (unsigned k = 0; k < 4 * n; ++k) {
            boundary.append(k);
            const double s = static_cast<double>(k % n) / n;
            const double x[] = {s, 1.0, 1.0 - s, 0.0};
            coords(0, k) = x[k / n];
            coords(1, k) = x[(k / n + 3) % 4];
        }
        boundary.append(0);
    }

    unsigned n;
    dense2D<double> coords;
    dense1D<unsigned, 8> boundary;
};

void copy_of_written(benchmark::State& state, std::size_t bytes)
{
    std::vector<char> from(bytes, 1);
    std::vector<char> to(bytes, 2);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), bytes);
        benchmark::ClobberMemory();
    }
}

/// Into the spare capacity of the outputs, as in a program that makes many grids.
template <bool TRIANGLES>
void mesh_struct(benchmark::State& state)
{
    square s(static_cast<std::size_t>(state.range(0)), static_cast<std::size_t>(state.range(1)));
    const std::size_t nods0 = s.coords.cols;
    dense2D<unsigned> connect;
    for (auto _ : state) {
        (void)s.coords.resize(s.coords.rows, nods0);
        connect.clear();
        if constexpr (TRIANGLES)
            benchmark::DoNotOptimize(
                tessalo2d::mesh_struct_T3(s.coords, s.boundary, s.n, 2, connect));
        else
            benchmark::DoNotOptimize(tessalo2d::mesh_struct_Q4(s.coords, s.boundary, s.n, connect));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(connect.cols));
}

/// Copies as many bytes as the nodes and elements take.
template <bool TRIANGLES>
void mesh_struct_memcpy(benchmark::State& state)
{
    const square s(static_cast<std::size_t>(state.range(0)),
                   static_cast<std::size_t>(state.range(1)));
    const std::size_t n = s.n;
    const std::size_t cell_bytes = (TRIANGLES ? 6 : 4) * sizeof(unsigned);
    copy_of_written(state, n * n * cell_bytes + (n - 1) * (n - 1) * s.coords.rows * sizeof(double));
    state.SetItemsProcessed(state.iterations() * static_cast<long>((TRIANGLES ? 2 : 1) * n * n));
}

void sizes(benchmark::internal::Benchmark* b)
{
    for (const long dimension : {2, 3})
        for (const long cells : {10000, 100000, 1000000}) b->Args({cells, dimension});
}

BENCHMARK(mesh_struct<false>)->Name("mesh_struct_Q4")->Apply(sizes);
BENCHMARK(mesh_struct_memcpy<false>)->Name("mesh_struct_Q4/memcpy")->Apply(sizes);
BENCHMARK(mesh_struct<true>)->Name("mesh_struct_T3")->Apply(sizes);
BENCHMARK(mesh_struct_memcpy<true>)->Name("mesh_struct_T3/memcpy")->Apply(sizes);

} // namespace
