#include "support/allocation.h"

#include <vorel/dense1D.h>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <vector>

using namespace vorel;
using support::each_refused_allocation;
using support::failing_allocation;
using support::failure;

namespace {

/// Makes `n` requests and tells which were served.
std::vector<bool> requests(int n)
{
    std::vector<bool> served;
    for (int i = 0; i < n; ++i) {
        void* const memory = __vector_num_alloc(8);
        served.push_back(memory != nullptr);
        if (memory) __vector_num_free(memory);
    }
    return served;
}

} // namespace

TEST(FailingAllocation, RefusesTheChosenRequestOnce)
{
    const failing_allocation armed(2, failure::once);
    EXPECT_FALSE(armed.fired());
    EXPECT_EQ(requests(5), (std::vector<bool>{true, true, false, true, true}));
    EXPECT_TRUE(armed.fired());
}

TEST(FailingAllocation, RefusesFromTheChosenRequestOnForGood)
{
    const failing_allocation armed(2, failure::for_good);
    EXPECT_EQ(requests(5), (std::vector<bool>{true, true, false, false, false}));
    EXPECT_TRUE(armed.fired());
}

TEST(FailingAllocation, EndsWithItsObject)
{
    {
        const failing_allocation armed(0, failure::for_good);
        EXPECT_EQ(requests(2), (std::vector<bool>{false, false}));
    }
    EXPECT_EQ(requests(2), (std::vector<bool>{true, true}));
    {
        const failing_allocation armed(2);
        EXPECT_EQ(requests(2), (std::vector<bool>{true, true}));
        EXPECT_FALSE(armed.fired()) << "not reached";
    }
    EXPECT_EQ(requests(2), (std::vector<bool>{true, true}));
}

TEST(FailingAllocation, ReachesTheStorageOfViews)
{
    const failing_allocation armed(0);
    dense1D<double> v;
    EXPECT_FALSE(v.resize(3));
    EXPECT_TRUE(armed.fired());
    EXPECT_TRUE(v.resize(3));
}

TEST(Allocator, RefusesWhatNoMachineHas)
{
    EXPECT_EQ(__vector_num_alloc(std::size_t(1) << 40), nullptr);
}

TEST(Allocator, CountsLiveBlocks)
{
    const std::size_t live = support::live_allocations();
    const std::size_t served = support::allocations();
    void* const memory = __vector_num_alloc(8);
    EXPECT_EQ(support::live_allocations(), live + 1);
    __vector_num_free(memory);
    EXPECT_EQ(support::live_allocations(), live);
    EXPECT_EQ(support::allocations(), served + 1);
}

TEST(EachRefusedAllocation, StrikesEveryRequestInBothWays)
{
    std::vector<std::string> outcomes;
    const std::size_t refusals = each_refused_allocation([&](const auto& armed, const auto&) {
        std::string outcome;
        const bool refused = armed([&] {
            for (const bool served : requests(3)) outcome += served ? '+' : '-';
        });
        EXPECT_EQ(refused, outcome != "+++");
        outcomes.push_back(outcome);
    });
    EXPECT_EQ(refusals, 6u);
    EXPECT_EQ(outcomes,
              (std::vector<std::string>{"-++", "+-+", "++-", "+++", "---", "+--", "++-", "+++"}));
}

TEST(EachRefusedAllocation, ReportsALeak)
{
    static void* kept = nullptr;
    EXPECT_NONFATAL_FAILURE(each_refused_allocation([](const auto&, const auto& told) {
                                if (told == "request 0 refused once") kept = __vector_num_alloc(8);
                            }),
                            "storage leaked: request 0 refused once");
    __vector_num_free(kept);
}
