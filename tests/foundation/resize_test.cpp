// What `dense2D::resize` keeps.
#include "support/allocation.h"
#include "support/matrices.h"

#include <random>

using namespace vorel;
using support::columns;
using support::placed;

namespace {

using IDs = dense2D<unsigned>;
using plain = std::vector<std::vector<unsigned>>;

/// Column j, row i holds 10 j + i.
IDs numbered(std::size_t rows, std::size_t cols)
{
    IDs m(rows, cols);
    for (std::size_t j = 0; j < cols; ++j)
        for (std::size_t i = 0; i < rows; ++i) m(i, j) = static_cast<unsigned>(10 * j + i);
    return m;
}

} // namespace

TEST(Resize, MoreColumnsLeaveOldOnesInPlace)
{
    IDs m = numbered(3, 2);
    ASSERT_TRUE(m.reserve(3, 10, 1));
    const unsigned* const first = m.column(0);
    ASSERT_TRUE(m.resize(3, 4, 7u));
    EXPECT_EQ(m.column(0), first);
    EXPECT_EQ(columns(m), (plain{{0, 1, 2}, {10, 11, 12}, {7, 7, 7}, {7, 7, 7}}));
    EXPECT_EQ(m.ld, 3u);
}

TEST(Resize, FewerRowsKeepTheSurvivorsAndTheLd)
{
    IDs m = numbered(6, 3);
    ASSERT_TRUE(m.resize(3, 3));
    EXPECT_EQ(m.rows, 3u);
    EXPECT_EQ(m.ld, 6u);
    for (unsigned j = 0; j < 3; ++j) EXPECT_EQ(m(2, j), 10 * j + 2);
    EXPECT_EQ(m.size, 15u);
}

TEST(Resize, EmptyMatrixTakesTheShapeAndADenseLd)
{
    IDs m = support::without_columns<unsigned>(9);
    ASSERT_TRUE(m.resize(4, 5, 1u));
    EXPECT_EQ(m.ld, 4u);
    IDs cleared = numbered(6, 3);
    cleared.clear();
    ASSERT_TRUE(cleared.resize(2, 3));
    EXPECT_EQ(cleared.ld, 2u);
    IDs hollow;
    hollow.rows = 0;
    hollow.cols = 8;
    hollow.ld = 5;
    ASSERT_TRUE(hollow.resize(3, 2, 4u));
    EXPECT_EQ(hollow.ld, 3u);
    EXPECT_EQ(columns(hollow), (plain{{4, 4, 4}, {4, 4, 4}}));
}

TEST(Resize, SameShapeWithAFillLeavesTheValuesAlone)
{
    IDs m = numbered(4, 3);
    const plain before = columns(m);
    const unsigned* const first = m.column(0);
    ASSERT_TRUE(m.resize(4, 3, UNSET_ID));
    EXPECT_EQ(columns(m), before);
    EXPECT_EQ(m.column(0), first);

    IDs empty;
    ASSERT_TRUE(empty.resize(4, empty.cols, UNSET_ID));
    EXPECT_EQ(empty.rows, 4u) << "only fixes the row count";
    EXPECT_EQ(empty.cols, 0u);
    EXPECT_EQ(empty.ld, 4u);
    EXPECT_EQ(empty.block->data, nullptr) << "without storage";
}

TEST(Resize, MoreRowsKeepEveryOldEntryAndFillTheNewOnes)
{
    dense2D<double> coords{{1, 2}, {3, 4}, {5, 6}};
    ASSERT_TRUE(coords.resize(3, 3, 0.0));
    EXPECT_EQ(columns(coords), (std::vector<std::vector<double>>{{1, 2, 0}, {3, 4, 0}, {5, 6, 0}}));
    ASSERT_TRUE(coords.resize(2, 3));
    EXPECT_EQ(columns(coords), (std::vector<std::vector<double>>{{1, 2}, {3, 4}, {5, 6}}));
    EXPECT_EQ(coords.ld, 3u);
}

TEST(Resize, RowsThatCameBackInsideTheLdAreFilled)
{
    IDs m = numbered(6, 2);
    ASSERT_TRUE(m.resize(3, 2));
    ASSERT_TRUE(m.resize(5, 2, 99u));
    EXPECT_EQ(m.ld, 6u);
    EXPECT_EQ(columns(m), (plain{{0, 1, 2, 99, 99}, {10, 11, 12, 99, 99}}));
}

TEST(Resize, RowsAndColumnsAtOnce)
{
    IDs more = numbered(2, 2);
    ASSERT_TRUE(more.resize(3, 3, 9u));
    EXPECT_EQ(columns(more), (plain{{0, 1, 9}, {10, 11, 9}, {9, 9, 9}}));
    IDs wider = numbered(3, 2);
    ASSERT_TRUE(wider.resize(2, 3, 9u));
    EXPECT_EQ(columns(wider), (plain{{0, 1}, {10, 11}, {9, 9}}));
    EXPECT_EQ(wider.ld, 3u);
    IDs taller = numbered(2, 3);
    ASSERT_TRUE(taller.resize(3, 2, 9u));
    EXPECT_EQ(columns(taller), (plain{{0, 1, 9}, {10, 11, 9}}));
    IDs less = numbered(3, 3);
    ASSERT_TRUE(less.resize(2, 2, 9u));
    EXPECT_EQ(columns(less), (plain{{0, 1}, {10, 11}}));
}

TEST(Resize, ToNothingAndBack)
{
    IDs m = numbered(6, 2);
    ASSERT_TRUE(m.resize(3, 2));
    ASSERT_TRUE(m.resize(3, 0));
    EXPECT_TRUE(m.is_empty());
    EXPECT_EQ(m.rows, 3u);
    EXPECT_EQ(m.size, 0u);
    ASSERT_TRUE(m.resize(3, 2, 5u));
    EXPECT_EQ(m.ld, 3u);
    EXPECT_EQ(columns(m), (plain{{5, 5, 5}, {5, 5, 5}}));
    ASSERT_TRUE(m.resize(0, 2));
    EXPECT_TRUE(m.is_empty());
    ASSERT_TRUE(m.resize(0, std::numeric_limits<std::size_t>::max())) << "needs no storage";
    EXPECT_TRUE(m.is_empty());
}

TEST(Resize, GapsStayUntouchedWhileTheLdStays)
{
    placed<unsigned> p(numbered(3, 4), 5, 2);
    ASSERT_TRUE(p.view.resize(3, 40, 1u));
    EXPECT_EQ(p.view.ld, 5u);
    EXPECT_EQ(p.view.offset, 5u);
    p.expect_gaps_untouched();
}

/// Any sequence of calls against a plain table of values.
TEST(Resize, BehavesAsAPlainTableOnRandomCalls)
{
    for (unsigned seed = 1; seed <= 60; ++seed) {
        std::mt19937 draw(seed);
        const std::size_t first_rows = draw() % 5;
        placed<unsigned> p(numbered(first_rows, draw() % 5), draw() % 4, draw() % 3);
        IDs m = p.view;
        plain expected = columns(m);
        for (int step = 0; step < 100; ++step) {
            const std::string told =
                "seed " + std::to_string(seed) + " step " + std::to_string(step);
            const std::size_t rows = draw() % 7;
            const std::size_t cols = draw() % 12;
            const unsigned fill = static_cast<unsigned>(draw());
            const bool refused = draw() % 4 == 0;
            const std::size_t old_ld = m.ld;
            const bool was_empty = m.is_empty();
            bool done;
            {
                // Refused requests must not change a thing.
                const support::failing_allocation armed(
                    refused ? 0 : std::numeric_limits<std::size_t>::max(),
                    support::failure::for_good);
                if (draw() % 5 == 0) {
                    (void)m.reserve(rows, cols, draw() % 3);
                    ASSERT_EQ(columns(m), expected) << told;
                    continue;
                }
                done = m.resize(rows, cols, fill);
                ASSERT_TRUE(done || refused) << told;
            }
            if (done) {
                if (was_empty) expected.clear();
                expected.resize(cols, std::vector<unsigned>(rows, fill));
                for (auto& column : expected) column.resize(rows, fill);
                const std::size_t ld = was_empty ? rows : std::max(old_ld, rows);
                ASSERT_TRUE(m.is_empty() || m.ld == ld) << told;
                ASSERT_GE(m.ld, m.rows) << told;
                ASSERT_EQ(m.size, m.is_empty() ? 0 : (cols - 1) * m.ld + rows) << told;
            }
            ASSERT_EQ(columns(m), expected) << told;
        }
    }
}
