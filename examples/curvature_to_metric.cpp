// From a surface to the edge lengths that a new mesh of it should have: short across the bending of
// a cylinder, long along its axis.
#include "check_status.h"
#include "neighbors.h"

#include <vorel/tessalo2d.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

using namespace vorel;

int main()
{
    // A cylinder of radius 2 around the z-axis: a circle, closed by its last edge, extruded.
    const unsigned n = 60;
    const double step = 2.0 * std::acos(-1.0) / n;
    dense2D<double> coords(3, n, 0.0);
    dense2D<unsigned> circle(2, n);
    for (unsigned k = 0; k < n; ++k) {
        coords(0, k) = 2.0 * std::cos(k * step);
        coords(1, k) = 2.0 * std::sin(k * step);
        circle(0, k) = k;
        circle(1, k) = (k + 1) % n;
    }
    dense2D<unsigned> triangles;
    const vector_fixed<double, 3> path = {{0.0, 0.0, 4.0}};
    check_status(tessalo2d::extrude_translate_T3(coords, circle, path, 20, 2, triangles),
                 "extrude_translate_T3");

    // Rows 0 to 2 and 3 to 5 are directions. The value in row 6 is how strongly the surface bends
    // across the first direction.
    dense2D<double> curvatures;
    check_status(tessalo2d::principal_curvatures(coords, triangles, neighbors_of(triangles), 0.7,
                                                 1.5, 200, dense2D<unsigned>(), curvatures),
                 "principal_curvatures");
    const std::size_t node = 10 * n; // half way up
    const double* const c = curvatures.column(node);

    // A chord of length h strays from a circle of curvature k by k h^2 / 8.
    const double deviation = 0.01;
    const auto size = [&](double k) { return std::min(1.0, std::sqrt(8 * deviation / k)); };
    const double across = size(std::fabs(c[6]));
    const double along = size(std::fabs(c[7]));
    // Packed entries 00, 01, 11, 02, 12, 22 of the sum of d d' / h^2 over the directions.
    symmetric_fixed<double, 3> wanted = {};
    for (std::size_t j = 0; j < 3; ++j)
        for (std::size_t i = 0; i <= j; ++i)
            wanted(i, j) = c[i] * c[j] / (along * along) + c[3 + i] * c[3 + j] / (across * across);

    // The metric that the present edges stand for, to compare with.
    dense2D<double> of_mesh;
    check_status(tessalo2d::metrics_gen_aniso3d(coords, triangles, 0.5, of_mesh),
                 "metrics_gen_aniso3d");
    std::printf("curvature %.2f, axis (%.2f %.2f %.2f)\n", std::fabs(c[6]), std::fabs(c[0]),
                std::fabs(c[1]), std::fabs(c[2]));
    std::printf("edges %.2f around, %.2f along; at present %.2f along\n",
                1 / std::sqrt(wanted(1, 1)), 1 / std::sqrt(wanted(2, 2)),
                1 / std::sqrt(of_mesh(5, node)));
}
