// Results that are known exactly: dyadic lattices, right triangles and tables of angles, of which
// every bit is stated. They hold on every machine and with every compiler.
#include "support/matrices.h"

#include <vorel/tessalo2d.h>

#include <cmath>
#include <ios>

using namespace vorel;
using namespace vorel::tessalo2d;
using support::bits;
using support::elements;
using support::matrix;

namespace {

// The doubles nearest to pi, pi / 2 and pi / 4, and what the cosine of the second leaves of pi / 2.
constexpr double PI = 0x1.921fb54442d18p+1;
constexpr double HALF_PI = 0x1.921fb54442d18p+0;
constexpr double QUARTER_PI = 0x1.921fb54442d18p-1;
constexpr double COS_HALF_PI = 0x1.1a62633145c07p-54;

using numbers = std::vector<std::vector<double>>;

/// The columns from `first` on have these bits.
void expect_columns(const dense2D<double>& m, std::size_t first, const numbers& expected)
{
    ASSERT_EQ(m.cols, first + expected.size());
    for (std::size_t j = 0; j < expected.size(); ++j) {
        ASSERT_EQ(m.rows, expected[j].size());
        for (std::size_t i = 0; i < m.rows; ++i)
            EXPECT_EQ(bits(m(i, first + j)), bits(expected[j][i]))
                << "row " << i << " column " << first + j << ": " << std::hexfloat
                << m(i, first + j) << " instead of " << expected[j][i];
    }
}

void expect_entries(const dense1D<double, 8>& v, const std::vector<double>& expected)
{
    ASSERT_EQ(v.size, expected.size());
    for (std::size_t i = 0; i < v.size; ++i)
        EXPECT_EQ(bits(v[i]), bits(expected[i]))
            << "entry " << i << ": " << std::hexfloat << v[i] << " instead of " << expected[i];
}

/// A right triangle of legs 3 and 4.
const numbers THREE_FOUR_FIVE = {{0, 0}, {3, 0}, {0, 4}};
/// Sides (1, 2, 2) and (2, 1, -2), of which the product is (-6, 6, -3) and 9 long.
const numbers TILTED = {{0, 0, 0}, {1, 2, 2}, {2, 1, -2}};

/// Loop around 4 x 2 cells of size 1 / 4 and 1 / 2, and the nodes on it.
const numbers UNIT_SQUARE = {{0, 0}, {0.25, 0}, {0.5, 0}, {0.75, 0}, {1, 0}, {1, 0.5},
                             {1, 1}, {0.75, 1}, {0.5, 1}, {0.25, 1}, {0, 1}, {0, 0.5}};
const dense1D<unsigned, 8> AROUND = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 0};

} // namespace

TEST(GoldenMeasures, AreasOfRightTrianglesHaveNoError)
{
    double result = 0.0;
    EXPECT_EQ(area(matrix(THREE_FOUR_FIVE), {{0, 1, 2}}, result), 0);
    EXPECT_EQ(bits(result), bits(0x1.8p+2));
    EXPECT_EQ(area(matrix(THREE_FOUR_FIVE), {{0, 2, 1}}, result), 0);
    EXPECT_EQ(bits(result), bits(-0x1.8p+2));
    EXPECT_EQ(area(matrix(TILTED), {{0, 2, 1}}, result), 0);
    EXPECT_EQ(bits(result), bits(0x1.2p+2));
}

TEST(GoldenMeasures, AnglesOfIsoscelesRightTrianglesAreTheNearestDoubles)
{
    const dense2D<double> coords = matrix<double>({{0, 0}, {1, 0}, {0, 1}, {1, 1}});
    dense1D<double, 8> low;
    dense1D<double, 8> high;
    EXPECT_EQ(
        angles(coords, {{0, 1, 2, UNSET_ID}, {0, 2, 1, UNSET_ID}, {0, 1, 3, 2}}, false, low, high),
        0);
    expect_entries(low, {QUARTER_PI, -HALF_PI, HALF_PI});
    expect_entries(high, {HALF_PI, -QUARTER_PI, HALF_PI});
}

TEST(GoldenMeasures, NormalsOfWholeSidesAreWhole)
{
    dense2D<double> vectors;
    EXPECT_EQ(normals(matrix(TILTED), {{0, 1, 2}}, false, vectors), 0);
    expect_columns(vectors, 0, {{-6, 6, -3}});
    const dense2D<double> flat = matrix<double>({{0, 0, 5}, {0.75, 0, 5}, {0, 8, 5}});
    EXPECT_EQ(normals(flat, {{0, 2, 1}}, true, vectors), 0);
    expect_columns(vectors, 0, {{0, 0, -1}});
}

TEST(GoldenMeasures, NormalOfACubesCornerIsTheMeanOfItsFaces)
{
    // The four nodes of a corner of the unit cube, its faces towards -x, -y and -z.
    const dense2D<double> coords = matrix<double>({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}});
    dense2D<double> vectors;
    EXPECT_EQ(normals(coords, {{0, 3, 2}, {0, 1, 3}, {0, 2, 1}}, 1.0, false, vectors), 0);
    constexpr double THIRD = 0x1.5555555555555p-2;
    expect_columns(vectors, 0,
                   {{-THIRD, -THIRD, -THIRD}, {0, -0.5, -0.5}, {-0.5, 0, -0.5}, {-0.5, -0.5, 0}});
}

TEST(GoldenMeasures, CircumcenterOfARightTriangleHalvesItsLongestSide)
{
    dense2D<double> centers;
    EXPECT_EQ(circumcenters(matrix(THREE_FOUR_FIVE), {{0, 1, 2}, {2, 0, 1}}, centers), 0);
    expect_columns(centers, 0, {{0x1.8p+0, 0x1p+1}, {0x1.8p+0, 0x1p+1}});
    EXPECT_EQ(
        circumcenters(matrix<double>({{0, 0, 1}, {3, 0, 1}, {0, 4, 1}}), {{0, 1, 2}}, centers), 0);
    expect_columns(centers, 0, {{0x1.8p+0, 0x1p+1, 1}});
}

TEST(GoldenConversion, NodesOnEdgesDivideThemIntoQuarters)
{
    dense2D<double> coords = matrix(THREE_FOUR_FIVE);
    dense2D<unsigned> result;
    EXPECT_EQ(convert_into_high_order(coords, {{0, 1, 2}}, 3, 9, 1, result, {}), 0);
    // Edges 1-2, 2-0 and 0-1, then the centroid. Its third weight is 1 - 1/3 - 1/3, in which the
    // first difference is rounded up to an even last digit: two units in the last place above 1/3.
    expect_columns(coords, 3,
                   {{0x1.2p+1, 1},
                    {0x1.8p+0, 2},
                    {0x1.8p-1, 3},
                    {0, 3},
                    {0, 2},
                    {0, 1},
                    {0x1.8p-1, 0},
                    {0x1.8p+0, 0},
                    {0x1.2p+1, 0},
                    {1, 0x1.5555555555557p+0}});
}

TEST(GoldenConversion, QuadrilateralsOfADyadicSquareHaveExactNodes)
{
    dense2D<double> coords = matrix<double>({{0, 0}, {0.5, 0}, {0.5, 0.125}, {0, 0.125}});
    dense2D<unsigned> result;
    EXPECT_EQ(split_into_Q4(coords, {{0, 1, 2, 3}}, result, {}), 0);
    expect_columns(coords, 4,
                   {{0.25, 0}, {0.5, 0x1p-4}, {0.25, 0.125}, {0, 0x1p-4}, {0.25, 0x1p-4}});
}

TEST(GoldenConversion, TiesOfASquareGoToTheSmallestNode)
{
    // Cut as if the list started there, wherever it does.
    const dense2D<double> coords = matrix<double>({{1, 1}, {0, 0}, {1, 0}, {0, 1}});
    dense2D<unsigned> result;
    EXPECT_EQ(split_Q4_into_T3(coords, {{1, 2, 0, 3}}, result), 1);
    EXPECT_EQ(support::columns(result), (std::vector<std::vector<unsigned>>{{0, 3, 1}, {1, 2, 0}}));
}

TEST(GoldenExtrusion, LayersOfADyadicTranslationAreExact)
{
    dense2D<double> coords = matrix<double>({{1, 0}, {1, 0.25}});
    dense2D<unsigned> connectQ;
    const vector_fixed<double, 2> V{{1.0, -0.5}};
    EXPECT_EQ(extrude_translate_Q4(coords, {{0, 1}}, V, 4, connectQ), 0);
    expect_columns(coords, 2,
                   {{1.25, -0.125},
                    {1.25, 0.125},
                    {1.5, -0.25},
                    {1.5, 0},
                    {1.75, -0.375},
                    {1.75, -0.125},
                    {2, -0.5},
                    {2, -0.25}});
}

TEST(GoldenExtrusion, EqualSizesMakeEqualLayers)
{
    // A path of length 5 at size 1.25: four layers.
    dense2D<double> coords = matrix<double>({{0, 0}, {1, 0}});
    dense2D<unsigned> connectT;
    const vector_fixed<double, 2> V{{3.0, 4.0}};
    EXPECT_EQ(extrude_translate_T3(coords, {{0, 1}}, V, 1.25, 1.25, 0, false, connectT), 0);
    expect_columns(
        coords, 2,
        {{0.75, 1}, {1.75, 1}, {1.5, 2}, {2.5, 2}, {2.25, 3}, {3.25, 3}, {3, 4}, {4, 4}});
}

TEST(GoldenExtrusion, QuarterTurnLeavesTheCosineOfHalfPi)
{
    dense2D<double> coords = matrix<double>({{1, 0}, {2, 0}});
    dense2D<unsigned> connectQ;
    EXPECT_EQ(extrude_rotate_Q4(coords, {{0, 1}}, {{0.0, 0.0}}, HALF_PI, 1, connectQ), 0);
    expect_columns(coords, 2, {{COS_HALF_PI, 1}, {2 * COS_HALF_PI, 2}});
}

TEST(GoldenExtrusion, ScrewWithoutRotationTranslates)
{
    dense2D<double> coords = matrix<double>({{1, 0, 0}, {2, 0, 0}});
    dense2D<unsigned> connectQ;
    EXPECT_EQ(extrude_spiral_Q4(coords, {{0, 1}}, {{0.5, 0.0, 0.0}}, {{0.0, 0.0, 0.0}},
                                {{0.0, 0.0, 1.0}}, 2, connectQ),
              0);
    expect_columns(coords, 2, {{1, 0, 0.5}, {2, 0, 0.5}, {1, 0, 1}, {2, 0, 1}});
}

TEST(GoldenGrids, RectangleGetsItsLattice)
{
    dense2D<double> coords = matrix(UNIT_SQUARE);
    dense2D<unsigned> connectQ;
    EXPECT_EQ(mesh_struct_Q4(coords, AROUND, 2, connectQ), 0);
    expect_columns(coords, 12, {{0.25, 0.5}, {0.5, 0.5}, {0.75, 0.5}});
}

TEST(GoldenGrids, SizesLinearAroundARectangleStayLinear)
{
    dense1D<double, 8> sizes(12);
    for (std::size_t i = 0; i < 12; ++i) sizes[i] = 1 + UNIT_SQUARE[i][0] + 2 * UNIT_SQUARE[i][1];
    EXPECT_EQ(metrics_struct(AROUND, 2, sizes), 0);
    ASSERT_EQ(sizes.size, 15u);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(bits(sizes[12 + i]), bits(2.25 + 0.25 * static_cast<double>(i)));
}

TEST(GoldenGrids, EqualMetricsStay)
{
    for (const std::size_t rows : {3u, 6u}) {
        dense2D<double> metrics(rows, 12, 0.0);
        for (std::size_t j = 0; j < 12; ++j)
            for (const std::size_t diagonal : {0u, 2u, 5u})
                if (diagonal < rows) metrics(diagonal, j) = 0x1p+4;
        EXPECT_EQ(metrics_struct(AROUND, 2, metrics), 0);
        const std::vector<double> same(metrics.column(0), metrics.column(0) + rows);
        ASSERT_EQ(metrics.cols, 15u);
        for (std::size_t j = 12; j < 15; ++j)
            for (std::size_t i = 0; i < rows; ++i)
                EXPECT_EQ(bits(metrics(i, j)), bits(same[i])) << rows << " rows, row " << i;
    }
}

TEST(GoldenInterpolation, LinearFieldIsExactAtDyadicPlaces)
{
    // The unit triangle with f = 1 + 2 x + 4 y, and targets inside, on a side and on a node.
    const dense2D<double> coords =
        matrix<double>({{0, 0}, {1, 0}, {0, 1}, {0.25, 0.5}, {0.5, 0.5}, {0, 1}});
    const dense2D<unsigned> neighbors(3, 1, UNSET_ID);
    const dense1D<unsigned, 8> node_element = {0, 0, 0, UNSET_ID, UNSET_ID, UNSET_ID};
    dense1D<double, 8> field = {1, 3, 5, 0, 0, 0};
    EXPECT_EQ(
        interpolate(coords, {{0, 1, 2}}, neighbors, node_element, field, {3, 4, 5}, ELEMENT_T3), 0);
    expect_entries(field, {1, 3, 5, 0x1.cp+1, 4, 5});
}

TEST(GoldenInterpolation, BilinearFieldIsExactAtDyadicPlaces)
{
    // The unit square with f = 1 + x + 2 y + 4 x y.
    const dense2D<double> coords =
        matrix<double>({{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0.5, 0.5}, {0.25, 0.75}});
    const dense2D<unsigned> neighbors(4, 1, UNSET_ID);
    const dense1D<unsigned, 8> node_element = {0, 0, 0, 0, UNSET_ID, UNSET_ID};
    dense1D<double, 8> field = {1, 2, 8, 3, 0, 0};
    EXPECT_EQ(
        interpolate(coords, {{0, 1, 2, 3}}, neighbors, node_element, field, {4, 5}, ELEMENT_Q4), 0);
    expect_entries(field, {1, 2, 8, 3, 0x1.cp+1, 0x1.cp+1});
}

TEST(GoldenInterpolation, SizesBetweenTwoMetricsAreLinear)
{
    // Sizes 1 and 2 in x, 1 and 4 in y: 1.5 and 2.5 half way, of which the squares' inverses are
    // 4 / 9 and 4 / 25, rounded once.
    const dense2D<double> coords = matrix<double>({{0, 0}, {1, 0}, {0, 1}, {0.5, 0}});
    const dense2D<unsigned> neighbors(3, 1, UNSET_ID);
    const dense1D<unsigned, 8> node_element = {0, 0, 0, UNSET_ID};
    dense2D<double> metrics = matrix<double>({{1, 0, 1}, {0.25, 0, 0.0625}, {1, 0, 1}, {0, 0, 0}});
    EXPECT_EQ(interpolate_metrics(coords, {{0, 1, 2}}, neighbors, node_element, metrics, {3}, false,
                                  ELEMENT_T3),
              0);
    expect_columns(metrics, 3, {{0x1.c71c71c71c71cp-2, 0, 0x1.47ae147ae147bp-3}});
    dense1D<double, 8> sizes = {1, 4, 1, 0};
    EXPECT_EQ(interpolate_metrics(coords, {{0, 1, 2}}, neighbors, node_element, sizes, {3}, false,
                                  ELEMENT_T3),
              0);
    expect_entries(sizes, {1, 4, 1, 2.5});
}

TEST(GoldenCurvature, ParabolicCylinderHasItsSecondDerivative)
{
    // S = (u, v, u u / 2) on four triangles around the origin.
    const dense2D<double> uvs = matrix<double>({{0, 0}, {1, 0}, {0, 1}, {-1, 0}, {0, -1}});
    dense2D<double> derivatives(6, 5, 0.0);
    for (std::size_t j = 0; j < 5; ++j) {
        derivatives(0, j) = 1;
        derivatives(2, j) = uvs(0, j);
        derivatives(4, j) = 1;
    }
    dense2D<double> forms;
    EXPECT_EQ(parametric_curvatures(uvs, {{0, 1, 2}, {0, 2, 3}, {0, 3, 4}, {0, 4, 1}}, derivatives,
                                    forms),
              0);
    ASSERT_EQ(forms.cols, 5u);
    EXPECT_EQ(forms(0, 0), -1.0);
    EXPECT_EQ(forms(1, 0), 0.0);
    EXPECT_EQ(forms(2, 0), 0.0);
}

TEST(GoldenCurvature, RightAngledFoldBendsByHalfPiAlongItsEdge)
{
    // Two triangles of area 1 / 2 at an edge of length 1 along x: half pi times 1 over area 1.
    const dense2D<double> coords = matrix<double>({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 0, -1}});
    const dense2D<unsigned> neighbors = {{UNSET_ID, UNSET_ID, 1}, {UNSET_ID, UNSET_ID, 0}};
    dense2D<double> curvatures;
    EXPECT_EQ(principal_curvatures(coords, {{0, 1, 2}, {1, 0, 3}}, neighbors, 10.0, PI, 100, {},
                                   curvatures),
              0);
    ASSERT_EQ(curvatures.cols, 4u);
    for (std::size_t node = 0; node < 4; ++node) {
        EXPECT_EQ(std::fabs(curvatures(0, node)), 1.0);
        EXPECT_EQ(bits(curvatures(6, node)), bits(-HALF_PI));
        EXPECT_EQ(curvatures(7, node), 0.0);
    }
}

TEST(GoldenCurvature, MetricAtARightCornerHasItsLegsAndTheWantedNormalSize)
{
    const dense2D<double> coords = matrix<double>({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    dense2D<double> metrics;
    EXPECT_EQ(metrics_gen_aniso3d(coords, {{0, 1, 2}}, 0.5, metrics), 0);
    ASSERT_EQ(metrics.cols, 3u);
    const double expected[] = {1, 0, 1, 0, 0, 4};
    for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(metrics(i, 0), expected[i]) << "row " << i;
}
