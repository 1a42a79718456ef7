// Principal directions and curvatures at the nodes of a triangulated surface.
#include "curvature/curvature_tensor.h"
#include "foundation/status.h"

#include <vorel/tessalo2d.h>

namespace vorel::tessalo2d {

namespace {

/// The seed of a node is the first triangle, in column order, that holds it.
void fill_seeds(const dense2D<unsigned>& connect, unsigned* seeds)
{
    for (std::size_t e = connect.cols; e-- > 0;) {
        const unsigned* const column = connect.column(e);
        for (int k = 0; k < 3; ++k) seeds[column[k]] = static_cast<unsigned>(e);
    }
}

/// All triangles, each near those before it: breadth first across edges. Nodes don't depend on one
/// another, so they may come in any order, and in this one neighbouring patches find their
/// triangles in the cache however the mesh is numbered. Each triangle enters once, as it is marked.
void fill_visiting_order(const surface_patches& surface, generation_marks& marks, unsigned* order)
{
    const surface_patches::links* const triangles = surface.triangles.begin();
    const auto elements = static_cast<unsigned>(surface.triangles.size);
    marks.start();
    std::size_t end = 0;
    std::size_t next = 0;
    for (unsigned first = 0; first < elements; ++first) {
        if (marks.holds(first)) continue;
        marks.insert(first);
        order[end++] = first;
        for (; next < end; ++next)
            for (const unsigned u : triangles[order[next]].across) {
                if (u == UNSET_ID || marks.holds(u)) continue;
                marks.insert(u);
                order[end++] = u;
            }
    }
}

} // namespace

int principal_curvatures(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                         const dense2D<unsigned>& neighbors, double radius, double max_angle,
                         unsigned max_triangles, const dense2D<unsigned>& ridges,
                         dense2D<double>& curvatures)
{
    if (is_empty(connect)) return success;
    if (!has_rows(coords, 3)) return bad_argument(1);
    if (!tessalo::check_IDs(connect, ELEMENT_T3, node_bound(coords))) return bad_argument(2);
    if (neighbors.cols != connect.cols) return bad_argument(3);
    if (!tessalo::check_IDs(ridges, ELEMENT_E2, node_bound(coords))) return bad_argument(7);

    const std::size_t nodes = coords.cols;
    curvatures.clear();
    surface_patches surface;
    generation_marks marks;
    dense1D<unsigned, 8> seeds;
    dense1D<unsigned, 8> order;
    dense1D<unsigned, 8> patch;
    if (!prepare_patches(coords, connect, neighbors, {radius, max_angle, max_triangles, ridges},
                         surface) ||
        !marks.init(connect.cols) || !seeds.resize(nodes, UNSET_ID) || !order.resize(connect.cols))
        return out_of_memory;
    if (!curvatures.resize(8, nodes, 0.0)) return out_of_memory;
    fill_seeds(connect, seeds.begin());
    fill_visiting_order(surface, marks, order.begin());

    const double* const points = coords.column(0);
    double* const target = curvatures.column(0);
    for (const unsigned e : order) {
        const unsigned* const column = connect.column(e);
        for (int k = 0; k < 3; ++k) {
            const std::size_t i = column[k];
            if (seeds[i] == UNSET_ID) continue; // done
            collect_patch(surface, load<3>(points + i * coords.ld), seeds[i], marks, patch);
            seeds[i] = UNSET_ID;
            const principal_pair at = curvature_tensor_at_node(surface, patch, marks);
            double* const out = target + 8 * i;
            store(at.first, out);
            store(at.second, out + 3);
            out[6] = at.first_value;
            out[7] = at.second_value;
        }
    }
    return success;
}

} // namespace vorel::tessalo2d
