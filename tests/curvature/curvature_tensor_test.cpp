#include "curvature/curvature_tensor.h"

#include <vorel/element_type.h>

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <limits>

using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

/// A patch of one triangle that is its own neighbour across all three edges, one along each axis,
/// with the given weights: its tensor is diagonal. Its doubled area is 2 unless told otherwise, so
/// the eigenvalues are the weights.
principal_pair values_of(double x, double y, double z, double doubled_area = 2.0)
{
    surface_patches surface;
    dense1D<unsigned, 8> list;
    generation_marks marks;
    EXPECT_TRUE(surface.facets.resize(1) && surface.triangles.resize(1) &&
                surface.shares.resize(3) && list.resize(1, 0u) && marks.init(1));
    surface.facets[0].normal = {{1.0, 2.0, 3.0}};
    surface.facets[0].length = doubled_area;
    surface.triangles[0] = {{0, 0, 0}, 0, 0};
    surface.shares[0] = {x, {{1, 0, 0}}};
    surface.shares[1] = {y, {{0, 1, 0}}};
    surface.shares[2] = {z, {{0, 0, 1}}};
    return curvature_tensor_at_node(surface, list, marks);
}

/// The axis that a vector runs along, either way, or -1.
int axis_of(const vec3& v)
{
    for (int i = 0; i < 3; ++i)
        if (std::fabs(std::fabs(v[i]) - 1.0) < 1e-12) return i;
    return -1;
}

bool is_zero(const principal_pair& p)
{
    return squared_length(p.first) == 0.0 && squared_length(p.second) == 0.0 &&
           p.first_value == 0.0 && p.second_value == 0.0;
}

} // namespace

TEST(CurvatureTensor, TakesTheTwoValuesOfLargestMagnitude)
{
    const principal_pair p = values_of(2.0, 0.5, -3.0);
    EXPECT_EQ(p.first_value, -3.0);
    EXPECT_EQ(p.second_value, 2.0);
    EXPECT_EQ(axis_of(p.first), 2);
    EXPECT_EQ(axis_of(p.second), 0);
}

TEST(CurvatureTensor, DividesByHalfTheDoubledArea)
{
    const principal_pair p = values_of(2.0, 0.5, -3.0, 8.0);
    EXPECT_EQ(p.first_value, -0.75);
    EXPECT_EQ(p.second_value, 0.5);
}

TEST(CurvatureTensor, OfTwoValuesOfLargestMagnitudeTheLowerOneIsFirst)
{
    // Ascending: -2, 1, 2.
    principal_pair p = values_of(2.0, 1.0, -2.0);
    EXPECT_EQ(p.first_value, -2.0);
    EXPECT_EQ(p.second_value, 2.0);
    EXPECT_EQ(axis_of(p.first), 2);
    EXPECT_EQ(axis_of(p.second), 0);
    // Ascending: -2, -2, 1, the two along either of their axes.
    p = values_of(1.0, -2.0, -2.0);
    EXPECT_EQ(p.first_value, -2.0);
    EXPECT_EQ(p.second_value, -2.0);
}

TEST(CurvatureTensor, OfTwoValuesOfSmallestMagnitudeTheLowerOneIsDropped)
{
    // Ascending: -1, 1, 3.
    const principal_pair p = values_of(1.0, 3.0, -1.0);
    EXPECT_EQ(p.first_value, 3.0);
    EXPECT_EQ(p.second_value, 1.0);
    EXPECT_EQ(axis_of(p.first), 1);
    EXPECT_EQ(axis_of(p.second), 0);
}

TEST(CurvatureTensor, OfThreeEqualMagnitudesTheTwoLowerOnesAreTaken)
{
    // Smallest and largest are both the lowest, and the second is the next after it.
    principal_pair p = values_of(1.0, -1.0, -1.0);
    EXPECT_EQ(p.first_value, -1.0);
    EXPECT_EQ(p.second_value, -1.0) << "the highest would be 1";
    p = values_of(-1.0, 1.0, 1.0);
    EXPECT_EQ(p.first_value, -1.0);
    EXPECT_EQ(p.second_value, 1.0);
    EXPECT_EQ(axis_of(p.first), 0);
    EXPECT_NEAR(dot(p.first, p.second), 0.0, 1e-15);
}

TEST(CurvatureTensor, ASecondValueUpToAThousandthTakesItsDirectionFromTheNormal)
{
    // Across A = (+-1, 0, 0) and the normal (1, 2, 3) runs -+(0, 3, -2) / sqrt(13).
    ASSERT_EQ(0.001 * 1000.0, 1.0);
    for (const double second : {0.0, 0.5, -0.999, 1.0, -1.0}) {
        const principal_pair p = values_of(1000.0, second, 0.0);
        EXPECT_EQ(p.first_value, 1000.0) << second;
        EXPECT_EQ(p.second_value, second) << "the value stays";
        EXPECT_EQ(axis_of(p.first), 0) << second;
        EXPECT_NEAR(p.second[0], 0.0, 1e-15) << second;
        EXPECT_NEAR(p.second[1] * p.first[0], -3 / std::sqrt(13.0), 1e-15) << second;
        EXPECT_NEAR(p.second[2] * p.first[0], 2 / std::sqrt(13.0), 1e-15) << second;
    }
}

TEST(CurvatureTensor, ASecondValueAboveAThousandthHasItsOwnDirection)
{
    for (const double size : {std::nextafter(1.0, 2.0), 1.001, 3.0})
        for (const double second : {size, -size}) {
            const principal_pair p = values_of(1000.0, second, 0.0);
            EXPECT_EQ(p.first_value, 1000.0) << second;
            EXPECT_EQ(p.second_value, second);
            EXPECT_EQ(axis_of(p.first), 0) << second;
            EXPECT_EQ(axis_of(p.second), 1) << second;
        }
}

TEST(CurvatureTensor, APatchWithoutAreaIsZero)
{
    EXPECT_TRUE(is_zero(values_of(1.0, 2.0, 3.0, 0.0)));
    EXPECT_TRUE(is_zero(values_of(1.0, 2.0, 3.0, -0.0)));
    EXPECT_FALSE(is_zero(values_of(1.0, 2.0, 3.0, std::numeric_limits<double>::min())));
}

TEST(CurvatureTensor, AnEdgeCountsOnceFromItsHigherSideAndOnlyWithinThePatch)
{
    // Triangle 0 sees 1 across, 1 sees 0 and 2: two shares count from above, one of them only when
    // triangle 2 lies in the patch.
    surface_patches surface;
    ASSERT_TRUE(surface.facets.resize(3) && surface.triangles.resize(3) &&
                surface.shares.resize(2));
    for (std::size_t e = 0; e < 3; ++e) {
        surface.facets[e].normal = {{0, 0, 1}};
        surface.facets[e].length = 1.0;
    }
    surface.triangles[0] = {{1, UNSET_ID, UNSET_ID}, 0, 0};
    surface.triangles[1] = {{2, UNSET_ID, 0}, 0, 0};
    surface.triangles[2] = {{UNSET_ID, 1, UNSET_ID}, 0, 1};
    surface.shares[0] = {6.0, {{1, 0, 0}}};
    surface.shares[1] = {3.0, {{0, 1, 0}}};
    generation_marks marks;
    ASSERT_TRUE(marks.init(3));
    const auto of = [&](std::initializer_list<unsigned> triangles) {
        dense1D<unsigned, 8> list;
        for (const unsigned e : triangles) list.append(e);
        return curvature_tensor_at_node(surface, list, marks);
    };
    EXPECT_EQ(of({0}).first_value, 0.0);
    EXPECT_EQ(of({0, 1}).first_value, 6.0);
    EXPECT_EQ(of({1, 0}).first_value, 6.0);
    EXPECT_EQ(of({2, 1}).first_value, 3.0);
    EXPECT_EQ(of({2, 1, 0}).first_value, 6.0 * (2.0 / 3.0));
    EXPECT_EQ(of({2, 1, 0}).second_value, 3.0 * (2.0 / 3.0));
    EXPECT_EQ(of({0, 2}).first_value, 0.0) << "no edge between them";
    EXPECT_TRUE(is_zero(of({})));
}
