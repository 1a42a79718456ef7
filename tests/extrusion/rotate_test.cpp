// Coordinates and layer counts of extrusions around a point or an axis.
#include "extrusion/overloads.h"
#include "support/matrices.h"

#include <cmath>

using namespace extrusion_tests;
using support::bits;
using tessalo2d::extrude_rotate_Q4;
using tessalo2d::extrude_rotate_T3;

namespace {

using point = std::vector<double>;

/// Rotation by the classical formula: the part along the axis stays, the part across it turns.
point turned(const point& p, const point& center, const point& vector, double t)
{
    const double angle =
        t * std::sqrt(vector[0] * vector[0] + vector[1] * vector[1] + vector[2] * vector[2]);
    point axis(3), d(3), result(3);
    double along = 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
        axis[i] = angle == 0.0 ? 0.0 : t * vector[i] / angle;
        d[i] = p[i] - center[i];
        along += axis[i] * d[i];
    }
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t j = (i + 1) % 3;
        const std::size_t k = (i + 2) % 3;
        const double across = axis[j] * d[k] - axis[k] * d[j];
        result[i] = center[i] + d[i] * std::cos(angle) + across * std::sin(angle) +
                    axis[i] * along * (1.0 - std::cos(angle));
    }
    return result;
}

point node(const dense2D<double>& coords, std::size_t id)
{
    return {coords(0, id), coords(1, id), coords.rows == 3 ? coords(2, id) : 0.0};
}

} // namespace

TEST(ExtrudeRotate, ThePlaneFormTurnsEachNodeByItsShareOfTheAngle)
{
    for (const double angle : {1.25, -2.0, 0.0, 7.0})
        for (const unsigned N : {1u, 3u, 10u}) {
            const dense2D<double> before = nodes(2, 4);
            dense2D<double> coords = support::copy_of(before);
            dense2D<unsigned> output;
            const vector_fixed<double, 2> center = {{0.25, -1.0}};
            ASSERT_EQ(extrude_rotate_Q4(coords, LINE, center, angle, N, output), 0);
            const double d = 1.0 / N;
            for (unsigned l = 1; l <= N; ++l)
                for (std::size_t k = 0; k < 3; ++k) {
                    // Volatile: every operation rounded, in this order.
                    volatile double t = l * d;
                    volatile double a = t * angle;
                    const double c = std::cos(a);
                    const double s = std::sin(a);
                    const double dx = before(0, SOURCES[k]) - center[0];
                    const double dy = before(1, SOURCES[k]) - center[1];
                    volatile double xx = dx * c, xy = dy * s, yy = dy * c, yx = dx * s;
                    volatile double x = xx - xy;
                    volatile double y = yy + yx;
                    const std::size_t id = 4 + (l - 1) * 3 + k;
                    EXPECT_EQ(bits(coords(0, id)), bits(x + center[0]));
                    EXPECT_EQ(bits(coords(1, id)), bits(y + center[1]));
                }
        }
}

TEST(ExtrudeRotate, AQuarterTurnCounterclockwiseByHand)
{
    dense2D<double> coords = {{3.0, 1.0}};
    dense2D<unsigned> output;
    const vector_fixed<double, 2> center = {{1.0, 1.0}};
    ASSERT_EQ(extrude_rotate_Q4(coords, {{0, 0}}, center, PI, 2, output), 0);
    EXPECT_NEAR(coords(0, 1), 1.0, 1e-15);
    EXPECT_NEAR(coords(1, 1), 3.0, 1e-15);
    EXPECT_NEAR(coords(0, 2), -1.0, 1e-15);
    EXPECT_NEAR(coords(1, 2), 1.0, 1e-15);
}

TEST(ExtrudeRotate, ThePlaneFormFlattensNewNodesOfAMeshInSpace)
{
    for (const overload& o : overloads()) {
        if (o.moves != motion::rotate || o.dimension != 2) continue;
        SCOPED_TRACE(o.name);
        const dense2D<double> before = nodes(3, 4);
        dense2D<double> coords = support::copy_of(before);
        dense2D<unsigned> output;
        ASSERT_EQ(o.run(coords, LINE, {}, output), 0);
        ASSERT_EQ(coords.rows, 3u);
        for (std::size_t j = 0; j < 4; ++j) EXPECT_EQ(coords(2, j), before(2, j));
        for (std::size_t j = 4; j < coords.cols; ++j) EXPECT_EQ(bits(coords(2, j)), bits(0.0));
    }
}

TEST(ExtrudeRotate, ThePlaneFormDoesNotLookAtZButForTheRadius)
{
    dense2D<double> flat = nodes(2, 4);
    dense2D<double> raised = nodes(3, 4);
    for (std::size_t j = 0; j < 4; ++j)
        for (std::size_t i = 0; i < 2; ++i) raised(i, j) = flat(i, j);
    dense2D<unsigned> output;
    const vector_fixed<double, 2> center = {{0.0, 0.5}};
    ASSERT_EQ(extrude_rotate_Q4(flat, LINE, center, 2.0, 5, output), 0);
    output.clear();
    ASSERT_EQ(extrude_rotate_Q4(raised, LINE, center, 2.0, 5, output), 0);
    for (std::size_t j = 4; j < flat.cols; ++j)
        for (std::size_t i = 0; i < 2; ++i) EXPECT_EQ(raised(i, j), flat(i, j));

    // A radius of 3, 4 and 12 together: 13.
    dense2D<double> high = {{3.0, 4.0, 12.0}};
    output.clear();
    const vector_fixed<double, 2> origin = {{0.0, 0.0}};
    ASSERT_EQ(extrude_rotate_Q4(high, {{0, 0}}, origin, -1.0, 1.0, 1.0, false, output), 0);
    EXPECT_EQ(output.cols, 13u);
}

TEST(ExtrudeRotate, TheSpaceFormTurnsEachNodeAboutTheAxis)
{
    for (const double length : {0.0, 0.05, 0.3, 2.0, 9.0})
        for (const std::size_t rows : {2u, 3u}) {
            const point direction = {0.48, -0.6, 0.64};
            const vector_fixed<double, 3> rotation = {
                {length * direction[0], length * direction[1], length * direction[2]}};
            const vector_fixed<double, 3> center = {{0.25, -1.0, 0.5}};
            const unsigned N = 7;
            dense2D<double> coords = nodes(rows, 4);
            dense2D<unsigned> output;
            ASSERT_EQ(extrude_rotate_Q4(coords, LINE, center, rotation, N, output), 0);
            ASSERT_EQ(coords.rows, 3u);
            for (unsigned l = 1; l <= N; ++l)
                for (std::size_t k = 0; k < 3; ++k) {
                    const point expected =
                        turned(node(coords, SOURCES[k]), {0.25, -1.0, 0.5},
                               {rotation[0], rotation[1], rotation[2]}, l / double(N));
                    for (std::size_t i = 0; i < 3; ++i)
                        EXPECT_NEAR(coords(i, 4 + (l - 1) * 3 + k), expected[i], 1e-14)
                            << length << " " << l;
                }
        }
}

TEST(ExtrudeRotate, AboutTheZAxisTheFormsAgree)
{
    dense2D<double> plane = nodes(2, 4);
    dense2D<double> space = support::copy_of(plane);
    dense2D<unsigned> output;
    dense2D<unsigned> other;
    const vector_fixed<double, 2> center2 = {{0.25, -1.0}};
    const vector_fixed<double, 3> center3 = {{0.25, -1.0, 0.0}};
    const vector_fixed<double, 3> rotation = {{0.0, 0.0, -1.5}};
    ASSERT_EQ(extrude_rotate_Q4(plane, LINE, center2, -1.5, 6, output), 0);
    ASSERT_EQ(extrude_rotate_Q4(space, LINE, center3, rotation, 6, other), 0);
    for (std::size_t j = 4; j < plane.cols; ++j) {
        EXPECT_NEAR(space(0, j), plane(0, j), 1e-14);
        EXPECT_NEAR(space(1, j), plane(1, j), 1e-14);
        EXPECT_EQ(space(2, j), 0.0);
    }
}

TEST(ExtrudeRotate, NoAngleGivesCoincidentLayersOrOneBySizes)
{
    for (const overload& o : overloads()) {
        if (o.moves != motion::rotate) continue;
        for (const bool force_even : {false, true}) {
            SCOPED_TRACE(o.name);
            arguments given;
            given.angle = 0.0;
            given.rotation = {{0.0, 0.0, 0.0}};
            given.force_even = force_even;
            dense2D<double> coords = nodes(2, 4);
            dense2D<unsigned> output;
            ASSERT_EQ(o.run(coords, LINE, given, output), 0);
            const std::size_t layers = (coords.cols - 4) / 3;
            EXPECT_EQ(layers, o.by_size ? 1u : 3u);
            for (std::size_t l = 0; l < layers; ++l)
                for (std::size_t k = 0; k < 3; ++k)
                    for (std::size_t i = 0; i < 2; ++i)
                        EXPECT_NEAR(coords(i, 4 + l * 3 + k), coords(i, SOURCES[k]), 1e-15);
        }
    }
}

TEST(ExtrudeRotate, ANegativeAngleMirrorsTheOrientation)
{
    for (const double angle : {1.0, -1.0}) {
        dense2D<double> coords = {{1.0, 0.0}, {2.0, 0.0}};
        dense2D<unsigned> output;
        const vector_fixed<double, 2> origin = {{0.0, 0.0}};
        ASSERT_EQ(extrude_rotate_Q4(coords, {{0, 1}}, origin, angle, 100, output), 0);
        double area = 0.0;
        ASSERT_EQ(tessalo2d::area(coords, output, area), 0);
        // A ring of radii 1 and 2, outward and counterclockwise: positive.
        EXPECT_NEAR(area, angle * 1.5, 1e-3);
        EXPECT_EQ(support::columns(output)[0], (std::vector<unsigned>{0, 1, 3, 2}));
    }
}

TEST(ExtrudeRotate, BySizesALineThatStartsAtTheCentreGetsOneLayer)
{
    for (const overload& o : overloads()) {
        if (o.moves != motion::rotate || !o.by_size) continue;
        SCOPED_TRACE(o.name);
        arguments given;
        given.center = {{0.25, -1.0, 0.0}};
        dense2D<double> coords = {{9.0, 9.0}, {0.25, -1.0}, {500.0, 0.0}};
        dense2D<unsigned> output;
        ASSERT_EQ(o.run(coords, {{1, 2}}, given, output), 0);
        EXPECT_EQ(coords.cols, 3u + 2u);
    }
}

TEST(ExtrudeRotate, BySizesTheArcOfTheFirstNodeAloneCounts)
{
    // Node 1 of radius 2 comes first and node 0 of radius 50 second.
    // Half a turn in steps of pi / 4.
    dense2D<double> coords = {{50.0, 0.0}, {0.0, 2.0}};
    dense2D<unsigned> output;
    const vector_fixed<double, 2> origin = {{0.0, 0.0}};
    ASSERT_EQ(extrude_rotate_Q4(coords, {{1, 0}}, origin, -PI, PI / 4, PI / 4, false, output), 0);
    EXPECT_EQ(output.cols, 8u);

    // In space the distance to the axis counts: 2 from the z-axis, at height 30.
    dense2D<double> raised = {{50.0, 0.0, 0.0}, {0.0, 2.0, 30.0}};
    output.clear();
    const vector_fixed<double, 3> origin3 = {{0.0, 0.0, 0.0}};
    const vector_fixed<double, 3> rotation = {{0.0, 0.0, PI}};
    ASSERT_EQ(extrude_rotate_Q4(raised, {{1, 0}}, origin3, rotation, PI / 4, PI / 4, false, output),
              0);
    EXPECT_EQ(output.cols, 8u);

    // The same after widening.
    dense2D<double> flat = {{50.0, 0.0}, {0.0, 2.0}};
    output.clear();
    ASSERT_EQ(extrude_rotate_Q4(flat, {{1, 0}}, origin3, rotation, PI / 4, PI / 4, true, output),
              0);
    EXPECT_EQ(output.cols, 8u);
}

TEST(ExtrudeRotate, BySizesTheArcInSpaceIsTheDistanceFromTheAxisTimesTheAngle)
{
    const double h = PI / 4;
    const auto layers = [h](dense2D<double> coords, const vector_fixed<double, 3>& center,
                            const vector_fixed<double, 3>& rotation) {
        dense2D<unsigned> output;
        EXPECT_EQ(extrude_rotate_Q4(coords, {{0, 0}}, center, rotation, h, h, false, output), 0);
        return output.cols;
    };
    const vector_fixed<double, 3> origin = {{0.0, 0.0, 0.0}};

    // About the x-axis at distance 2, along y and along z, wherever on the axis: an arc of 2 pi.
    const vector_fixed<double, 3> about_x = {{PI, 0.0, 0.0}};
    EXPECT_EQ(layers({{7.0, 0.0, 2.0}}, origin, about_x), 8u);
    EXPECT_EQ(layers({{7.0, -2.0, 0.0}}, origin, about_x), 8u);

    // About the y-axis, by x and z together: at distance 5.
    const vector_fixed<double, 3> about_y = {{0.0, -PI, 0.0}};
    EXPECT_EQ(layers({{3.0, 9.0, 4.0}}, origin, about_y), 20u);

    // About (2, 1, 2) / 3 from 5 (2, 1, 2) along it and (1, 2, -2) across it, at distance 3.
    const vector_fixed<double, 3> oblique = {{PI * 2.0 / 3.0, PI / 3.0, PI * 2.0 / 3.0}};
    EXPECT_EQ(layers({{11.0, 7.0, 8.0}}, origin, oblique), 12u);

    // A plane node lies at z = 0, 2 above this centre.
    const vector_fixed<double, 3> below = {{0.0, 0.0, -2.0}};
    EXPECT_EQ(layers({{7.0, 0.0}}, below, about_x), 8u);
}

TEST(ExtrudeRotate, AFullTurnIsNotClosed)
{
    const dense2D<double> before = nodes(2, 4);
    for (const bool in_space : {false, true}) {
        dense2D<double> coords = support::copy_of(before);
        dense2D<unsigned> output;
        const vector_fixed<double, 2> center = {{0.25, -1.0}};
        const vector_fixed<double, 3> center3 = {{0.25, -1.0, 0.0}};
        const vector_fixed<double, 3> rotation = {{0.0, 0.0, 2 * PI}};
        const int status = in_space ? extrude_rotate_Q4(coords, LINE, center3, rotation, 4, output)
                                    : extrude_rotate_Q4(coords, LINE, center, 2 * PI, 4, output);
        ASSERT_EQ(status, 0);
        ASSERT_EQ(coords.cols, 4u + 4u * 3u);
        for (std::size_t k = 0; k < 3; ++k)
            for (std::size_t i = 0; i < 2; ++i)
                EXPECT_NEAR(coords(i, 4 + 9 + k), before(i, SOURCES[k]), 1e-14);
        // The far sides refer to new nodes only.
        for (std::size_t e = 0; e < output.cols; ++e) {
            EXPECT_GE(output(2, e), 4u);
            EXPECT_GE(output(3, e), 4u);
        }
    }
}

TEST(ExtrudeRotate, EqualSizesGiveEqualAnglesAndGrowingSizesGrowingOnes)
{
    for (const double h1 : {0.1, 0.3}) {
        dense2D<double> coords = {{1.0, 0.0}};
        dense2D<unsigned> output;
        const vector_fixed<double, 2> origin = {{0.0, 0.0}};
        ASSERT_EQ(extrude_rotate_Q4(coords, {{0, 0}}, origin, 3.0, 0.1, h1, false, output), 0);
        ASSERT_GT(output.cols, 5u);
        double last_step = 0.0;
        for (std::size_t l = 1; l < coords.cols; ++l) {
            const double step = std::atan2(coords(1, l), coords(0, l)) -
                                std::atan2(coords(1, l - 1), coords(0, l - 1));
            if (h1 == 0.1) {
                EXPECT_NEAR(step, 3.0 / static_cast<double>(output.cols), 1e-14);
            } else {
                EXPECT_GT(step, last_step);
            }
            last_step = step;
        }
    }
}

TEST(ExtrudeRotate, ANodeOnTheAxisGetsCoincidentCopies)
{
    dense2D<double> coords = {{0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}};
    dense2D<unsigned> output;
    const vector_fixed<double, 3> origin = {{0.0, 0.0, 0.0}};
    const vector_fixed<double, 3> rotation = {{0.0, 0.0, 1.0}};
    ASSERT_EQ(extrude_rotate_T3(coords, {{0, 1}}, origin, rotation, 3, 0, output), 0);
    ASSERT_EQ(coords.cols, 8u);
    EXPECT_EQ(output.cols, 6u);
    for (const std::size_t id : {2u, 4u, 6u})
        for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(coords(i, id), 0.0);
}

TEST(ExtrudeRotate, TriangleFormsPlaceTheNodesAsQuadrilateralForms)
{
    for (const bool by_size : {false, true})
        for (const int dimension : {2, 3})
            for (const std::size_t rows : {2u, 3u}) {
                std::vector<dense2D<double>> results;
                for (const overload& o : overloads()) {
                    if (o.moves != motion::rotate || o.by_size != by_size) continue;
                    if (o.dimension != dimension) continue;
                    dense2D<double> coords = nodes(rows, 4);
                    dense2D<unsigned> output;
                    ASSERT_EQ(o.run(coords, LINE, {}, output), 0);
                    results.push_back(coords);
                }
                ASSERT_EQ(results.size(), 2u);
                EXPECT_EQ(bits(results[0]), bits(results[1]));
            }
}

TEST(ExtrudeRotate, DistancesToTheAxisAreKeptOnRandomMeshes)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const dense2D<double> before = nodes(3, 4, seed);
        dense2D<double> coords = support::copy_of(before);
        dense2D<unsigned> output;
        const vector_fixed<double, 3> center = {{before(0, 1), before(1, 1), before(2, 1)}};
        const vector_fixed<double, 3> rotation = {{before(1, 0), before(2, 0), before(0, 2)}};
        ASSERT_EQ(extrude_rotate_Q4(coords, LINE, center, rotation, 9, output), 0);
        for (std::size_t j = 4; j < coords.cols; ++j) {
            const unsigned source = SOURCES[(j - 4) % 3];
            double old_distance = 0.0, distance = 0.0, old_height = 0.0, height = 0.0;
            for (std::size_t i = 0; i < 3; ++i) {
                const double d0 = before(i, source) - center[i];
                const double d1 = coords(i, j) - center[i];
                old_distance += d0 * d0;
                distance += d1 * d1;
                old_height += d0 * rotation[i];
                height += d1 * rotation[i];
            }
            EXPECT_NEAR(distance, old_distance, 1e-12) << "seed " << seed;
            EXPECT_NEAR(height, old_height, 1e-12) << "seed " << seed;
        }
    }
}
