// Measures the areas of a few meshes: a planar one, one that mixes quadrilaterals and triangles,
// and a surface in space that comes closer to a sphere the finer it is.
#include <vorel/tessalo2d.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

using namespace vorel;

namespace {

/// The area of a mesh; the program ends where the library refuses it.
double measured(const dense2D<double>& coords, const dense2D<unsigned>& connect)
{
    double result;
    const int status = tessalo2d::area(coords, connect, result);
    if (status == 0) return result;
    std::fprintf(stderr, "area: argument %d is not a mesh\n", -status);
    std::exit(EXIT_FAILURE);
}

/// A sphere of radius 1 around the origin in `n` rings of 2 n quadrilaterals. At the poles two
/// corners meet, and the last one is left unset: a triangle.
double sphere_area(unsigned n)
{
    const double pi = std::acos(-1.0);
    dense2D<double> coords(3, 2 * n * (n - 1) + 2);
    for (unsigned ring = 1; ring < n; ++ring) {
        for (unsigned k = 0; k < 2 * n; ++k) {
            double* const node = coords.column((ring - 1) * 2 * n + k);
            node[0] = std::sin(pi * ring / n) * std::cos(pi * k / n);
            node[1] = std::sin(pi * ring / n) * std::sin(pi * k / n);
            node[2] = std::cos(pi * ring / n);
        }
    }
    const unsigned south = 2 * n * (n - 1);
    const unsigned north = south + 1;
    for (const unsigned pole : {south, north}) {
        double* const node = coords.column(pole);
        node[0] = node[1] = 0.0;
        node[2] = pole == north ? 1.0 : -1.0;
    }

    dense2D<unsigned> connect;
    const auto append = [&](unsigned a, unsigned b, unsigned c, unsigned d) {
        const unsigned nodes[4] = {a, b, c, d};
        if (!append_column(connect, nodes)) std::exit(EXIT_FAILURE);
    };
    for (unsigned k = 0; k < 2 * n; ++k) {
        const unsigned next = (k + 1) % (2 * n);
        append(north, k, next, UNSET_ID);
        for (unsigned first = 0; first + 2 * n < south; first += 2 * n)
            append(first + k, first + 2 * n + k, first + 2 * n + next, first + next);
        append(south, south - 2 * n + next, south - 2 * n + k, UNSET_ID);
    }
    return measured(coords, connect);
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

    const double exact = 4.0 * std::acos(-1.0);
    double missing = 1.0;
    for (const unsigned n : {4u, 16u, 64u, 256u}) {
        const double area = sphere_area(n);
        missing = 1.0 - area / exact;
        std::printf("Unit sphere in %6u elements               %8.5f, %.4f %% short\n", 2 * n * n,
                    area, 100.0 * missing);
    }
    const bool close = missing > 0.0 && missing < 1e-4;
    std::printf("\n%s\n", close ? "The areas approach 4 pi, as they should."
                                : "The areas do not approach 4 pi: something is wrong.");
    return close ? EXIT_SUCCESS : EXIT_FAILURE;
}
