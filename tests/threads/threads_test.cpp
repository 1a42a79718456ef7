// Several threads call at once, each on containers of its own for what is written, on shared ones
// for what is read. Under the thread sanitizer no access may race; everywhere the results are those
// of a single thread, bit for bit.
#include "determinism/golden_calls.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cctype>
#include <thread>

using namespace golden;
using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

constexpr unsigned THREADS = 3;

/// Runs `work(thread)` on all threads, none before all are there.
template <class Work>
void on_all_threads(Work work)
{
    std::atomic<unsigned> waiting{THREADS};
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < THREADS; ++t)
        threads.emplace_back([&, t] {
            --waiting;
            while (waiting != 0) std::this_thread::yield();
            work(t);
        });
    for (std::thread& thread : threads) thread.join();
}

results results_of(const golden_call& call, const inputs& in)
{
    results out;
    call.run(call.function, in, out);
    return out;
}

/// Letters, digits and underscores only, as the names of tests are.
std::string name_of(const golden_call& call)
{
    std::string name = call.function;
    for (char& c : name)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    return name;
}

/// One function beside itself, on the very same inputs.
class SharedInputs : public testing::TestWithParam<golden_call> {};

} // namespace

TEST_P(SharedInputs, GiveEveryThreadTheResultsOfOne)
{
    const inputs in = make_inputs();
    const results expected = results_of(GetParam(), in);
    bool same[THREADS] = {};
    on_all_threads([&](unsigned t) { same[t] = results_of(GetParam(), in) == expected; });
    for (unsigned t = 0; t < THREADS; ++t) EXPECT_TRUE(same[t]) << "thread " << t;
}

INSTANTIATE_TEST_SUITE_P(Threads, SharedInputs, testing::ValuesIn(all_calls()),
                         [](const auto& of) { return name_of(of.param); });

TEST(Threads, FunctionsOfAllFamiliesRunBesideEachOther)
{
    const inputs in = make_inputs();
    const std::vector<golden_call> calls = all_calls();
    std::vector<results> expected;
    for (const golden_call& call : calls) expected.push_back(results_of(call, in));
    unsigned different[THREADS] = {};
    on_all_threads([&](unsigned t) {
        // Each thread begins in another family.
        for (std::size_t k = 0; k < calls.size(); ++k) {
            const std::size_t i = (k + t * calls.size() / THREADS) % calls.size();
            different[t] += !(results_of(calls[i], in) == expected[i]);
        }
    });
    for (unsigned t = 0; t < THREADS; ++t) EXPECT_EQ(different[t], 0u) << "thread " << t;
}

TEST(Threads, CopiesOfSharedBlocksAreMadeAndDroppedEverywhere)
{
    inputs in = make_inputs();
    const std::vector<golden_call> calls = all_calls();
    std::vector<results> expected;
    for (const golden_call& call : calls) expected.push_back(results_of(call, in));
    // The originals go while the threads run: the last one lets go of the blocks.
    std::vector<inputs> copies(THREADS, in);
    const std::int32_t holders = in.plane[0].coords.block->count;
    EXPECT_GT(holders, std::int32_t(THREADS));
    unsigned different[THREADS] = {};
    std::atomic<bool> dropped{false};
    on_all_threads([&](unsigned t) {
        inputs mine = std::move(copies[t]);
        if (t == 0 && !dropped.exchange(true)) in = inputs();
        for (std::size_t i = t; i < calls.size(); i += 5) {
            const inputs shorter_lived = mine;
            different[t] += !(results_of(calls[i], shorter_lived) == expected[i]);
        }
        mine = inputs();
    });
    for (unsigned t = 0; t < THREADS; ++t) EXPECT_EQ(different[t], 0u) << "thread " << t;
}

TEST(Threads, ViewsOfDifferentColumnsOfOneBlockAreWrittenAtOnce)
{
    constexpr std::size_t COLUMNS = 500;
    dense2D<unsigned> all(4, COLUMNS * THREADS);
    for (std::size_t j = 0; j < all.cols; ++j)
        for (unsigned i = 0; i < 4; ++i) all(i, j) = j % 7 == 0 ? 9 : 10 * unsigned(j) + i;
    std::vector<dense2D<unsigned>> views(THREADS, all);
    for (unsigned t = 0; t < THREADS; ++t) {
        views[t].offset = t * COLUMNS * 4;
        views[t].cols = COLUMNS;
        views[t].size = COLUMNS * 4;
    }
    int converted[THREADS] = {};
    on_all_threads([&](unsigned t) {
        EXPECT_EQ(flip(views[t]), 0);
        converted[t] = convert_degenerated_Q4(views[t]);
    });
    int sum = 0;
    for (const int n : converted) sum += n;
    EXPECT_EQ(sum, static_cast<int>((all.cols + 6) / 7));
    for (std::size_t j = 0; j < all.cols; ++j) {
        if (j % 7 == 0) continue;
        EXPECT_EQ(all(0, j), 10 * unsigned(j) + 2) << j;
        EXPECT_EQ(all(2, j), 10 * unsigned(j)) << j;
    }
}
