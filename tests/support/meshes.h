// Mesh makers for tests and benchmarks.
#pragma once

#include <vorel/tessalo2d.h>

#include <random>
#include <string>
#include <vector>

namespace support {

struct mesh {
    std::string name;
    vorel::dense2D<double> coords;
    vorel::dense2D<unsigned> connect;
};

/// A grid of nx x ny cells of size 1 from the origin, nodes row by row, counterclockwise. With
/// three dimensions z is 0. Each cell of the triangle grid is cut from its first to its third
/// corner.
mesh grid_Q4(unsigned nx, unsigned ny, std::size_t dimension = 2);
mesh grid_T3(unsigned nx, unsigned ny, std::size_t dimension = 2);

/// A 4-row matrix in which every cell is a quadrilateral or two triangles, by a seeded draw.
mesh grid_mixed(unsigned nx, unsigned ny, std::size_t dimension = 2, unsigned seed = 1);

/// Quadratic storage over the same grid, midnodes on their edges: 6 rows; 8 or 9 rows, in which
/// with `with_triangles` some cells are two T6 with unset rows behind.
mesh grid_T6(unsigned nx, unsigned ny, std::size_t dimension = 2);
mesh grid_Q8(unsigned nx, unsigned ny, std::size_t dimension = 2, bool with_triangles = false);
mesh grid_Q9(unsigned nx, unsigned ny, std::size_t dimension = 2, bool with_triangles = false);

/// Moves every node by up to `amount` in each direction.
void jitter(mesh& m, double amount, unsigned seed);

/// Numbers the nodes anew by a seeded permutation, and puts the elements in random order.
void shuffle(mesh& m, unsigned seed);

/// A 3-row copy of plane coordinates on the surface z = height(x, y).
mesh lifted(const mesh& m, double (*height)(double, double));

/// Meshes that break assumptions: needles, repeated nodes, elements of no area, coincident nodes,
/// a node that no element holds, infinite and NaN coordinates, huge and tiny scales. IDs are valid.
std::vector<mesh> awkward_meshes(std::size_t dimension);

} // namespace support
