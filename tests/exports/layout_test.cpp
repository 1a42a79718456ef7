// Every exported function on matrices and lists that lie in memory in awkward ways: the same bits
// come out as for dense ones, and nothing around the entries is touched.
#include "exports/breakage.h"
#include "exports/outcome.h"
#include "exports/table.h"
#include "support/matrices.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

using namespace exports;

namespace {

struct layout {
    std::size_t offset;
    std::size_t gap;
};

constexpr layout LAYOUTS[] = {{5, 2}, {3, 0}, {0, 1}};

/// What stands around one argument: replaces its value by one that is placed in a pattern, and
/// looks at the pattern afterwards.
using inspection = std::function<void()>;

template <class T>
inspection place(const slot& s, dense2D<T>& m, const layout& where)
{
    const auto p = std::make_shared<support::placed<T>>(m, where.offset, where.gap);
    m = p->view;
    const std::size_t ld = m.ld;
    return [p, &s, &m, ld] {
        // A matrix that was emptied or spread has a leading dimension of its own.
        const bool spread = s.direction == flow::replaced || m.ld != ld;
        p->expect_gaps_untouched(spread ? ld : std::max(m.rows, s.rows_on_the_way));
    };
}

template <class T>
inspection place(const slot& s, dense1D<T, 8>& v, const layout& where)
{
    const std::size_t behind = where.gap;
    dense1D<T, 8> run(where.offset + v.size + behind, static_cast<T>(0x5A5A5A5Au));
    for (std::size_t i = 0; i < v.size; ++i) run[where.offset + i] = v[i];
    const dense1D<T, 8> whole = run;
    run.offset = where.offset;
    run.size = v.size;
    v = run;
    return [whole, &s, where, size = run.size, behind] {
        for (std::size_t i = 0; i < where.offset; ++i)
            EXPECT_EQ(whole[i], static_cast<T>(0x5A5A5A5Au)) << i;
        // Outputs may use what the block holds behind their end.
        if (s.direction != flow::in) return;
        for (std::size_t i = 0; i < behind; ++i)
            EXPECT_EQ(whole[where.offset + size + i], static_cast<T>(0x5A5A5A5Au)) << i;
    };
}

template <class T>
inspection place(const slot&, T&, const layout&)
{
    return [] {};
}

/// A call with the arguments `which` (all of them for the count of slots) placed; expects the
/// outcome of the dense one.
void expect_same(const exported& e, const arguments& dense, int status,
                 const std::vector<picture>& result, std::size_t which, const layout& where)
{
    SCOPED_TRACE(e.signature + ", offset " + std::to_string(where.offset) + ", gap " +
                 std::to_string(where.gap) + ", argument " + std::to_string(which));
    arguments a(dense);
    std::vector<inspection> inspections;
    for (std::size_t k = 0; k < a.count(); ++k)
        if (which == k || which == a.count())
            inspections.push_back(
                std::visit([&](auto& x) { return place(a.about(k), x, where); }, a[k]));
    EXPECT_EQ(e.run(a), status);
    EXPECT_EQ(differences(e, a.pictures(), result), "");
    for (const inspection& look : inspections) look();
}

} // namespace

TEST(AnyLayout, GivesTheSameBitsAndLeavesTheGaps)
{
    for (const exported& e : table())
        for (const bool large : {false, true}) {
            arguments dense(e.slots);
            if (large) e.enlarge(dense);
            arguments a(dense);
            const int status = e.run(a);
            const std::vector<picture> result = a.pictures();
            for (const layout& where : LAYOUTS)
                for (std::size_t which = 0; which <= a.count(); ++which)
                    expect_same(e, dense, status, result, which, where);
        }
}

TEST(AnyLayout, IsLeftAloneByACallThatIsRefused)
{
    for (const exported& e : table())
        for (const breakage& b : breakages(e)) {
            arguments dense(e.slots);
            b.apply(dense);
            if (!e.first_end(dense)) continue;
            arguments a(dense);
            const int status = e.run(a);
            expect_same(e, dense, status, a.pictures(), a.count(), LAYOUTS[0]);
        }
}
