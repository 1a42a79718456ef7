#include "support/allocation.h"
#include "support/matrices.h"

#include <array>
#include <random>

using namespace vorel;
using support::columns;
using tessalo2d::convert_degenerated_Q;
using tessalo2d::convert_degenerated_Q4;

namespace {

constexpr unsigned U = UNSET_ID;
using column = std::vector<unsigned>;

/// The expected column, one case after the other; empty if the column is left alone.
column converted(const column& c)
{
    for (const unsigned entry : c)
        if (entry == U) return {};
    column result(c.size(), U);
    const bool mid = c.size() > 4;
    const auto become = [&](column rows) {
        for (std::size_t i = 0; i < (mid ? 6u : 3u); ++i) result[i] = c[rows[i]];
        return result;
    };
    if (c[0] == c[1]) return become({0, 2, 3, 6, 7, 5});
    if (c[1] == c[2]) return become({0, 1, 3, 6, 7, 4});
    if (c[2] == c[3]) return become({0, 1, 2, 5, 7, 4});
    if (c[0] == c[3]) return become({0, 1, 2, 5, 6, 4});
    return {};
}

/// Columns of few different IDs, so that all coincidences occur; every `rarity`-th one at most.
dense2D<unsigned> random_columns(std::size_t rows, std::size_t cols, unsigned rarity,
                                 std::mt19937& draw)
{
    dense2D<unsigned> m(rows, cols);
    for (std::size_t j = 0; j < cols; ++j) {
        const bool repeat = draw() % rarity == 0;
        for (std::size_t i = 0; i < rows; ++i)
            m(i, j) = repeat ? static_cast<unsigned>(draw() % 4) : static_cast<unsigned>(10 + i);
        if (draw() % 6 == 0) m(draw() % rows, j) = U;
    }
    return m;
}

} // namespace

TEST(ConvertDegeneratedQ4, EachCollapsedPair)
{
    dense2D<unsigned> connect{{0, 0, 2, 3}, {0, 1, 1, 3}, {0, 1, 2, 2}, {0, 1, 2, 0}, {0, 1, 2, 3}};
    EXPECT_EQ(convert_degenerated_Q4(connect), 4);
    EXPECT_EQ(columns(connect),
              (std::vector<column>{
                  {0, 2, 3, U}, {0, 1, 3, U}, {0, 1, 2, U}, {0, 1, 2, U}, {0, 1, 2, 3}}));
}

TEST(ConvertDegeneratedQ4, FirstEqualPairDecides)
{
    dense2D<unsigned> connect{{5, 5, 7, 7}, {1, 2, 2, 2}, {1, 2, 2, 1}, {3, 3, 3, 3}};
    EXPECT_EQ(convert_degenerated_Q4(connect), 4);
    EXPECT_EQ(columns(connect),
              (std::vector<column>{{5, 7, 7, U}, {1, 2, 2, U}, {1, 2, 1, U}, {3, 3, 3, U}}));
}

TEST(ConvertDegeneratedQ4, OppositeCornersMayBeEqual)
{
    dense2D<unsigned> connect{{0, 1, 0, 3}, {0, 1, 2, 1}};
    EXPECT_EQ(convert_degenerated_Q4(connect), 0);
    EXPECT_EQ(columns(connect), (std::vector<column>{{0, 1, 0, 3}, {0, 1, 2, 1}}));
}

TEST(ConvertDegeneratedQ4, ColumnWithAnUnsetRowIsLeftAlone)
{
    const std::vector<column> all{{0, 0, 2, U}, {0, 1, 1, U}, {U, 1, 1, 2},
                                  {U, U, 2, 3}, {0, U, 2, 2}, {0, 1, U, U}};
    dense2D<unsigned> connect = support::matrix(all);
    EXPECT_EQ(convert_degenerated_Q4(connect), 0);
    EXPECT_EQ(columns(connect), all);
}

TEST(ConvertDegeneratedQ4, ShapesThatAreNothingOrWrong)
{
    dense2D<unsigned> empty;
    EXPECT_EQ(convert_degenerated_Q4(empty), 0);
    dense2D<unsigned> none = support::without_columns<unsigned>(5);
    EXPECT_EQ(convert_degenerated_Q4(none), 0);
    dense2D<unsigned> no_rows;
    no_rows.cols = 3;
    EXPECT_EQ(convert_degenerated_Q4(no_rows), 0);
    for (const std::size_t rows : {1u, 3u, 5u, 8u, 9u}) {
        dense2D<unsigned> wrong(rows, 2, 7u);
        EXPECT_EQ(convert_degenerated_Q4(wrong), -1) << rows;
        EXPECT_EQ(columns(wrong), columns(dense2D<unsigned>(rows, 2, 7u)));
    }
}

TEST(ConvertDegeneratedQ, MidsideNodesFollowTheSixNodeOrder)
{
    // Corners 0 to 3 with one repeated, midside nodes 14 to 17, centre 8.
    dense2D<unsigned> eight{{0, 0, 2, 3, 14, 15, 16, 17},
                            {0, 1, 1, 3, 14, 15, 16, 17},
                            {0, 1, 2, 2, 14, 15, 16, 17},
                            {0, 1, 2, 0, 14, 15, 16, 17},
                            {0, 1, 2, 3, 14, 15, 16, 17}};
    const std::vector<column> expected{{0, 2, 3, 16, 17, 15, U, U},
                                       {0, 1, 3, 16, 17, 14, U, U},
                                       {0, 1, 2, 15, 17, 14, U, U},
                                       {0, 1, 2, 15, 16, 14, U, U},
                                       {0, 1, 2, 3, 14, 15, 16, 17}};
    dense2D<unsigned> nine(9, 5, 8u);
    for (std::size_t j = 0; j < 5; ++j)
        for (std::size_t i = 0; i < 8; ++i) nine(i, j) = eight(i, j);
    dense1D<unsigned, 8> ids{1, 2, 3};
    EXPECT_EQ(convert_degenerated_Q(eight, ids), 4);
    EXPECT_EQ(columns(eight), expected);
    EXPECT_EQ(support::elements(ids), (column{0, 1, 2, 3}));

    std::vector<column> expected_nine = expected;
    for (column& c : expected_nine) c.push_back(U);
    expected_nine[4][8] = 8;
    EXPECT_EQ(convert_degenerated_Q(nine, ids), 4);
    EXPECT_EQ(columns(nine), expected_nine);
    EXPECT_EQ(support::elements(ids), (column{0, 1, 2, 3}));
}

TEST(ConvertDegeneratedQ, FourRowsAreConvertedAndListed)
{
    dense2D<unsigned> connect{{0, 1, 2, 3}, {0, 1, 2, 2}, {0, 1, 2, U}, {4, 4, 5, 6}};
    dense1D<unsigned, 8> ids;
    EXPECT_EQ(convert_degenerated_Q(connect, ids), 2);
    EXPECT_EQ(columns(connect),
              (std::vector<column>{{0, 1, 2, 3}, {0, 1, 2, U}, {0, 1, 2, U}, {4, 5, 6, U}}));
    EXPECT_EQ(support::elements(ids), (column{1, 3}));
}

TEST(ConvertDegeneratedQ, UnsetInAnyRowLeavesTheColumnAlone)
{
    for (const std::size_t rows : {8u, 9u})
        for (std::size_t i = 0; i < rows; ++i) {
            dense2D<unsigned> connect(rows, 1, 5u);
            connect(i, 0) = U;
            const auto before = columns(connect);
            dense1D<unsigned, 8> ids;
            EXPECT_EQ(convert_degenerated_Q(connect, ids), 0);
            EXPECT_EQ(columns(connect), before) << "row " << i << " of " << rows;
        }
}

TEST(ConvertDegeneratedQ, TheListIsEmptiedOnEveryPath)
{
    dense1D<unsigned, 8> ids{1, 2};
    dense2D<unsigned> empty;
    EXPECT_EQ(convert_degenerated_Q(empty, ids), 0);
    EXPECT_EQ(ids.size, 0u);
    for (const std::size_t rows : {1u, 3u, 5u, 6u, 7u, 10u}) {
        dense1D<unsigned, 8> others{1, 2};
        dense2D<unsigned> wrong(rows, 2, 7u);
        EXPECT_EQ(convert_degenerated_Q(wrong, others), -1) << rows;
        EXPECT_EQ(others.size, 0u);
        EXPECT_EQ(columns(wrong), columns(dense2D<unsigned>(rows, 2, 7u)));
    }
    dense1D<unsigned, 8> last{1, 2};
    dense2D<unsigned> whole{{0, 1, 2, 3}};
    EXPECT_EQ(convert_degenerated_Q(whole, last), 0);
    EXPECT_EQ(last.size, 0u);
}

TEST(ConvertDegenerated, RandomColumnsFollowTheTable)
{
    for (unsigned seed = 0; seed < 60; ++seed) {
        std::mt19937 draw(seed);
        const std::size_t rows = std::array<std::size_t, 3>{4, 8, 9}[seed % 3];
        const std::size_t cols = 1 + draw() % 70;
        const dense2D<unsigned> original = random_columns(rows, cols, seed % 2 ? 1 : 20, draw);
        auto expected = columns(original);
        column expected_ids;
        for (std::size_t j = 0; j < cols; ++j) {
            const column c = converted(expected[j]);
            if (c.empty()) continue;
            expected[j] = c;
            expected_ids.push_back(static_cast<unsigned>(j));
        }
        const int count = static_cast<int>(expected_ids.size());

        dense2D<unsigned> connect = support::copy_of(original);
        dense1D<unsigned, 8> ids;
        EXPECT_EQ(convert_degenerated_Q(connect, ids), count) << "seed " << seed;
        EXPECT_EQ(columns(connect), expected) << "seed " << seed;
        EXPECT_EQ(support::elements(ids), expected_ids) << "seed " << seed;
        EXPECT_EQ(convert_degenerated_Q(connect, ids), 0) << "nothing is left, seed " << seed;

        for (const std::size_t gap : {0u, 1u, 5u}) {
            support::placed<unsigned> placed(original, 3, gap);
            EXPECT_EQ(convert_degenerated_Q(placed.view, ids), count) << "seed " << seed;
            EXPECT_EQ(columns(placed.view), expected) << "seed " << seed;
            placed.expect_gaps_untouched();
            if (rows != 4) continue;
            support::placed<unsigned> other(original, 3, gap);
            EXPECT_EQ(convert_degenerated_Q4(other.view), count) << "seed " << seed;
            EXPECT_EQ(columns(other.view), expected) << "seed " << seed;
            other.expect_gaps_untouched();
        }
    }
}

TEST(ConvertDegeneratedQ, UnrecordedColumnsStayConverted)
{
    // Five columns of which each finds its place in the list by an append of its own.
    const dense2D<unsigned> original(4, 5, 3u);
    const std::vector<column> expected(5, {3, 3, 3, U});
    const std::size_t refusals =
        support::each_refused_allocation([&](auto armed, const auto& told) {
            dense2D<unsigned> connect = support::copy_of(original);
            dense1D<unsigned, 8> ids;
            int status = -1;
            const bool refused = armed([&] { status = convert_degenerated_Q(connect, ids); });
            EXPECT_EQ(columns(connect), expected) << told;
            EXPECT_EQ(status, static_cast<int>(ids.size)) << told;
            if (refused)
                EXPECT_LT(ids.size, 5u) << told;
            else
                EXPECT_EQ(support::elements(ids), (column{0, 1, 2, 3, 4})) << told;
            for (std::size_t k = 0; k + 1 < ids.size; ++k) EXPECT_LT(ids[k], ids[k + 1]) << told;
        });
    // Capacities 2, 4 and 8, refused once and for good.
    EXPECT_EQ(refusals, 6u);

    support::each_refused_allocation([&](auto armed, const auto& told) {
        dense2D<unsigned> connect = support::copy_of(original);
        int status = -1;
        EXPECT_FALSE(armed([&] { status = convert_degenerated_Q4(connect); })) << told;
        EXPECT_EQ(status, 5) << told;
    });
}
