#include "foundation/vec.h"

#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"

#include <cmath>
#include <limits>

using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

/// x'Mx for a packed column.
double form(const dense2D<double>& metrics, std::size_t i, const vec3& x)
{
    const double* const m = metrics.column(i);
    return m[0] * x[0] * x[0] + 2 * m[1] * x[0] * x[1] + m[2] * x[1] * x[1] +
           2 * m[3] * x[0] * x[2] + 2 * m[4] * x[1] * x[2] + m[5] * x[2] * x[2];
}

constexpr vec3 X = {{1, 0, 0}};
constexpr vec3 Y = {{0, 1, 0}};
constexpr vec3 Z = {{0, 0, 1}};

/// A triangle with sides 3, 4 and 5 in the plane z = 0. Mean lengths: 3.5 at the right angle, 4 at
/// the end of the side of 3, 4.5 at the other.
const dense2D<double> RIGHT{{0, 0, 0}, {3, 0, 0}, {0, 4, 0}};
const dense2D<unsigned> ONE{{0, 1, 2}};
constexpr double MEANS[] = {3.5, 4.0, 4.5};

} // namespace

TEST(MetricsGenAniso3d, ZeroNormalSizeAsksForTheMeanEdgeLengthEverywhere)
{
    for (const double normal_size : {0.0, std::numeric_limits<double>::quiet_NaN()}) {
        dense2D<double> metrics;
        ASSERT_EQ(metrics_gen_aniso3d(RIGHT, ONE, normal_size, metrics), 0);
        ASSERT_EQ(metrics.rows, 6u);
        ASSERT_EQ(metrics.cols, 3u);
        for (std::size_t i = 0; i < 3; ++i)
            for (const vec3& x : {X, Y, Z, vec3{{0.6, 0, 0.8}}})
                EXPECT_NEAR(form(metrics, i, x), 1 / (MEANS[i] * MEANS[i]), 1e-16) << i;
    }
}

TEST(MetricsGenAniso3d, PositiveNormalSizeIsAbsolute)
{
    dense2D<double> metrics;
    ASSERT_EQ(metrics_gen_aniso3d(RIGHT, ONE, 0.5, metrics), 0);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(form(metrics, i, X), 1 / (MEANS[i] * MEANS[i]), 1e-16) << i;
        EXPECT_NEAR(form(metrics, i, Y), 1 / (MEANS[i] * MEANS[i]), 1e-16) << i;
        EXPECT_NEAR(form(metrics, i, Z), 4.0, 1e-15) << i;
    }
}

TEST(MetricsGenAniso3d, NegativeNormalSizeIsRelativeToTheMeanEdgeLength)
{
    dense2D<double> metrics;
    ASSERT_EQ(metrics_gen_aniso3d(RIGHT, ONE, -0.5, metrics), 0);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(form(metrics, i, X), 1 / (MEANS[i] * MEANS[i]), 1e-16) << i;
        EXPECT_NEAR(form(metrics, i, Z), 4 / (MEANS[i] * MEANS[i]), 1e-15) << i;
    }
}

TEST(MetricsGenAniso3d, ProposalsOfANodeAreIntersected)
{
    // Two faces at a right angle along the x axis: one asks for a small size along y, one along z.
    const dense2D<double> coords{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    const dense2D<unsigned> connect{{0, 1, 2}, {1, 0, 3}};
    dense2D<double> metrics;
    ASSERT_EQ(metrics_gen_aniso3d(coords, connect, 0.1, metrics), 0);
    // Edges at node 0, by triangle: (1, 1) and (1, 1): h = 1.
    EXPECT_NEAR(form(metrics, 0, X), 1.0, 1e-13);
    EXPECT_NEAR(form(metrics, 0, Y), 100.0, 1e-11);
    EXPECT_NEAR(form(metrics, 0, Z), 100.0, 1e-11);
    // Node 2 lies in the first face only.
    EXPECT_NEAR(form(metrics, 2, Z), 100.0, 1e-11);
    EXPECT_LT(form(metrics, 2, Y), 1.0);
}

TEST(MetricsGenAniso3d, AnEdgeOfTwoTrianglesCountsTwice)
{
    // At node 0 the shared edge of length 1 counts with both triangles, beside one of 2 and one of 4.
    const dense2D<double> coords{{0, 0, 0}, {1, 0, 0}, {0, 2, 0}, {0, -4, 0}};
    const dense2D<unsigned> connect{{0, 1, 2}, {1, 0, 3}};
    dense2D<double> metrics;
    ASSERT_EQ(metrics_gen_aniso3d(coords, connect, 0.0, metrics), 0);
    const double h = (1 + 2 + 1 + 4) / 4.0;
    EXPECT_NEAR(form(metrics, 0, X), 1 / (h * h), 1e-15);
}

TEST(MetricsGenAniso3d, ZeroLengthEdgesDoNotCount)
{
    // Nodes 0 and 1 coincide: their edge of length 0 is in no mean.
    const dense2D<double> coords{{0, 0, 0}, {0, 0, 0}, {2, 0, 0}};
    dense2D<double> metrics;
    ASSERT_EQ(metrics_gen_aniso3d(coords, ONE, 0.0, metrics), 0);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(form(metrics, i, Y), 0.25, 1e-16) << i;
}

TEST(MetricsGenAniso3d, DegenerateTriangleTakesTheFirstAxisAsItsNormal)
{
    // All nodes on the y axis: h is 1.5, 1, 1.5 and the normal eigenvalue lies along x.
    const dense2D<double> coords{{0, 0, 0}, {0, 1, 0}, {0, 2, 0}};
    dense2D<double> metrics;
    ASSERT_EQ(metrics_gen_aniso3d(coords, ONE, 0.1, metrics), 0);
    EXPECT_NEAR(form(metrics, 1, X), 100.0, 1e-12);
    EXPECT_NEAR(form(metrics, 1, Y), 1.0, 1e-15);
    EXPECT_NEAR(form(metrics, 1, Z), 1.0, 1e-15);
}

TEST(MetricsGenAniso3d, ATriangleEndsAtItsFirstNodeWithoutASize)
{
    // Node 1 is so far away that its edges are infinite. The triangle serves node 0, which has a
    // finite edge to node 2, and stops before it gets to node 2.
    const double FAR = 1e200;
    const dense2D<double> coords{{0, 0, 0}, {FAR, 0, 0}, {0, 2, 0}};
    dense2D<double> metrics;
    ASSERT_EQ(metrics_gen_aniso3d(coords, ONE, 0.0, metrics), 0);
    EXPECT_GT(form(metrics, 0, Y), 0.0);
    for (std::size_t k = 0; k < 6; ++k) {
        EXPECT_EQ(metrics(k, 1), 0.0) << "no edge that counts";
        EXPECT_EQ(metrics(k, 2), 0.0) << "behind the node that ended the triangle";
    }
}

TEST(MetricsGenAniso3d, AnExistingFieldIsRefinedAndNeverShrinks)
{
    dense2D<double> metrics(6, 5, 0.0);
    for (std::size_t i = 0; i < 5; ++i) metrics(0, i) = metrics(2, i) = metrics(5, i) = 9.0;
    metrics(5, 1) = 1e-4;
    ASSERT_EQ(metrics_gen_aniso3d(RIGHT, ONE, 10.0, metrics), 0);
    ASSERT_EQ(metrics.cols, 5u);
    EXPECT_EQ(form(metrics, 0, X), 9.0) << "asks for less than the proposal already";
    EXPECT_NEAR(form(metrics, 1, Z), 0.01, 1e-15);
    EXPECT_EQ(support::columns(metrics)[4], (std::vector<double>{9, 0, 9, 0, 0, 9}));
}

TEST(MetricsGenAniso3d, IdsBeyondTheFieldExtendItWithColumnsOfItsOwn)
{
    const dense2D<double> coords{{9, 9, 9}, {0, 0, 0}, {3, 0, 0}, {0, 4, 0}, {7, 7, 7}};
    const dense2D<unsigned> connect{{1, 2, 3}};
    dense2D<double> metrics(6, 1, 2.5);
    ASSERT_EQ(metrics_gen_aniso3d(coords, connect, 0.0, metrics), 0);
    ASSERT_EQ(metrics.cols, 4u) << "the largest ID plus 1, not the node count";
    EXPECT_EQ(support::columns(metrics)[0], std::vector<double>(6, 2.5));
    EXPECT_NEAR(form(metrics, 3, X), 1 / (4.5 * 4.5), 1e-16);
}

TEST(MetricsGenAniso3d, ColumnsWithoutRowsCountAsColumns)
{
    dense2D<double> metrics;
    metrics.cols = 5;
    ASSERT_EQ(metrics_gen_aniso3d(RIGHT, ONE, 0.0, metrics), 0);
    ASSERT_EQ(metrics.rows, 6u);
    ASSERT_EQ(metrics.cols, 5u);
    EXPECT_NEAR(form(metrics, 0, X), 1 / (3.5 * 3.5), 1e-16);
    EXPECT_EQ(support::columns(metrics)[3], std::vector<double>(6, 0.0));
    EXPECT_EQ(support::columns(metrics)[4], std::vector<double>(6, 0.0));
}

TEST(MetricsGenAniso3d, ANodeThatIsNotANumberEndsTheRefinementByLaterTriangles)
{
    const double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
    const dense2D<double> coords{{0, 0, 0}, {3, 0, 0}, {0, 4, 0}, {NOT_A_NUMBER, 0, 0},
                                 {1, 1, 1}, {2, 1, 1}};
    // The frame of a triangle is the hint for the next: once it is no number it stays so.
    dense2D<double> metrics(6, 6, 0.0);
    for (std::size_t i = 0; i < 6; ++i) metrics(0, i) = metrics(2, i) = metrics(5, i) = 1e-3;
    const dense2D<unsigned> spoiled_first{{3, 4, 5}, {0, 1, 2}, {2, 0, 1}};
    ASSERT_EQ(metrics_gen_aniso3d(coords, spoiled_first, 0.0, metrics), 0);
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(support::columns(metrics)[i], (std::vector<double>{1e-3, 0, 1e-3, 0, 0, 1e-3}))
            << i;
    const dense2D<unsigned> spoiled_last{{0, 1, 2}, {3, 4, 5}};
    ASSERT_EQ(metrics_gen_aniso3d(coords, spoiled_last, 0.0, metrics), 0);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(form(metrics, i, X), 1 / (MEANS[i] * MEANS[i]), 1e-15) << i;
}

TEST(MetricsGenAniso3d, WithoutTrianglesOneColumnIsMadeIfThereIsANode)
{
    const dense2D<unsigned> none = support::without_columns<unsigned>(3);
    dense2D<double> metrics;
    EXPECT_EQ(metrics_gen_aniso3d(RIGHT, none, 0.0, metrics), 0);
    EXPECT_EQ(support::columns(metrics),
              std::vector<std::vector<double>>(1, std::vector<double>(6, 0.0)));
    EXPECT_EQ(metrics_gen_aniso3d(support::without_columns<double>(3), none, 0.0, metrics), -2);
}

TEST(MetricsGenAniso3d, FurtherRowsCountInLengthsOnly)
{
    const dense2D<double> coords{{0, 0, 0, 0}, {3, 0, 0, 4}, {0, 4, 0, 3}};
    dense2D<double> metrics;
    ASSERT_EQ(metrics_gen_aniso3d(coords, ONE, 1.0, metrics), 0);
    // Both edges at node 0 have the length 5; the normal is still z.
    EXPECT_NEAR(form(metrics, 0, X), 1 / 25.0, 1e-16);
    EXPECT_NEAR(form(metrics, 0, Z), 1.0, 1e-15);
}

TEST(MetricsGenAniso3d, ChecksInOrderAndChangesNothing)
{
    const dense2D<double> plane(2, 3, 0.0);
    const dense2D<unsigned> mixed{{0, 1, 2, UNSET_ID}};
    const dense2D<unsigned> beyond{{0, 1, 3}};
    const dense2D<unsigned> unset{{0, 1, UNSET_ID}};
    const dense2D<double> three_rows(3, 2, 1.0);
    const dense2D<double> six_rows(6, 2, 1.0);
    const struct {
        const char* name;
        const dense2D<double>& coords;
        const dense2D<unsigned>& connect;
        const dense2D<double>& metrics;
        int status;
    } rows[] = {
        {"plane coordinates, all else bad", plane, mixed, three_rows, -1},
        {"four rows, metrics bad", RIGHT, mixed, three_rows, -2},
        {"an ID that names no node, metrics bad", RIGHT, beyond, three_rows, -2},
        {"an unset ID", RIGHT, unset, six_rows, -2},
        {"metrics of three rows", RIGHT, ONE, three_rows, -4},
        {"all well", RIGHT, ONE, six_rows, 0},
    };
    for (const auto& row : rows) {
        dense2D<double> metrics = support::copy_of(row.metrics);
        EXPECT_EQ(metrics_gen_aniso3d(row.coords, row.connect, 0.0, metrics), row.status)
            << row.name;
        if (row.status != 0) {
            EXPECT_EQ(support::columns(metrics), support::columns(row.metrics)) << row.name;
        }
    }
}

TEST(MetricsGenAniso3d, CoversWhatEachTriangleAsksFor)
{
    for (unsigned seed = 1; seed <= 3; ++seed) {
        support::mesh flat = support::grid_T3(5, 5);
        support::jitter(flat, 0.3, seed);
        const support::mesh m =
            support::lifted(flat, [](double x, double y) { return std::sin(x) * std::cos(y); });
        dense2D<double> metrics;
        ASSERT_EQ(metrics_gen_aniso3d(m.coords, m.connect, 0.05, metrics), 0);
        for (std::size_t e = 0; e < m.connect.cols; ++e) {
            const vec3 a = load<3>(m.coords.column(m.connect(0, e)));
            const vec3 b = load<3>(m.coords.column(m.connect(1, e)));
            const vec3 c = load<3>(m.coords.column(m.connect(2, e)));
            const vec3 n = normalized(cross(b - a, c - a));
            for (std::size_t k = 0; k < 3; ++k)
                EXPECT_GE(form(metrics, m.connect(k, e), n), 400.0 * (1 - 1e-9))
                    << "seed " << seed << " triangle " << e;
        }
    }
}

TEST(MetricsGenAniso3d, LayoutDoesNotMatter)
{
    const support::mesh m =
        support::lifted(support::grid_T3(3, 2), [](double x, double y) { return 0.3 * x * y; });
    dense2D<double> expected(6, 2, 0.0);
    ASSERT_EQ(metrics_gen_aniso3d(m.coords, m.connect, 0.2, expected), 0);
    support::placed<double> coords(m.coords, 3, 1);
    support::placed<unsigned> connect(m.connect, 2, 2);
    support::placed<double> metrics(dense2D<double>(6, 2, 0.0), 4, 3);
    ASSERT_EQ(metrics_gen_aniso3d(coords.view, connect.view, 0.2, metrics.view), 0);
    EXPECT_EQ(support::bits(metrics.view), support::bits(expected));
    coords.expect_gaps_untouched();
    connect.expect_gaps_untouched();
    metrics.expect_gaps_untouched();
}

TEST(MetricsGenAniso3d, RefusedStorageIsReportedAndChangesNothing)
{
    const std::size_t refusals =
        support::each_refused_allocation([&](auto armed, const auto& told) {
            dense2D<double> metrics(6, 1, 2.5);
            int status = 0;
            const bool refused =
                armed([&] { status = metrics_gen_aniso3d(RIGHT, ONE, 0.1, metrics); });
            EXPECT_EQ(status, refused ? -199 : 0) << told;
            if (refused) {
                EXPECT_EQ(support::columns(metrics),
                          std::vector<std::vector<double>>(1, std::vector<double>(6, 2.5)))
                    << told;
            }
        });
    EXPECT_EQ(refusals, 6u);
}

TEST(MetricsGenAniso3d, AwkwardMeshesAreSafe)
{
    for (const support::mesh& m : support::awkward_meshes(3)) {
        if (m.connect.rows != 3) continue;
        for (const double normal_size : {0.0, -1e-300, 1e300}) {
            dense2D<double> metrics;
            EXPECT_EQ(metrics_gen_aniso3d(m.coords, m.connect, normal_size, metrics), 0) << m.name;
        }
    }
}
