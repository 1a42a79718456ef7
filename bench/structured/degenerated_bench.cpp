#include "bench/support/meshes.h"
#include "bench/support/roof.h"

#include <vorel/tessalo2d.h>

using namespace bench_support;
using namespace vorel;

namespace {

/// Quadrilaterals of which one in `rarity` is degenerated, at a random pair of corners.
dense2D<unsigned> quads(std::size_t rows, std::size_t elements, unsigned rarity)
{
    dense2D<unsigned> connect(rows, elements);
    std::mt19937 draw(4);
    for (std::size_t e = 0; e < elements; ++e) {
        for (std::size_t i = 0; i < rows; ++i) connect(i, e) = static_cast<unsigned>(rows * e + i);
        const std::size_t k = draw() % 4;
        if (draw() % rarity == 0) connect(k, e) = connect((k + 1) % 4, e);
    }
    return connect;
}

/// The columns are made anew for each run, which is not measured. The roof copies the matrix.
template <std::size_t ROWS, unsigned RARITY, class Convert>
void measure(benchmark::State& state, const Convert& convert)
{
    const dense2D<unsigned> original =
        quads(ROWS, static_cast<std::size_t>(state.range(0)), RARITY);
    dense2D<unsigned> connect;
    if (!connect.copy(original)) return;
    against_roof watch(state, connect.cols, memcpy_roof(bytes(connect)));
    for (auto _ : state) {
        watch.leave_out(
            [&] { std::memcpy(connect.column(0), original.column(0), bytes(connect)); });
        benchmark::DoNotOptimize(convert(connect));
        benchmark::ClobberMemory();
    }
}

template <unsigned RARITY>
void convert_degenerated_Q4(benchmark::State& state)
{
    measure<4, RARITY>(state, [](dense2D<unsigned>& connect) {
        return tessalo2d::convert_degenerated_Q4(connect);
    });
}

template <std::size_t ROWS, unsigned RARITY>
void convert_degenerated_Q(benchmark::State& state)
{
    dense1D<unsigned, 8> ids;
    measure<ROWS, RARITY>(state, [&](dense2D<unsigned>& connect) {
        return tessalo2d::convert_degenerated_Q(connect, ids);
    });
}

BENCHMARK(convert_degenerated_Q4<1000>)->Apply(element_counts);
BENCHMARK(convert_degenerated_Q4<10>)->Apply(element_counts);
BENCHMARK(convert_degenerated_Q<4, 1000>)->Apply(element_counts);
BENCHMARK(convert_degenerated_Q<8, 1000>)->Apply(element_counts);
BENCHMARK(convert_degenerated_Q<8, 10>)->Apply(element_counts);
BENCHMARK(convert_degenerated_Q<9, 1000>)->Apply(element_counts);
BENCHMARK(convert_degenerated_Q<9, 10>)->Apply(element_counts);

} // namespace
