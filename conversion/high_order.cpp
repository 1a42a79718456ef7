// Order conversion: one pass numbers the edge nodes and writes the new columns, one places those
// nodes, one numbers and places the interior ones.
#include "conversion/high_order.h"

#include "conversion/edge_nodes.h"
#include "conversion/edge_numbering.h"
#include "conversion/interior_nodes.h"
#include "foundation/status.h"

#include <vorel/tessalo2d.h>

#include <algorithm>
#include <cmath>

namespace vorel::tessalo2d {

namespace {

bool is_square(unsigned n)
{
    const auto root = static_cast<unsigned>(std::sqrt(static_cast<double>(n)));
    return root * root == n;
}

/// The work on arguments that passed their checks; `result` is empty and has no shape yet.
bool convert(dense2D<double>& coords, const dense2D<unsigned>& connect, const element_nodes& added,
             dense2D<unsigned>& result, const dense2D<unsigned>& edges,
             const dense1D<double, 8>& sizes)
{
    const std::size_t nodes = coords.cols;
    const std::size_t elements = connect.cols;
    const std::size_t triangles = count_triangles(connect);
    const std::size_t quads = elements - triangles;
    const std::size_t rows = std::max(triangles ? added.rows(3) : 0, quads ? added.rows(4) : 0);
    const auto add_interior_ids = [&](std::size_t& next_id) {
        return take_ids(next_id, triangles, added.in_triangle) &&
               take_ids(next_id, quads, added.in_quad);
    };

    // Before any storage is asked for.
    std::size_t interior_end = nodes;
    if (!add_interior_ids(interior_end)) return false;
    if (added.on_edge == 0) {
        // Kept: without edge nodes the columns get interior nodes alone, and these stay at 0.
        if (!result.reserve(rows, elements, 1)) return false;
        if (!coords.resize(coords.rows, interior_end, 0.0)) return false;
        // Fits what was reserved: the coordinates need no undoing.
        if (!result.resize(rows, elements, UNSET_ID)) return false;
        place_interior_nodes(coords, connect, added, result, nodes, sizes);
        return true;
    }

    edge_numbering numbering(nodes, elements, 3 * triangles + 4 * quads, added.on_edge, edges);
    // Every entry and every new coordinate is written below: no fill.
    if (!result.resize(rows, elements)) return false;
    if (!number_edge_nodes(numbering, connect, added, result)) return false;
    const std::size_t edge_end = numbering.next_id();
    std::size_t end = edge_end;
    if (!add_interior_ids(end)) return false;
    if (!coords.resize(coords.rows, end)) return false;
    place_edge_nodes(coords, connect, added, result, nodes, edge_end, sizes);
    if (numbering.any_refused()) fill_refused_edges(numbering, connect, added, result);
    if (end != edge_end) place_interior_nodes(coords, connect, added, result, edge_end, sizes);
    return true;
}

} // namespace

std::size_t count_triangles(const dense2D<unsigned>& connect)
{
    if (connect.rows == 3) return connect.cols;
    const unsigned* const last_corner = connect.block->data + connect.offset + 3;
    const std::size_t elements = connect.cols;
    const std::size_t ld = connect.ld;
    std::size_t triangles = 0;
    for (std::size_t e = 0; e < elements; ++e) triangles += last_corner[e * ld] == UNSET_ID;
    return triangles;
}

int convert_worker(dense2D<double>& coords, const dense2D<unsigned>& connect, unsigned edge_nodes,
                   unsigned quad_nodes, unsigned triangle_nodes, dense2D<unsigned>& result,
                   const dense2D<unsigned>& edges, const dense1D<double, 8>& sizes)
{
    if (!has_rows(coords, 2, 3)) return bad_argument(1);
    // Kept: from here on every outcome but success leaves an empty result.
    result.clear();
    // Growing a block that the inputs share would take their entries away.
    if (shares_block(result, connect, edges)) result = dense2D<unsigned>();
    if (is_empty(connect)) return success;
    if (std::size_t(edge_nodes) + quad_nodes + triangle_nodes == 0) return success;
    const unsigned bound = node_bound(coords);
    if (!tessalo::check_IDs(connect, ELEMENT_ANY_FACE, bound)) return bad_argument(2);
    if (!is_square(quad_nodes)) return bad_argument(4);
    if (triangle_nodes > 3 || triangle_nodes == 2) return bad_argument(5);
    // Kept: prepared edges are argument 6 to every caller, also to those that take them elsewhere.
    if (!takes_rows(edges, std::size_t(edge_nodes) + 2)) return bad_argument(6);
    if (!tessalo::check_IDs(edges, bound)) return bad_argument(6);

    const element_nodes added{edge_nodes, quad_nodes, triangle_nodes};
    if (convert(coords, connect, added, result, edges, sizes)) return success;
    result.clear();
    return out_of_memory;
}

int convert_into_high_order(dense2D<double>& coords, const dense2D<unsigned>& connect,
                            unsigned edge_nodes, unsigned quad_nodes, unsigned triangle_nodes,
                            dense2D<unsigned>& result, const dense2D<unsigned>& edges)
{
    return convert_worker(coords, connect, edge_nodes, quad_nodes, triangle_nodes, result, edges,
                          dense1D<double, 8>());
}

int convert_into_high_order(dense2D<double>& coords, dense2D<unsigned>& connect,
                            unsigned edge_nodes, unsigned quad_nodes, unsigned triangle_nodes,
                            const dense2D<unsigned>& edges)
{
    dense2D<unsigned> linear;
    if (!linear.copy(connect)) return out_of_memory;
    return convert_worker(coords, linear, edge_nodes, quad_nodes, triangle_nodes, connect, edges,
                          dense1D<double, 8>());
}

int convert_into_quadratic(dense2D<double>& coords, dense2D<unsigned>& connect)
{
    return convert_into_high_order(coords, connect, 1, 1, 0, dense2D<unsigned>());
}

int convert_into_quadratic(dense2D<double>& coords, dense2D<unsigned>& connect,
                           const dense2D<unsigned>& edges)
{
    return convert_into_high_order(coords, connect, 1, 1, 0, edges);
}

} // namespace vorel::tessalo2d
