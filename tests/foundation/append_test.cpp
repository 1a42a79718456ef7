#include "support/allocation.h"
#include "support/matrices.h"

#include <random>

using namespace vorel;
using support::columns;
using support::failing_allocation;
using support::placed;
using support::without_columns;

namespace {

using IDs = dense2D<unsigned>;
using run = dense1D<unsigned, 8>;
using plain = std::vector<std::vector<unsigned>>;

constexpr unsigned THREE[] = {1, 2, 3};
constexpr unsigned FOUR[] = {4, 5, 6, 7};

} // namespace

TEST(AppendColumn, ToAnEmptyMatrixSetsTheRowsAndReservesFourColumns)
{
    IDs m;
    ASSERT_TRUE(append_column(m, THREE));
    EXPECT_EQ(columns(m), (plain{{1, 2, 3}}));
    EXPECT_EQ(m.ld, 3u);
    EXPECT_GE(m.column_capacity(), 4u);
}

TEST(AppendColumn, RefusesAnotherRowCountAndChangesNothing)
{
    IDs m{{1, 2, 3, 4}};
    const std::size_t capacity = m.block->capacity;
    EXPECT_FALSE(append_column(m, THREE));
    EXPECT_EQ(columns(m), (plain{{1, 2, 3, 4}}));
    EXPECT_EQ(m.block->capacity, capacity);
}

TEST(AppendColumn, EmptyMatrixTakesAnyRowCountWhateverItKept)
{
    IDs kept = without_columns<unsigned>(9);
    ASSERT_TRUE(append_column(kept, FOUR));
    EXPECT_EQ(columns(kept), (plain{{4, 5, 6, 7}}));
    IDs hollow;
    hollow.cols = 5;
    ASSERT_TRUE(append_column(hollow, THREE));
    EXPECT_EQ(columns(hollow), (plain{{1, 2, 3}}));
}

TEST(AppendColumn, DoublesTheStorage)
{
    IDs m;
    const std::size_t before = support::allocations();
    for (unsigned i = 0; i < 1000; ++i) {
        const unsigned entries[] = {i, i + 1, i + 2};
        ASSERT_TRUE(append_column(m, entries));
    }
    EXPECT_LE(support::allocations() - before, 9u) << "4, 8, 16, ... 1024";
    ASSERT_EQ(m.cols, 1000u);
    for (unsigned i = 0; i < 1000; ++i) ASSERT_EQ(m(2, i), i + 2);
}

TEST(AppendColumn, KeepsTheLdAndTheGaps)
{
    placed<unsigned> p(IDs{{9, 8, 7}, {6, 5, 4}}, 3, 2);
    for (int i = 0; i < 10; ++i) ASSERT_TRUE(append_column(p.view, THREE));
    EXPECT_EQ(p.view.ld, 5u);
    EXPECT_EQ(p.view.cols, 12u);
    EXPECT_EQ(p.view(0, 0), 9u);
    EXPECT_EQ(p.view(2, 11), 3u);
    p.expect_gaps_untouched();
}

TEST(AppendColumn, TriesWithoutRoomAheadWhenThatIsRefused)
{
    IDs m{{1, 2, 3}};
    {
        const failing_allocation armed(0, support::failure::once);
        EXPECT_TRUE(append_column(m, THREE)) << "the storage for one column is still to be had";
        EXPECT_TRUE(armed.fired());
    }
    EXPECT_EQ(columns(m), (plain{{1, 2, 3}, {1, 2, 3}}));
    {
        const failing_allocation armed(0, support::failure::for_good);
        EXPECT_FALSE(append_column(m, THREE));
    }
    EXPECT_EQ(columns(m), (plain{{1, 2, 3}, {1, 2, 3}}));
}

TEST(AppendColumns, PutsAllColumnsBehindTheOldOnes)
{
    IDs target{{1, 2}, {3, 4}};
    ASSERT_TRUE(append_columns(IDs{{5, 6}, {7, 8}}, target));
    EXPECT_EQ(columns(target), (plain{{1, 2}, {3, 4}, {5, 6}, {7, 8}}));
}

TEST(AppendColumns, GrowsToTwiceTheLarger)
{
    IDs target{{1, 2}, {3, 4}};
    ASSERT_TRUE(append_columns(IDs{{5, 6}}, target));
    EXPECT_EQ(target.column_capacity(), 4u);
    ASSERT_TRUE(append_columns(IDs{{5, 6}, {7, 8}, {9, 10}, {11, 12}, {13, 14}}, target));
    EXPECT_EQ(target.cols, 8u);
    EXPECT_EQ(target.column_capacity(), 8u);
}

TEST(AppendColumns, TargetWithoutColumnsTakesTheSourcesRows)
{
    for (const std::size_t rows : {0u, 2u, 3u, 9u}) {
        IDs target = without_columns<unsigned>(rows);
        ASSERT_TRUE(append_columns(IDs{{1, 2, 3}, {4, 5, 6}}, target));
        EXPECT_EQ(columns(target), (plain{{1, 2, 3}, {4, 5, 6}}));
        EXPECT_EQ(target.ld, 3u);
    }
    IDs target = without_columns<unsigned>(9);
    ASSERT_TRUE(append_columns(without_columns<unsigned>(4), target));
    EXPECT_EQ(target.rows, 4u);
    EXPECT_EQ(target.cols, 0u);
    IDs hollow;
    hollow.rows = 0;
    hollow.cols = 3;
    IDs fresh;
    ASSERT_TRUE(append_columns(hollow, fresh));
    EXPECT_TRUE(fresh.is_empty());
}

TEST(AppendColumns, NothingToAppendChangesNothing)
{
    IDs target{{1, 2}, {3, 4}};
    ASSERT_TRUE(append_columns(IDs(), target));
    ASSERT_TRUE(append_columns(without_columns<unsigned>(5), target));
    IDs hollow;
    hollow.cols = 3;
    ASSERT_TRUE(append_columns(hollow, target));
    EXPECT_EQ(columns(target), (plain{{1, 2}, {3, 4}}));
    EXPECT_EQ(target.rows, 2u);
}

TEST(AppendColumns, RefusesASourceWithFewerRows)
{
    IDs target{{1, 2, 3}};
    EXPECT_FALSE(append_columns(IDs{{1, 2}}, target));
    EXPECT_EQ(columns(target), (plain{{1, 2, 3}}));
}

TEST(AppendColumns, WidensATargetWithFewerRows)
{
    IDs target{{1, 2}, {3, 4}};
    ASSERT_TRUE(append_columns(IDs{{5, 6, 7}}, target));
    ASSERT_EQ(target.rows, 3u);
    ASSERT_EQ(target.cols, 3u);
    EXPECT_EQ(target(1, 1), 4u);
    EXPECT_EQ(target(2, 2), 7u);
}

TEST(AppendColumns, StepsByEachMatrixsOwnLd)
{
    const IDs source{{1, 2}, {3, 4}, {5, 6}};
    for (const std::size_t source_gap : {0u, 3u})
        for (const std::size_t target_gap : {0u, 2u}) {
            placed<unsigned> from(source, 4, source_gap);
            placed<unsigned> to(IDs{{9, 8}}, 3, target_gap);
            ASSERT_TRUE(append_columns(from.view, to.view));
            EXPECT_EQ(columns(to.view), (plain{{9, 8}, {1, 2}, {3, 4}, {5, 6}}));
            EXPECT_EQ(to.view.ld, 2 + target_gap);
            EXPECT_EQ(columns(from.view), columns(source));
            from.expect_gaps_untouched();
            to.expect_gaps_untouched();
        }
}

TEST(AppendColumns, OfAMatrixToItselfDoublesIt)
{
    IDs m{{1, 2}, {3, 4}};
    ASSERT_TRUE(append_columns(m, m));
    EXPECT_EQ(columns(m), (plain{{1, 2}, {3, 4}, {1, 2}, {3, 4}}));
}

TEST(AppendColumns, RefusedStorageChangesNothing)
{
    IDs target{{1, 2}};
    for (const support::failure kind : {support::failure::once, support::failure::for_good}) {
        const failing_allocation armed(0, kind);
        EXPECT_FALSE(append_columns(IDs::wrap(const_cast<unsigned*>(FOUR), 2, 2), target));
        EXPECT_TRUE(armed.fired());
        EXPECT_EQ(columns(target), (plain{{1, 2}}));
    }
    IDs none;
    none.cols = std::numeric_limits<std::size_t>::max();
    EXPECT_TRUE(append_columns(none, target)) << "columns without rows are nothing";
    EXPECT_EQ(columns(target), (plain{{1, 2}}));
}

TEST(AppendSelectedColumns, TakesTheListedColumnsInTheirOrder)
{
    const IDs source{{1, 2}, {3, 4}, {5, 6}};
    IDs target{{9, 8}};
    ASSERT_TRUE(append_selected_columns(source, run{2, 0, 2}, target));
    EXPECT_EQ(columns(target), (plain{{9, 8}, {5, 6}, {1, 2}, {5, 6}}));
}

TEST(AppendSelectedColumns, StepsByEachMatrixsOwnLd)
{
    placed<unsigned> from(IDs{{1, 2}, {3, 4}, {5, 6}}, 4, 1);
    placed<unsigned> to(IDs{{9, 8}, {7, 6}}, 3, 2);
    const run ids = support::placed_run(run{2, 1}, 5);
    ASSERT_TRUE(append_selected_columns(from.view, ids, to.view));
    EXPECT_EQ(columns(to.view), (plain{{9, 8}, {7, 6}, {5, 6}, {3, 4}}));
    from.expect_gaps_untouched();
    to.expect_gaps_untouched();
}

TEST(AppendSelectedColumns, TakesAListThatTheNewColumnsOverwrite)
{
    const IDs source{{1, 2}, {3, 4}, {5, 6}};
    // With room for the new columns over the list, and without.
    for (const std::size_t room : {5u, 20u}) {
        SCOPED_TRACE(room);
        IDs target{{9, 8}};
        run list = target.as_vector();
        ASSERT_TRUE(list.reserve(room, 1));
        for (const unsigned id : {2u, 0u, 2u}) list.append(id);
        // The list lies behind the target's only column.
        list.offset = 2;
        list.size = 3;
        ASSERT_TRUE(append_selected_columns(source, list, target));
        EXPECT_EQ(columns(target), (plain{{9, 8}, {5, 6}, {1, 2}, {5, 6}}));
    }
}

TEST(AppendSelectedColumns, RefusedCopyOfAListChangesNothing)
{
    const IDs source{{1, 2}, {3, 4}};
    const std::size_t refusals =
        support::each_refused_allocation([&](auto armed, const std::string& told) {
            IDs target{{1, 1}};
            const run list = target.as_vector();
            bool done = false;
            const bool refused =
                armed([&] { done = append_selected_columns(source, list, target); });
            EXPECT_TRUE(done || refused) << told;
            EXPECT_EQ(columns(target), done ? (plain{{1, 1}, {3, 4}, {3, 4}}) : (plain{{1, 1}}))
                << told;
        });
    EXPECT_GE(refusals, 2u);
}

TEST(AppendSelectedColumns, ShapesAsWithAllColumns)
{
    const IDs source{{1, 2, 3}, {4, 5, 6}};
    IDs kept = without_columns<unsigned>(9);
    ASSERT_TRUE(append_selected_columns(source, run{1}, kept));
    EXPECT_EQ(columns(kept), (plain{{4, 5, 6}}));
    IDs none = without_columns<unsigned>(9);
    ASSERT_TRUE(append_selected_columns(source, run(), none));
    EXPECT_EQ(none.rows, 3u);
    EXPECT_EQ(none.cols, 0u);
    IDs target{{1, 2, 3, 4}};
    EXPECT_FALSE(append_selected_columns(source, run{0}, target));
    ASSERT_TRUE(append_selected_columns(source, run(), target));
    EXPECT_EQ(columns(target), (plain{{1, 2, 3, 4}}));
}

TEST(AppendSelectedColumns, TriesWithoutRoomAheadWhenThatIsRefused)
{
    const IDs source{{1, 2}, {3, 4}};
    IDs target{{9, 8}};
    {
        const failing_allocation armed(0, support::failure::once);
        EXPECT_TRUE(append_selected_columns(source, run::wrap(THREE, 1), target));
    }
    EXPECT_EQ(columns(target), (plain{{9, 8}, {3, 4}}));
    {
        const failing_allocation armed(0, support::failure::for_good);
        EXPECT_FALSE(append_selected_columns(source, run::wrap(THREE, 1), target));
    }
    EXPECT_EQ(columns(target), (plain{{9, 8}, {3, 4}}));
}

TEST(Appends, BehaveAsPlainTablesUnderRefusals)
{
    for (unsigned seed = 1; seed <= 40; ++seed) {
        std::mt19937 draw(seed);
        IDs target;
        plain expected;
        for (int step = 0; step < 60; ++step) {
            const std::string told =
                "seed " + std::to_string(seed) + " step " + std::to_string(step);
            IDs source(3, 1 + draw() % 9);
            for (std::size_t j = 0; j < source.cols; ++j)
                for (std::size_t i = 0; i < 3; ++i) source(i, j) = static_cast<unsigned>(draw());
            run ids(draw() % 5);
            for (unsigned& id : ids) id = static_cast<unsigned>(draw() % source.cols);
            plain taken;
            const auto kind = draw() % 3;
            if (kind == 0) taken = {columns(source)[0]};
            if (kind == 1) taken = columns(source);
            if (kind == 2)
                for (const unsigned id : ids) taken.push_back(columns(source)[id]);
            const bool refuse = draw() % 3 == 0;
            bool done = false;
            {
                const failing_allocation armed(refuse ? 0 : std::numeric_limits<std::size_t>::max(),
                                               support::failure::for_good);
                if (kind == 0) {
                    const unsigned entries[] = {source(0, 0), source(1, 0), source(2, 0)};
                    done = append_column(target, entries);
                }
                if (kind == 1) done = append_columns(source, target);
                if (kind == 2) done = append_selected_columns(source, ids, target);
                ASSERT_TRUE(done || armed.fired()) << told;
            }
            if (done) expected.insert(expected.end(), taken.begin(), taken.end());
            ASSERT_EQ(columns(target), expected) << told;
        }
    }
}
