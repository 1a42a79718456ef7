// The area of triangles, quadrilaterals and meshes, and what is refused.
#include "foundation/area.h"

#include "foundation/area_of.h"
#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"

#include <cmath>
#include <limits>
#include <random>

using namespace vorel;
using namespace area_tests;
using support::mesh;
using support::placed;
using tessalo2d::area;
using tessalo2d::cross2;
using tessalo2d::cross3;
using tessalo2d::vec2;
using tessalo2d::vec3;

namespace {

constexpr double INF = std::numeric_limits<double>::infinity();

reals flat_in_space(const reals& plane)
{
    reals coords(3, plane.cols, 0.0);
    for (std::size_t j = 0; j < plane.cols; ++j)
        for (std::size_t i = 0; i < 2; ++i) coords(i, j) = plane(i, j);
    return coords;
}

} // namespace

TEST(Area, EmptyConnectivityIsZeroWhateverTheCoordinates)
{
    for (std::size_t rows = 0; rows < 7; ++rows) {
        double result = 7.0;
        EXPECT_EQ(area(reals(rows, 2, 1.0), IDs(), result), 0);
        EXPECT_EQ(result, 0.0);
        result = 7.0;
        EXPECT_EQ(area(reals(rows, 2, 1.0), support::without_columns<unsigned>(5), result), 0);
        EXPECT_EQ(result, 0.0);
    }
}

TEST(Area, ClockwiseTriangleIsNegativeInThePlane)
{
    const reals coords{{0, 0}, {4, 0}, {0, 3}};
    EXPECT_EQ(area_of(coords, IDs{{0, 1, 2}}), 6.0);
    EXPECT_EQ(area_of(coords, IDs{{0, 2, 1}}), -6.0);
}

TEST(Area, SameTriangleInSpaceIsPositive)
{
    const reals coords{{0, 0, 0}, {4, 0, 0}, {0, 3, 0}};
    EXPECT_EQ(area_of(coords, IDs{{0, 1, 2}}), 6.0);
    EXPECT_EQ(area_of(coords, IDs{{0, 2, 1}}), 6.0);
}

TEST(Area, UnsetLastRowAddsTheTriangleOfTheOthers)
{
    const reals coords{{0, 0}, {2, 0}, {2, 1}, {0, 1}};
    EXPECT_EQ(area_of(coords, IDs{{0, 1, 2, U}}), 1.0);
    EXPECT_EQ(area_of(coords, IDs{{0, 1, 2, 3}}), 2.0);
    EXPECT_EQ(area_of(coords, IDs{{0, 1, 2, U}, {0, 1, 2, 3}}), 3.0);
    EXPECT_EQ(area_of(flat_in_space(coords), IDs{{0, 1, 2, U}, {0, 2, 1, U}}), 2.0);
}

TEST(Area, StatusesComeInTheirOrder)
{
    const struct {
        const char* what;
        std::size_t dimension;
        IDs connect;
        int status;
    } table[] = {
        {"nothing wrong", 2, IDs{{0, 1, 2}}, 0},
        {"four-row coordinates", 4, IDs{{0, 1, 2}}, -1},
        {"one-row coordinates", 1, IDs{{0, 1, 2}}, -1},
        {"no rows of coordinates at all", 0, IDs{{0, 1, 2}}, -1},
        {"five rows", 2, IDs{{0, 1, 2, 0, 1}}, -2},
        {"two rows", 3, IDs{{0, 1}}, -2},
        {"six rows", 2, IDs{{0, 1, 2, 0, 1, 2}}, -2},
        {"an ID too large", 2, IDs{{0, 1, 3}}, -2},
        {"an unset corner", 2, IDs{{0, U, 2, 1}}, -2},
        {"an unset corner among three", 2, IDs{{0, 1, U}}, -2},
        {"coordinates before rows", 5, IDs{{0, 1, 2, 0, 1}}, -1},
        {"coordinates before IDs", 5, IDs{{9, 9, 9}}, -1},
        {"emptiness before all", 5, IDs(), 0},
    };
    for (const auto& row : table) {
        double result = 7.0;
        EXPECT_EQ(area(reals(row.dimension, 3, 1.0), row.connect, result), row.status) << row.what;
        EXPECT_EQ(result, 0.0) << row.what;
    }
}

TEST(Area, WithoutNodesEveryElementIsInvalid)
{
    double result = 7.0;
    EXPECT_EQ(area(support::without_columns<double>(2), IDs{{0, 0, 0}}, result), -2);
    EXPECT_EQ(result, 0.0);
}

TEST(Area, WarpedQuadrilateralGetsTheLargerCut)
{
    // A rhombus of diagonals 4 and 2, folded along 0-2 so that nodes 1 and 3 lie h higher: the cut
    // along 0-2 gives two triangles of base 4 and height sqrt(1 + h^2), the cut along 1-3 two
    // triangles of base 2 and height sqrt(4 + h^2), which is less.
    for (const double h : {0.5, 1.0, 3.0}) {
        const reals kite{{-2, 0, 0}, {0, -1, h}, {2, 0, 0}, {0, 1, h}};
        const double along_02 = 4.0 * std::sqrt(1.0 + h * h);
        ASSERT_GT(along_02, 2.0 * std::sqrt(4.0 + h * h));
        EXPECT_DOUBLE_EQ(area_of(kite, IDs{{0, 1, 2, 3}}), along_02);
        EXPECT_DOUBLE_EQ(area_of(kite, IDs{{1, 2, 3, 0}}), along_02) << "as its second cut";
    }
}

TEST(Area, ConcaveQuadrilateralInThePlaneIsExact)
{
    // The dart (0,0) (4,0) (1,1) (0,4): half of |diagonals crossed| = 4.
    const reals coords{{0, 0}, {4, 0}, {1, 1}, {0, 4}};
    EXPECT_EQ(area_of(coords, IDs{{0, 1, 2, 3}}), 4.0);
    EXPECT_EQ(area_of(coords, IDs{{3, 2, 1, 0}}), -4.0);
    const reals bow_tie{{0, 0}, {1, 1}, {1, 0}, {0, 1}};
    EXPECT_EQ(area_of(bow_tie, IDs{{0, 1, 2, 3}}), 0.0);
}

TEST(Area, NeedleKeepsItsAreaByTheShorterSides)
{
    // The side from node 0 to node 1 is (0, 2^-40), so twice the area is 2^-40 (1 + 2^-30) exactly;
    // the product of the two long sides keeps its first bit only.
    const reals coords{
        {1.0 + 0x1p-30, 1.0 + 0x1p-25}, {1.0 + 0x1p-30, 1.0 + 0x1p-25 + 0x1p-40}, {0.0, 0.0}};
    const double expected = 0.5 * (0x1p-40 + 0x1p-70);
    for (const IDs& turned : {IDs{{0, 1, 2}}, IDs{{1, 2, 0}}, IDs{{2, 0, 1}}})
        EXPECT_EQ(area_of(coords, turned), expected);
}

TEST(Cross2, IsTwiceTheSignedArea)
{
    EXPECT_EQ(cross2(vec2{{3, 0}}, vec2{{0, 4}}), 12.0);
    EXPECT_EQ(cross2(vec2{{0, 4}}, vec2{{3, 0}}), -12.0);
    EXPECT_EQ(cross3(vec3{{3, 0, 0}}, vec3{{0, 4, 0}}), 12.0);
    EXPECT_EQ(cross3(vec3{{0, 4, 0}}, vec3{{3, 0, 0}}), 12.0);
}

TEST(Cross2, ATieGoesToTheFirstPair)
{
    // All three squares overflow to the same infinity. The first pair's product is finite; the
    // second pair's has lost the small component in the difference and overflows.
    const tessalo2d::vec2 a{{0x1p500, 0x1p580}};
    const tessalo2d::vec2 b{{0.0, 0x1p520}};
    EXPECT_EQ(tessalo2d::cross2(a, b), 0x1p1020);
    EXPECT_EQ(area_of(reals{{0x1p500, 0x1p580}, {0.0, 0x1p520}, {0.0, 0.0}}, IDs{{0, 1, 2}}),
              0x1p1019);
}

TEST(Cross2, NaNGoesThrough)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(std::isnan(cross2(vec2{{INF, 0}}, vec2{{INF, 1}})));
    EXPECT_TRUE(std::isnan(cross2(vec2{{1, nan}}, vec2{{0, 1}})));
    EXPECT_TRUE(std::isnan(cross3(vec3{{1, 0, 0}}, vec3{{0, nan, 0}})));
}

TEST(Area, GridsAreAsLargeAsTheyAre)
{
    for (unsigned nx : {1u, 3u, 8u})
        for (unsigned ny : {1u, 5u})
            for (const std::size_t dimension : {2u, 3u}) {
                const double expected = nx * ny;
                for (mesh m :
                     {support::grid_T3(nx, ny, dimension), support::grid_Q4(nx, ny, dimension),
                      support::grid_mixed(nx, ny, dimension)}) {
                    EXPECT_EQ(area_of(m.coords, m.connect), expected) << m.name;
                    support::shuffle(m, nx + ny);
                    EXPECT_EQ(area_of(m.coords, m.connect), expected) << m.name << ", shuffled";
                }
            }
}

TEST(Area, MovingInnerNodesKeepsTheAreaInThePlane)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        mesh m = support::grid_mixed(7, 6, 2, seed);
        std::mt19937 draw(seed);
        std::uniform_real_distribution<double> move(-0.3, 0.3);
        for (unsigned j = 1; j < 6; ++j)
            for (unsigned i = 1; i < 7; ++i)
                for (std::size_t k = 0; k < 2; ++k) m.coords(k, j * 8 + i) += move(draw);
        EXPECT_NEAR(area_of(m.coords, m.connect), 42.0, 1e-12) << "seed " << seed;
    }
}

TEST(Area, SlopesStretchTheArea)
{
    // The plane z = 2 x + y: each unit of the base counts sqrt(1 + 4 + 1).
    const mesh m =
        support::lifted(support::grid_T3(5, 4), [](double x, double y) { return 2.0 * x + y; });
    EXPECT_NEAR(area_of(m.coords, m.connect), 20.0 * std::sqrt(6.0), 1e-12);
}

TEST(Area, OneBadNodeAmongManySpoilsOnlyTheSum)
{
    mesh m = support::grid_T3(9, 9);
    m.coords(0, 55) = std::numeric_limits<double>::quiet_NaN();
    double result = 0.0;
    EXPECT_EQ(area(m.coords, m.connect, result), 0);
    EXPECT_TRUE(std::isnan(result));
}

TEST(Area, LayoutDoesNotMatterAndInputsStay)
{
    for (unsigned seed = 1; seed <= 8; ++seed)
        for (const std::size_t dimension : {2u, 3u})
            for (mesh m :
                 {support::grid_T3(6, 5, dimension), support::grid_mixed(6, 5, dimension, seed)}) {
                support::jitter(m, 0.3, seed);
                const double expected = area_of(m.coords, m.connect);
                const placed<double> coords(m.coords, seed, seed % 3);
                const placed<unsigned> connect(m.connect, 9 - seed, seed % 4);
                EXPECT_EQ(support::bits(area_of(coords.view, connect.view)),
                          support::bits(expected));
                EXPECT_EQ(support::bits(coords.view), support::bits(m.coords));
                EXPECT_EQ(support::columns(connect.view), support::columns(m.connect));
                coords.expect_gaps_untouched();
                connect.expect_gaps_untouched();
            }
}

TEST(Area, FindsABadIDWhereverItStands)
{
    for (const std::size_t rows : {3u, 4u}) {
        mesh m = rows == 3 ? support::grid_T3(20, 20) : support::grid_mixed(20, 20);
        const unsigned nodes = static_cast<unsigned>(m.coords.cols);
        for (std::size_t e = 0; e < m.connect.cols; ++e)
            for (std::size_t k = 0; k < rows; ++k)
                for (const unsigned bad : {nodes, U - 1, U}) {
                    if (k == 3 && bad == U) continue;
                    const unsigned good = m.connect(k, e);
                    m.connect(k, e) = bad;
                    double result = 7.0;
                    ASSERT_EQ(area(m.coords, m.connect, result), -2) << k << ", " << e;
                    ASSERT_EQ(result, 0.0);
                    m.connect(k, e) = good;
                }
    }
}

TEST(Area, NeverAllocates)
{
    const mesh m = support::grid_mixed(5, 5);
    const std::size_t refusals =
        support::each_refused_allocation([&](const auto& armed, const auto& told) {
            double result = 0.0;
            int status = -1;
            armed([&] { status = area(m.coords, m.connect, result); });
            EXPECT_EQ(status, 0) << told;
            EXPECT_EQ(result, 25.0) << told;
        });
    EXPECT_EQ(refusals, 0u);
}
