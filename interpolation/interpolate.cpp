// Fields from a background mesh to target nodes.
#include "interpolation/carried_values.h"
#include "interpolation/serve_targets.h"

#include <vorel/tessalo2d.h>

namespace vorel::tessalo2d {

int interpolate(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                const dense2D<unsigned>& neighbors, const dense1D<unsigned, 8>& node_element,
                dense2D<double>& field, const dense1D<unsigned, 8>& nodes, element_type type)
{
    const interpolation_arguments a{coords, connect, neighbors, node_element, nodes};
    if (nodes.size == 0) return success;
    if (const int status = check_background(a, type)) return status;
    if (field.cols != coords.cols) return bad_argument(5);
    if (!tessalo::check_IDs(nodes, node_bound(coords))) return bad_argument(6);
    serve_targets_of_form(a, type, rows_carrier(field));
    return success;
}

int interpolate(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                const dense2D<unsigned>& neighbors, const dense1D<unsigned, 8>& node_element,
                dense1D<double, 8>& field, const dense1D<unsigned, 8>& nodes, element_type type)
{
    const interpolation_arguments a{coords, connect, neighbors, node_element, nodes};
    if (nodes.size == 0) return success;
    if (const int status = check_background(a, type)) return status;
    if (field.size != coords.cols) return bad_argument(5);
    if (!tessalo::check_IDs(nodes, node_bound(coords))) return bad_argument(6);
    serve_targets_of_form(a, type, scalar_carrier(field));
    return success;
}

} // namespace vorel::tessalo2d
