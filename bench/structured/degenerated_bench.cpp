#include <vorel/tessalo2d.h>

#include <benchmark/benchmark.h>

#include <cstring>
#include <random>

using namespace vorel;

namespace {

/// Quadrilaterals of which one in `state.range(2)` is degenerated, at a random pair of corners.
dense2D<unsigned> columns(benchmark::State& state)
{
    const std::size_t rows = static_cast<std::size_t>(state.range(1));
    const unsigned rarity = static_cast<unsigned>(state.range(2));
    dense2D<unsigned> connect(rows, static_cast<std::size_t>(state.range(0)));
    std::mt19937 draw(4);
    for (std::size_t e = 0; e < connect.cols; ++e) {
        for (std::size_t i = 0; i < rows; ++i) connect(i, e) = static_cast<unsigned>(rows * e + i);
        const std::size_t k = draw() % 4;
        if (draw() % rarity == 0) connect(k, e) = connect((k + 1) % 4, e);
    }
    return connect;
}

/// The same columns again for each run; their restoration is the roof and is not timed here.
template <bool LISTED>
void convert(benchmark::State& state)
{
    const dense2D<unsigned> original = columns(state);
    dense2D<unsigned> connect;
    (void)connect.copy(original);
    dense1D<unsigned, 8> ids;
    int converted = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::memcpy(connect.column(0), original.column(0), original.size * sizeof(unsigned));
        state.ResumeTiming();
        if constexpr (LISTED)
            converted = tessalo2d::convert_degenerated_Q(connect, ids);
        else
            converted = tessalo2d::convert_degenerated_Q4(connect);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["converted"] = converted;
}

void convert_memcpy(benchmark::State& state)
{
    const dense2D<unsigned> connect = columns(state);
    dense2D<unsigned> to(connect.rows, connect.cols, 0u);
    for (auto _ : state) {
        std::memcpy(to.column(0), connect.column(0), connect.size * sizeof(unsigned));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void shapes(benchmark::internal::Benchmark* b, std::initializer_list<long> all_rows)
{
    for (const long rows : all_rows)
        for (const long rarity : {1000, 10})
            for (const long elements : {10000, 100000, 1000000}) b->Args({elements, rows, rarity});
}

void four_rows(benchmark::internal::Benchmark* b)
{
    shapes(b, {4});
}

void all_rows(benchmark::internal::Benchmark* b)
{
    shapes(b, {4, 8, 9});
}

BENCHMARK(convert<false>)->Name("convert_degenerated_Q4")->Apply(four_rows);
BENCHMARK(convert<true>)->Name("convert_degenerated_Q")->Apply(all_rows);
BENCHMARK(convert_memcpy)->Name("convert_degenerated/memcpy")->Apply(all_rows);

} // namespace
