#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"

using namespace vorel;
using support::columns;
using support::copy_of;
using support::without_columns;
using tessalo2d::convert_into_linear;
using tessalo2d::split_into_linear;

namespace {

constexpr unsigned U = UNSET_ID;

dense2D<unsigned> T6_and_Q9()
{
    return {{10, 11, 12, 13, 14, 15, U, U, U}, {20, 21, 22, 23, 24, 25, 26, 27, 28}};
}

double area_of(const support::mesh& m)
{
    double sum = 0.0;
    EXPECT_EQ(tessalo2d::area(m.coords, m.connect, sum), 0);
    return sum;
}

} // namespace

TEST(ConvertIntoLinear, EmptyMatrixIsNothingToDoWhateverItsRows)
{
    for (const std::size_t rows : {0u, 1u, 3u, 4u, 5u, 6u, 9u, 40u}) {
        dense2D<unsigned> connect = without_columns<unsigned>(rows);
        EXPECT_EQ(convert_into_linear(connect), 0) << rows;
        EXPECT_EQ(connect.rows, rows);
    }
    dense2D<unsigned> no_rows(0, 5);
    EXPECT_EQ(convert_into_linear(no_rows), 0);
}

TEST(ConvertIntoLinear, RefusesEveryOtherRowCountAndLeavesTheMatrix)
{
    for (const std::size_t rows : {1u, 2u, 3u, 4u, 5u, 7u, 10u}) {
        dense2D<unsigned> connect(rows, 2, U);
        const auto before = columns(connect);
        EXPECT_EQ(convert_into_linear(connect), -1) << rows;
        EXPECT_EQ(columns(connect), before);
    }
}

TEST(ConvertIntoLinear, T6KeepTheirCornersInPlace)
{
    dense2D<unsigned> connect{{0, 1, 2, 3, 4, 5}, {6, 7, 8, 9, 10, U}};
    const unsigned* const storage = connect.column(0);
    EXPECT_EQ(convert_into_linear(connect), 0);
    EXPECT_EQ(columns(connect), columns<unsigned>({{0, 1, 2}, {6, 7, 8}}));
    EXPECT_EQ(connect.ld, 6u);
    EXPECT_EQ(connect.column(0), storage);
}

TEST(ConvertIntoLinear, MixedNineRowsBecomeMixedFourRows)
{
    dense2D<unsigned> connect = T6_and_Q9();
    EXPECT_EQ(convert_into_linear(connect), 0);
    EXPECT_EQ(columns(connect), columns<unsigned>({{10, 11, 12, U}, {20, 21, 22, 23}}));
    EXPECT_EQ(connect.ld, 9u);
}

TEST(ConvertIntoLinear, MixedEightRowsBecomeMixedFourRows)
{
    dense2D<unsigned> connect{{0, 1, 2, 3, 4, 5, 6, 7}, {1, 8, 2, 9, 5, 10, U, U}};
    EXPECT_EQ(convert_into_linear(connect), 0);
    EXPECT_EQ(columns(connect), columns<unsigned>({{0, 1, 2, 3}, {1, 8, 2, U}}));
}

TEST(ConvertIntoLinear, CarriesAnyIDsOver)
{
    dense2D<unsigned> connect{{U, 4000000000u, U, 1, 1, 1, 7, 1}};
    EXPECT_EQ(convert_into_linear(connect), 0);
    EXPECT_EQ(columns(connect), columns<unsigned>({{U, 4000000000u, U, 1}}));
}

TEST(ConvertIntoLinear, LayoutDoesNotMatterAndGapsStay)
{
    for (const support::mesh& m : {support::grid_T6(3, 2), support::grid_Q8(3, 2, 2, true),
                                   support::grid_Q9(3, 2, 2, true)}) {
        dense2D<unsigned> dense = copy_of(m.connect);
        support::placed<unsigned> apart(m.connect, 5, 3);
        EXPECT_EQ(convert_into_linear(dense), 0);
        EXPECT_EQ(convert_into_linear(apart.view), 0);
        EXPECT_EQ(columns(apart.view), columns(dense));
        EXPECT_EQ(apart.view.ld, m.connect.rows + 3);
        apart.expect_gaps_untouched();
    }
}

TEST(ConvertIntoLinear, AsksForNoMemory)
{
    dense2D<unsigned> connect = T6_and_Q9();
    support::failing_allocation refuse(0, support::failure::for_good);
    EXPECT_EQ(convert_into_linear(connect), 0);
    EXPECT_FALSE(refuse.fired());
}

TEST(ConvertIntoLinear, UndoesTheQuadraticConversion)
{
    for (const support::mesh& m :
         {support::grid_T3(4, 3), support::grid_mixed(4, 3), support::grid_Q4(4, 3)}) {
        dense2D<double> coords = copy_of(m.coords);
        dense2D<unsigned> connect = copy_of(m.connect);
        ASSERT_EQ(tessalo2d::convert_into_quadratic(coords, connect), 0);
        EXPECT_EQ(convert_into_linear(connect), 0);
        EXPECT_EQ(columns(connect), columns(m.connect)) << m.name;
    }
}

TEST(SplitIntoLinear, EmptySourceIsNothingToDoWhateverTheResult)
{
    for (const std::size_t rows : {0u, 5u, 8u}) {
        dense2D<unsigned> result(7, 2, 1u);
        EXPECT_EQ(split_into_linear(without_columns<unsigned>(rows), result), 0);
        EXPECT_EQ(result.cols, 2u);
    }
}

TEST(SplitIntoLinear, ChecksSourceThenResult)
{
    dense2D<unsigned> wrong(5, 1, 1u);
    for (const std::size_t rows : {1u, 2u, 3u, 4u, 5u, 7u, 8u, 10u}) {
        EXPECT_EQ(split_into_linear(dense2D<unsigned>(rows, 1, 0u), wrong), -1) << rows;
    }
    EXPECT_EQ(split_into_linear(dense2D<unsigned>(6, 1, 0u), wrong), -2);
    EXPECT_EQ(columns(wrong), columns(dense2D<unsigned>(5, 1, 1u)));
}

TEST(SplitIntoLinear, RefusesAResultThatKeptAnotherRowCountThoughItIsEmpty)
{
    for (const std::size_t rows : {1u, 2u, 5u, 6u, 9u}) {
        dense2D<unsigned> result = without_columns<unsigned>(rows);
        EXPECT_EQ(split_into_linear(dense2D<unsigned>(6, 1, 0u), result), -2) << rows;
        EXPECT_EQ(split_into_linear(dense2D<unsigned>(9, 1, 0u), result), -2) << rows;
        EXPECT_EQ(result.rows, rows);
    }
}

TEST(SplitIntoLinear, T6GiveCornerTrianglesAndTheMiddleOne)
{
    dense2D<unsigned> result;
    EXPECT_EQ(split_into_linear({{10, 11, 12, 13, 14, 15}}, result), 0);
    EXPECT_EQ(columns(result),
              columns<unsigned>({{10, 15, 14}, {11, 13, 15}, {12, 14, 13}, {13, 14, 15}}));
}

TEST(SplitIntoLinear, T6IntoFourRowsHaveRowThreeUnset)
{
    dense2D<unsigned> filled{{1, 2, 3, 4}};
    EXPECT_EQ(split_into_linear({{10, 11, 12, 13, 14, 15}}, filled), 0);
    const auto expected = columns<unsigned>(
        {{1, 2, 3, 4}, {10, 15, 14, U}, {11, 13, 15, U}, {12, 14, 13, U}, {13, 14, 15, U}});
    EXPECT_EQ(columns(filled), expected);

    dense2D<unsigned> empty = without_columns<unsigned>(4);
    EXPECT_EQ(split_into_linear({{10, 11, 12, 13, 14, 15}}, empty), 0);
    EXPECT_EQ(empty.rows, 4u);
    EXPECT_EQ(empty(3, 0), U);
}

TEST(SplitIntoLinear, NineRowsGiveQuadrilateralsAndTriangles)
{
    dense2D<unsigned> result = without_columns<unsigned>(3);
    EXPECT_EQ(split_into_linear(T6_and_Q9(), result), 0);
    EXPECT_EQ(columns(result), columns<unsigned>({{10, 15, 14, U},
                                                  {11, 13, 15, U},
                                                  {12, 14, 13, U},
                                                  {13, 14, 15, U},
                                                  {20, 24, 28, 27},
                                                  {21, 25, 28, 24},
                                                  {22, 26, 28, 25},
                                                  {23, 27, 28, 26}}));
}

TEST(SplitIntoLinear, TwoT6BehindFiveColumnsMakeThirteen)
{
    dense2D<unsigned> result(3, 5, 7u);
    EXPECT_EQ(split_into_linear({{0, 1, 2, 3, 4, 5}, {2, 1, 6, 7, 8, 3}}, result), 0);
    ASSERT_EQ(result.cols, 13u);
    for (std::size_t j = 0; j < 5; ++j)
        EXPECT_EQ(columns(result)[j], (std::vector<unsigned>{7, 7, 7}));
    EXPECT_EQ(columns(result)[12], (std::vector<unsigned>{7, 8, 3}));
}

TEST(SplitIntoLinear, NineRowsWidenAFilledThreeRowResult)
{
    dense2D<unsigned> result{{1, 2, 3}, {4, 5, 6}};
    EXPECT_EQ(split_into_linear(T6_and_Q9(), result), 0);
    ASSERT_EQ(result.rows, 4u);
    ASSERT_EQ(result.cols, 10u);
    EXPECT_EQ(columns(result)[0], (std::vector<unsigned>{1, 2, 3, U}));
    EXPECT_EQ(columns(result)[1], (std::vector<unsigned>{4, 5, 6, U}));
    EXPECT_EQ(columns(result)[9], (std::vector<unsigned>{23, 27, 28, 26}));
}

TEST(SplitIntoLinear, LayoutsDoNotMatter)
{
    for (const support::mesh& m :
         {support::grid_T6(4, 3), support::grid_Q9(4, 3), support::grid_Q9(4, 3, 2, true)}) {
        for (const std::size_t rows : {3u, 4u}) {
            const dense2D<unsigned> before(rows, 3, 9u);
            dense2D<unsigned> dense = copy_of(before);
            EXPECT_EQ(split_into_linear(m.connect, dense), 0);
            const support::placed<unsigned> source(m.connect, 2, 5);
            support::placed<unsigned> target(before, 3, 2);
            EXPECT_EQ(split_into_linear(source.view, target.view), 0);
            EXPECT_EQ(columns(target.view), columns(dense)) << m.name;
            EXPECT_EQ(columns(source.view), columns(m.connect));
            source.expect_gaps_untouched();
            if (target.view.rows == rows) target.expect_gaps_untouched();
        }
    }
}

TEST(SplitIntoLinear, KeepsAreaAndOrientation)
{
    for (support::mesh m :
         {support::grid_T6(5, 4), support::grid_Q9(5, 4), support::grid_Q9(5, 4, 2, true)}) {
        support::mesh split{m.name, m.coords, {}};
        ASSERT_EQ(split_into_linear(m.connect, split.connect), 0);
        EXPECT_EQ(split.connect.cols, 4 * m.connect.cols);
        EXPECT_EQ(area_of(split), 20.0) << m.name;
        for (std::size_t e = 0; e < split.connect.cols; ++e) {
            support::mesh one{m.name, m.coords, {}};
            one.connect = support::matrix<unsigned>({columns(split.connect)[e]});
            EXPECT_GT(area_of(one), 0.0) << m.name << " element " << e;
        }
    }
}

TEST(SplitIntoLinear, RefusedMemoryChangesNothing)
{
    for (const support::mesh& m : {support::grid_T6(3, 3), support::grid_Q9(3, 3, 2, true)})
        for (const std::size_t filled : {0u, 2u}) {
            const dense2D<unsigned> before(3, filled, 8u);
            const auto refusals =
                support::each_refused_allocation([&](auto armed, const auto& told) {
                    dense2D<unsigned> result = copy_of(before);
                    int status = 1;
                    const bool refused =
                        armed([&] { status = split_into_linear(m.connect, result); });
                    EXPECT_EQ(status, refused ? -199 : 0) << told;
                    EXPECT_TRUE(!refused || columns(result) == columns(before)) << told;
                });
            EXPECT_GT(refusals, 0u);
        }
}

TEST(SplitIntoLinear, RefusesAColumnCountThatDoesNotFit)
{
    // Four times as many columns as these don't fit a size_t; the check comes before any read.
    dense2D<unsigned> connect(6, 1, 0u);
    connect.cols = ~std::size_t(0) / 4;
    dense2D<unsigned> result(3, 8, 1u);
    EXPECT_EQ(split_into_linear(connect, result), -199);
    EXPECT_EQ(result.cols, 8u);
}

TEST(SplitIntoLinear, SpareCapacityIsUsed)
{
    dense2D<unsigned> result;
    ASSERT_TRUE(result.reserve(3, 4, 1));
    const dense2D<unsigned> connect{{0, 1, 2, 3, 4, 5}};
    support::failing_allocation refuse(0, support::failure::for_good);
    EXPECT_EQ(split_into_linear(connect, result), 0);
    EXPECT_FALSE(refuse.fired());
}
