// Measures the areas of a few meshes: a planar one, one that mixes quadrilaterals and triangles,
// and a surface in space that comes closer to a sphere the finer it is.
#include "check_status.h"

#include <vorel/tessalo2d.h>

#include <cmath>
#include <cstdio>

using namespace vorel;

namespace {

const double pi = std::acos(-1.0);

double measured(const dense2D<double>& coords, const dense2D<unsigned>& connect)
{
    double result = 0.0;
    check_status(tessalo2d::area(coords, connect, result), "area");
    return result;
}

/// A sphere of radius 1: half a circle of `n` edges from pole to pole, turned around the z-axis in
/// 2 n steps.
double sphere_area(unsigned n)
{
    dense2D<double> coords(3, n + 1, 0.0);
    dense2D<unsigned> meridian(2, n);
    for (unsigned k = 0; k <= n; ++k) {
        coords(0, k) = std::sin(pi * k / n);
        coords(2, k) = -std::cos(pi * k / n);
    }
    for (unsigned e = 0; e < n; ++e) {
        meridian(0, e) = e;
        meridian(1, e) = e + 1;
    }
    const vector_fixed<double, 3> center = {{0.0, 0.0, 0.0}};
    const vector_fixed<double, 3> turn = {{0.0, 0.0, 2.0 * pi}};
    dense2D<unsigned> quads;
    check_status(tessalo2d::extrude_rotate_Q4(coords, meridian, center, turn, 2 * n, quads),
                 "extrude_rotate_Q4");
    return measured(coords, quads);
}

} // namespace

int main()
{
    std::printf("tessalo2d %s\n\n", tessalo2d::version());

    const dense2D<double> corners{{0, 0}, {4, 0}, {4, 3}, {0, 3}, {6, 0}};
    std::printf("Rectangle of 4 by 3                         %g\n",
                measured(corners, {{0, 1, 2, 3}}));
    std::printf("The same listed clockwise                  %g\n",
                measured(corners, {{3, 2, 1, 0}}));
    std::printf("With a triangle of 2 by 3 beside it         %g\n\n",
                measured(corners, {{0, 1, 2, 3}, {1, 4, 2, UNSET_ID}}));

    double missing = 1.0;
    for (const unsigned n : {4u, 16u, 64u, 256u}) {
        const double area = sphere_area(n);
        missing = 1.0 - area / (4.0 * pi);
        std::printf("Unit sphere in %6u elements               %8.5f, %.4f %% short\n", 2 * n * n,
                    area, 100.0 * missing);
    }
    const bool close = missing > 0.0 && missing < 1e-4;
    std::printf("\n%s\n", close ? "The areas approach 4 pi, as they should."
                                : "The areas do not approach 4 pi: something is wrong.");
    return close ? 0 : 1;
}
