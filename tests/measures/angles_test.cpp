#include "measures/corner_angles.h"
#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"

#include <cmath>
#include <limits>

using namespace vorel;
using support::elements;
using tessalo2d::angles;

namespace {

constexpr unsigned U = UNSET_ID;
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
const double PI = std::acos(-1.0);
using numbers = std::vector<double>;

struct outcome {
    int status;
    numbers min;
    numbers max;
};

/// Calls with outputs that hold something.
outcome measure(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                bool normalized = false)
{
    dense1D<double, 8> low{7, 7, 7};
    dense1D<double, 8> high{8};
    const int status = angles(coords, connect, normalized, low, high);
    return {status, elements(low), elements(high)};
}

/// The extremes by the rule for one angle after the other.
template <int D>
void one_by_one(const support::mesh& m, std::size_t e, bool normalized, double& low, double& high)
{
    const unsigned* const c = m.connect.column(e);
    const double* const p = m.coords.column(0);
    const bool quad = m.connect.rows == 4 && c[3] != U;
    for (int k = 0; k < (quad ? 4 : 3); ++k) {
        double angle = quad ? tessalo2d::quad_corner_angle<D>(p, m.coords.ld, c, k)
                            : tessalo2d::triangle_corner_angle<D>(p, m.coords.ld, c, k);
        if (normalized) angle *= quad ? 0.6366197723675814 : 0.9549296585513721;
        if (k == 0) low = high = angle;
        if (!(angle >= low)) low = angle;
        if (!(high >= angle)) high = angle;
    }
}

void expect_as_one_by_one(const support::mesh& m)
{
    for (const bool normalized : {false, true}) {
        const outcome o = measure(m.coords, m.connect, normalized);
        ASSERT_EQ(o.status, 0) << m.name;
        for (std::size_t e = 0; e < m.connect.cols; ++e) {
            double low = 0;
            double high = 0;
            if (m.coords.rows == 2)
                one_by_one<2>(m, e, normalized, low, high);
            else
                one_by_one<3>(m, e, normalized, low, high);
            const bool same_low = o.min[e] == low || (std::isnan(o.min[e]) && std::isnan(low));
            const bool same_high = o.max[e] == high || (std::isnan(o.max[e]) && std::isnan(high));
            EXPECT_TRUE(same_low && same_high) << m.name << ", element " << e;
        }
    }
}

const dense2D<double> SQUARE{{0, 0}, {1, 0}, {1, 1}, {0, 1}};

} // namespace

TEST(Angles, AnEmptyMeshEmptiesTheOutputsWhateverTheCoordinates)
{
    const outcome o = measure(dense2D<double>(5, 1, 0.0), support::without_columns<unsigned>(7));
    EXPECT_EQ(o.status, 0);
    EXPECT_EQ(o.min, numbers{});
    EXPECT_EQ(o.max, numbers{});
}

TEST(Angles, ChecksItsArgumentsInOrder)
{
    const dense2D<double> bad(4, 4, 0.0);
    EXPECT_EQ(measure(bad, {{0, 1}}).status, -1);
    EXPECT_EQ(measure(dense2D<double>(1, 4, 0.0), {{0, 1, 9}}).status, -1);
    EXPECT_EQ(measure(bad, {{0, 1}}).min, numbers{});
    for (const std::size_t rows : {1u, 2u, 5u, 6u}) {
        const outcome o = measure(SQUARE, dense2D<unsigned>(rows, 2, 99u));
        EXPECT_EQ(o.status, -2) << rows;
        EXPECT_EQ(o.min, numbers{});
        EXPECT_EQ(o.max, numbers{});
    }
}

TEST(Angles, AfterABadIDTheOutputsAreSizedAndZero)
{
    for (const dense2D<unsigned>& connect :
         {dense2D<unsigned>{{0, 1, 2}, {0, 1, 4}}, dense2D<unsigned>{{0, 1, 2}, {0, 1, U}},
          dense2D<unsigned>{{0, 1, 2, 3}, {0, 1, 2, 4}},
          dense2D<unsigned>{{0, 1, 2, U}, {0, U, 2, 3}}}) {
        const outcome o = measure(SQUARE, connect);
        EXPECT_EQ(o.status, -2);
        EXPECT_EQ(o.min, (numbers{0, 0}));
        EXPECT_EQ(o.max, (numbers{0, 0}));
    }
}

TEST(Angles, OfAnEquilateralTriangleAndOfASquareAreOneNormalized)
{
    const outcome o = measure({{0, 0}, {1, 0}, {0.5, std::sqrt(3.0) / 2}}, {{0, 1, 2}}, true);
    EXPECT_EQ(o.status, 0);
    EXPECT_NEAR(o.min[0], 1.0, 1e-15);
    EXPECT_NEAR(o.max[0], 1.0, 1e-15);
    const outcome s = measure(SQUARE, {{0, 1, 2, 3}}, true);
    EXPECT_DOUBLE_EQ(s.min[0], 1.0);
    EXPECT_DOUBLE_EQ(s.max[0], 1.0);
}

TEST(Angles, EachElementIsScaledByItsOwnKind)
{
    const dense2D<unsigned> connect{{0, 1, 2, U}, {0, 1, 2, 3}};
    const outcome scaled = measure(SQUARE, connect, true);
    EXPECT_DOUBLE_EQ(scaled.max[0], 1.5);
    EXPECT_DOUBLE_EQ(scaled.min[0], 0.75);
    EXPECT_DOUBLE_EQ(scaled.max[1], 1.0);
    const outcome plain = measure(SQUARE, connect);
    EXPECT_DOUBLE_EQ(plain.max[0], PI / 2);
    EXPECT_DOUBLE_EQ(plain.min[0], PI / 4);
    EXPECT_DOUBLE_EQ(plain.max[1], PI / 2);
}

TEST(Angles, OfAClockwiseTriangleAreNegativeInThePlaneAndPositiveInSpace)
{
    const double long_leg = std::sqrt(3.0);
    const outcome plane = measure({{0, 0}, {0, 1}, {long_leg, 0}}, {{0, 1, 2}});
    EXPECT_DOUBLE_EQ(plane.min[0], -PI / 2);
    EXPECT_DOUBLE_EQ(plane.max[0], -PI / 6);
    const outcome space = measure({{0, 0, 0}, {0, 1, 0}, {long_leg, 0, 0}}, {{0, 1, 2}});
    EXPECT_DOUBLE_EQ(space.min[0], PI / 6);
    EXPECT_DOUBLE_EQ(space.max[0], PI / 2);
}

TEST(Angles, OfAPointAreZero)
{
    const outcome o = measure({{3, 4}, {3, 4}}, {{0, 1, 1}, {0, 0, 0}});
    EXPECT_EQ(o.min, (numbers{0, 0}));
    EXPECT_EQ(o.max, (numbers{0, 0}));
}

TEST(Angles, AReflexCornerIsNegativeInThePlaneAndBelowPiInSpace)
{
    const outcome plane = measure({{0, 0}, {4, 1}, {1, 1}, {1, 4}}, {{0, 1, 2, 3}});
    EXPECT_DOUBLE_EQ(plane.min[0], -PI / 2);
    const outcome space = measure({{0, 0, 2}, {4, 1, 2}, {1, 1, 2}, {1, 4, 2}}, {{0, 1, 2, 3}});
    EXPECT_DOUBLE_EQ(space.max[0], PI / 2);
    EXPECT_GT(space.min[0], 0.0);
}

TEST(Angles, ANotANumberIsReplacedByTheNextAngle)
{
    // An infinite leg spoils the corner that it leads to but not the one at which it is absent.
    const double inf = std::numeric_limits<double>::infinity();
    support::mesh m{"infinite leg", {{0, 0}, {1, 0}, {1, 1}, {inf, 1}}, {{0, 1, 2, 3}}};
    expect_as_one_by_one(m);
    m.connect = {{3, 0, 1, 2}};
    expect_as_one_by_one(m);
    // Only corner 1 does not see node 3: it comes second and is replaced by the NaN behind it.
    const outcome o = measure({{0, 0}, {1, 0}, {1, 1}, {0, NOT_A_NUMBER}}, {{0, 1, 2, 3}});
    EXPECT_TRUE(std::isnan(o.min[0]));
    EXPECT_TRUE(std::isnan(o.max[0]));
    // Here it comes last and replaces the NaN before it.
    const outcome last = measure({{0, 0}, {1, 0}, {1, 1}, {0, NOT_A_NUMBER}}, {{2, 3, 0, 1}});
    EXPECT_DOUBLE_EQ(last.min[0], PI / 2);
    EXPECT_DOUBLE_EQ(last.max[0], PI / 2);
}

TEST(Angles, AreThoseOfEachCornerOneByOne)
{
    for (unsigned seed = 1; seed <= 12; ++seed) {
        // Up to some blocks of elements, and none of a whole number of blocks.
        support::mesh m =
            seed % 3 ? support::grid_mixed(seed, 2 * seed + 1, 2, seed) : support::grid_T3(seed, 9);
        support::shuffle(m, seed);
        support::jitter(m, 0.6, seed);
        m.name += ", seed " + std::to_string(seed);
        expect_as_one_by_one(m);
        support::mesh up = support::lifted(m, [](double x, double y) { return x * y - x; });
        expect_as_one_by_one(up);
    }
    for (const std::size_t dimension : {2u, 3u})
        for (const support::mesh& m : support::awkward_meshes(dimension)) expect_as_one_by_one(m);
}

TEST(Angles, AddUpToPiInATriangleAndToTwicePiInAConvexQuadrilateral)
{
    support::mesh m = support::grid_T3(9, 9);
    support::jitter(m, 0.2, 2);
    const outcome o = measure(m.coords, m.connect);
    for (std::size_t e = 0; e < m.connect.cols; ++e) {
        double three[3];
        tessalo2d::triangle_corner_angles<2>(m.coords.column(0), 2, m.connect.column(e), false,
                                             three);
        EXPECT_NEAR(three[0] + three[1] + three[2], PI, 1e-14);
        // The middle one is what the two outputs leave of pi.
        EXPECT_LE(o.min[e], PI - o.min[e] - o.max[e] + 1e-14);
        EXPECT_GE(o.max[e], PI - o.min[e] - o.max[e] - 1e-14);
    }
    support::mesh q = support::grid_Q4(9, 9);
    support::jitter(q, 0.2, 3);
    for (std::size_t e = 0; e < q.connect.cols; ++e) {
        double four[4];
        tessalo2d::quad_corner_angles<2>(q.coords.column(0), 2, q.connect.column(e), false, four);
        EXPECT_NEAR(four[0] + four[1] + four[2] + four[3], 2 * PI, 1e-14);
    }
}

TEST(Angles, InSpaceAtHeightZeroAreThoseOfThePlaneWithoutSign)
{
    support::mesh m = support::grid_mixed(8, 8, 2, 6);
    support::jitter(m, 0.2, 6);
    const support::mesh up = support::lifted(m, [](double, double) { return 0.0; });
    const outcome plane = measure(m.coords, m.connect);
    const outcome space = measure(up.coords, up.connect);
    EXPECT_EQ(plane.min, space.min);
    EXPECT_EQ(plane.max, space.max);
}

TEST(Angles, AreTheSameInAnyLayoutAndLeaveGapsAndInputsAlone)
{
    for (const std::size_t dimension : {2u, 3u}) {
        support::mesh m = support::grid_mixed(6, 5, dimension, 3);
        support::jitter(m, 0.3, 5);
        const outcome dense = measure(m.coords, m.connect, true);
        for (const std::size_t gap : {0u, 1u, 5u}) {
            const support::placed<double> coords(m.coords, 4, gap);
            const support::placed<unsigned> connect(m.connect, 3, gap);
            dense1D<double, 8> low = support::placed_run<double>({1, 2}, gap);
            dense1D<double, 8> high = support::placed_run<double>({1, 2, 3}, 2 * gap);
            EXPECT_EQ(angles(coords.view, connect.view, true, low, high), 0);
            EXPECT_EQ(elements(low), dense.min);
            EXPECT_EQ(elements(high), dense.max);
            EXPECT_EQ(support::columns(connect.view), support::columns(m.connect));
            EXPECT_EQ(support::bits(coords.view), support::bits(m.coords));
            coords.expect_gaps_untouched();
            connect.expect_gaps_untouched();
        }
    }
}

TEST(Angles, RefusedStorageIsReportedAndLeavesBothOutputsEmpty)
{
    const dense2D<unsigned> connect{{0, 1, 2, 3}};
    const std::size_t refusals =
        support::each_refused_allocation([&](auto armed, const std::string& told) {
            dense1D<double, 8> low, high;
            int status = 0;
            const bool refused = armed([&] { status = angles(SQUARE, connect, false, low, high); });
            EXPECT_EQ(status, refused ? -199 : 0) << told;
            EXPECT_EQ(low.size, refused ? 0u : 1u) << told;
            EXPECT_EQ(high.size, refused ? 0u : 1u) << told;
        });
    EXPECT_GE(refusals, 2u);
}
