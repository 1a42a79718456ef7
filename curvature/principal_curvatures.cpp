// Principal directions and curvatures at the nodes of a triangulated surface.
#include "curvature/curvature_tensor.h"
#include "foundation/status.h"

#include <vorel/tessalo2d.h>

namespace vorel::tessalo2d {

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
    dense1D<unsigned, 8> patch;
    dense1D<unsigned char, 8> done;
    if (!prepare_patches(coords, connect, neighbors, {radius, max_angle, max_triangles, ridges},
                         surface) ||
        !marks.init(connect.cols) || !done.resize(nodes, 0))
        return out_of_memory;
    if (!curvatures.resize(8, nodes, 0.0)) return out_of_memory;

    const double* const points = coords.column(0);
    double* const target = curvatures.column(0);
    const unsigned* column = connect.column(0);
    for (std::size_t e = 0; e < connect.cols; ++e, column += connect.ld)
        for (int k = 0; k < 3; ++k) {
            const std::size_t i = column[k];
            if (done[i]) continue;
            done[i] = 1;
            collect_patch(surface, load<3>(points + i * coords.ld), static_cast<unsigned>(e), marks,
                          patch);
            const principal_pair at = curvature_tensor_at_node(surface, patch, marks);
            double* const out = target + 8 * i;
            store(at.first, out);
            store(at.second, out + 3);
            out[6] = at.first_value;
            out[7] = at.second_value;
        }
    return success;
}

} // namespace vorel::tessalo2d
