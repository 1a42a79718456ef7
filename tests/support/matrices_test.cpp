#include "support/matrices.h"

#include <gtest/gtest-spi.h>

#include <limits>

using namespace vorel;
using support::bits;
using support::columns;
using support::placed;

namespace {

const dense2D<unsigned> SOURCE{{1, 2, 3}, {4, 5, 6}};

} // namespace

TEST(Placed, HoldsTheSameMatrixInAnotherLayout)
{
    const placed<unsigned> p(SOURCE, 5, 2);
    EXPECT_EQ(columns(p.view), columns(SOURCE));
    EXPECT_EQ(p.view.offset, 5u);
    EXPECT_EQ(p.view.ld, 5u);
    EXPECT_EQ(p.view.size, 8u);
    EXPECT_FALSE(p.view.block == SOURCE.block);
    p.expect_gaps_untouched();
}

TEST(Placed, DetectsATouchedGap)
{
    const placed<unsigned> p(SOURCE, 5, 2);
    p.view.block->data[5 + 3] = 0;
    EXPECT_NONFATAL_FAILURE(p.expect_gaps_untouched(), "row 3 column 0");
}

TEST(Placed, DetectsATouchBeforeTheFirstEntry)
{
    const placed<double> p(dense2D<double>{{1, 2}}, 3, 0);
    p.view.block->data[2] += 1.0;
    EXPECT_NONFATAL_FAILURE(p.expect_gaps_untouched(), "2");
}

TEST(Placed, TakesAnEmptyMatrix)
{
    const placed<unsigned> p(support::without_columns<unsigned>(4), 3, 2);
    EXPECT_EQ(p.view.rows, 4u);
    EXPECT_EQ(p.view.cols, 0u);
    EXPECT_EQ(p.view.size, 0u);
    p.expect_gaps_untouched();
}

TEST(PlacedRun, HoldsTheSameElementsBehindAnOffset)
{
    const dense1D<unsigned> source{1, 2, 3};
    const dense1D<unsigned> v = support::placed_run(source, 4);
    EXPECT_EQ(v.offset, 4u);
    EXPECT_EQ(support::elements(v), support::elements(source));
    EXPECT_FALSE(v.block == source.block);
}

TEST(Bits, TellSignedZerosApartAndEqualNaNsNot)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_NE(bits(0.0), bits(-0.0));
    EXPECT_EQ(bits(dense2D<double>{{nan, 1}}), bits(dense2D<double>{{nan, 1}}));
    EXPECT_NE(bits(dense2D<double>{{0.0}}), bits(dense2D<double>{{-0.0}}));
}

TEST(Matrices, ComeFromAndGoToPlainValues)
{
    const std::vector<std::vector<unsigned>> values{{1, 2}, {3, 4}};
    EXPECT_EQ(columns(support::matrix(values)), values);
    EXPECT_TRUE(support::matrix<unsigned>({}).is_empty());
    dense2D<unsigned> copy = support::copy_of(SOURCE);
    copy(0, 0) = 9;
    EXPECT_EQ(SOURCE(0, 0), 1u);
    EXPECT_TRUE(support::elements(dense1D<double>()).empty());
}
