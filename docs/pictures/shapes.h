// What the pictures show: meshes, loops and lines, made without the library.
#pragma once

#include "canvas.h"

#include <functional>

namespace pictures {

struct mesh {
    vorel::dense2D<double> coords;
    vorel::dense2D<unsigned> connect;
};

enum class cells { triangles, quads, mixed };

/// A grid of nx x ny cells of unit size, its inner nodes moved by up to `jitter`, by a fixed draw.
mesh grid(unsigned nx, unsigned ny, cells kind, double jitter = 0.0);

/// Puts the nodes of a plane mesh at `place` (x, y) in space.
void lift(mesh& m, const std::function<void(double, double, double*)>& place);

/// The neighbors of triangles and quadrilaterals across their local edges.
vorel::dense2D<unsigned> neighbors_of(const vorel::dense2D<unsigned>& connect);

/// For each of `nodes` nodes an element that holds it, or `UNSET_ID`.
vorel::dense1D<unsigned> node_element_of(const vorel::dense2D<unsigned>& connect,
                                         std::size_t nodes);

/// Adds a node.
unsigned add_node(vorel::dense2D<double>& coords, const std::vector<double>& place);

/// A line mesh through the points, all of 2 or all of 3 coordinates.
mesh line(const std::vector<std::vector<double>>& points);

/// A closed loop around an airfoil: the upper side, backwards, of the section of 12 % thickness and
/// 4 % camber in the NACA four-digit family at 40 % of the chord, and a bow far above it.
struct channel {
    vorel::dense2D<double> coords;
    vorel::dense1D<unsigned> loop;
    unsigned across;
};
channel around_airfoil(unsigned along, unsigned across);

/// The outline of that section, from the trailing edge over the upper side.
std::vector<point> airfoil(unsigned points);

} // namespace pictures
