// The one loop of all interpolations, and the argument checks that they share.
#pragma once

#include "foundation/status.h"
#include "interpolation/background_locator.h"
#include "interpolation/local_coordinates.h"

namespace vorel::tessalo2d {

/// The arguments that describe the background mesh and the targets.
struct interpolation_arguments {
    const dense2D<double>& coords;
    const dense2D<unsigned>& connect;
    const dense2D<unsigned>& neighbors;
    const dense1D<unsigned, 8>& node_element;
    const dense1D<unsigned, 8>& nodes;
};

/// Arguments 1 to 4; `checked_type` is the kind that `connect` is held against.
inline int check_background(const interpolation_arguments& a, element_type checked_type)
{
    if (!has_rows(a.coords, 2)) return bad_argument(1);
    if (!tessalo::check_IDs(a.connect, checked_type, node_bound(a.coords))) return bad_argument(2);
    if (a.neighbors.rows != a.connect.rows || a.neighbors.cols != a.connect.cols)
        return bad_argument(3);
    if (!tessalo::check_IDs(a.neighbors, node_bound(a.connect.cols))) return bad_argument(3);
    if (a.node_element.size != a.coords.cols) return bad_argument(4);
    return success;
}

/// Local coordinates of a point in an element: weights in a triangle, (xi, eta) in a quadrilateral.
template <mesh_form F>
vec2 local_coordinates(const background_mesh& mesh, unsigned element, const vec2& point)
{
    constexpr double NEWTON_TOLERANCE = 1e-12;
    const unsigned* const column = mesh.column(element);
    vec2 local;
    // The last estimate stands where Newton's method did not end.
    if (is_quad<F>(column))
        (void)local_coords_Q4(mesh.points, mesh.point_ld, column, point, local, NEWTON_TOLERANCE);
    else
        (void)local_coords_T3(mesh.points, mesh.point_ld, column, point, local);
    return local;
}

/// A target ahead of its turn: all that needs no draw and no value.
struct approached_target {
    unsigned node;
    /// Where the walk is likely to end, or `UNSET_ID`, and the coordinates of the target there.
    unsigned likely_element;
    vec2 local;
};

/// Gives each listed target in order the value of the element that holds it, else that of the
/// nearest background node. Background nodes and targets outside their box stay as they are.
template <mesh_form F, class Carrier>
void serve_targets(const interpolation_arguments& a, Carrier carrier,
                   bool fill_tree = Carrier::FILLS_TREE)
{
    constexpr double WALK_TOLERANCE = 1e-6;
    if (!carrier.ready()) return;
    background_locator<F> locator(a.coords, a.connect, a.neighbors, a.node_element);
    side_draw draw;
    if (fill_tree) (void)locator.fill_tree();
    const background_mesh& mesh = locator.mesh();
    // Targets are approached a block at a time, so that their cache misses overlap, and served one
    // by one: the draws run on from target to target, and a value may be read by a later target.
    constexpr unsigned BLOCK = node_quadtree::BLOCK;
    approached_target targets[BLOCK];
    vec2 points[BLOCK];
    unsigned starts[BLOCK];
    known_tests known[BLOCK];
    for (std::size_t next = 0; next < a.nodes.size;) {
        unsigned n = 0;
        for (; next < a.nodes.size && n < BLOCK; ++next) {
            const unsigned node = a.nodes[next];
            if (a.node_element[node] != UNSET_ID || carrier.keeps(node)) continue;
            targets[n].node = node;
            points[n] = mesh.point(node);
            ++n;
        }
        locator.approach(points, n, WALK_TOLERANCE, starts, known);
        for (unsigned i = 0; i < n; ++i) {
            targets[i].likely_element = known[i].last_inside();
            if (targets[i].likely_element == UNSET_ID) continue;
            const unsigned* const column = mesh.column(targets[i].likely_element);
            const unsigned corners = is_quad<F>(column) ? 4 : 3;
            for (unsigned row = 0; row < corners; ++row) carrier.prefetch(column[row]);
            targets[i].local = local_coordinates<F>(mesh, targets[i].likely_element, points[i]);
        }
        for (unsigned i = 0; i < n; ++i) {
            const approached_target& target = targets[i];
            // The same node may have been served earlier in the block.
            if (carrier.keeps(target.node)) continue;
            unsigned element = starts[i];
            bool accepted = true;
            if (element != UNSET_ID &&
                locator.locate_element(points[i], element, WALK_TOLERANCE, true, draw, known[i])) {
                const vec2 local = element == target.likely_element
                                       ? target.local
                                       : local_coordinates<F>(mesh, element, points[i]);
                const unsigned* const column = mesh.column(element);
                accepted = is_quad<F>(column) ? carrier.in_quad(column, local)
                                              : carrier.in_triangle(column, local);
            } else {
                const unsigned nearest = locator.nearest_node(points[i]);
                if (nearest == UNSET_ID) continue;
                carrier.copy(nearest);
            }
            if (accepted) carrier.store(target.node);
        }
    }
}

/// Chooses the engine by the storage and the kind; a pair that has none is nothing to do.
template <class Carrier>
void serve_targets_of_form(const interpolation_arguments& a, element_type type,
                           const Carrier& carrier)
{
    if (a.connect.rows == 3 && type == ELEMENT_T3) serve_targets<mesh_form::T3>(a, carrier);
    if (a.connect.rows == 4 && type == ELEMENT_Q4) serve_targets<mesh_form::Q4>(a, carrier);
    if (a.connect.rows == 4 && type == ELEMENT_ANY_FACE)
        serve_targets<mesh_form::mixed>(a, carrier);
}

} // namespace vorel::tessalo2d
