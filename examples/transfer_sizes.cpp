// Carries a size field from a background mesh to new nodes.
#include "check_status.h"
#include "neighbors.h"

#include <vorel/tessalo2d.h>

#include <cstdio>

using namespace vorel;

int main()
{
    // The background: a square of 2 x 2 in triangles, with sizes that rise from left to right.
    dense2D<double> coords{{0, 0}, {1, 0}, {2, 0}, {0, 1}, {1, 1}, {2, 1}, {0, 2}, {1, 2}, {2, 2}};
    const dense2D<unsigned> triangles{{0, 1, 4}, {4, 3, 0}, {1, 2, 5}, {5, 4, 1},
                                      {3, 4, 7}, {7, 6, 3}, {4, 5, 8}, {8, 7, 4}};
    const std::size_t background = coords.cols;

    // Targets are nodes of the same matrix that no element holds.
    const double points[][2] = {{0.25, 0.5}, {1.5, 1.75}, {1.0, 0.3}, {5.0, 5.0}};
    dense1D<unsigned, 8> targets;
    for (const auto& point : points) {
        const auto node = static_cast<unsigned>(coords.cols);
        if (!coords.resize(2, node + 1)) return 1;
        coords(0, node) = point[0];
        coords(1, node) = point[1];
        targets.append(node);
    }
    dense1D<unsigned, 8> node_element(coords.cols, UNSET_ID);
    for (unsigned e = 0; e < triangles.cols; ++e)
        for (std::size_t k = 0; k < 3; ++k) node_element[triangles(k, e)] = e;

    dense1D<double, 8> sizes(coords.cols, -1.0);
    for (std::size_t n = 0; n < background; ++n) sizes[n] = 0.1 + 0.2 * coords(0, n);

    const int status =
        tessalo2d::interpolate_metrics(coords, triangles, neighbors_of(triangles), node_element,
                                       sizes, targets, false, ELEMENT_T3);
    check_status(status, "interpolate_metrics");

    // A target outside the background's bounding box keeps what it had.
    for (const unsigned node : targets)
        std::printf("size %g at (%g, %g)\n", sizes[node], coords(0, node), coords(1, node));

    // A list that names a node beyond the last one is refused: argument 6.
    targets.append(static_cast<unsigned>(coords.cols));
    std::printf("with a wrong node: status %d\n",
                tessalo2d::interpolate_metrics(coords, triangles, neighbors_of(triangles),
                                               node_element, sizes, targets, false, ELEMENT_T3));
}
