// Coordinates and layer counts of extrusions along a straight path.
#include "extrusion/overloads.h"
#include "support/matrices.h"

#include <cmath>

using namespace extrusion_tests;
using support::bits;
using tessalo2d::extrude_translate_Q4;
using tessalo2d::extrude_translate_T3;

namespace {

/// Position of layer l of N when heights grow by a constant factor from h0 to h1 over the path:
/// the share of the first l terms of a geometric progression.
double graded_position(std::size_t l, std::size_t N, double h0, double h1)
{
    const double q = std::exp(std::log(h1 / h0) / static_cast<double>(N));
    double term = 1.0;
    double sum = 0.0;
    double part = 0.0;
    for (std::size_t k = 0; k < N; ++k, term *= q) {
        if (k == l) part = sum;
        sum += term;
    }
    return l == N ? 1.0 : part / sum;
}

std::size_t layers_of(const dense2D<unsigned>& quadrilaterals)
{
    return quadrilaterals.cols / LINE.cols;
}

} // namespace

TEST(ExtrudeTranslate, EachLayerIsTheSourceAndAShareOfV)
{
    for (const unsigned N : {1u, 2u, 3u, 7u, 49u}) {
        const dense2D<double> before = nodes(2, 4);
        dense2D<double> coords = support::copy_of(before);
        dense2D<unsigned> output;
        const vector_fixed<double, 2> V = {{0.3, -1.7}};
        ASSERT_EQ(extrude_translate_Q4(coords, LINE, V, N, output), 0);
        const double d = 1.0 / N;
        for (unsigned l = 1; l <= N; ++l)
            for (std::size_t k = 0; k < 3; ++k)
                for (std::size_t i = 0; i < 2; ++i) {
                    // Volatile: rounded product, then rounded sum.
                    volatile double t = l * d;
                    volatile double w = V[i] * t;
                    volatile double expected = before(i, SOURCES[k]) + w;
                    EXPECT_EQ(coords(i, 4 + (l - 1) * 3 + k), expected) << N << " " << l;
                }
    }
}

TEST(ExtrudeTranslate, TheLastLayerMayFallShortOfVInItsLastBit)
{
    // 49 * (1 / 49) rounds to the neighbour of 1 from below.
    const double t = 49 * (1.0 / 49);
    ASSERT_LT(t, 1.0);
    dense2D<double> coords = {{0.0, 0.0}};
    dense2D<unsigned> output;
    const vector_fixed<double, 2> V = {{1.0, 4.0}};
    ASSERT_EQ(extrude_translate_Q4(coords, {{0, 0}}, V, 49, output), 0);
    EXPECT_EQ(coords(0, 49), t);
    EXPECT_EQ(coords(1, 49), 4.0 * t);
}

TEST(ExtrudeTranslate, AllEightOverloadsPlaceTheNodesAlike)
{
    for (const bool by_size : {false, true})
        for (const int dimension : {2, 3}) {
            std::vector<dense2D<double>> results;
            for (const overload& o : overloads()) {
                if (o.moves != motion::translate || o.by_size != by_size) continue;
                if (o.dimension != dimension) continue;
                dense2D<double> coords = nodes(2, 4);
                dense2D<unsigned> output;
                ASSERT_EQ(o.run(coords, LINE, {}, output), 0);
                EXPECT_EQ(coords.rows, static_cast<std::size_t>(dimension));
                results.push_back(coords);
            }
            ASSERT_EQ(results.size(), 2u);
            EXPECT_EQ(bits(results[0]), bits(results[1]));
        }
}

TEST(ExtrudeTranslate, InSpaceAPlaneMeshGetsAThirdCoordinateOfZero)
{
    const dense2D<double> before = nodes(2, 4);
    dense2D<double> coords = support::copy_of(before);
    dense2D<unsigned> output;
    const vector_fixed<double, 3> V = {{0.0, 0.0, 2.0}};
    ASSERT_EQ(extrude_translate_Q4(coords, LINE, V, 2, output), 0);
    ASSERT_EQ(coords.rows, 3u);
    for (std::size_t j = 0; j < 4; ++j) EXPECT_EQ(bits(coords(2, j)), bits(0.0));
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_EQ(coords(2, 4 + k), 1.0);
        EXPECT_EQ(coords(2, 7 + k), 2.0);
        EXPECT_EQ(coords(0, 7 + k), before(0, SOURCES[k]));
    }
}

TEST(ExtrudeTranslate, EqualSizesGiveUniformLayers)
{
    dense2D<double> sized = nodes(2, 4);
    dense2D<double> fixed = support::copy_of(sized);
    dense2D<unsigned> output;
    dense2D<unsigned> other;
    const vector_fixed<double, 2> V = {{3.0, 4.0}};
    ASSERT_EQ(extrude_translate_Q4(sized, LINE, V, 0.5, 0.5, false, output), 0);
    EXPECT_EQ(layers_of(output), 10u);
    ASSERT_EQ(extrude_translate_Q4(fixed, LINE, V, 10, other), 0);
    EXPECT_EQ(bits(sized), bits(fixed));
}

TEST(ExtrudeTranslate, TheCountIsRoundedInRatio)
{
    // Between 2 and 3 layers the line is drawn at sqrt(6) = 2.449...
    for (const auto& [length, layers] : {std::pair{2.44, 2u}, {2.46, 3u}, {1.41, 1u}, {1.42, 2u}}) {
        for (const bool in_space : {false, true}) {
            dense2D<double> coords = nodes(2, 4);
            dense2D<unsigned> output;
            const vector_fixed<double, 2> V = {{length, 0.0}};
            const vector_fixed<double, 3> W = {{0.0, 0.0, length}};
            const int status = in_space
                                   ? extrude_translate_Q4(coords, LINE, W, 1.0, 1.0, false, output)
                                   : extrude_translate_Q4(coords, LINE, V, 1.0, 1.0, false, output);
            EXPECT_EQ(status, 0);
            EXPECT_EQ(layers_of(output), layers) << length;
        }
    }
}

TEST(ExtrudeTranslate, AnEvenCountIsForcedWhereItIsAskedFor)
{
    dense2D<double> coords = nodes(2, 4);
    dense2D<unsigned> output;
    const vector_fixed<double, 2> V = {{1.1, 0.0}};
    ASSERT_EQ(extrude_translate_Q4(coords, LINE, V, 1.0, 1.0, true, output), 0);
    EXPECT_EQ(layers_of(output), 2u);
    output.clear();
    ASSERT_EQ(extrude_translate_Q4(coords, LINE, V, 1.0, 1.0, false, output), 0);
    EXPECT_EQ(layers_of(output), 1u);
}

TEST(ExtrudeTranslate, UnequalSizesGradeTheLayersFromTheThinEnd)
{
    for (const auto& [h0, h1] : {std::pair{0.1, 0.4}, {0.4, 0.1}, {0.2, 0.2001}}) {
        const double length = 5.0;
        const double mean = (h1 - h0) / std::log(h1 / h0);
        dense2D<double> coords = {{0.0, 0.0}};
        dense2D<unsigned> output;
        const vector_fixed<double, 2> V = {{0.0, length}};
        ASSERT_EQ(extrude_translate_Q4(coords, {{0, 0}}, V, h0, h1, false, output), 0);
        const std::size_t N = output.cols;
        EXPECT_NEAR(static_cast<double>(N), length / mean, 0.51);
        for (std::size_t l = 1; l <= N; ++l)
            EXPECT_NEAR(coords(1, l), length * graded_position(l, N, h0, h1), 1e-12 * length)
                << h0 << " " << l;
        const double first = coords(1, 1);
        const double last = coords(1, N) - coords(1, N - 1);
        EXPECT_EQ(first < last, h0 < h1);
        EXPECT_LE(coords(1, N), length);
    }
}

TEST(ExtrudeTranslate, ANullVectorGivesOneLayerBySizes)
{
    for (const bool force_even : {false, true}) {
        const dense2D<double> before = nodes(2, 4);
        dense2D<double> coords = support::copy_of(before);
        dense2D<unsigned> output;
        const vector_fixed<double, 2> V = {{0.0, 0.0}};
        ASSERT_EQ(extrude_translate_Q4(coords, LINE, V, 0.5, 0.5, force_even, output), 0);
        EXPECT_EQ(layers_of(output), 1u);
        for (std::size_t k = 0; k < 3; ++k)
            for (std::size_t i = 0; i < 2; ++i) EXPECT_EQ(coords(i, 4 + k), before(i, SOURCES[k]));
    }
}

TEST(ExtrudeTranslate, ANullVectorIsAddedAllTheSame)
{
    dense2D<double> coords = {{-0.0, 3.0}};
    dense2D<unsigned> output;
    const vector_fixed<double, 2> V = {{0.0, 0.0}};
    ASSERT_EQ(extrude_translate_Q4(coords, {{0, 0}}, V, 1, output), 0);
    // -0.0 + 0.0 is 0.0.
    EXPECT_EQ(bits(coords(0, 0)), bits(-0.0));
    EXPECT_EQ(bits(coords(0, 1)), bits(0.0));
}

TEST(ExtrudeTranslateT3, ThePlaneFormBySizesEndsWithTwoRows)
{
    // It widens the coordinates on the way; the result is that of the quadrilateral form.
    dense2D<double> coords = nodes(2, 4);
    dense2D<double> other = support::copy_of(coords);
    dense2D<unsigned> triangles;
    dense2D<unsigned> quadrilaterals;
    const vector_fixed<double, 2> V = {{1.0, 2.0}};
    ASSERT_EQ(extrude_translate_T3(coords, LINE, V, 0.3, 0.7, 0, false, triangles), 0);
    ASSERT_EQ(extrude_translate_Q4(other, LINE, V, 0.3, 0.7, false, quadrilaterals), 0);
    EXPECT_EQ(coords.rows, 2u);
    EXPECT_EQ(bits(coords), bits(other));
    EXPECT_EQ(triangles.cols, 2 * quadrilaterals.cols);
}

TEST(ExtrudeTranslate, SweptAreaIsTheProductOfLengthAndHeight)
{
    for (const overload& o : overloads()) {
        if (o.moves != motion::translate || o.dimension != 2) continue;
        for (int pattern = 0; pattern <= 2; ++pattern) {
            SCOPED_TRACE(o.name);
            dense2D<double> coords = {{0.0, 0.0}, {1.5, 0.0}, {2.0, 0.0}};
            dense2D<unsigned> output;
            arguments given;
            given.plane = {{0.7, 3.0}};
            given.pattern = pattern;
            ASSERT_EQ(o.run(coords, {{0, 1}, {1, 2}}, given, output), 0);
            double area = 0.0;
            ASSERT_EQ(tessalo2d::area(coords, output, area), 0);
            // Along +x and up: counterclockwise.
            EXPECT_NEAR(area, 6.0, 1e-12);
        }
    }
}
