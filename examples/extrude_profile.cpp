// Extrudes a profile into a strip of quadrilaterals: layers grow from 0.1 at the start to 0.4 at
// the end of the path.
#include "check_status.h"

#include <vorel/tessalo2d.h>

#include <cmath>
#include <cstdio>

using namespace vorel;

int main()
{
    // The profile: half a circle of radius 1 in 32 edges. A line mesh has two rows.
    const unsigned edges = 32;
    const double pi = std::acos(-1.0);
    dense2D<double> coords(3, edges + 1, 0.0);
    dense2D<unsigned> profile(2, edges);
    for (unsigned k = 0; k <= edges; ++k) {
        coords(0, k) = std::cos(pi * k / edges);
        coords(1, k) = std::sin(pi * k / edges);
    }
    for (unsigned e = 0; e < edges; ++e) {
        profile(0, e) = e;
        profile(1, e) = e + 1;
    }

    // Nodes go behind those of the profile, quadrilaterals into `quads`: e * layers + l is the one
    // of edge e in layer l.
    const vector_fixed<double, 3> path = {{0.0, 0.0, 5.0}};
    dense2D<unsigned> quads;
    check_status(tessalo2d::extrude_translate_Q4(coords, profile, path, 0.1, 0.4, false, quads),
                 "extrude_translate_Q4");

    double area = 0.0;
    check_status(tessalo2d::area(coords, quads, area), "area");
    const std::size_t layers = quads.cols / edges;
    std::printf("%zu layers, %zu nodes, %zu quadrilaterals\n", layers, coords.cols, quads.cols);
    std::printf("lowest layer %.3f, highest %.3f\n", coords(2, quads(2, 0)),
                5.0 - coords(2, quads(0, layers - 1)));
    std::printf("area %.3f of %.3f\n", area, 5.0 * pi);

    // A status that is not 0 names an argument: sizes must be above 0, and h0 is the fourth.
    const int status =
        tessalo2d::extrude_translate_Q4(coords, profile, path, -1.0, 0.4, false, quads);
    std::printf("with a size of -1: status %d\n", status);
}
