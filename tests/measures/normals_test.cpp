// Normals at nodes by the rules of both passes; arguments, layouts and storage of both forms.
#include "measures/triangle_normal.h"
#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"

#include <cfloat>
#include <cmath>
#include <limits>
#include <numeric>

using namespace vorel;
using support::bits;
using support::columns;
using tessalo2d::normals;

namespace {

constexpr unsigned U = UNSET_ID;
constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
using vectors = std::vector<std::vector<double>>;

vectors at_nodes(const dense2D<double>& coords, const dense2D<unsigned>& connect, double exponent,
                 bool unit)
{
    dense2D<double> result{{5, 5, 5, 5}};
    EXPECT_EQ(normals(coords, connect, exponent, unit, result), 0);
    return columns(result);
}

double norm(const std::vector<double>& v)
{
    return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
}

/// Node 0 with a triangle of size (doubled area) 2 towards +z and one of size 1 towards +x.
const dense2D<double> CORNER{{0, 0, 0}, {2, 0, 0}, {0, 1, 0}, {0, 1, 0}, {0, 0, 1}, {9, 9, 9}};
const dense2D<unsigned> TWO_THEN_ONE{{0, 1, 2}, {0, 3, 4}};
const dense2D<unsigned> ONE_THEN_TWO{{0, 3, 4}, {0, 1, 2}};

/// The rules of both passes, node by node instead of element by element.
vectors gathered_by_node(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                         double exponent, bool unit)
{
    vectors all;
    for (unsigned node = 0; node < coords.cols; ++node) {
        double weight = 0;
        std::vector<double> sum{0, 0, 0};
        for (std::size_t e = 0; e < connect.cols; ++e) {
            const unsigned* const c = connect.column(e);
            if (c[0] == U || c[1] == U || c[2] == U) continue;
            const bool quad = connect.rows == 4 && c[3] != U;
            const auto raw = quad ? tessalo2d::quad_normal(coords.column(0), coords.ld, c)
                                  : tessalo2d::triangle_normal(coords.column(0), coords.ld, c);
            std::vector<double> n{raw[0], raw[1], raw[2]};
            double s = n[0] * n[0] + n[1] * n[1] + n[2] * n[2];
            if (s != 0 && s != 1) {
                s = std::sqrt(s);
                const double scale = 1 / s;
                for (double& x : n) x *= scale;
            }
            const double w =
                exponent > -DBL_MAX && exponent < DBL_MAX ? std::pow(s, exponent) : 1.0;
            for (int k = 0; k < (quad ? 4 : 3); ++k) {
                if (c[k] != node) continue;
                if ((exponent == DBL_MAX && s > weight) ||
                    (exponent == -DBL_MAX && (s < weight || weight == 0))) {
                    weight = s;
                    sum = n;
                } else {
                    weight += w;
                    for (std::size_t i = 0; i < 3; ++i) sum[i] += n[i] * w;
                }
            }
        }
        if (weight != 0 && exponent != DBL_MAX && exponent != -DBL_MAX) {
            const double q = sum[0] * sum[0] + sum[1] * sum[1] + sum[2] * sum[2];
            double scale = 1 / weight;
            if (unit) scale = q == 0 || q == 1 ? 1 : 1 / std::sqrt(q);
            for (double& x : sum) x *= scale;
        }
        all.push_back(sum);
    }
    return all;
}

} // namespace

TEST(NodeNormals, DoNotDependOnWhereTheNodesLie)
{
    // Neighbours come to lie far apart; the order of the elements, in which sums are made, stays.
    support::mesh m = support::grid_mixed(40, 25, 3);
    support::jitter(m, 0.4, 5);
    const auto nodes = static_cast<unsigned>(m.coords.cols);
    support::mesh far = m;
    far.coords = support::copy_of(m.coords);
    far.connect = support::copy_of(m.connect);
    const auto place = [&](unsigned id) { return id * 397 % nodes; };
    ASSERT_EQ(std::gcd(397u, nodes), 1u);
    for (unsigned id = 0; id < nodes; ++id)
        for (std::size_t i = 0; i < 3; ++i) far.coords(i, place(id)) = m.coords(i, id);
    for (std::size_t e = 0; e < m.connect.cols; ++e)
        for (std::size_t i = 0; i < 4; ++i)
            if (m.connect(i, e) != U) far.connect(i, e) = place(m.connect(i, e));
    for (const double exponent : {0.0, 1.0, -1.0, DBL_MAX, -DBL_MAX}) {
        const vectors here = at_nodes(m.coords, m.connect, exponent, true);
        const vectors there = at_nodes(far.coords, far.connect, exponent, true);
        for (unsigned id = 0; id < nodes; ++id)
            EXPECT_EQ(there[place(id)], here[id]) << "node " << id << ", exponent " << exponent;
    }
}

TEST(Normals, CheckTheirArgumentsInOrderAndEmptyTheResultFirst)
{
    const dense2D<double> good(3, 4, 0.0);
    const dense2D<unsigned> fine{{0, 1, 2}};
    struct row {
        dense2D<double> coords;
        dense2D<unsigned> connect;
        int status;
    };
    const row table[] = {
        {support::without_columns<double>(2), {{7, 8}}, 0},
        {dense2D<double>(2, 4, 0.0), support::without_columns<unsigned>(9), 0},
        {dense2D<double>(2, 4, 0.0), {{0, 9}}, -1},
        {dense2D<double>(4, 4, 0.0), fine, -1},
        {good, {{0, 1}}, -2},
        {good, {{0}}, -2},
        {good, {{0, 1, 4}}, -2},
        {good, {{0, 1, 2, 9}}, -2},
        {good, {{0, 1, 2, 3, 0}}, -2},
        {good, dense2D<unsigned>(6, 1, 0u), -2},
    };
    for (const row& r : table) {
        dense2D<double> at_element{{5, 5, 5, 5}};
        EXPECT_EQ(normals(r.coords, r.connect, true, at_element), r.status);
        EXPECT_EQ(at_element.rows, 0u);
        EXPECT_EQ(at_element.cols, 0u);
        dense2D<double> at_node{{5, 5, 5, 5}};
        EXPECT_EQ(normals(r.coords, r.connect, 1.0, true, at_node), r.status);
        EXPECT_EQ(at_node.rows, 0u);
        EXPECT_EQ(at_node.cols, 0u);
    }
}

TEST(NodeNormals, AreWeightedMeansOfUnitNormals)
{
    EXPECT_EQ(at_nodes(CORNER, TWO_THEN_ONE, 0.0, false)[0], (std::vector<double>{0.5, 0, 0.5}));
    EXPECT_EQ(at_nodes(CORNER, TWO_THEN_ONE, 1.0, false)[0],
              (std::vector<double>{1 * (1.0 / 3), 0, 2 * (1.0 / 3)}));
    EXPECT_EQ(at_nodes(CORNER, TWO_THEN_ONE, -1.0, false)[0],
              (std::vector<double>{1 * (1 / 1.5), 0, 0.5 * (1 / 1.5)}));
    EXPECT_EQ(at_nodes(CORNER, TWO_THEN_ONE, 2.0, false)[0],
              (std::vector<double>{1 * (1 / 5.0), 0, 4 * (1 / 5.0)}));
    // A node of one element has its unit normal, one of none has zero.
    EXPECT_EQ(at_nodes(CORNER, TWO_THEN_ONE, 2.0, false)[1], (std::vector<double>{0, 0, 1}));
    EXPECT_EQ(at_nodes(CORNER, TWO_THEN_ONE, 2.0, false)[5], (std::vector<double>{0, 0, 0}));
}

TEST(NodeNormals, AreScaledToLengthOneOnDemand)
{
    const std::vector<double> n = at_nodes(CORNER, TWO_THEN_ONE, 1.0, true)[0];
    EXPECT_DOUBLE_EQ(n[0], 1 / std::sqrt(5.0));
    EXPECT_DOUBLE_EQ(n[2], 2 / std::sqrt(5.0));
    for (unsigned seed = 1; seed <= 5; ++seed) {
        support::mesh m = support::grid_mixed(7, 6, 3, seed);
        support::jitter(m, 0.4, seed);
        for (const auto& v : at_nodes(m.coords, m.connect, 1.5, true))
            EXPECT_NEAR(norm(v), 1.0, 1e-15) << "seed " << seed;
    }
}

TEST(NodeNormals, OfOpposedElementsAreZero)
{
    for (const bool unit : {false, true})
        EXPECT_EQ(at_nodes(CORNER, {{0, 1, 2}, {0, 2, 1}}, 1.0, unit)[0],
                  (std::vector<double>{0, 0, 0}));
}

TEST(NodeNormals, AnElementWithoutAreaWeighsByThePowerOfZero)
{
    // Nodes 0, 2 and 3: 2 and 3 coincide.
    const dense2D<unsigned> connect{{0, 1, 2}, {0, 2, 3}};
    EXPECT_EQ(at_nodes(CORNER, connect, 1.0, false)[0], (std::vector<double>{0, 0, 1}));
    EXPECT_EQ(at_nodes(CORNER, connect, 0.0, false)[0], (std::vector<double>{0, 0, 0.5}));
    EXPECT_TRUE(std::isnan(at_nodes(CORNER, connect, -1.0, false)[0][2]));
}

TEST(NodeNormals, TheLargestExponentTakesTheLargestElementAndAddsSmallerOnes)
{
    EXPECT_EQ(at_nodes(CORNER, TWO_THEN_ONE, DBL_MAX, false)[0], (std::vector<double>{1, 0, 1}));
    EXPECT_EQ(at_nodes(CORNER, ONE_THEN_TWO, DBL_MAX, false)[0], (std::vector<double>{0, 0, 1}));
    // There is no scaling in this mode.
    EXPECT_EQ(at_nodes(CORNER, TWO_THEN_ONE, DBL_MAX, true)[0], (std::vector<double>{1, 0, 1}));
}

TEST(NodeNormals, TheLeastExponentTakesTheSmallestElementAndAddsLargerOnes)
{
    EXPECT_EQ(at_nodes(CORNER, TWO_THEN_ONE, -DBL_MAX, false)[0], (std::vector<double>{1, 0, 0}));
    EXPECT_EQ(at_nodes(CORNER, ONE_THEN_TWO, -DBL_MAX, true)[0], (std::vector<double>{1, 0, 1}));
}

TEST(NodeNormals, ComparisonsSeeTheMixOfSizesAndCounts)
{
    // Sizes 2, 1, 2.5 at node 0: the second adds 1 to the 2, so the third is not larger than 3.
    const dense2D<double> coords{{0, 0, 0}, {2, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 2.5, 0}};
    const dense2D<unsigned> connect{{0, 1, 2}, {0, 2, 3}, {0, 4, 3}};
    EXPECT_EQ(at_nodes(coords, connect, DBL_MAX, false)[0], (std::vector<double>{2, 0, 1}));
}

TEST(NodeNormals, AnExponentThatIsNotFiniteWeighsAllAlike)
{
    const vectors alike = at_nodes(CORNER, TWO_THEN_ONE, 0.0, false);
    for (const double exponent : {INF, -INF, NOT_A_NUMBER})
        EXPECT_EQ(at_nodes(CORNER, TWO_THEN_ONE, exponent, false), alike) << exponent;
}

TEST(NodeNormals, SkipAnElementWithoutACornerItNeeds)
{
    for (const double exponent : {0.0, DBL_MAX, -DBL_MAX}) {
        EXPECT_EQ(at_nodes(CORNER, {{0, 1, 2}, {U, 0, 3}, {0, U, 4}, {3, 4, U}}, exponent, false),
                  at_nodes(CORNER, {{0, 1, 2}}, exponent, false));
        EXPECT_EQ(at_nodes(CORNER, {{0, 1, 2, U}, {U, 0, 3, 4}}, exponent, false),
                  at_nodes(CORNER, {{0, 1, 2}}, exponent, false));
    }
}

TEST(NodeNormals, AreThoseOfTheRulesNodeByNodeToTheLastBit)
{
    const double exponents[] = {0.0,  -0.0,    1.0,      -1.0,  0.5, 2.0,
                                7.25, DBL_MAX, -DBL_MAX, 1e300, INF};
    for (unsigned seed = 1; seed <= 4; ++seed) {
        support::mesh m = seed % 2 ? support::grid_mixed(6, 5, 3, seed) : support::grid_T3(6, 5, 3);
        support::shuffle(m, seed);
        support::jitter(m, 0.5, seed);
        for (const double exponent : exponents)
            for (const bool unit : {false, true}) {
                dense2D<double> result;
                ASSERT_EQ(normals(m.coords, m.connect, exponent, unit, result), 0);
                EXPECT_EQ(bits(result), bits(support::matrix(
                                            gathered_by_node(m.coords, m.connect, exponent, unit))))
                    << "seed " << seed << ", exponent " << exponent;
            }
    }
    for (const support::mesh& m : support::awkward_meshes(3))
        for (const double exponent : exponents) {
            const vectors expected = gathered_by_node(m.coords, m.connect, exponent, true);
            const vectors found = at_nodes(m.coords, m.connect, exponent, true);
            for (std::size_t j = 0; j < found.size(); ++j)
                for (std::size_t i = 0; i < 3; ++i)
                    EXPECT_TRUE(found[j][i] == expected[j][i] ||
                                (std::isnan(found[j][i]) && std::isnan(expected[j][i])))
                        << m.name << ", node " << j << ", exponent " << exponent;
        }
}

TEST(NodeNormals, TheFirstPowerIsTheSizeItself)
{
    // What lets the weight of exponent 1 do without a call.
    double x = 5e-324;
    while (x < INF) {
        ASSERT_EQ(std::pow(x, 1.0), x);
        ASSERT_EQ(std::pow(x, 0.0), 1.0);
        x = std::nextafter(x * 1.37, INF);
    }
    EXPECT_TRUE(std::isnan(std::pow(NOT_A_NUMBER, 1.0)));
    EXPECT_EQ(std::pow(NOT_A_NUMBER, 0.0), 1.0);
}

TEST(Normals, AreTheSameInAnyLayoutAndLeaveGapsAndInputsAlone)
{
    support::mesh m = support::grid_mixed(6, 5, 3, 3);
    support::jitter(m, 0.3, 5);
    dense2D<double> at_element, at_node;
    ASSERT_EQ(normals(m.coords, m.connect, true, at_element), 0);
    ASSERT_EQ(normals(m.coords, m.connect, 0.7, false, at_node), 0);
    for (const std::size_t gap : {0u, 1u, 5u}) {
        const support::placed<double> coords(m.coords, 4, gap);
        const support::placed<unsigned> connect(m.connect, 3, gap);
        support::placed<double> result({{1, 2, 3}, {3, 4, 5}}, 7, gap);
        EXPECT_EQ(normals(coords.view, connect.view, true, result.view), 0);
        EXPECT_EQ(bits(result.view), bits(at_element));
        support::placed<double> nodal({{1, 2, 3}, {3, 4, 5}}, 7, gap);
        EXPECT_EQ(normals(coords.view, connect.view, 0.7, false, nodal.view), 0);
        EXPECT_EQ(bits(nodal.view), bits(at_node));
        EXPECT_EQ(columns(connect.view), columns(m.connect));
        EXPECT_EQ(bits(coords.view), bits(m.coords));
        coords.expect_gaps_untouched();
        connect.expect_gaps_untouched();
    }
}

TEST(Normals, OfCoordinatesThatAreTheResultFindNoNodes)
{
    dense2D<double> coords = support::copy_of(CORNER);
    EXPECT_EQ(normals(coords, TWO_THEN_ONE, true, coords), 0);
    EXPECT_EQ(coords.cols, 0u);
}

TEST(Normals, RefusedStorageIsReportedAndLeavesTheResultEmpty)
{
    const auto expect_refusals = [](auto call, std::size_t least) {
        const std::size_t refusals =
            support::each_refused_allocation([&](auto armed, const std::string& told) {
                dense2D<double> result{{9, 9, 9}};
                int status = 0;
                const bool refused = armed([&] { status = call(result); });
                EXPECT_EQ(status, refused ? -199 : 0) << told;
                if (refused) {
                    EXPECT_EQ(result.cols, 0u) << told;
                }
            });
        EXPECT_GE(refusals, least);
    };
    expect_refusals([](auto& result) { return normals(CORNER, TWO_THEN_ONE, true, result); }, 1);
    expect_refusals([](auto& result) { return normals(CORNER, TWO_THEN_ONE, 1.0, true, result); },
                    2);
}
