// Local coordinates in triangles and quadrilaterals.
#include "interpolation/local_coordinates.h"

#include <vorel/dense2D.h>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

constexpr unsigned T3[] = {0, 1, 2};
constexpr unsigned Q4[] = {0, 1, 2, 3};

vec2 in_triangle(const dense2D<double>& coords, const vec2& p, double* determinant = nullptr)
{
    vec2 uv{{9, 9}};
    const double d = local_coords_T3(coords.column(0), coords.ld, T3, p, uv);
    if (determinant) *determinant = d;
    return uv;
}

/// Passes of Newton's method from the centre of the kite (0, 0), (4, 0), (1, 1), (0, 4), whose map
/// is x = (5 + 5 xi - 3 eta - 3 xi eta) / 4, and y with xi and eta exchanged.
vec2 in_kite(const vec2& p, int passes)
{
    double xi = 0.0, eta = 0.0;
    for (int pass = 0; pass < passes; ++pass) {
        const double x = (5 + 5 * xi - 3 * eta - 3 * xi * eta) / 4 - p[0];
        const double y = (5 + 5 * eta - 3 * xi - 3 * xi * eta) / 4 - p[1];
        const double x_xi = (5 - 3 * eta) / 4, x_eta = (-3 - 3 * xi) / 4;
        const double y_xi = (-3 - 3 * eta) / 4, y_eta = (5 - 3 * xi) / 4;
        const double determinant = x_xi * y_eta - x_eta * y_xi;
        xi -= (x * y_eta - x_eta * y) / determinant;
        eta -= (x_xi * y - x * y_xi) / determinant;
    }
    return {{xi, eta}};
}

} // namespace

TEST(Solve2, SolvesAndReturnsThePassesLeft)
{
    double u, v;
    // 3 a + 2 b, exact: the first refinement changes nothing and ends it.
    EXPECT_EQ(solve2_refined({{1, 0}}, {{1, 1}}, 1.0, {{5, 2}}, u, v, 2), 1);
    EXPECT_EQ(u, 3.0);
    EXPECT_EQ(v, 2.0);
    EXPECT_EQ(solve2_refined({{1, 0}}, {{1, 1}}, 1.0, {{5, 2}}, u, v, 0), 0);
    EXPECT_EQ(u, 3.0);
}

TEST(Solve2, RefinementMakesUpForAPoorDeterminant)
{
    // The inverse determinant is off by a percent; each pass wins two digits.
    double u, v;
    EXPECT_EQ(solve2_refined({{2, 0}}, {{0, 2}}, 0.25 * 1.01, {{2, 4}}, u, v, 2), 0);
    EXPECT_NEAR(u, 1.0, 2e-6);
    EXPECT_NEAR(v, 2.0, 4e-6);
    EXPECT_GT(std::fabs(u - 1.0), 1e-8);
}

TEST(LocalCoordsT3, AreTheWeightsOfNodesZeroAndOne)
{
    const dense2D<double> coords{{1, 1}, {5, 1}, {1, 3}};
    const vec2 uv = in_triangle(coords, {{0.5 * 1 + 0.25 * 5 + 0.25 * 1, 0.5 + 0.25 + 0.75}});
    EXPECT_NEAR(uv[0], 0.5, 1e-15);
    EXPECT_NEAR(uv[1], 0.25, 1e-15);
}

TEST(LocalCoordsT3, AreExactOnTheFirstTwoNodesAndZeroOnTheThird)
{
    const dense2D<double> coords{{0.1, 0.3}, {7.7, 0.9}, {1.3, 5.1}};
    double determinant;
    vec2 uv = in_triangle(coords, load<2>(coords.column(0)), &determinant);
    EXPECT_EQ(uv[0], 1.0);
    EXPECT_EQ(uv[1], 0.0);
    EXPECT_NE(determinant, 0.0);
    uv = in_triangle(coords, load<2>(coords.column(1)), &determinant);
    EXPECT_EQ(uv[0], 0.0);
    EXPECT_EQ(uv[1], 1.0);
    EXPECT_NE(determinant, 0.0);
    uv = in_triangle(coords, load<2>(coords.column(2)));
    EXPECT_EQ(uv[0], 0.0);
    EXPECT_EQ(uv[1], 0.0);
}

TEST(LocalCoordsT3, TakeTheTwoShorterEdgesAsBase)
{
    // Edge 0-1 is the shortest: the base becomes P0 - P2 and P1 - P0, of the same determinant.
    const dense2D<double> coords{{10, 0}, {10, 1}, {0, 0}};
    double determinant;
    const vec2 uv = in_triangle(coords, {{5, 0.25}}, &determinant);
    EXPECT_EQ(determinant, 10.0);
    EXPECT_NEAR(uv[0], 0.25, 1e-15);
    EXPECT_NEAR(uv[1], 0.25, 1e-15);
    // As long as another edge it stays.
    const dense2D<double> equal{{0, 0}, {2, 0}, {0, 2}};
    EXPECT_EQ((in_triangle(equal, {{0.5, 0.5}}, &determinant), determinant), 4.0);
}

TEST(LocalCoordsT3, DivideByTheDeterminantOfThatBaseToTheLastBit)
{
    std::mt19937 draw(21);
    std::uniform_real_distribution<double> place(-1.0, 1.0);
    int telling[2] = {0, 0};
    for (int round = 0; round < 1000; ++round) {
        dense2D<double> coords(2, 3);
        for (std::size_t j = 0; j < 3; ++j)
            for (std::size_t i = 0; i < 2; ++i) coords(i, j) = place(draw);
        const double ax = coords(0, 0) - coords(0, 2), ay = coords(1, 0) - coords(1, 2);
        const double bx = coords(0, 1) - coords(0, 2), by = coords(1, 1) - coords(1, 2);
        const double cx = coords(0, 1) - coords(0, 0), cy = coords(1, 1) - coords(1, 0);
        const double by_b = ax * by - ay * bx;
        const double by_c = ax * cy - ay * cx;
        const double cc = cx * cx + cy * cy;
        const bool shortest = cc < ax * ax + ay * ay && cc < bx * bx + by * by;
        telling[shortest] += by_b != by_c;
        double determinant;
        (void)in_triangle(coords, {{0.1, 0.2}}, &determinant);
        EXPECT_EQ(determinant, shortest ? by_c : by_b) << "round " << round;
    }
    EXPECT_GT(telling[0], 20);
    EXPECT_GT(telling[1], 20);
}

TEST(LocalCoordsT3, OfAFlatTriangleAreZero)
{
    const dense2D<double> flat{{0, 0}, {1, 1}, {2, 2}};
    double determinant = 7;
    const vec2 uv = in_triangle(flat, {{0.5, 0.5}}, &determinant);
    EXPECT_EQ(determinant, 0.0);
    EXPECT_EQ(uv[0], 0.0);
    EXPECT_EQ(uv[1], 0.0);
    // Its nodes are still told apart.
    EXPECT_EQ(in_triangle(flat, {{1, 1}})[1], 1.0);
}

TEST(LocalCoordsT3, AreNotClamped)
{
    const dense2D<double> coords{{0, 0}, {1, 0}, {0, 1}};
    const vec2 uv = in_triangle(coords, {{-1e-7, 0.5}});
    EXPECT_NEAR(uv[1], -1e-7, 1e-20);
}

TEST(LocalCoordsT3, StayAccurateInNeedles)
{
    std::mt19937 draw(11);
    std::uniform_real_distribution<double> unit(0.1, 0.9);
    for (int k = 0; k < 500; ++k) {
        const double thin = std::pow(10.0, -double(k % 9));
        const dense2D<double> coords{
            {unit(draw), unit(draw) * thin}, {1 + unit(draw), unit(draw) * thin}, {3, thin * 2}};
        double u = unit(draw);
        const double v = unit(draw) * (1 - u);
        vec2 p{{0, 0}};
        for (int i = 0; i < 2; ++i)
            p[i] = u * coords(std::size_t(i), 0) + v * coords(std::size_t(i), 1) +
                   (1 - u - v) * coords(std::size_t(i), 2);
        const vec2 uv = in_triangle(coords, p);
        // The point itself is rounded: an error of one part in 2^53 of the length 3, over thin.
        EXPECT_NEAR(uv[0], u, 1e-13 / thin) << k;
        EXPECT_NEAR(uv[1], v, 1e-13 / thin) << k;
    }
}

TEST(ShapeTableQ4, IsOneOnItsCornerAndZeroOnTheOthers)
{
    const double xi[] = {-1, 1, 1, -1};
    const double eta[] = {-1, -1, 1, 1};
    for (int i = 0; i < 4; ++i)
        for (int k = 0; k < 4; ++k)
            EXPECT_EQ((shape_table_Q4[i].a * xi[k] + 0.5) * (shape_table_Q4[i].b * eta[k] + 0.5),
                      i == k ? 1.0 : 0.0);
}

TEST(MapQ4, SkipsCornersWithoutWeight)
{
    const double inf = INFINITY;
    const dense2D<double> coords{{1, 2}, {3, 4}, {inf, inf}, {inf, inf}};
    const vec2 x = map_Q4(coords.column(0), coords.ld, Q4, {{0, -1}});
    EXPECT_EQ(x[0], 2.0);
    EXPECT_EQ(x[1], 3.0);
}

TEST(JacobianQ4, HoldsTheDerivativesAlongXiInItsFirstRow)
{
    const dense2D<double> coords{{0, 0}, {4, 0}, {4, 6}, {0, 2}};
    vec2 J[2];
    jacobian_Q4(coords.column(0), coords.ld, Q4, {{0.5, 0}}, J);
    // x = 2 (1 + xi); y = (1 + eta) / 2 * (2 + 2 (1 + xi)) = (1 + eta) (2 + xi).
    EXPECT_EQ(J[0][0], 2.0);
    EXPECT_EQ(J[0][1], 1.0);
    EXPECT_EQ(J[1][0], 0.0);
    EXPECT_EQ(J[1][1], 2.5);
}

TEST(LocalCoordsQ4, InvertTheBilinearMap)
{
    std::mt19937 draw(3);
    std::uniform_real_distribution<double> move(-0.3, 0.3), inside(-1, 1);
    for (int k = 0; k < 300; ++k) {
        const dense2D<double> coords{{move(draw), move(draw)},
                                     {4 + move(draw), move(draw)},
                                     {4 + move(draw), 2 + move(draw)},
                                     {move(draw), 2 + move(draw)}};
        const vec2 expected{{inside(draw), inside(draw)}};
        const vec2 p = map_Q4(coords.column(0), coords.ld, Q4, expected);
        vec2 got;
        EXPECT_TRUE(local_coords_Q4(coords.column(0), coords.ld, Q4, p, got, 1e-12)) << k;
        EXPECT_NEAR(got[0], expected[0], 1e-13) << k;
        EXPECT_NEAR(got[1], expected[1], 1e-13) << k;
    }
}

TEST(LocalCoordsQ4, OfAParallelogramAreExactInTheFirstPass)
{
    // The map is affine and all numbers are exact in binary. A step of any length meets an infinite
    // tolerance, which ends the first pass; only a second pass that changes nothing meets zero.
    const dense2D<double> sheared{{0, 0}, {4, 2}, {4, 6}, {0, 4}};
    const dense2D<double> square{{0, 0}, {2, 0}, {2, 2}, {0, 2}};
    for (const double tolerance : {double(INFINITY), 0.0}) {
        vec2 got;
        EXPECT_TRUE(local_coords_Q4(sheared.column(0), sheared.ld, Q4, {{3, 3}}, got, tolerance));
        EXPECT_EQ(got[0], 0.5);
        EXPECT_EQ(got[1], -0.25);
        EXPECT_TRUE(
            local_coords_Q4(square.column(0), square.ld, Q4, {{1.25, 0.5}}, got, tolerance));
        EXPECT_EQ(got[0], 0.25);
        EXPECT_EQ(got[1], -0.5);
    }
}

TEST(LocalCoordsQ4, WithASingularCentreAreZeroAfterOnePass)
{
    // All corners on one line through the centre: the inverse stays zero.
    const dense2D<double> flat{{0, 0}, {1, 1}, {2, 2}, {3, 3}};
    vec2 got{{9, 9}};
    EXPECT_TRUE(local_coords_Q4(flat.column(0), flat.ld, Q4, {{0.5, 0.7}}, got, 1e-12));
    EXPECT_EQ(got[0], 0.0);
    EXPECT_EQ(got[1], 0.0);
}

TEST(LocalCoordsQ4, StopAfterTenPasses)
{
    // No root: a point far outside a kite that folds over.
    const dense2D<double> kite{{0, 0}, {4, 0}, {1, 1}, {0, 4}};
    vec2 got;
    EXPECT_FALSE(local_coords_Q4(kite.column(0), kite.ld, Q4, {{30, 29}}, got, 1e-12));
    // Passes go far apart: one more or one less is elsewhere.
    const vec2 ten = in_kite({{30, 29}}, 10);
    EXPECT_NEAR(got[0], ten[0], 1e-6);
    EXPECT_NEAR(got[1], ten[1], 1e-6);
    for (const int others : {9, 11})
        EXPECT_GT(std::fabs(in_kite({{30, 29}}, others)[0] - ten[0]), 1.0) << others;
    // A negative tolerance is never met, so the tenth pass ends it although it has converged.
    const dense2D<double> square{{0, 0}, {2, 0}, {2, 2}, {0, 2}};
    EXPECT_FALSE(local_coords_Q4(square.column(0), square.ld, Q4, {{1.25, 0.5}}, got, -1.0));
    EXPECT_EQ(got[0], 0.25);
}

TEST(LocalCoordsQ4, EndWhereTheNumbersAreNotNumbers)
{
    const dense2D<double> broken{{0, 0}, {NAN, 0}, {2, 2}, {0, 2}};
    vec2 got;
    EXPECT_TRUE(local_coords_Q4(broken.column(0), broken.ld, Q4, {{1, 1}}, got, 1e-12));
}
