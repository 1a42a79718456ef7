// Small meshes, whole or spoiled, and single matrices.
#pragma once

#include "fuzz/arguments.h"
#include "fuzz/input.h"

namespace fuzz {

/// Sizes are passed in braces: what is drawn there is drawn in that order by every compiler, so
/// that a file means the same in all builds.
struct extent {
    std::size_t rows, cols;
};

ids read_ids(input& in, extent size, std::size_t bound);
dense2D<double> read_reals(input& in, extent size);
dense1D<unsigned, 8> read_id_list(input& in, std::size_t size, std::size_t bound);
/// Sizes: mostly positive.
dense1D<double, 8> read_real_list(input& in, std::size_t size);

/// Metrics in 3 or 6 rows: positive definite ones, thin, semidefinite, indefinite and wild ones.
/// Any other row count gets plain reals.
dense2D<double> read_metrics(input& in, extent size);

/// A matrix that may hold data, to append to or to replace.
ids read_result(input& in, std::initializer_list<std::size_t> usual_rows);

struct mesh {
    dense2D<double> coords;
    ids connect;
    ids neighbors;
    dense1D<unsigned, 8> node_element;
};

struct mesh_extent {
    std::size_t rows, dimension, more_nodes;
};

/// Elements of 3 or 4 (mixed) rows: a grid, a fan around one node, or any IDs. In a wild mood IDs
/// are spoiled, and neighbors contradict the elements. `more_nodes` have coordinates and belong to
/// no element.
mesh read_mesh(input& in, mesh_extent extents);

/// As above for calls that take coordinates and elements: both go into `a`.
void read_mesh(input& in, arguments& a, mesh_extent extents);

/// Unsets an entry in about `percent` columns of a hundred.
void unset_some(input& in, ids& m, unsigned percent);

/// As above in quadratic storage of 6, 8 or 9 rows; IDs only, below the count of nodes.
ids read_quadratic(input& in, std::size_t rows, std::size_t nodes);

} // namespace fuzz
