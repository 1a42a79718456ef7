#include "bench/support/meshes.h"
#include "bench/support/roof.h"

#include <vorel/tessalo2d.h>

using namespace bench_support;
using namespace vorel;

namespace {

/// In 8 and 9 rows every other column or so is a six-node triangle. The roof copies the matrix.
template <std::size_t ROWS>
void flip(benchmark::State& state)
{
    dense2D<unsigned> connect(ROWS, static_cast<std::size_t>(state.range(0)));
    std::mt19937 draw(4);
    for (std::size_t e = 0; e < connect.cols; ++e) {
        const bool triangle = ROWS >= 8 && draw() % 2;
        for (std::size_t i = 0; i < ROWS; ++i)
            connect(i, e) = triangle && i >= 6 ? UNSET_ID : static_cast<unsigned>(ROWS * e + i);
    }
    const against_roof watch(state, connect.cols, memcpy_roof(bytes(connect)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(tessalo2d::flip(connect, ELEMENT_ANY_FACE));
        benchmark::ClobberMemory();
    }
}

BENCHMARK(flip<3>)->Apply(element_counts);
BENCHMARK(flip<4>)->Apply(element_counts);
BENCHMARK(flip<6>)->Apply(element_counts);
BENCHMARK(flip<8>)->Apply(element_counts);
BENCHMARK(flip<9>)->Apply(element_counts);

} // namespace
