// Every exported function with each of its requests for storage refused, once and from there on,
// through the raw allocator pair and through `operator new`.
#include "exports/drops.h"
#include "exports/operator_new.h"
#include "exports/outcome.h"
#include "exports/table.h"

#include <gtest/gtest.h>

#include <iostream>
#include <new>
#include <set>

using namespace exports;

namespace {

/// What the refusals of one sweep led to.
struct tally {
    std::size_t exhausted = 0;
    std::size_t thrown = 0;
    std::size_t same = 0;
    std::set<const drop*> dropped;
};

template <class Armed>
void attempt(const exported& e, const arguments& fresh, const result& undisturbed,
             const Armed& armed, const std::string& told, tally& found)
{
    arguments a(fresh);
    const std::vector<picture> before = a.pictures();
    int status = 0;
    bool thrown = false;
    const bool refused = armed([&] {
        try {
            status = e.run(a);
        } catch (const std::bad_alloc&) {
            thrown = true;
        }
    });
    if (thrown) {
        ++found.thrown;
        expect_outcome_of_exception(e, before, a, told);
        return;
    }
    if (status == -199) {
        EXPECT_TRUE(refused) << e.signature << "\n  " << told;
        ++found.exhausted;
        expect_outcome(e, before, a, nullptr, status, told);
        return;
    }
    const result got = {status, a.pictures()};
    const std::string differing = differences(e, got.after, undisturbed.after);
    if (differing.empty() && status == undisturbed.status) {
        if (refused) ++found.same;
        return;
    }
    expect_outcome(e, before, a, nullptr, status, told);
    const drop* const lost = drop_that_shows(e, fresh, got, undisturbed);
    EXPECT_TRUE(refused && lost) << e.signature << "\n  " << told << ": status " << status
                                 << ", not as undisturbed: " << differing;
    if (lost) found.dropped.insert(lost);
}

/// A call of a row with the small or the larger arguments, undisturbed and to be disturbed.
struct subject {
    subject(const exported& row, bool large_) : e(row), large(large_), fresh(row.slots)
    {
        if (large) e.enlarge(fresh);
        arguments a(fresh);
        const int status = e.run(a);
        undisturbed = {status, a.pictures()};
    }

    template <class Armed>
    void attempt_with(const Armed& armed, const std::string& told, tally& found) const
    {
        attempt(e, fresh, undisturbed, armed, told + (large ? ", large" : ""), found);
    }

    const exported& e;
    bool large;
    arguments fresh;
    result undisturbed;
};

template <class F>
void for_each_subject(F f)
{
    for (const exported& e : table())
        for (const bool large : {false, true}) f(subject(e, large));
}

void refuse_each(const subject& s, support::request_gate& gate, tally& found)
{
    support::each_refused_allocation(
        [&](const auto& armed, const std::string& told) {
            // Whichever allocator refuses, the raw one gets all of its blocks back.
            const std::size_t live = support::raw_requests().live;
            s.attempt_with(armed, told, found);
            EXPECT_EQ(support::raw_requests().live, live) << s.e.signature << "\n  " << told;
        },
        gate);
}

/// Requests above a size are refused, for all sizes: the lists that are long from the start fail,
/// and the short ones that grow instead of them fail later.
void refuse_large_requests(const subject& s, tally& found)
{
    bool struck = true;
    for (std::size_t limit = 8; struck; limit += limit / 4) {
        const std::size_t live = support::raw_requests().live;
        s.attempt_with(
            [&](const auto& call) {
                const support::limited_memory armed(limit);
                call();
                return struck = armed.fired();
            },
            "requests above " + std::to_string(limit) + " bytes refused", found);
        EXPECT_EQ(support::raw_requests().live, live) << s.e.signature << " leaked at " << limit;
    }
}

} // namespace

TEST(RefusedStorage, IsReportedOrCostsWhatIsListed)
{
    tally found;
    for_each_subject([&](const subject& s) {
        refuse_each(s, support::raw_requests(), found);
        refuse_large_requests(s, found);
    });
    EXPECT_EQ(found.thrown, 0u);
    for (const drop& d : drops())
        EXPECT_EQ(found.dropped.count(&d), 1u) << "not seen: " << d.what_is_lost;
    std::cout << found.exhausted << " refusals reported, " << found.same << " without effect\n";
}

TEST(RefusedObjects, AreThrown)
{
    tally found;
    for_each_subject([&](const subject& s) { refuse_each(s, new_requests(), found); });
    EXPECT_GT(found.thrown, 0u);
    // Nothing in the library catches, so no refusal becomes a status, costs an element or is made
    // up for.
    EXPECT_EQ(found.exhausted, 0u);
    EXPECT_TRUE(found.dropped.empty());
    EXPECT_EQ(found.same, 0u);
    std::cout << found.thrown << " refusals thrown\n";
}

TEST(Requests, AreMadeByNoFunctionThatPromisesNone)
{
    for_each_subject([](const subject& s) {
        const auto served = [] { return support::raw_requests().served + new_requests().served; };
        arguments a(s.fresh);
        const std::size_t before = served();
        (void)s.e.run(a);
        const std::size_t made = served() - before;
        EXPECT_TRUE(s.e.allocates || made == 0) << s.e.signature;
        EXPECT_TRUE(!s.e.allocates || !s.large || made > 0) << s.e.signature;
    });
}
