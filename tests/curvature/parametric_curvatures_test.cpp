#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"

#include <cmath>
#include <limits>
#include <random>

using namespace vorel;
using tessalo2d::parametric_curvatures;

namespace {

struct parametric_surface {
    dense2D<double> uvs;
    dense2D<unsigned> connect;
    dense2D<double> derivatives;
};

/// A node in the origin within a regular ring of six at distance 1.
parametric_surface regular_ring()
{
    parametric_surface s{dense2D<double>(2, 7, 0.0), dense2D<unsigned>(3, 6), {}};
    for (unsigned k = 0; k < 6; ++k) {
        const double angle = k * std::acos(-1.0) / 3;
        s.uvs(0, k + 1) = std::cos(angle);
        s.uvs(1, k + 1) = std::sin(angle);
        s.connect(0, k) = 0;
        s.connect(1, k) = k + 1;
        s.connect(2, k) = (k + 1) % 6 + 1;
    }
    return s;
}

/// Derivatives of (u, v, (p u^2 + 2 q u v + r v^2) / 2).
dense2D<double> quadric(const dense2D<double>& uvs, double p, double q, double r)
{
    dense2D<double> d(6, uvs.cols);
    for (std::size_t i = 0; i < uvs.cols; ++i) {
        const double u = uvs(0, i);
        const double v = uvs(1, i);
        const double column[] = {1, 0, p * u + q * v, 0, 1, q * u + r * v};
        std::copy(column, column + 6, d.column(i));
    }
    return d;
}

} // namespace

TEST(ParametricCurvatures, CentreOfARegularRingOnAQuadric)
{
    // At the origin n = (0, 0, 1), Suu = (0, 0, 1), Suv = 0, Svv = (0, 0, 3). First derivatives
    // that are linear make the trapezoidal line integrals exact.
    parametric_surface s = regular_ring();
    s.derivatives = quadric(s.uvs, 1, 0, 3);
    dense2D<double> forms;
    ASSERT_EQ(parametric_curvatures(s.uvs, s.connect, s.derivatives, forms), 0);
    ASSERT_EQ(forms.rows, 3u);
    ASSERT_EQ(forms.cols, 7u);
    EXPECT_NEAR(forms(0, 0), -1.0, 1e-14);
    EXPECT_NEAR(forms(1, 0), 0.0, 1e-14);
    EXPECT_NEAR(forms(2, 0), -3.0, 1e-14);
}

TEST(ParametricCurvatures, MixedDerivativeOfASaddle)
{
    parametric_surface s = regular_ring();
    s.derivatives = quadric(s.uvs, 0, 2, 0);
    dense2D<double> forms;
    ASSERT_EQ(parametric_curvatures(s.uvs, s.connect, s.derivatives, forms), 0);
    EXPECT_NEAR(forms(0, 0), 0.0, 1e-14);
    EXPECT_NEAR(forms(1, 0), -2.0, 1e-14);
    EXPECT_NEAR(forms(2, 0), 0.0, 1e-14);
}

TEST(ParametricCurvatures, LinearDerivativesAreExactOnAnyClosedRing)
{
    // With n frozen at the node, minus n.Suu and so on are exact there, whatever the triangles.
    for (unsigned seed = 1; seed <= 5; ++seed) {
        support::mesh m = support::grid_T3(6, 5);
        support::jitter(m, 0.25, seed);
        const double p = 0.3;
        const double q = -0.7;
        const double r = 1.9;
        const dense2D<double> d = quadric(m.coords, p, q, r);
        dense2D<double> forms;
        ASSERT_EQ(parametric_curvatures(m.coords, m.connect, d, forms), 0);
        for (unsigned j = 1; j < 5; ++j)
            for (unsigned i = 1; i < 6; ++i) {
                const std::size_t at = j * 7 + i;
                const double zu = d(2, at);
                const double zv = d(5, at);
                const double nz = 1 / std::sqrt(1 + zu * zu + zv * zv);
                EXPECT_NEAR(forms(0, at), -p * nz, 1e-12) << "seed " << seed << " node " << at;
                EXPECT_NEAR(forms(1, at), -q * nz, 1e-12) << "seed " << seed << " node " << at;
                EXPECT_NEAR(forms(2, at), -r * nz, 1e-12) << "seed " << seed << " node " << at;
            }
    }
}

TEST(ParametricCurvatures, OpenRingLeavesOutItsMissingPart)
{
    // One triangle (0,0), (1,0), (0,1) on z = u^2 / 2. At node 0, n = (0, 0, 1), W = 1 and the only
    // ring edge runs from (1, 0) to (0, 1): dv = -1, du = -1, D = -1, s = -1,
    // a = -(1 + 0) = -1, b = 0: L = -(-1 * -1) = -1, N = 0, M = -(1 + 0) / 2 = -0.5.
    const dense2D<double> uvs{{0, 0}, {1, 0}, {0, 1}};
    const dense2D<unsigned> connect{{0, 1, 2}};
    dense2D<double> forms;
    ASSERT_EQ(parametric_curvatures(uvs, connect, quadric(uvs, 1, 0, 0), forms), 0);
    EXPECT_EQ(forms(0, 0), -1.0);
    EXPECT_EQ(forms(1, 0), -0.5);
    EXPECT_EQ(forms(2, 0), 0.0);
}

TEST(ParametricCurvatures, PlaneIsZero)
{
    support::mesh m = support::grid_T3(4, 4);
    support::jitter(m, 0.2, 3);
    dense2D<double> d(6, m.coords.cols);
    const double column[] = {1, 2, 0.5, -1, 0.25, 3};
    for (std::size_t i = 0; i < d.cols; ++i) std::copy(column, column + 6, d.column(i));
    dense2D<double> forms;
    ASSERT_EQ(parametric_curvatures(m.coords, m.connect, d, forms), 0);
    for (std::size_t i = 0; i < forms.cols; ++i)
        for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(forms(k, i), 0.0, 1e-13) << i;
}

TEST(ParametricCurvatures, OrientationDoesNotMatter)
{
    support::mesh m = support::grid_T3(5, 4);
    support::jitter(m, 0.2, 4);
    const dense2D<double> d = quadric(m.coords, 1, 0.5, -2);
    dense2D<double> forms;
    dense2D<double> turned;
    ASSERT_EQ(parametric_curvatures(m.coords, m.connect, d, forms), 0);
    for (std::size_t e = 0; e < m.connect.cols; ++e) std::swap(m.connect(0, e), m.connect(2, e));
    ASSERT_EQ(parametric_curvatures(m.coords, m.connect, d, turned), 0);
    for (std::size_t i = 0; i < forms.cols; ++i)
        for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(forms(k, i), turned(k, i), 1e-12) << i;
}

TEST(ParametricCurvatures, NodesOfFlatTrianglesOrNoneAreZero)
{
    const double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
    const dense2D<double> uvs{{0, 0}, {1, 1}, {2, 2}, {9, 9}, {NOT_A_NUMBER, 0}};
    const dense2D<unsigned> connect{{0, 1, 2}, {0, 1, 4}};
    dense2D<double> forms;
    ASSERT_EQ(parametric_curvatures(uvs, connect, quadric(uvs, 1, 1, 1), forms), 0);
    EXPECT_EQ(support::columns(forms), std::vector<std::vector<double>>(5, {0, 0, 0}));
}

TEST(ParametricCurvatures, ZeroNormalContributesNothingButWeight)
{
    // Su and Sv vanish at node 0 only. Its own sums stay 0; the ring weight still turns the sums of
    // the other nodes into means.
    const dense2D<double> uvs{{0, 0}, {1, 0}, {0, 1}};
    const dense2D<unsigned> connect{{0, 1, 2}};
    dense2D<double> d = quadric(uvs, 1, 0, 0);
    std::fill(d.column(0), d.column(0) + 6, 0.0);
    dense2D<double> forms;
    ASSERT_EQ(parametric_curvatures(uvs, connect, d, forms), 0);
    for (std::size_t k = 0; k < 3; ++k) EXPECT_EQ(forms(k, 0), 0.0);
    EXPECT_NE(forms(0, 1), 0.0);
}

TEST(ParametricCurvatures, EmptyConnectivityEmptiesTheResultWhateverTheRest)
{
    dense2D<double> forms(5, 5, 1.0);
    EXPECT_EQ(parametric_curvatures(dense2D<double>(7, 2, 0.0), dense2D<unsigned>(),
                                    dense2D<double>(), forms),
              0);
    EXPECT_TRUE(forms.is_empty());
}

TEST(ParametricCurvatures, ChecksInOrderAndEmptiesTheResult)
{
    const dense2D<double> uvs{{0, 0}, {1, 0}, {0, 1}};
    const dense2D<double> space(3, 3, 0.0);
    const dense2D<unsigned> connect{{0, 1, 2}};
    const dense2D<unsigned> beyond{{0, 1, 3}};
    const dense2D<unsigned> four_rows{{0, 1, 2, UNSET_ID}};
    const dense2D<double> derivatives(6, 3, 1.0);
    const dense2D<double> five_rows(5, 3, 1.0);
    const dense2D<double> two_columns(6, 2, 1.0);
    const struct {
        const char* name;
        const dense2D<double>& uvs;
        const dense2D<unsigned>& connect;
        const dense2D<double>& derivatives;
        int status;
    } rows[] = {
        {"three rows of parameters, everything else bad", space, beyond, five_rows, -1},
        {"an ID that names no node, derivatives bad", uvs, beyond, five_rows, -2},
        {"mixed connectivity", uvs, four_rows, derivatives, -2},
        {"five rows of derivatives", uvs, connect, five_rows, -3},
        {"derivatives for two nodes", uvs, connect, two_columns, -3},
        {"all well", uvs, connect, derivatives, 0},
    };
    for (const auto& row : rows) {
        dense2D<double> forms(3, 2, 7.0);
        EXPECT_EQ(parametric_curvatures(row.uvs, row.connect, row.derivatives, forms), row.status)
            << row.name;
        EXPECT_EQ(forms.is_empty(), row.status != 0) << row.name;
    }
}

TEST(ParametricCurvatures, LayoutDoesNotMatter)
{
    support::mesh m = support::grid_T3(4, 3);
    support::jitter(m, 0.2, 5);
    const dense2D<double> d = quadric(m.coords, 1, 2, 3);
    dense2D<double> expected;
    ASSERT_EQ(parametric_curvatures(m.coords, m.connect, d, expected), 0);
    support::placed<double> uvs(m.coords, 3, 2);
    support::placed<unsigned> connect(m.connect, 1, 4);
    support::placed<double> derivatives(d, 5, 1);
    dense2D<double> forms;
    ASSERT_EQ(parametric_curvatures(uvs.view, connect.view, derivatives.view, forms), 0);
    EXPECT_EQ(support::bits(forms), support::bits(expected));
    uvs.expect_gaps_untouched();
    connect.expect_gaps_untouched();
    derivatives.expect_gaps_untouched();
    EXPECT_EQ(support::columns(connect.view), support::columns(m.connect));
}

TEST(ParametricCurvatures, RefusedStorageIsReportedAndLeavesAnEmptyResult)
{
    const parametric_surface s = regular_ring();
    const dense2D<double> d = quadric(s.uvs, 1, 0, 3);
    const std::size_t refusals =
        support::each_refused_allocation([&](auto armed, const auto& told) {
            dense2D<double> forms;
            int status = 0;
            const bool refused =
                armed([&] { status = parametric_curvatures(s.uvs, s.connect, d, forms); });
            EXPECT_EQ(status, refused ? -199 : 0) << told;
            EXPECT_EQ(forms.is_empty(), refused) << told;
        });
    EXPECT_GE(refusals, 2u);
}

TEST(ParametricCurvatures, AwkwardMeshesAreSafe)
{
    for (const support::mesh& m : support::awkward_meshes(2)) {
        if (m.connect.rows != 3) continue;
        dense2D<double> forms;
        EXPECT_EQ(parametric_curvatures(m.coords, m.connect, quadric(m.coords, 1, 2, 3), forms), 0)
            << m.name;
        EXPECT_EQ(forms.cols, m.coords.cols) << m.name;
    }
}
