// Circumcenters against the procedure with its branches, and the places where these branch.
#include "measures/circle_through.h"

#include <cfloat>
#include <cmath>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

using namespace vorel;
using namespace tessalo2d;
using support::circle;
using support::circle_through;
using support::point;

namespace {

point minus(const point& a, const point& b)
{
    point d;
    for (std::size_t i = 0; i < a.size(); ++i) d.push_back(a[i] - b[i]);
    return d;
}

double product(const point& a, const point& b)
{
    double sum = a[0] * b[0];
    for (std::size_t i = 1; i < a.size(); ++i) sum += a[i] * b[i];
    return sum;
}

/// From the middle of the longest side, along its normal.
circle plane_procedure(const point& p0, const point& p1, const point& p2)
{
    const point* apex = &p0;
    const point* from = &p1;
    const point* to = &p2;
    point e = minus(p2, p1);
    if (product(minus(p0, p2), minus(p0, p2)) > product(e, e)) {
        e = minus(p0, p2);
        apex = &p1;
        from = &p2;
        to = &p0;
    }
    if (product(minus(p1, p0), minus(p1, p0)) > product(e, e)) {
        e = minus(p1, p0);
        apex = &p2;
        from = &p0;
        to = &p1;
    }
    const point middle{0.5 * ((*from)[0] + (*to)[0]), 0.5 * ((*from)[1] + (*to)[1])};
    const point d = minus(*apex, middle);
    const double c = e[0] * d[1] - e[1] * d[0];
    const double h = product(e, e) * 0.25;
    const double dd = product(d, d);
    const double g = dd - h;
    if (c * c > dd * 1e-24 * h) {
        const double s = g / c;
        const double radius2 = (1.0 + s * s) * h;
        if (s == 0.0) return {middle, radius2};
        return {{middle[0] + s * 0.5 * -e[1], middle[1] + s * 0.5 * e[0]}, radius2};
    }
    if (std::fabs(g) > h * 1e-12) return {middle, DBL_MAX};
    return {middle, h};
}

/// From the system of two sides, solved and improved twice at most.
circle space_procedure(const point& A, const point& B, const point& C)
{
    const double ee = product(minus(B, A), minus(B, A));
    point origin = C;
    point u = minus(A, C);
    point w = minus(B, C);
    if (ee < product(u, u) && ee < product(w, w)) {
        origin = A;
        u = minus(C, A);
        w = minus(B, A);
    }
    const double a = product(u, u);
    const double b = product(u, w);
    const double c = product(w, w);
    const double det = a * c - b * b;
    if (!(det > a * 1e-12 * c)) return {C, DBL_MAX};
    const double inverse = 1.0 / det;
    double x = (c * a - b * c) * inverse;
    double y = (a * c - b * a) * inverse;
    for (int pass = 0; pass < 2; ++pass) {
        const double f = a - (y * b + x * a);
        const double g = c - (y * c + x * b);
        const double dx = (f * c - g * b) * inverse;
        const double dy = (g * a - f * b) * inverse;
        x += dx;
        y += dy;
        if (std::fabs(dx) > std::fabs(x) * 1e-12) continue;
        if (std::fabs(dy) > std::fabs(y) * 1e-12) continue;
        break;
    }
    point r;
    for (const double component : u) r.push_back(x * 0.5 * component);
    if (y * 0.5 != 0.0)
        for (std::size_t i = 0; i < 3; ++i) r[i] += y * 0.5 * w[i];
    return {{origin[0] + r[0], origin[1] + r[1], origin[2] + r[2]}, product(r, r)};
}

/// Equal bits; one NaN is as good as another.
bool same(double a, double b)
{
    return support::bits(a) == support::bits(b) || (std::isnan(a) && std::isnan(b));
}

/// Draws coordinates of one kind each, among them those at which the procedure branches.
class coordinate_kinds {
public:
    static constexpr int COUNT = 6;

    explicit coordinate_kinds(unsigned seed) : draw(seed) {}

    double next(int kind, std::size_t row)
    {
        switch (kind) {
        case 0: // a lattice: right angles, equal sides, corners at one place
            return below(4);
        case 1: // anywhere
            return below(2001) / 1000.0 - 1.0;
        case 2: // a lattice that is a little off
            return below(3) + std::ldexp(below(9) - 4.0, -20 - static_cast<int>(draw() % 30));
        case 3: // near the first axis
            return (row == 0 ? below(5) : 0.0) +
                   (draw() % 2 ? std::ldexp(1.0 - 2.0 * below(2), -15 - below_int(40)) : 0.0);
        case 4: // exponents whose products overflow and vanish
            return std::ldexp(below(2001) - 1000.0, below_int(2000) - 1000);
        default: {
            constexpr double ODD[] = {0.0,     -0.0,   HUGE_VAL, -HUGE_VAL, NAN, DBL_MAX,
                                      DBL_MIN, 5e-324, 1.0,      2.0,       3.0, -1.0};
            return ODD[draw() % 12];
        }
        }
    }

    unsigned node(unsigned nodes) { return static_cast<unsigned>(draw() % nodes); }

private:
    int below_int(unsigned n) { return static_cast<int>(draw() % n); }
    double below(unsigned n) { return static_cast<double>(draw() % n); }

    std::mt19937 draw;
};

} // namespace

TEST(CircumcentersProcedure, BitsOfTheBranchingProcedure)
{
    for (unsigned seed = 0; seed < 600; ++seed) {
        const std::size_t rows = 2 + seed % 2;
        const int kind = static_cast<int>(seed / 2) % coordinate_kinds::COUNT;
        SCOPED_TRACE("seed " + std::to_string(seed) + ", kind " + std::to_string(kind));
        coordinate_kinds kinds(seed);
        dense2D<double> coords(rows, 30);
        for (std::size_t j = 0; j < coords.cols; ++j)
            for (std::size_t i = 0; i < rows; ++i) coords(i, j) = kinds.next(kind, i);
        dense2D<unsigned> connect(3, 1 + kinds.node(150));
        for (std::size_t e = 0; e < connect.cols; ++e)
            for (std::size_t i = 0; i < 3; ++i) connect(i, e) = kinds.node(30);
        dense2D<double> centers;
        ASSERT_EQ(circumcenters(coords, connect, centers), 0);
        const auto points = support::columns(coords);
        for (std::size_t e = 0; e < connect.cols; ++e) {
            const point& A = points[connect(0, e)];
            const point& B = points[connect(1, e)];
            const point& C = points[connect(2, e)];
            const circle expected = rows == 2 ? plane_procedure(A, B, C) : space_procedure(A, B, C);
            const circle single = circle_through({A, B, C});
            EXPECT_TRUE(same(single.radius2, expected.radius2))
                << "element " << e << ": " << single.radius2 << ", " << expected.radius2;
            for (std::size_t i = 0; i < rows; ++i) {
                EXPECT_TRUE(same(single.center[i], expected.center[i])) << "element " << e;
                EXPECT_TRUE(same(centers(i, e), expected.center[i])) << "element " << e;
            }
        }
    }
}

TEST(CircumcentersProcedure, PlaneTriangleIsFlatBelowATrillionthOfItsSide)
{
    // The longest side runs from (-1, 0) to (1, 0), so that c = 2 y, h = 1, dd = x x + y y. A
    // triangle is flat unless 4 y y > 1e-24 dd, which turns at y = 2.5e-13 for x = 0.5.
    const circle flat = circle_through({{0.5, 2.4e-13}, {-1, 0}, {1, 0}});
    EXPECT_EQ(flat.radius2, DBL_MAX);
    EXPECT_EQ(flat.center, (point{0, 0}));
    // s = -0.75 / 5.2e-13, and the centre is (0, s).
    const circle thin = circle_through({{0.5, 2.6e-13}, {-1, 0}, {1, 0}});
    EXPECT_EQ(thin.center[0], 0.0);
    EXPECT_NEAR(thin.center[1], -0.75 / 5.2e-13, 1e-3);
    EXPECT_NEAR(thin.radius2, 0.5625 / 27.04e-26, 1e-12 * thin.radius2);
}

TEST(CircumcentersProcedure, PlaneCornersATrillionthApartAreAtOnePlace)
{
    // |x x - 1| against 1e-12, which turns at 1 - x = 5e-13.
    const circle one = circle_through({{1 - 4e-13, 0}, {-1, 0}, {1, 0}});
    EXPECT_EQ(one.radius2, 1.0);
    EXPECT_EQ(one.center, (point{0, 0}));
    const circle two = circle_through({{1 - 6e-13, 0}, {-1, 0}, {1, 0}});
    EXPECT_EQ(two.radius2, DBL_MAX);
    EXPECT_EQ(two.center, (point{0, 0}));
}

TEST(CircumcentersProcedure, SpaceTriangleIsFlatBelowAMillionthOfItsSides)
{
    // u = (1, 0, 0) and w = (-1, t, 0): the determinant is t t, against 1e-12 (1 + t t).
    const auto through = [](double t) {
        return circle_through({{1, 0, 0}, {-1, t, 0}, {0, 0, 0}});
    };
    const circle flat = through(0.9e-6);
    EXPECT_EQ(flat.radius2, DBL_MAX);
    EXPECT_EQ(flat.center, (point{0, 0, 0}));
    // At equal distance from (0, 0), (1, 0) and (-1, t): x = 0.5 and y = (2 + t t) / (2 t).
    // 1 + t t is rounded by up to 1.1e-16, which is 1e-4 of the determinant and of y.
    const double t = 1.1e-6;
    const double y = (2.0 + t * t) / (2.0 * t);
    const circle thin = through(t);
    EXPECT_NEAR(thin.center[0], 0.5, 1e-3);
    EXPECT_NEAR(thin.center[1], y, 1e-4 * y);
    EXPECT_EQ(thin.center[2], 0.0);
    EXPECT_NEAR(thin.radius2, 0.25 + y * y, 2e-4 * y * y);
}
