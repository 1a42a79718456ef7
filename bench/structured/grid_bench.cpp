#include "bench/support/meshes.h"
#include "bench/support/roof.h"

#include <vorel/tessalo2d.h>

using namespace bench_support;
using namespace vorel;

namespace {

/// A loop around n x n cells of the unit square.
struct square_loop {
    square_loop(std::size_t cells, std::size_t dimension)
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

/// Into the spare capacity of the outputs, as in a program that makes many grids. The roof copies
/// as many bytes as the new nodes and elements take.
template <bool TRIANGLES, std::size_t DIMENSION>
void mesh_struct(benchmark::State& state)
{
    square_loop s(static_cast<std::size_t>(state.range(0)), DIMENSION);
    const std::size_t nods0 = s.coords.cols;
    dense2D<unsigned> connect;
    const auto run = [&] {
        (void)s.coords.resize(DIMENSION, nods0); // a cut
        connect.clear();
        return TRIANGLES ? tessalo2d::mesh_struct_T3(s.coords, s.boundary, s.n, 2, connect)
                         : tessalo2d::mesh_struct_Q4(s.coords, s.boundary, s.n, connect);
    };
    (void)run(); // for the sizes; its status is 0 by construction
    const std::size_t written = bytes(connect) + bytes(s.coords) - nods0 * DIMENSION * 8;
    const against_roof watch(state, connect.cols, memcpy_roof(written));
    for (auto _ : state) {
        benchmark::DoNotOptimize(run());
        benchmark::ClobberMemory();
    }
}

template <std::size_t DIMENSION>
void mesh_struct_Q4(benchmark::State& state)
{
    mesh_struct<false, DIMENSION>(state);
}

template <std::size_t DIMENSION>
void mesh_struct_T3(benchmark::State& state)
{
    mesh_struct<true, DIMENSION>(state);
}

BENCHMARK(mesh_struct_Q4<2>)->Apply(element_counts);
BENCHMARK(mesh_struct_Q4<3>)->Apply(element_counts);
BENCHMARK(mesh_struct_T3<2>)->Apply(element_counts);
BENCHMARK(mesh_struct_T3<3>)->Apply(element_counts);

} // namespace
