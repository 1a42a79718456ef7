#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"

using namespace vorel;
using support::columns;
using support::copy_of;
using support::matrix;
using tessalo2d::split_Q4_into_T3;

namespace {

constexpr unsigned U = UNSET_ID;
using ids = std::vector<std::vector<unsigned>>;

/// The cut written out, one column after the other.
ids cut_one_by_one(const dense2D<unsigned>& connect)
{
    ids all;
    for (const auto& c : columns(connect)) {
        all.push_back({c[0], c[1], c[2]});
        if (c.size() == 4 && c[3] != U) all.push_back({c[2], c[3], c[0]});
    }
    return all;
}

} // namespace

TEST(SplitFixed, WithoutColumnsThereIsNothingToDo)
{
    dense2D<unsigned> result{{1, 2}};
    EXPECT_EQ(split_Q4_into_T3(support::without_columns<unsigned>(7), result), 0);
    EXPECT_EQ(columns(result), (ids{{1, 2}}));
}

TEST(SplitFixed, CutsFromTheFirstNodeAndCountsQuadrilaterals)
{
    dense2D<unsigned> result;
    EXPECT_EQ(split_Q4_into_T3({{4, 1, 9, 2}, {7, 8, 9, U}, {0, 1, 2, 3}}, result), 2);
    EXPECT_EQ(columns(result), (ids{{4, 1, 9}, {9, 2, 4}, {7, 8, 9}, {0, 1, 2}, {2, 3, 0}}));
}

TEST(SplitFixed, AppendsTrianglesWholeAndReportsNoCount)
{
    dense2D<unsigned> result{{5, 5, 5}};
    EXPECT_EQ(split_Q4_into_T3({{0, 1, 2}, {2, 1, 3}}, result), 0);
    EXPECT_EQ(columns(result), (ids{{5, 5, 5}, {0, 1, 2}, {2, 1, 3}}));
}

TEST(SplitFixed, DoesNotLookAtTheIDs)
{
    dense2D<unsigned> result;
    EXPECT_EQ(split_Q4_into_T3({{U, U, U, 4000000000u}, {U, 1, 1, U}}, result), 1);
    EXPECT_EQ(columns(result), (ids{{U, U, U}, {U, 4000000000u, U}, {U, 1, 1}}));
}

TEST(SplitFixed, ChecksTheRowsOfConnectBeforeThoseOfTheResult)
{
    for (const std::size_t rows : {0u, 1u, 2u, 5u, 6u}) {
        dense2D<unsigned> result{{1, 2}};
        dense2D<unsigned> connect(rows, 3, 0u);
        connect.cols = 3;
        EXPECT_EQ(split_Q4_into_T3(connect, result), -1) << rows;
    }
    for (const std::size_t rows : {1u, 2u, 4u}) {
        dense2D<unsigned> result(rows, 2, 7u);
        EXPECT_EQ(split_Q4_into_T3({{0, 1, 2}}, result), -2) << rows;
        EXPECT_EQ(split_Q4_into_T3({{0, 1, 2, 3}}, result), -2) << rows;
        EXPECT_EQ(columns(result), ids(2, std::vector<unsigned>(rows, 7u)));
    }
}

TEST(SplitFixed, AnEmptyResultMayHaveKeptAnyRowCount)
{
    for (const std::size_t rows : {0u, 2u, 3u, 4u, 9u}) {
        dense2D<unsigned> result = support::without_columns<unsigned>(rows);
        EXPECT_EQ(split_Q4_into_T3({{0, 1, 2, 3}}, result), 1);
        EXPECT_EQ(columns(result), (ids{{0, 1, 2}, {2, 3, 0}})) << rows;
        result = support::without_columns<unsigned>(rows);
        EXPECT_EQ(split_Q4_into_T3({{0, 1, 2}}, result), 0);
        EXPECT_EQ(columns(result), (ids{{0, 1, 2}})) << rows;
    }
}

TEST(SplitFixed, CutsEveryColumnOfMixedMeshesInOrder)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const support::mesh m = support::grid_mixed(seed, 7, 2, seed);
        const ids expected = cut_one_by_one(m.connect);
        dense2D<unsigned> result;
        EXPECT_EQ(split_Q4_into_T3(m.connect, result),
                  static_cast<int>(expected.size() - m.connect.cols))
            << "seed " << seed;
        EXPECT_EQ(columns(result), expected) << "seed " << seed;
    }
}

TEST(SplitFixed, KeepsTheAreaOfConvexMeshes)
{
    for (unsigned seed = 1; seed <= 5; ++seed) {
        support::mesh m = support::grid_mixed(9, 8, 2, seed);
        support::jitter(m, 0.2, seed);
        dense2D<unsigned> result;
        ASSERT_GE(split_Q4_into_T3(m.connect, result), 0);
        double before = 0;
        double after = 0;
        ASSERT_EQ(tessalo2d::area(m.coords, m.connect, before), 0);
        ASSERT_EQ(tessalo2d::area(m.coords, result, after), 0);
        EXPECT_NEAR(after, before, 1e-12 * before) << "seed " << seed;
    }
}

TEST(SplitFixed, IsTheSameInAnyLayoutAndLeavesGapsAndInputsAlone)
{
    const support::mesh m = support::grid_mixed(6, 5, 2, 3);
    const dense2D<unsigned> held{{1, 2, 3}, {4, 5, 6}};
    dense2D<unsigned> dense = copy_of(held);
    const int count = split_Q4_into_T3(m.connect, dense);
    for (const std::size_t gap : {0u, 1u, 5u}) {
        const support::placed<unsigned> connect(m.connect, 3, gap);
        support::placed<unsigned> result(held, 2, gap);
        EXPECT_EQ(split_Q4_into_T3(connect.view, result.view), count);
        EXPECT_EQ(columns(result.view), columns(dense));
        EXPECT_EQ(columns(connect.view), columns(m.connect));
        connect.expect_gaps_untouched();
        result.expect_gaps_untouched();
    }
}

TEST(SplitFixed, IntoItsOwnInputAppendsTheTrianglesOnce)
{
    dense2D<unsigned> m{{0, 1, 2}, {2, 1, 3}};
    EXPECT_EQ(split_Q4_into_T3(m, m), 0);
    EXPECT_EQ(columns(m), (ids{{0, 1, 2}, {2, 1, 3}, {0, 1, 2}, {2, 1, 3}}));
    dense2D<unsigned> quads{{0, 1, 2, 3}};
    EXPECT_EQ(split_Q4_into_T3(quads, quads), -2);
}

TEST(SplitFixed, RefusedStorageIsReportedAndLeavesTheResultAsItWas)
{
    for (const ids& all : {ids{{0, 1, 2, 3}, {1, 2, 3, U}}, ids{{0, 1, 2}, {1, 2, 3}}}) {
        const dense2D<unsigned> connect = matrix(all);
        const std::size_t refusals =
            support::each_refused_allocation([&](auto armed, const std::string& told) {
                dense2D<unsigned> result{{9, 9, 9}};
                int status = 0;
                const bool refused = armed([&] { status = split_Q4_into_T3(connect, result); });
                EXPECT_EQ(status, refused ? -199 : connect.rows == 4 ? 1 : 0) << told;
                const ids held{{9, 9, 9}};
                if (refused) {
                    EXPECT_EQ(columns(result), held) << told;
                }
            });
        EXPECT_GE(refusals, 1u);
    }
}
