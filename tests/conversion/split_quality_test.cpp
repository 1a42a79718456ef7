#include "conversion/diagonal.h"
#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

using namespace vorel;
using support::columns;
using support::copy_of;
using support::matrix;
using tessalo2d::split_Q4_into_T3;
using tessalo2d::triangle_quality;

namespace {

constexpr unsigned U = UNSET_ID;
using ids = std::vector<std::vector<unsigned>>;
using column = std::vector<unsigned>;

ids split(const dense2D<double>& coords, const dense2D<unsigned>& connect)
{
    dense2D<unsigned> result;
    EXPECT_GE(split_Q4_into_T3(coords, connect, result), 0);
    return columns(result);
}

/// A plane mesh of ten nodes of which the given four are the corners.
dense2D<double> ten_nodes(const column& corners, const std::vector<std::vector<double>>& points)
{
    dense2D<double> coords(2, 10, 100.0);
    for (std::size_t k = 0; k < 4; ++k)
        std::copy(points[k].begin(), points[k].end(), coords.column(corners[k]));
    return coords;
}

template <int D>
double quality(const dense2D<double>& coords, const column& t)
{
    return triangle_quality<D>(coords.column(0), coords.ld, t.data());
}

/// The cut of one quadrilateral, with every triangle judged on its own.
template <int D>
ids judged_one_by_one(const dense2D<double>& coords, column m)
{
    std::rotate(m.begin(), std::min_element(m.begin(), m.end()), m.end());
    const column a{m[0], m[1], m[2]};
    const column b{m[2], m[3], m[0]};
    const column c{m[1], m[2], m[3]};
    const column d{m[3], m[0], m[1]};
    const bool first = std::min(quality<D>(coords, a), quality<D>(coords, b)) >
                       std::min(quality<D>(coords, c), quality<D>(coords, d)) - 1e-12;
    return first ? ids{a, b} : ids{c, d};
}

template <int D>
ids judged_one_by_one(const support::mesh& m)
{
    ids all;
    for (const column& c : columns(m.connect)) {
        if (c[3] == U) {
            all.push_back({c[0], c[1], c[2]});
            continue;
        }
        for (const column& t : judged_one_by_one<D>(m.coords, c)) all.push_back(t);
    }
    return all;
}

} // namespace

TEST(SplitByQuality, WithoutColumnsThereIsNothingToDo)
{
    dense2D<unsigned> result{{1, 2}};
    EXPECT_EQ(
        split_Q4_into_T3(dense2D<double>(5, 1, 0.0), support::without_columns<unsigned>(7), result),
        0);
    EXPECT_EQ(columns(result), (ids{{1, 2}}));
}

TEST(SplitByQuality, ColumnsWithoutRowsAreNoElements)
{
    dense2D<unsigned> connect;
    connect.cols = 3;
    dense2D<unsigned> result{{1, 2, 3}};
    EXPECT_EQ(split_Q4_into_T3(dense2D<double>(2, 4, 0.0), connect, result), 0);
    EXPECT_EQ(columns(result), (ids{{1, 2, 3}}));
}

TEST(SplitByQuality, ATieGoesToTheDiagonalThroughTheSmallestID)
{
    const dense2D<double> square = ten_nodes({5, 7, 2, 9}, {{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    EXPECT_EQ(split(square, {{5, 7, 2, 9}}), (ids{{2, 9, 5}, {5, 7, 2}}));
    EXPECT_EQ(split(square, {{7, 2, 9, 5}}), (ids{{2, 9, 5}, {5, 7, 2}}));
}

TEST(SplitByQuality, CutsAConcaveQuadrilateralThroughItsReflexCorner)
{
    // The reflex corner is the one after the smallest ID.
    const dense2D<double> dart{{0, 4}, {1, 1}, {4, 0}, {5, 5}};
    EXPECT_EQ(split({{4, 0}, {1, 1}, {0, 4}, {-4, -4}}, {{0, 1, 2, 3}}),
              (ids{{1, 2, 3}, {3, 0, 1}}));
    EXPECT_EQ(split(dart, {{0, 1, 2, 3}}), (ids{{1, 2, 3}, {3, 0, 1}}));
}

TEST(SplitByQuality, OfTwoEqualIDsTheFirstPlaceIsTaken)
{
    const dense2D<double> coords{{0, 0}, {1, 0}, {1, 1}};
    // Turned to (0, 0, 1, 2): the first cut has a triangle of no area, so has the second; a tie.
    EXPECT_EQ(split(coords, {{0, 0, 1, 2}}), (ids{{0, 0, 1}, {1, 2, 0}}));
    EXPECT_EQ(split(coords, {{1, 2, 0, 0}}), (ids{{0, 0, 1}, {1, 2, 0}}));
    // Turned to (0, 1, 2, 0).
    EXPECT_EQ(split(coords, {{0, 1, 2, 0}}), (ids{{0, 1, 2}, {2, 0, 0}}));
}

TEST(SplitByQuality, CopiesTrianglesAndKeepsTheOrder)
{
    const dense2D<double> coords{{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    dense2D<unsigned> result{{3, 3, 3}};
    EXPECT_EQ(split_Q4_into_T3(coords, {{3, 0, 1, U}, {0, 1, 2, 3}, {2, 3, 1, U}}, result), 1);
    EXPECT_EQ(columns(result), (ids{{3, 3, 3}, {3, 0, 1}, {0, 1, 2}, {2, 3, 0}, {2, 3, 1}}));
}

TEST(SplitByQuality, AppendsTrianglesWholeAndReportsNoCount)
{
    dense2D<unsigned> result;
    EXPECT_EQ(split_Q4_into_T3({{0, 0}, {1, 0}, {1, 1}}, {{0, 1, 2}, {2, 1, 0}}, result), 0);
    EXPECT_EQ(columns(result), (ids{{0, 1, 2}, {2, 1, 0}}));
}

TEST(SplitByQuality, ChecksItsArgumentsInOrder)
{
    const dense2D<double> good(2, 4, 0.0);
    const dense2D<double> bad(4, 4, 0.0);
    const dense2D<unsigned> quad{{0, 1, 2, 3}};
    dense2D<unsigned> wide{{1, 2, 3, 4}};
    EXPECT_EQ(split_Q4_into_T3(bad, {{0, 1, 2, 9}}, wide), -1);
    EXPECT_EQ(split_Q4_into_T3(dense2D<double>(1, 4, 0.0), quad, wide), -1);
    EXPECT_EQ(split_Q4_into_T3(good, {{0, 1, 2, 9}}, wide), -2);
    EXPECT_EQ(split_Q4_into_T3(good, {{0, 1, U, 3}}, wide), -2);
    EXPECT_EQ(split_Q4_into_T3(good, {{0, 1, U}}, wide), -2);
    EXPECT_EQ(split_Q4_into_T3(good, {{0, 1}}, wide), -2);
    EXPECT_EQ(split_Q4_into_T3(good, {{0, 1, 2, 3, 0}}, wide), -2);
    EXPECT_EQ(split_Q4_into_T3(good, quad, wide), -3);
    EXPECT_EQ(split_Q4_into_T3(good, {{0, 1, 2}}, wide), -3);
    EXPECT_EQ(columns(wide), (ids{{1, 2, 3, 4}}));
    dense2D<unsigned> kept_rows = support::without_columns<unsigned>(8);
    EXPECT_EQ(split_Q4_into_T3(good, quad, kept_rows), 1);
    EXPECT_EQ(kept_rows.rows, 3u);
}

TEST(SplitByQuality, DecidesAsTrianglesJudgedOneByOne)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        support::mesh plane = support::grid_mixed(9, 8, 2, seed);
        support::shuffle(plane, seed);
        if (seed % 4) support::jitter(plane, 0.2 * (seed % 4), seed);
        EXPECT_EQ(split(plane.coords, plane.connect), judged_one_by_one<2>(plane)) << seed;
        support::mesh space = support::lifted(plane, [](double x, double y) { return x * x - y; });
        support::jitter(space, 0.3, seed);
        EXPECT_EQ(split(space.coords, space.connect), judged_one_by_one<3>(space)) << seed;
    }
    for (const support::mesh& m : support::awkward_meshes(2))
        if (m.connect.rows == 4) {
            EXPECT_EQ(split(m.coords, m.connect), judged_one_by_one<2>(m)) << m.name;
        }
    for (const support::mesh& m : support::awkward_meshes(3))
        if (m.connect.rows == 4) {
            EXPECT_EQ(split(m.coords, m.connect), judged_one_by_one<3>(m)) << m.name;
        }
}

TEST(SplitByQuality, DecidesNearTiesAndAtAnyScaleAsTrianglesJudgedOneByOne)
{
    // One quadrilateral a call: squares, moved by less and less, so that the scores of both cuts
    // come as near as 1e-16; needles and caps; at scales where squares leave the range of single
    // and of double precision; far from the origin, where coordinates lose digits.
    std::mt19937 draw(21);
    std::uniform_real_distribution<double> number(-1, 1);
    const dense2D<unsigned> quad{{2, 0, 3, 1}};
    for (int k = 0; k < 10000; ++k) {
        const double scale = std::pow(10.0, 0.5 * (k % 121) - 30) * (k % 97 ? 1 : 1e150);
        const double amount = std::pow(10.0, -(k % 18));
        const double flat = k % 5 ? 1 : 1e-7;
        const double far = k % 7 ? 0 : 1e6;
        support::mesh m{"", dense2D<double>(2, 4), quad};
        support::mesh up{"", dense2D<double>(3, 4), quad};
        const double corners[4][2] = {{1, 0}, {0, 1}, {0, 0}, {1, 1}};
        for (unsigned j = 0; j < 4; ++j) {
            const double x = corners[j][0] + amount * number(draw);
            const double y = flat * (corners[j][1] + amount * number(draw));
            m.coords(0, j) = up.coords(0, j) = scale * (far + x);
            m.coords(1, j) = up.coords(1, j) = scale * (y - far);
            up.coords(2, j) = scale * amount * number(draw);
        }
        ASSERT_EQ(split(m.coords, quad), judged_one_by_one<2>(m)) << "draw " << k;
        ASSERT_EQ(split(up.coords, quad), judged_one_by_one<3>(up)) << "draw " << k;
    }
}

TEST(SplitByQuality, DecidesInSpaceWhereTheSquareOfAnAreaLeavesTheRangeOfSinglePrecision)
{
    std::mt19937 draw(23);
    std::uniform_real_distribution<double> number(-1, 1);
    const dense2D<unsigned> quad{{2, 0, 3, 1}};
    const double corners[4][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 0}, {1, 1, 0}};
    for (const double scale : {3e-12, 6e-12, 1e-11, 3e9, 6e9, 1e10})
        for (int k = 0; k < 500; ++k) {
            support::mesh m{"", dense2D<double>(3, 4), quad};
            for (unsigned j = 0; j < 4; ++j)
                for (unsigned i = 0; i < 3; ++i)
                    m.coords(i, j) = scale * (corners[j][i] + 0.8 * number(draw));
            ASSERT_EQ(split(m.coords, quad), judged_one_by_one<3>(m))
                << "scale " << scale << " draw " << k;
        }
}

TEST(SplitByQuality, DecidesWithInfiniteAndMissingNumbersAsTrianglesJudgedOneByOne)
{
    std::mt19937 draw(22);
    const double inf = std::numeric_limits<double>::infinity();
    const double values[] = {0,     -0.0,   1,    -1,   2,      1e-30,
                             1e200, -1e200, inf,  -inf, 1e-320, std::nan(""),
                             1e18,  -1e18,  1e38, 1e39, 5e-324, 1e-20};
    const dense2D<unsigned> quad{{0, 1, 2, 3}};
    for (int k = 0; k < 10000; ++k) {
        support::mesh m{"", dense2D<double>(2, 4), quad};
        support::mesh up{"", dense2D<double>(3, 4), quad};
        for (unsigned j = 0; j < 4; ++j) {
            for (unsigned i = 0; i < 2; ++i) m.coords(i, j) = values[draw() % 18];
            for (unsigned i = 0; i < 3; ++i) up.coords(i, j) = values[draw() % 18];
        }
        ASSERT_EQ(split(m.coords, quad), judged_one_by_one<2>(m)) << "draw " << k;
        ASSERT_EQ(split(up.coords, quad), judged_one_by_one<3>(up)) << "draw " << k;
    }
}

TEST(SplitByQuality, SharedSidesGiveTheScoresOfTheSingleTrianglesToTheLastBit)
{
    std::mt19937 draw(8);
    std::uniform_real_distribution<double> number(-1, 1);
    for (int k = 0; k < 2000; ++k) {
        using tessalo2d::vec2;
        using tessalo2d::vec3;
        vec3 p[4];
        // Every other draw is nearly flat, to reach both formulas of the area.
        for (vec3& v : p) v = {{number(draw), number(draw) * (k % 2 ? 1 : 1e-9), number(draw)}};
        const auto space = tessalo2d::score_by_quality(p[0], p[1], p[2], p[3]);
        EXPECT_EQ(space.first,
                  std::min(triangle_quality(p[0], p[1], p[2]), triangle_quality(p[2], p[3], p[0])));
        EXPECT_EQ(space.second,
                  std::min(triangle_quality(p[1], p[2], p[3]), triangle_quality(p[3], p[0], p[1])));
        const auto flat = [&](int i) { return vec2{{p[i][0], p[i][1]}}; };
        const auto plane = tessalo2d::score_by_quality(flat(0), flat(1), flat(2), flat(3));
        EXPECT_EQ(plane.first, std::min(triangle_quality(flat(0), flat(1), flat(2)),
                                        triangle_quality(flat(2), flat(3), flat(0))));
        EXPECT_EQ(plane.second, std::min(triangle_quality(flat(1), flat(2), flat(3)),
                                         triangle_quality(flat(3), flat(0), flat(1))));
    }
}

TEST(SplitByQuality, DoesNotDependOnWhereTheNodeListStarts)
{
    for (unsigned seed = 1; seed <= 10; ++seed) {
        support::mesh m = support::grid_Q4(7, 6);
        support::shuffle(m, seed);
        if (seed > 3) support::jitter(m, 0.4, seed);
        const ids expected = split(m.coords, m.connect);
        for (std::size_t e = 0; e < m.connect.cols; ++e) {
            unsigned* const c = m.connect.column(e);
            std::rotate(c, c + 1 + e % 3, c + 4);
        }
        EXPECT_EQ(split(m.coords, m.connect), expected) << "seed " << seed;
    }
}

TEST(SplitByQuality, KeepsAreaAndOrientation)
{
    for (unsigned seed = 1; seed <= 10; ++seed) {
        support::mesh m = support::grid_mixed(9, 8, 2, seed);
        support::jitter(m, 0.2, seed);
        const ids triangles = split(m.coords, m.connect);
        double before = 0;
        double after = 0;
        ASSERT_EQ(tessalo2d::area(m.coords, m.connect, before), 0);
        ASSERT_EQ(tessalo2d::area(m.coords, matrix(triangles), after), 0);
        EXPECT_NEAR(after, before, 1e-12 * before) << "seed " << seed;
        for (const column& t : triangles) EXPECT_GT(quality<2>(m.coords, t), 0.0) << seed;
    }
}

TEST(SplitByQuality, IsTheSameInAnyLayoutAndLeavesGapsAndInputsAlone)
{
    for (const std::size_t dimension : {2u, 3u}) {
        support::mesh m = support::grid_mixed(6, 5, dimension, 3);
        support::jitter(m, 0.3, 5);
        const dense2D<unsigned> held{{1, 2, 3}, {4, 5, 6}};
        dense2D<unsigned> dense = copy_of(held);
        const int count = split_Q4_into_T3(m.coords, m.connect, dense);
        for (const std::size_t gap : {0u, 1u, 5u}) {
            const support::placed<double> coords(m.coords, 4, gap);
            const support::placed<unsigned> connect(m.connect, 3, gap);
            support::placed<unsigned> result(held, 2, gap);
            EXPECT_EQ(split_Q4_into_T3(coords.view, connect.view, result.view), count);
            EXPECT_EQ(columns(result.view), columns(dense));
            EXPECT_EQ(columns(connect.view), columns(m.connect));
            EXPECT_EQ(support::bits(coords.view), support::bits(m.coords));
            coords.expect_gaps_untouched();
            connect.expect_gaps_untouched();
            result.expect_gaps_untouched();
        }
    }
}

TEST(SplitByQuality, RefusedStorageIsReportedAndLeavesTheResultAsItWas)
{
    const dense2D<double> coords{{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    for (const ids& all : {ids{{0, 1, 2, 3}, {1, 2, 3, U}}, ids{{0, 1, 2}, {1, 2, 3}}}) {
        const dense2D<unsigned> connect = matrix(all);
        const std::size_t refusals =
            support::each_refused_allocation([&](auto armed, const std::string& told) {
                dense2D<unsigned> result{{9, 9, 9}};
                int status = 0;
                const bool refused =
                    armed([&] { status = split_Q4_into_T3(coords, connect, result); });
                EXPECT_EQ(status, refused ? -199 : connect.rows == 4 ? 1 : 0) << told;
                const ids held{{9, 9, 9}};
                if (refused) {
                    EXPECT_EQ(columns(result), held) << told;
                }
            });
        EXPECT_GE(refusals, 1u);
    }
}
