#include "metrics/interpolate_metric.h"

#include "metrics/dimensions.h"
#include "metrics/reference.h"

#include <gtest/gtest.h>

using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

using reference::real;

template <std::size_t D>
struct fixture {
    static constexpr std::size_t rows = D * (D + 1) / 2;
    using metric = symmetric_fixed<double, D>;

    explicit fixture(unsigned seed) : field(rows, 6, -5.0)
    {
        std::mt19937 draw(seed);
        for (std::size_t n = 0; n < 4; ++n) {
            node[n] = reference::random_metric<D>(draw, 100.0, static_cast<double>(n + 1));
            set(n, node[n]);
        }
    }

    /// Nodes 0 to 3 are columns 4, 1, 3, 0.
    std::size_t column(std::size_t n) const { return std::vector<std::size_t>{4, 1, 3, 0}[n]; }

    void set(std::size_t n, const metric& m)
    {
        node[n] = m;
        for (std::size_t k = 0; k < rows; ++k) field(k, column(n)) = m[k];
    }

    bool triangle(double u, double v, metric& m) const
    {
        return interpolate_metric_triangle(field, u, v, column(0), column(1), column(2), m);
    }
    bool quad(double xi, double eta, metric& m) const
    {
        return interpolate_metric_quad_columns(field, xi, eta, column(0), column(1), column(2),
                                               column(3), m);
    }

    metric node[4];
    dense2D<double> field;
};

template <std::size_t D>
void expect_pair(bool status, const symmetric_fixed<double, D>& m,
                 const symmetric_fixed<double, D>& m1, const symmetric_fixed<double, D>& m2,
                 double t)
{
    EXPECT_TRUE(status);
    symmetric_fixed<double, D> expected;
    ASSERT_TRUE(interpolate_metric_pair(t, m1, m2, expected));
    EXPECT_TRUE(reference::same_bits(m, expected));
}

template <class Dimension>
class InterpolateMetric : public testing::Test {
};

TYPED_TEST_SUITE(InterpolateMetric, dimensions, dimension_name);

} // namespace

TYPED_TEST(InterpolateMetric, TriangleCopiesTheNodesWhateverTheyHold)
{
    constexpr std::size_t D = TypeParam::D;
    fixture<D> f(1);
    auto bad = f.node[0];
    bad[0] = NAN;
    f.set(0, bad);
    const double near = 9e-13;
    const double at[3][3][2] = {{{1.0, 0.0}, {1.0 + near, near}, {1.0 - near, -near}},
                                {{0.0, 1.0}, {near, 1.0 - near}, {-near, 1.0}},
                                {{0.0, 0.0}, {near, near}, {-near, near}}};
    for (std::size_t n = 0; n < 3; ++n)
        for (const auto& x : at[n]) {
            symmetric_fixed<double, D> m = {};
            EXPECT_TRUE(f.triangle(x[0], x[1], m)) << n;
            EXPECT_TRUE(reference::same_bits(m, f.node[n])) << n << ": " << x[0] << ", " << x[1];
        }
}

TYPED_TEST(InterpolateMetric, TriangleEdgesAreThePairsOfTheirEnds)
{
    constexpr std::size_t D = TypeParam::D;
    const fixture<D> f(2);
    symmetric_fixed<double, D> m;
    bool status = f.triangle(0.0, 0.3, m);
    expect_pair(status, m, f.node[2], f.node[1], 0.3);
    status = f.triangle(0.3, 0.0, m);
    expect_pair(status, m, f.node[2], f.node[0], 0.3);
    status = f.triangle(0.75, 0.25, m);
    expect_pair(status, m, f.node[0], f.node[1], 0.25);
}

TYPED_TEST(InterpolateMetric, TriangleEdgesDoNotLookAtTheThirdNode)
{
    constexpr std::size_t D = TypeParam::D;
    for (std::size_t n = 0; n < 3; ++n) {
        fixture<D> f(3);
        f.set(n, {});
        symmetric_fixed<double, D> m;
        EXPECT_EQ(f.triangle(0.0, 0.3, m), n == 0);
        EXPECT_EQ(f.triangle(0.3, 0.0, m), n == 1);
        EXPECT_EQ(f.triangle(0.75, 0.25, m), n == 2);
        EXPECT_EQ(f.triangle(0.5, 0.5 - 1.3e-12, m), n == 2) << "within the tolerance of the edge";
        EXPECT_FALSE(f.triangle(0.5, 0.5 - 1.5e-12, m)) << "outside the tolerance of the edge";
    }
}

TYPED_TEST(InterpolateMetric, TriangleInsideIsNestedFromTheLongEdge)
{
    constexpr std::size_t D = TypeParam::D;
    for (unsigned seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(seed);
        const fixture<D> f(seed);
        std::mt19937 draw(seed);
        std::uniform_real_distribution<double> weight(0.05, 0.45);
        const double u = weight(draw);
        const double v = weight(draw);
        symmetric_fixed<double, D> m;
        ASSERT_TRUE(f.triangle(u, v, m));
        const real w = real(u) + v;
        const auto edge =
            reference::interpolated(reference::full(f.node[0]), reference::full(f.node[1]), v / w);
        const auto expected = reference::interpolated(reference::full(f.node[2]), edge, w);
        ASSERT_LT(reference::difference(reference::full(m), expected), 1e-10);
    }
}

TYPED_TEST(InterpolateMetric, TriangleInsideCopiesAnEndOfTheLongEdge)
{
    // v/w within the tolerance of 0 or 1 though neither u nor v is, far outside: the other end,
    // which is no metric, is not read. Sizes grow from the third node on, so that they bear it.
    constexpr std::size_t D = TypeParam::D;
    const auto fine = reference::diagonal_metric<D>(std::vector<real>(D, 4));
    const auto coarse = reference::diagonal_metric<D>(std::vector<real>(D, 1));
    fixture<D> f(4);
    f.set(2, fine);
    f.set(0, coarse);
    f.set(1, {});
    symmetric_fixed<double, D> m;
    bool status = f.triangle(8.0, 4e-12, m);
    expect_pair(status, m, fine, coarse, 8.0 + 4e-12);
    f.set(0, {});
    f.set(1, coarse);
    status = f.triangle(4e-12, 8.0, m);
    expect_pair(status, m, fine, coarse, 4e-12 + 8.0);
}

TYPED_TEST(InterpolateMetric, TriangleWithOppositeWeightsFailsInTheExtrapolation)
{
    constexpr std::size_t D = TypeParam::D;
    const fixture<D> f(5);
    symmetric_fixed<double, D> m;
    EXPECT_FALSE(f.triangle(0.5, -0.5, m));
    EXPECT_FALSE(f.triangle(0.5, -0.5 + 1e-13, m));
}

TYPED_TEST(InterpolateMetric, TriangleWithOppositeWeightsOfEqualMetricsGivesTheThirdNode)
{
    // Equal metrics bear any extrapolation, so that the vanishing sum of the weights is reached.
    constexpr std::size_t D = TypeParam::D;
    fixture<D> f(6);
    const auto one = reference::diagonal_metric<D>(std::vector<real>(D, 1));
    f.set(0, one);
    f.set(1, one);
    symmetric_fixed<double, D> m;
    EXPECT_TRUE(f.triangle(0.5, -0.5 + 5e-13, m));
    EXPECT_TRUE(reference::same_bits(m, f.node[2]));
}

TYPED_TEST(InterpolateMetric, TriangleOutputMayNotChangeTheField)
{
    constexpr std::size_t D = TypeParam::D;
    const fixture<D> f(7);
    dense2D<double> before;
    ASSERT_TRUE(before.copy(f.field));
    symmetric_fixed<double, D> m;
    ASSERT_TRUE(f.triangle(0.2, 0.3, m));
    ASSERT_TRUE(f.quad(0.2, 0.3, m));
    EXPECT_EQ(std::memcmp(before.column(0), f.field.column(0), 6 * f.rows * sizeof(double)), 0);
}

TYPED_TEST(InterpolateMetric, QuadCornersAreCopiedWhateverTheyHold)
{
    constexpr std::size_t D = TypeParam::D;
    const double corner[4][2] = {{-1.0, -1.0}, {1.0, -1.0}, {1.0, 1.0}, {-1.0, 1.0}};
    for (std::size_t n = 0; n < 4; ++n) {
        fixture<D> f(8);
        auto bad = f.node[n];
        bad[1] = NAN;
        f.set(n, bad);
        symmetric_fixed<double, D> m = {};
        EXPECT_TRUE(f.quad(corner[n][0], corner[n][1], m)) << n;
        EXPECT_TRUE(reference::same_bits(m, f.node[n])) << n;
    }
}

TYPED_TEST(InterpolateMetric, QuadEdgesAreThePairsOfTheirEnds)
{
    constexpr std::size_t D = TypeParam::D;
    const fixture<D> f(9);
    symmetric_fixed<double, D> m;
    bool status = f.quad(-0.5, -1.0, m);
    expect_pair(status, m, f.node[0], f.node[1], 0.25);
    status = f.quad(-1.0, -0.5, m);
    expect_pair(status, m, f.node[0], f.node[3], 0.25);
    status = f.quad(-0.5, 1.0, m);
    expect_pair(status, m, f.node[3], f.node[2], 0.25);
    status = f.quad(1.0, -0.5, m);
    expect_pair(status, m, f.node[1], f.node[2], 0.25);
}

TYPED_TEST(InterpolateMetric, QuadInsideRunsFirstAlongXiThenAlongEta)
{
    constexpr std::size_t D = TypeParam::D;
    for (unsigned seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(seed);
        const fixture<D> f(seed);
        std::mt19937 draw(seed);
        std::uniform_real_distribution<double> at(-0.9, 0.9);
        const double xi = at(draw);
        const double eta = at(draw);
        symmetric_fixed<double, D> m;
        ASSERT_TRUE(f.quad(xi, eta, m));
        const real s = (real(xi) + 1) / 2;
        const real t = (real(eta) + 1) / 2;
        const auto low =
            reference::interpolated(reference::full(f.node[0]), reference::full(f.node[1]), s);
        const auto high =
            reference::interpolated(reference::full(f.node[3]), reference::full(f.node[2]), s);
        ASSERT_LT(reference::difference(reference::full(m), reference::interpolated(low, high, t)),
                  1e-9);
    }
}

TYPED_TEST(InterpolateMetric, QuadInsideFailsWhenAnyMetricIsNone)
{
    constexpr std::size_t D = TypeParam::D;
    for (std::size_t n = 0; n < 4; ++n) {
        fixture<D> f(10);
        f.set(n, {});
        symmetric_fixed<double, D> m;
        EXPECT_FALSE(f.quad(0.25, -0.25, m)) << n;
    }
}

TYPED_TEST(InterpolateMetric, QuadOfFourMetricsIsThatOfTheColumns)
{
    constexpr std::size_t D = TypeParam::D;
    const fixture<D> f(11);
    symmetric_fixed<double, D> m;
    symmetric_fixed<double, D> n;
    ASSERT_TRUE(f.quad(0.3, -0.6, m));
    ASSERT_TRUE(interpolate_metric_quad(0.3, -0.6, f.node[0], f.node[1], f.node[2], f.node[3], n));
    EXPECT_TRUE(reference::same_bits(m, n));
}

TYPED_TEST(InterpolateMetric, AnswersForAnyBits)
{
    constexpr std::size_t D = TypeParam::D;
    std::mt19937_64 draw(5);
    const auto any = [&draw] {
        // Random bits, or one of the values that break things.
        const double special[] = {0.0, -0.0, 1.0, -1.0, 0.5, 1e308, 1e-308, 5e-324, NAN, INFINITY};
        const std::uint64_t bits = draw();
        double x;
        std::memcpy(&x, &bits, sizeof x);
        return bits % 2 == 0 ? special[(bits >> 8) % 10] : x;
    };
    int answered = 0;
    for (int trial = 0; trial < 20000; ++trial) {
        fixture<D> f(static_cast<unsigned>(trial));
        symmetric_fixed<double, D> m = f.node[trial % 4];
        m[draw() % m.size] = any();
        if (trial % 3 == 0)
            for (double& x : m.data) x = any();
        f.set(static_cast<std::size_t>(trial % 4), m);
        const double x = trial % 5 == 0 ? any() : 0.25;
        const double y = trial % 7 == 0 ? any() : 0.375;
        answered += f.triangle(x, y, m) + f.quad(x, y, m);
    }
    EXPECT_GT(answered, 0);
}
