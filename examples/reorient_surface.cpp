// Mends a surface whose triangles run either way around: a torus, of which some were turned over.
#include "check_status.h"
#include "neighbors.h"

#include <vorel/tessalo2d.h>

#include <cmath>
#include <cstdio>
#include <utility>

using namespace vorel;

namespace {

/// Six times the enclosed volume: the outward normals count positively.
double volume6(const dense2D<double>& coords, const dense2D<unsigned>& triangles)
{
    dense2D<double> normals;
    check_status(tessalo2d::normals(coords, triangles, false, normals), "normals");
    double sum = 0.0;
    for (std::size_t e = 0; e < triangles.cols; ++e)
        for (std::size_t i = 0; i < 3; ++i) sum += coords(i, triangles(0, e)) * normals(i, e);
    return sum;
}

} // namespace

int main()
{
    const unsigned n = 48;
    const double step = 2.0 * std::acos(-1.0) / n;
    dense2D<double> coords(3, n * n);
    dense2D<unsigned> triangles(3, 2 * n * n);
    for (unsigned i = 0; i < n; ++i)
        for (unsigned j = 0; j < n; ++j) {
            const unsigned a = i * n + j;
            const unsigned b = (i + 1) % n * n + j;
            const unsigned c = (i + 1) % n * n + (j + 1) % n;
            const unsigned d = i * n + (j + 1) % n;
            coords(0, a) = (3.0 + std::cos(j * step)) * std::cos(i * step);
            coords(1, a) = (3.0 + std::cos(j * step)) * std::sin(i * step);
            coords(2, a) = std::sin(j * step);
            const unsigned pair[2][3] = {{a, b, c}, {c, d, a}};
            for (std::size_t t = 0; t < 2; ++t)
                for (std::size_t k = 0; k < 3; ++k) triangles(k, 2 * a + t) = pair[t][k];
        }
    const double whole = volume6(coords, triangles);

    unsigned turned = 0;
    for (unsigned e = 1; e < triangles.cols; e += 1 + e * e % 7, ++turned)
        std::swap(triangles(0, e), triangles(2, e));
    const double broken = volume6(coords, triangles);

    // A status above 0 is a count: the triangles that were turned back to run as triangle 0 does.
    dense2D<unsigned> neighbors = neighbors_of(triangles);
    const int status = tessalo2d::mesh_reorient(triangles, neighbors, 0, 0);
    const int mended = check_status(status, "mesh_reorient");

    std::printf("%u of %zu triangles turned over, %d turned back\n", turned, triangles.cols,
                mended);
    std::printf("volume %.4f, broken %.4f, mended %.4f\n", whole / 6.0, broken / 6.0,
                volume6(coords, triangles) / 6.0);
    std::printf("with a wrong seed: status %d\n",
                tessalo2d::mesh_reorient(triangles, neighbors, 2 * n * n, 0));
}
