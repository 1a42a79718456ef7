// Nodes in arrangements that a quadtree has to get right, and points to search around them.
#pragma once

#include "interpolation/node_quadtree.h"

#include <random>
#include <string>
#include <vector>

namespace support {

struct cloud {
    std::string name;
    vorel::dense2D<double> coords;
};

/// Random, clustered, collinear, coincident and lattice nodes, and some that are no numbers.
std::vector<cloud> clouds(unsigned n, unsigned seed);

/// The box of the finite coordinates.
void bounds(const vorel::dense2D<double>& coords, vorel::tessalo2d::vec2& low,
            vorel::tessalo2d::vec2& high);

vorel::dense1D<unsigned, 8> all_ids(std::size_t n);
vorel::dense1D<unsigned, 8> shuffled_ids(std::size_t n, unsigned seed);

/// The nodes, points between, the corners of the box, points outside, points that are no numbers.
std::vector<vorel::tessalo2d::vec2> probes(const vorel::dense2D<double>& coords,
                                           const vorel::tessalo2d::vec2& low,
                                           const vorel::tessalo2d::vec2& high, unsigned seed);

/// The leaves from child 0 to child 3 with their levels and IDs, as text that doesn't depend on
/// the numbers of the cells. Expects IDs in leaves to ascend and children to be cells.
std::string shape(const vorel::tessalo2d::node_quadtree& tree);

/// The IDs in the leaves from child 0 to child 3.
std::vector<unsigned> stored_ids(const vorel::tessalo2d::node_quadtree& tree);

} // namespace support
