#include <vorel/tessalo2d.h>

#include <benchmark/benchmark.h>

#include <cstring>
#include <random>

using namespace vorel;

namespace {

/// Columns of distinct IDs; in 8 and 9 rows every other column or so is a six-node triangle.
dense2D<unsigned> columns(benchmark::State& state)
{
    const std::size_t rows = static_cast<std::size_t>(state.range(1));
    dense2D<unsigned> connect(rows, static_cast<std::size_t>(state.range(0)));
    std::mt19937 draw(4);
    for (std::size_t e = 0; e < connect.cols; ++e) {
        for (std::size_t i = 0; i < rows; ++i) connect(i, e) = static_cast<unsigned>(rows * e + i);
        if (rows >= 8 && draw() % 2)
            for (std::size_t i = 6; i < rows; ++i) connect(i, e) = UNSET_ID;
    }
    return connect;
}

void flip(benchmark::State& state)
{
    dense2D<unsigned> connect = columns(state);
    for (auto _ : state) {
        benchmark::DoNotOptimize(tessalo2d::flip(connect, ELEMENT_ANY_FACE));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void flip_memcpy(benchmark::State& state)
{
    const dense2D<unsigned> connect = columns(state);
    dense2D<unsigned> to(connect.rows, connect.cols, 0u);
    for (auto _ : state) {
        std::memcpy(to.column(0), connect.column(0), connect.size * sizeof(unsigned));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void shapes(benchmark::internal::Benchmark* b)
{
    for (const long rows : {3, 4, 6, 8, 9})
        for (const long elements : {10000, 100000, 1000000}) b->Args({elements, rows});
}

BENCHMARK(flip)->Apply(shapes);
BENCHMARK(flip_memcpy)->Name("flip/memcpy")->Apply(shapes);

} // namespace
