// How close the estimator comes to the curvatures of surfaces for which they are known.
#include "foundation/vec.h"

#include "curvatures_of.h"
#include "support/meshes.h"

#include <cmath>

using namespace vorel;
using namespace vorel::tessalo2d;
using namespace curvature_tests;

namespace {

/// A regular grid over a rectangle of the (u, v) plane, mapped to space.
support::mesh mapped(unsigned nu, unsigned nv, double step, double u0, double v0,
                     vec3 (*map)(double, double))
{
    support::mesh m = support::grid_T3(nu, nv, 3);
    for (std::size_t i = 0; i < m.coords.cols; ++i) {
        const vec3 p = map(u0 + step * m.coords(0, i), v0 + step * m.coords(1, i));
        store(p, m.coords.column(i));
    }
    return m;
}

std::size_t centre(unsigned nu, unsigned nv)
{
    return (nv / 2) * (nu + 1) + nu / 2;
}

// How close the estimator comes. Here the two triangles of a cell lie nearly in one plane,
// so the diagonals add nothing, and an edge along a principal direction turns by the curvature k
// across it times the step h: it adds k * h * h along itself. A patch of n triangles has the area
// n * h * h / 2, and each triangle has half of one edge of either kind; the halves at the rim are
// missing, as only interior edges count. So the value is k * (1 - rim / n), for `rim` edges of that
// kind on the rim. The centroids beside an edge along an axis stand w = (1/3, 2/3) of a step apart,
// once in each cell, so a rim with the normal m cuts |m.w| such edges a unit of length; around a
// disc of radius steps * h it is 4 * |w| * steps edges on 2 * pi * steps * steps triangles: both
// values come out short by the share 2 * |w| / (pi * steps), |w| = sqrt(5) / 3. What is left is the
// ragged rim, less than a twentieth of that share, and the change of the surface and of its tangent
// plane within the patch, of the order of (r * k)^2.
struct shortfall {
    double steps;
    double bend; ///< r times the largest curvature

    double expected(double curvature) const { return curvature * (1 - share()); }
    double tolerance(double curvature) const
    {
        return std::fabs(curvature) * (0.05 * share() + bend * bend);
    }
    double share() const { return 2 * (std::sqrt(5.0) / 3) / (PI * steps); }
};

} // namespace

TEST(PrincipalCurvatures, SphereHasTheSameValueInAllDirections)
{
    constexpr double R = 2.0;
    const auto sphere = [](double u, double v) -> vec3 {
        return {{R * std::cos(v) * std::cos(u), R * std::cos(v) * std::sin(u), R * std::sin(v)}};
    };
    constexpr double STEP = 0.004;
    const support::mesh m = mapped(60, 60, STEP, -30 * STEP, -30 * STEP, sphere);
    const std::size_t i = centre(60, 60);
    for (const double steps : {6.3, 12.3, 24.3}) {
        const shortfall s{steps, steps * STEP};
        const dense2D<double> c = curvatures_of(m, steps * STEP * R);
        EXPECT_NEAR(c(6, i), s.expected(-1 / R), s.tolerance(1 / R)) << steps;
        EXPECT_NEAR(c(7, i), s.expected(-1 / R), s.tolerance(1 / R)) << steps;
    }
}

TEST(PrincipalCurvatures, CylinderHasItsAxisAsFirstDirection)
{
    // The cells are flat, and nothing bends along the axis: the second value is rounding.
    constexpr double R = 1.5;
    const auto cylinder = [](double u, double v) -> vec3 {
        return {{R * std::cos(u), R * std::sin(u), R * v}};
    };
    constexpr double STEP = 0.01;
    const support::mesh m = mapped(40, 40, STEP, -20 * STEP, -20 * STEP, cylinder);
    const shortfall s{12.3, 12.3 * STEP};
    const dense2D<double> c = curvatures_of(m, 12.3 * STEP * R);
    const std::size_t i = centre(40, 40);
    EXPECT_NEAR(std::fabs(c(2, i)), 1.0, 1e-12) << "sharp edges run along the axis";
    EXPECT_NEAR(c(6, i), s.expected(-1 / R), s.tolerance(1 / R));
    EXPECT_NEAR(c(7, i), 0.0, 1e-10);
    // The second direction is across the normal of the seed, which stands half a step beside the
    // node.
    EXPECT_NEAR(std::fabs(c(4, i)), std::cos(STEP / 2), 1e-12);
}

TEST(PrincipalCurvatures, SaddleHasValuesOfBothSigns)
{
    const auto saddle = [](double u, double v) -> vec3 { return {{u, v, 0.5 * (u * u - v * v)}}; };
    constexpr double STEP = 0.01;
    const support::mesh m = mapped(40, 40, STEP, -20 * STEP, -20 * STEP, saddle);
    const shortfall s{12.3, 12.3 * STEP};
    const dense2D<double> c = curvatures_of(m, 12.3 * STEP);
    const std::size_t i = centre(40, 40);
    // Which of the two is larger hangs on the rim. Along x the surface bends towards its normal,
    // which the edges along y record; along y it bends away.
    const bool up_first = c(6, i) > 0.0;
    const vec3 up = up_first ? first_direction(c, i) : second_direction(c, i);
    const vec3 down = up_first ? second_direction(c, i) : first_direction(c, i);
    EXPECT_NEAR(c(up_first ? 6 : 7, i), s.expected(1.0), s.tolerance(1.0));
    EXPECT_NEAR(c(up_first ? 7 : 6, i), s.expected(-1.0), s.tolerance(1.0));
    EXPECT_NEAR(std::fabs(up[1]), 1.0, s.bend * s.bend);
    EXPECT_NEAR(std::fabs(down[0]), 1.0, s.bend * s.bend);
}

TEST(PrincipalCurvatures, TorusHasItsTwoRadiiOnTheOuterRim)
{
    // At the outer equator of a torus with radii 3 and 1 the principal curvatures are 1 and 1 / 4.
    const auto torus = [](double u, double v) -> vec3 {
        const double d = 3 + std::cos(v);
        return {{d * std::cos(u / 4), d * std::sin(u / 4), std::sin(v)}};
    };
    constexpr double STEP = 0.01;
    const support::mesh m = mapped(40, 40, STEP, -20 * STEP, -20 * STEP, torus);
    const shortfall s{12.3, 12.3 * STEP};
    const dense2D<double> c = curvatures_of(m, 12.3 * STEP);
    const std::size_t i = centre(40, 40);
    EXPECT_NEAR(c(6, i), s.expected(-1.0), s.tolerance(1.0));
    EXPECT_NEAR(c(7, i), s.expected(-0.25), s.tolerance(0.25));
    EXPECT_NEAR(std::fabs(c(1, i)), 1.0, s.bend * s.bend)
        << "edges bend most across the long way round";
}
