// Coordinates and layer counts of extrusions along a screw motion.
#include "extrusion/overloads.h"
#include "support/matrices.h"

#include <cmath>

using namespace extrusion_tests;
using support::bits;
using support::columns;
using tessalo2d::extrude_spiral_Q4;
using tessalo2d::extrude_spiral_T3;

namespace {

const vector_fixed<double, 3> ORIGIN = {{0.0, 0.0, 0.0}};

} // namespace

TEST(ExtrudeSpiral, WithoutARotationItIsATranslation)
{
    for (const bool by_size : {false, true}) {
        dense2D<double> spiral = nodes(3, 4);
        dense2D<double> straight = support::copy_of(spiral);
        dense2D<unsigned> spiral_output;
        dense2D<unsigned> straight_output;
        arguments given;
        given.rotation = ORIGIN;
        const char* const kind = by_size ? "Q4 sized" : "Q4 fixed";
        ASSERT_EQ(
            overload_named(std::string("spiral ") + kind).run(spiral, LINE, given, spiral_output),
            0);
        ASSERT_EQ(overload_named(std::string("translate Q4 space ") + (by_size ? "sized" : "fixed"))
                      .run(straight, LINE, given, straight_output),
                  0);
        EXPECT_EQ(columns(spiral_output), columns(straight_output));
        ASSERT_EQ(spiral.cols, straight.cols);
        for (std::size_t j = 0; j < spiral.cols; ++j)
            for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(spiral(i, j), straight(i, j), 4e-15);
    }
}

TEST(ExtrudeSpiral, AnEdgeWindsTwiceWhileItClimbs)
{
    // Plane nodes get their third row on the way.
    dense2D<double> coords = {{1.0, 0.0}, {2.0, 0.0}};
    dense2D<unsigned> output;
    const vector_fixed<double, 3> rotation = {{0.0, 0.0, 4.0 * PI}};
    const vector_fixed<double, 3> climb = {{0.0, 0.0, 1.0}};
    const unsigned N = 16;
    ASSERT_EQ(extrude_spiral_Q4(coords, {{0, 1}}, ORIGIN, rotation, climb, N, output), 0);
    ASSERT_EQ(output.cols, N);
    ASSERT_EQ(coords.rows, 3u);
    for (unsigned l = 0; l <= N; ++l)
        for (unsigned k = 0; k < 2; ++k) {
            const double angle = 4.0 * PI * l / N;
            const std::size_t id = l * 2 + k;
            EXPECT_NEAR(coords(0, id), (k + 1) * std::cos(angle), 2e-14);
            EXPECT_NEAR(coords(1, id), (k + 1) * std::sin(angle), 2e-14);
            EXPECT_NEAR(coords(2, id), l / double(N), 1e-15);
        }
}

TEST(ExtrudeSpiral, RotationAndTranslationGrowAlike)
{
    // About an axis along x through (0, 1, 2), with a translation across it, graded.
    const vector_fixed<double, 3> center = {{7.0, 1.0, 2.0}};
    const vector_fixed<double, 3> rotation = {{2.0, 0.0, 0.0}};
    const vector_fixed<double, 3> translation = {{0.0, 3.0, 0.0}};
    dense2D<double> coords = {{0.0, 3.0, 2.0}};
    dense2D<unsigned> output;
    ASSERT_EQ(
        extrude_spiral_Q4(coords, {{0, 0}}, center, rotation, translation, 0.1, 0.2, false, output),
        0);
    const std::size_t N = output.cols;
    ASSERT_GT(N, 10u);
    const double q = std::exp(std::log(2.0) / static_cast<double>(N));
    double sum = 0.0;
    double term = 1.0;
    std::vector<double> heights;
    for (std::size_t l = 0; l < N; ++l, term *= q) heights.push_back(sum += term);
    for (std::size_t l = 1; l <= N; ++l) {
        const double t = heights[l - 1] / sum;
        EXPECT_NEAR(coords(0, l), 0.0, 1e-13);
        EXPECT_NEAR(coords(1, l), 1.0 + 2.0 * std::cos(2.0 * t) + 3.0 * t, 1e-13);
        EXPECT_NEAR(coords(2, l), 2.0 + 2.0 * std::sin(2.0 * t), 1e-13);
    }
}

TEST(ExtrudeSpiral, TheCountComesFromTheTranslationAlone)
{
    dense2D<double> coords = {{100.0, 0.0, 0.0}, {200.0, 0.0, 0.0}};
    dense2D<unsigned> output;
    const vector_fixed<double, 3> many_turns = {{0.0, 0.0, 200.0}};
    const vector_fixed<double, 3> short_way = {{0.0, 0.0, 0.3}};
    ASSERT_EQ(
        extrude_spiral_Q4(coords, {{0, 1}}, ORIGIN, many_turns, short_way, 0.1, 0.1, false, output),
        0);
    EXPECT_EQ(output.cols, 3u);
    output.clear();
    ASSERT_EQ(
        extrude_spiral_Q4(coords, {{0, 1}}, ORIGIN, many_turns, short_way, 0.1, 0.1, true, output),
        0);
    EXPECT_EQ(output.cols, 4u);
}

TEST(ExtrudeSpiral, AFixedCountGivesThatCountWhateverTheLength)
{
    for (const double length : {1e-290, 1e-3, 0.1, 1.0, 3.7, 1e6, 1e150})
        for (unsigned N = 1; N <= 300; N += N < 60 ? 1 : 17) {
            dense2D<double> coords = {{1.0, 0.0, 0.0}};
            dense2D<unsigned> output;
            const vector_fixed<double, 3> rotation = {{0.1, 0.2, 0.3}};
            const vector_fixed<double, 3> translation = {{0.0, -length, 0.0}};
            ASSERT_EQ(extrude_spiral_Q4(coords, {{0, 0}}, ORIGIN, rotation, translation, N, output),
                      length < 1e-200 ? -6 : 0)
                << length;
            // The square of the shortest one underflows: no length.
            EXPECT_EQ(output.cols, length < 1e-200 ? 0 : N) << length;
        }
}

TEST(ExtrudeSpiral, AFixedCountIsTheSizedFormAtThatHeight)
{
    for (const overload& fixed : overloads()) {
        if (fixed.moves != motion::spiral || fixed.by_size) continue;
        const overload& sized =
            overload_named(fixed.rows == 4 ? "spiral Q4 sized" : "spiral T3 sized");
        arguments given;
        given.translation = {{2.0, -1.0, 2.0}};
        given.N = 3;
        given.h0 = given.h1 = 1.0;
        given.pattern = 2;
        dense2D<double> coords = nodes(3, 4);
        dense2D<double> other = support::copy_of(coords);
        dense2D<unsigned> output;
        dense2D<unsigned> other_output;
        ASSERT_EQ(fixed.run(coords, LINE, given, output), 0);
        ASSERT_EQ(sized.run(other, LINE, given, other_output), 0);
        EXPECT_EQ(coords.cols, 4u + 3u * 3u);
        EXPECT_EQ(bits(coords), bits(other));
        EXPECT_EQ(columns(output), columns(other_output));
    }
}

TEST(ExtrudeSpiral, BySizesNoTranslationMakesNoLayer)
{
    for (const overload& o : overloads()) {
        if (o.moves != motion::spiral || !o.by_size) continue;
        for (const bool filled : {false, true}) {
            SCOPED_TRACE(o.name);
            arguments given;
            given.translation = ORIGIN;
            const dense2D<double> before = nodes(2, 4);
            dense2D<double> coords = support::copy_of(before);
            dense2D<unsigned> output;
            if (filled) output = dense2D<unsigned>(o.rows, 2, 1u);
            EXPECT_EQ(o.run(coords, LINE, given, output), 0);
            EXPECT_EQ(coords.rows, 2u);
            EXPECT_EQ(bits(coords), bits(before));
            EXPECT_EQ(output.rows, o.rows);
            EXPECT_EQ(output.cols, filled ? 2u : 0u);
        }
    }
}

TEST(ExtrudeSpiral, ATranslationWhoseSquareOverflowsMakesNoLayer)
{
    for (const overload& o : overloads()) {
        if (o.moves != motion::spiral || o.by_size) continue;
        SCOPED_TRACE(o.name);
        arguments given;
        given.translation = {{0.0, 1e160, 0.0}};
        const dense2D<double> before = nodes(2, 4);
        dense2D<double> coords = support::copy_of(before);
        dense2D<unsigned> output;
        EXPECT_EQ(o.run(coords, LINE, given, output), 0);
        EXPECT_EQ(coords.rows, 2u);
        EXPECT_EQ(bits(coords), bits(before));
        EXPECT_EQ(output.rows, o.rows);
        EXPECT_EQ(output.cols, 0u);
    }
}

TEST(ExtrudeSpiral, EachNodeKeepsItsDistanceFromTheMovingCentre)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const dense2D<double> before = nodes(3, 4, seed);
        dense2D<double> coords = support::copy_of(before);
        dense2D<unsigned> output;
        const vector_fixed<double, 3> center = {{before(0, 1), before(1, 1), before(2, 1)}};
        const vector_fixed<double, 3> rotation = {{before(1, 0), before(2, 0), before(0, 2)}};
        const vector_fixed<double, 3> translation = {{before(0, 3), before(2, 3), before(1, 2)}};
        const unsigned N = 6;
        ASSERT_EQ(extrude_spiral_T3(coords, LINE, center, rotation, translation, N, 0, output), 0);
        for (std::size_t j = 4; j < coords.cols; ++j) {
            const double t = static_cast<double>((j - 4) / 3 + 1) / N;
            double old_distance = 0.0;
            double distance = 0.0;
            for (std::size_t i = 0; i < 3; ++i) {
                const double d0 = before(i, SOURCES[(j - 4) % 3]) - center[i];
                const double d1 = coords(i, j) - (center[i] + t * translation[i]);
                old_distance += d0 * d0;
                distance += d1 * d1;
            }
            EXPECT_NEAR(distance, old_distance, 1e-12) << "seed " << seed;
        }
    }
}
