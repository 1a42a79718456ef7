// The valid arguments that rows of the table share: small meshes, each argument with the name that
// the documentation gives it.
#pragma once

#include "exports/arguments.h"
#include "support/meshes.h"
#include "support/topology.h"

namespace exports {

inline constexpr unsigned U = UNSET_ID;

/// Five nodes and one more that no element holds, which lies on the side from node 0 to node 1.
inline const reals PLANE = {{0, 0}, {2, 0}, {2, 2}, {0, 2}, {4, 1}, {1, 0}};
inline const reals SPACE = {{0, 0, 0}, {2, 0, 0.5}, {2, 2, 0}, {0, 2, 1}, {4, 1, -1}, {1, 0, 0.25}};
inline const IDs TRIANGLES = {{0, 1, 2}, {2, 3, 0}, {1, 4, 2}};
/// A quadrilateral and a triangle.
inline const IDs MIXED = {{0, 1, 2, 3}, {1, 4, 2, U}};
inline const reals NO_REALS;
inline const IDs NO_IDS;
inline const real_list NO_REAL_LIST;
inline const ID_list NO_ID_LIST;

inline slot coords_in(const reals& valid)
{
    return {"coords", kind::coordinates, flow::in, valid};
}

inline slot coords_grown(const reals& valid, state exhausted)
{
    return {"coords", kind::coordinates, flow::grown, valid, state::unchanged, exhausted};
}

inline slot connect_in(const IDs& valid)
{
    return {"connect", kind::nodes, flow::in, valid};
}

inline slot number(const std::string& name, kind what, const value& valid)
{
    return {name, what, flow::in, valid};
}

/// A matrix that elements are appended to.
inline slot elements_grown(const std::string& name, const IDs& valid, state exhausted)
{
    return {name, kind::nodes, flow::grown, valid, state::unchanged, exhausted};
}

/// An output whose old contents don't matter, empty on every outcome but success.
inline slot replaced(const std::string& name, kind what, const value& valid)
{
    return {name, what, flow::replaced, valid, state::emptied, state::emptied};
}

/// Larger arguments: `coords` and `connect` of that mesh.
inline void set_mesh(arguments& a, const support::mesh& m)
{
    a["coords"] = m.coords;
    a["connect"] = m.connect;
}

/// Pairs of nodes of a grid of 7 x 6 cells that no element joins: many edges beside the mesh. Each
/// gets a third row with node 0 when it is to be an edge with a node on it.
inline IDs far_pairs(std::size_t rows)
{
    constexpr unsigned NODES = 56, FARTHEST_SIDE = 9;
    IDs pairs(rows, 0);
    for (unsigned from = 0; from < NODES; ++from)
        for (unsigned to = from + FARTHEST_SIDE + 1; to < NODES; ++to) {
            (void)pairs.resize(rows, pairs.cols + 1, 0);
            pairs(0, pairs.cols - 1) = from;
            pairs(1, pairs.cols - 1) = to;
        }
    return pairs;
}

} // namespace exports
