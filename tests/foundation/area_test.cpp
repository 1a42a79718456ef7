#include "foundation/area.h"

#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"

#include <cmath>
#include <random>

using namespace vorel;
using support::mesh;
using support::placed;
using tessalo2d::area;
using tessalo2d::cross2;
using tessalo2d::cross3;
using tessalo2d::vec2;
using tessalo2d::vec3;

namespace {

using IDs = dense2D<unsigned>;
using reals = dense2D<double>;

constexpr unsigned U = UNSET_ID;
constexpr double INF = std::numeric_limits<double>::infinity();

double area_of(const reals& coords, const IDs& connect)
{
    double result = -1.0;
    EXPECT_EQ(area(coords, connect, result), 0);
    return result;
}

reals flat_in_space(const reals& plane)
{
    reals coords(3, plane.cols, 0.0);
    for (std::size_t j = 0; j < plane.cols; ++j)
        for (std::size_t i = 0; i < 2; ++i) coords(i, j) = plane(i, j);
    return coords;
}

// The measure written out once more, number by number, as the yardstick for every bit.

double plain_cross2(double ax, double ay, double bx, double by)
{
    const double dx = bx - ax;
    const double dy = by - ay;
    const double aa = ax * ax + ay * ay;
    const double bb = bx * bx + by * by;
    const double dd = dx * dx + dy * dy;
    if (dd >= std::min(bb, aa)) return ax * by - ay * bx;
    return ax * dy - ay * dx;
}

double plain_norm_of_cross(const double* a, const double* b)
{
    const double x = a[1] * b[2] - a[2] * b[1];
    const double y = a[2] * b[0] - a[0] * b[2];
    const double z = a[0] * b[1] - a[1] * b[0];
    return std::sqrt(x * x + y * y + z * z);
}

double plain_cross3(const double* a, const double* b)
{
    double d[3];
    for (int i = 0; i < 3; ++i) d[i] = b[i] - a[i];
    const double aa = a[0] * a[0] + a[1] * a[1] + a[2] * a[2];
    const double bb = b[0] * b[0] + b[1] * b[1] + b[2] * b[2];
    const double dd = d[0] * d[0] + d[1] * d[1] + d[2] * d[2];
    return dd >= std::min(bb, aa) ? plain_norm_of_cross(a, b) : plain_norm_of_cross(a, d);
}

double plain_column(const reals& coords, const IDs& connect, std::size_t e)
{
    double p[4][3] = {};
    const bool quad = connect.rows == 4 && connect(3, e) != U;
    for (std::size_t k = 0; k < (quad ? 4u : 3u); ++k)
        for (std::size_t i = 0; i < coords.rows; ++i) p[k][i] = coords(i, connect(k, e));
    const auto minus = [&](int k, int l, double* out) {
        for (int i = 0; i < 3; ++i) out[i] = p[k][i] - p[l][i];
    };
    double a[3];
    double b[3];
    double c[3];
    if (!quad) {
        minus(0, 2, a);
        minus(1, 2, b);
        return coords.rows == 2 ? plain_cross2(a[0], a[1], b[0], b[1]) : plain_cross3(a, b);
    }
    if (coords.rows == 2)
        return (p[3][1] - p[1][1]) * (p[2][0] - p[0][0]) -
               (p[2][1] - p[0][1]) * (p[3][0] - p[1][0]);
    minus(1, 0, a);
    minus(2, 0, b);
    minus(3, 0, c);
    const double s1 = plain_norm_of_cross(a, b) + plain_norm_of_cross(c, b);
    minus(0, 1, a);
    minus(3, 1, b);
    minus(2, 1, c);
    const double s2 = plain_norm_of_cross(a, b) + plain_norm_of_cross(c, b);
    return s1 > s2 ? s1 : s2;
}

double plain_area(const mesh& m)
{
    double sum = 0.0;
    for (std::size_t e = 0; e < m.connect.cols; ++e) sum += plain_column(m.coords, m.connect, e);
    return sum * 0.5;
}

void expect_every_bit(const mesh& m, const std::string& told)
{
    const double expected = plain_area(m);
    const double found = area_of(m.coords, m.connect);
    if (std::isnan(expected))
        EXPECT_TRUE(std::isnan(found)) << told;
    else
        EXPECT_EQ(support::bits(found), support::bits(expected)) << told << ": " << found;
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

TEST(Area, LargeMeshesAreSummedInColumnOrderToTheLastBit)
{
    // Counts around powers of two and odd ones: the sum goes on over whatever is worked on at once.
    for (const std::size_t dimension : {2u, 3u})
        for (mesh m :
             {support::grid_T3(40, 33, dimension), support::grid_mixed(40, 33, dimension, 5)}) {
            support::jitter(m, 0.4, 7);
            for (const std::size_t cols : {511u, 512u, 513u, 1023u, 1024u, 1025u, 1537u}) {
                ASSERT_LE(cols, m.connect.cols);
                mesh part = m;
                part.connect.cols = cols;
                expect_every_bit(part, part.name + ", " + std::to_string(cols));
                const placed<unsigned> connect(part.connect, 3, 2);
                const placed<double> coords(part.coords, 5, 1);
                EXPECT_EQ(support::bits(area_of(coords.view, connect.view)),
                          support::bits(plain_area(part)))
                    << part.name << ", " << cols;
            }
        }
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

TEST(Area, IsTheSumInColumnOrderToTheLastBit)
{
    for (unsigned seed = 1; seed <= 60; ++seed)
        for (const std::size_t dimension : {2u, 3u}) {
            std::mt19937 draw(seed);
            const auto nx = static_cast<unsigned>(1 + draw() % 9);
            const auto ny = static_cast<unsigned>(1 + draw() % 9);
            for (mesh m :
                 {support::grid_T3(nx, ny, dimension), support::grid_mixed(nx, ny, dimension, seed),
                  support::grid_Q4(nx, ny, dimension)}) {
                support::jitter(m, 0.7, seed);
                if (seed % 2) support::shuffle(m, seed);
                expect_every_bit(m, m.name + ", seed " + std::to_string(seed));
            }
        }
}

TEST(Area, NeedlesOfAllShapesToTheLastBit)
{
    // Coordinates of wildly different sizes put the shortest side anywhere.
    for (unsigned seed = 1; seed <= 200; ++seed) {
        std::mt19937 draw(seed);
        std::uniform_real_distribution<double> mantissa(-1.0, 1.0);
        const std::size_t dimension = 2 + draw() % 2;
        const std::size_t nodes = 40;
        mesh m{"needles", reals(dimension, nodes), IDs(3 + draw() % 2, 1 + draw() % 70)};
        for (std::size_t j = 0; j < nodes; ++j)
            for (std::size_t i = 0; i < dimension; ++i)
                m.coords(i, j) = std::ldexp(mantissa(draw), static_cast<int>(draw() % 40) - 20);
        for (std::size_t e = 0; e < m.connect.cols; ++e)
            for (std::size_t k = 0; k < m.connect.rows; ++k)
                m.connect(k, e) = k == 3 && draw() % 2 ? U : static_cast<unsigned>(draw() % nodes);
        expect_every_bit(m, "seed " + std::to_string(seed));
    }
}

TEST(Area, AwkwardMeshesToTheLastBit)
{
    for (const std::size_t dimension : {2u, 3u})
        for (const mesh& m : support::awkward_meshes(dimension)) expect_every_bit(m, m.name);
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
