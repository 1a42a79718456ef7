// Sizes from a background mesh: values, and targets that are kept.
#include "interpolation/anisotropy.h"
#include "support/matrices.h"

using namespace vorel;
using namespace vorel::tessalo2d;
using support::background;
using support::bits;
using support::run;
using support::sizes_of;
using support::unit_square;
using support::unit_triangle;

namespace {

constexpr double LARGEST = std::numeric_limits<double>::max();

} // namespace

TEST(InterpolateSizes, AreLinearInATriangle)
{
    const background b = unit_triangle({{0.25, 0.5}, {0.5, 0.0}});
    dense1D<double, 8> sizes{1.0, 2.0, 4.0, 0.0, 0.0};
    ASSERT_EQ(run(b, sizes), 0);
    EXPECT_NEAR(sizes[3], 0.25 * 1 + 0.25 * 2 + 0.5 * 4, 1e-15);
    EXPECT_NEAR(sizes[4], 1.5, 1e-15);
}

TEST(InterpolateSizes, OnASideOfAQuadDifferFromALittleInside)
{
    const background b = unit_square({{0.0, -1.0}, {0.0, -1.0 + 1e-9}, {0.0, 0.0}});
    dense1D<double, 8> sizes{1.0, 2.0, 4.0, 8.0, 0.0, 0.0, 0.0};
    ASSERT_EQ(run(b, sizes), 0);
    EXPECT_EQ(sizes[4], 1.5);
    // Half between 1.75 and 5.
    EXPECT_NEAR(sizes[5], 3.375, 1e-8);
    EXPECT_EQ(sizes[6], 0.0625 + 0.375 + 2.25 + 1.5);
}

TEST(InterpolateSizes, KeepValidLeavesValidTargetsAlone)
{
    const double values[] = {
        0.5, 0.0, -3.0, std::nan(""), LARGEST, std::numeric_limits<double>::infinity(), 5e-324};
    const bool kept[] = {true, false, false, false, false, false, true};
    for (const bool keep_valid : {false, true})
        for (int k = 0; k < 7; ++k) {
            const background b = unit_triangle({{0.25, 0.25}});
            dense1D<double, 8> sizes{2.0, 2.0, 2.0, values[k]};
            ASSERT_EQ(run(b, sizes, keep_valid), 0);
            EXPECT_EQ(bits(sizes[3]), bits(keep_valid && kept[k] ? values[k] : 2.0))
                << values[k] << " " << keep_valid;
        }
}

TEST(InterpolateSizes, TargetServedOnceIsKeptTheSecondTime)
{
    // Under keep_valid the second mention of a node takes no draw: later walks stay the same.
    background once = support::with_random_targets(support::grid_T3(4, 4), ELEMENT_T3, 60, 3);
    background twice = once;
    twice.targets = dense1D<unsigned, 8>();
    for (const unsigned node : once.targets) {
        twice.targets.append(node);
        twice.targets.append(node);
    }
    dense1D<double, 8> a = sizes_of(once, 0.0);
    dense1D<double, 8> b = sizes_of(twice, 0.0);
    ASSERT_EQ(run(once, a, true), 0);
    ASSERT_EQ(run(twice, b, true), 0);
    for (std::size_t j = 0; j < a.size; ++j) EXPECT_EQ(a[j] > 0.0, b[j] > 0.0);
    EXPECT_EQ(bits(a), bits(b));
}

TEST(InterpolateSizes, ZeroCornerIsRefusedInsideAndCopiedFromTheNearestNode)
{
    const background inside = unit_triangle({{0.25, 0.25}});
    dense1D<double, 8> sizes{0.0, 2.0, 2.0, 7.0};
    ASSERT_EQ(run(inside, sizes), 0);
    EXPECT_EQ(sizes[3], 7.0);
    const background square = unit_square({{0.25, 0.25}});
    sizes = {1.0, 2.0, 0.0, 2.0, 7.0};
    ASSERT_EQ(run(square, sizes), 0);
    EXPECT_EQ(sizes[4], 7.0);
    // In the box, but beyond the long edge: the nearest node is 1.
    const background outside = unit_triangle({{0.95, 0.3}});
    sizes = {2.0, 0.0, 2.0, 7.0};
    ASSERT_EQ(run(outside, sizes), 0);
    EXPECT_EQ(sizes[3], 0.0);
}

TEST(InterpolateSizes, KindIsChecked)
{
    background b = unit_triangle({{0.25, 0.25}});
    b.type = ELEMENT_Q4;
    dense1D<double, 8> sizes(4, 1.0);
    EXPECT_EQ(run(b, sizes), -2);
    b.type = ELEMENT_ANY_FACE;
    sizes[3] = 0.0;
    EXPECT_EQ(run(b, sizes), 0);
    EXPECT_EQ(sizes[3], 0.0);
}
