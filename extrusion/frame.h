// The one course that all extrusions take: check, number the new nodes, append the elements, append
// the coordinates, undo the growth if storage ran out.
//
// A motion is a small class of this form:
//
//     double length(const double* p, std::size_t rows) const;
//         length of the path that sizes are spread on, for the line mesh's first node `p`
//     std::size_t rows(const dense2D<double>& coords) const;
//         row count of `coords` afterwards
//     void place(const layer_source& source, std::size_t rows, double t, double* target) const;
//         writes all nodes of the layer at position `t` of the path
#pragma once

#include "extrusion/contract.h"
#include "extrusion/layers.h"
#include "foundation/status.h"

namespace vorel::tessalo2d {

/// What a call works on: the line mesh and the matrices that it grows.
struct extrusion_arguments {
    dense2D<double>& coords;
    const dense2D<unsigned>& connect;
    dense2D<unsigned>& output;
};

/// The checks of the contract, in order. Changes nothing.
int check_extrusion(const extrusion_contract& contract, const layer_request& layers, int pattern,
                    const extrusion_arguments& on);

/// Whether the new nodes and the new elements of `N` layers all get IDs.
bool all_IDs_suffice(const extrusion_contract& contract, const node_map& map, unsigned N,
                     const extrusion_arguments& on);

/// The element step. 0, or -199 and no change.
int extrude_elements(const extrusion_contract& contract, const node_map& map, unsigned N,
                     int pattern, const extrusion_arguments& on);

/// Cuts the outputs back to what they held before.
void undo_extrusion(const extrusion_contract& contract, std::size_t coords_rows,
                    std::size_t coords_cols, std::size_t output_cols,
                    const extrusion_arguments& on);

/// The coordinate step. 0, or -199 and no change.
template <class Motion>
int extrude_nodes(const Motion& motion, const node_map& map, unsigned N,
                  const layer_request& layers, dense2D<double>& coords)
{
    if (N == 0) return success;
    const std::size_t nodes = map.size();
    const std::size_t first = coords.cols;
    const std::size_t rows = motion.rows(coords);
    if (!extend(coords, rows, nodes * N, 0.0)) return out_of_memory;

    const std::size_t ld = coords.ld;
    const layer_source source{coords.column(0), ld, map.sources.begin(), nodes};
    double* target = coords.column(first);
    const double step = 1.0 / N;
    for (unsigned l = 0; l < N; ++l, target += nodes * ld)
        motion.place(source, rows, layer_position(l + 1, step, layers.h0, layers.h1), target);
    return success;
}

template <class Motion>
int extrude(const extrusion_contract& contract, const Motion& motion, const layer_request& layers,
            int pattern, const extrusion_arguments& on)
{
    dense2D<double>& coords = on.coords;
    if (is_empty(on.connect) || (!layers.by_size && layers.count == 0)) return success;
    if (const int status = check_extrusion(contract, layers, pattern, on)) return status;

    const std::size_t coords_rows = coords.rows;
    const std::size_t coords_cols = coords.cols;
    const std::size_t output_cols = on.output.cols;
    unsigned N = layers.count;
    if (layers.by_size) {
        const double length = motion.length(coords.column(on.connect(0, 0)), coords_rows);
        N = std::max(sized_layer_count(length, layers), contract.fewest_layers);
    }

    // All working storage is had, and a lack of IDs is seen, before anything of the caller's grows.
    const unsigned first_id = static_cast<unsigned>(coords_cols);
    node_map map;
    if (!extrusion_node_map(on.connect, first_id, coords_cols, map)) return out_of_memory;
    int status = out_of_memory;
    if (all_IDs_suffice(contract, map, N, on)) {
        if (contract.widens) {
            // Widening in room for all nodes saves a second growth. The resizes decide.
            (void)coords.reserve(3, coords_cols + map.size() * N, 1);
            if (!coords.resize(3, coords_cols, 0.0)) return out_of_memory;
        }
        status = extrude_elements(contract, map, N, pattern, on);
    }
    if (status == success) status = extrude_nodes(motion, map, N, layers, coords);
    if (status != success) undo_extrusion(contract, coords_rows, coords_cols, output_cols, on);
    return status;
}

} // namespace vorel::tessalo2d
