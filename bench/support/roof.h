// Roofs: what the machine can do at best, measured in the run that reports against it.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <limits>
#include <vector>

namespace bench_support {

/// Processor time of this thread in seconds: what other programs do meanwhile does not count.
inline double processor_seconds()
{
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// Seconds of one call of `work`, the best of up to 40 rounds in a twentieth of a second.
template <class Work>
double best_seconds(Work work)
{
    double best = std::numeric_limits<double>::infinity();
    std::size_t calls = 1;
    const double begin = processor_seconds();
    for (int round = 0; round < 40; ++round) {
        const double start = processor_seconds();
        for (std::size_t call = 0; call < calls; ++call) work();
        const double seconds = processor_seconds() - start;
        best = std::min(best, seconds / static_cast<double>(calls));
        // Rounds long enough for the clock.
        if (seconds < 1e-4) calls *= 4;
        if (processor_seconds() - begin > 0.05 && round >= 2) break;
    }
    return best;
}

/// Seconds that a memcpy of so many bytes takes, into memory that was touched before. The best over
/// some distances between the two: at an unlucky one it takes several times as long.
inline double memcpy_roof(std::size_t bytes)
{
    constexpr std::size_t SLACK = 4096;
    std::vector<unsigned char> from(bytes, 1);
    std::vector<unsigned char> to(bytes + SLACK, 2);
    double best = std::numeric_limits<double>::infinity();
    for (std::size_t distance = 0; distance < SLACK; distance += SLACK / 4 + 64)
        best = std::min(best, best_seconds([&] {
                            std::memcpy(to.data() + distance, from.data(), bytes);
                            benchmark::DoNotOptimize(to.data());
                            benchmark::ClobberMemory();
                        }));
    return best;
}

/// Reports the loop of a benchmark, from its construction before the loop to the end of the
/// function: items per second, and as `x_roof` the mean time of an iteration in units of the roof,
/// which is given in seconds.
///
///     const mesh m = grid(form::T3, elements);
///     const against_roof watch(state, m.connect.cols, memcpy_roof(bytes(m.coords)));
///     for (auto _ : state) ...
class against_roof {
public:
    against_roof(benchmark::State& state_, std::size_t items_, double roof_seconds_)
        : state(state_), items(items_), roof_seconds(roof_seconds_), begin(processor_seconds())
    {
    }
    ~against_roof()
    {
        const double seconds = processor_seconds() - begin;
        const auto iterations = static_cast<double>(state.iterations());
        state.SetItemsProcessed(static_cast<std::int64_t>(items) * state.iterations());
        state.counters["x_roof"] = seconds / iterations / roof_seconds;
    }

    /// Work between the runs that is not measured, such as making their input anew.
    template <class Work>
    void leave_out(Work work)
    {
        state.PauseTiming();
        const double start = processor_seconds();
        work();
        begin += processor_seconds() - start;
        state.ResumeTiming();
    }

    against_roof(const against_roof&) = delete;
    against_roof& operator=(const against_roof&) = delete;

private:
    benchmark::State& state;
    std::size_t items;
    double roof_seconds;
    double begin;
};

/// The sizes that every operation is measured at: elements, for `Apply`.
inline void element_counts(benchmark::internal::Benchmark* b)
{
    b->Arg(10000)->Arg(100000)->Arg(1000000);
}

} // namespace bench_support
