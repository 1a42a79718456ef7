// The twenty extrusions behind one signature, so that what they share is tested in one loop, and
// the lines that they are tested on.
#pragma once

#include <vorel/tessalo2d.h>

#include <functional>
#include <string>
#include <vector>

namespace extrusion_tests {

using namespace vorel;

/// All arguments that any overload takes, valid for all of them.
struct arguments {
    vector_fixed<double, 2> plane = {{0.5, 2.0}};
    vector_fixed<double, 2> plane_center = {{0.25, -1.0}};
    vector_fixed<double, 3> center = {{0.25, -1.0, 0.5}};
    vector_fixed<double, 3> rotation = {{0.3, -0.2, 1.1}};
    vector_fixed<double, 3> translation = {{0.5, 2.0, -1.0}};
    double angle = 1.25;
    unsigned N = 3;
    double h0 = 0.4;
    double h1 = 0.8;
    bool force_even = false;
    int pattern = 1;
};

enum class motion { translate, rotate, spiral };

struct overload {
    std::string name;
    motion moves;
    /// 2 for the plane, 3 for space.
    int dimension;
    /// Rows of an element: 4 or 3.
    std::size_t rows;
    bool by_size;
    std::function<int(dense2D<double>& coords, const dense2D<unsigned>& connect, const arguments& a,
                      dense2D<unsigned>& output)>
        run;
};

const std::vector<overload>& overloads();

/// The one with that name.
const overload& overload_named(const std::string& name);

constexpr double PI = 3.14159265358979323846;

/// A line on nodes 0 to 3 that leaves node 1 out, and its nodes by rank.
inline const dense2D<unsigned> LINE = {{2, 0}, {0, 3}};
inline const std::vector<unsigned> SOURCES = {2, 0, 3};

/// Row counts of `coords` that the overload takes.
std::vector<std::size_t> coords_rows(const overload& o);

/// Nodes with coordinates that no two share, and every kind of line on them.
struct line_mesh {
    std::string name;
    std::size_t nodes;
    std::vector<std::vector<unsigned>> edges;
};
std::vector<line_mesh> line_meshes();

dense2D<double> nodes(std::size_t rows, std::size_t count, unsigned seed = 7);

/// The node IDs of a line in the order of their first appearance.
std::vector<unsigned> first_appearances(const dense2D<unsigned>& connect);

} // namespace extrusion_tests
