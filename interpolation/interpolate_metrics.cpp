// Sizes and metrics from a background mesh to target nodes.
#include "interpolation/carried_metrics.h"
#include "interpolation/serve_targets.h"

#include <vorel/tessalo2d.h>

#include <numeric>

namespace vorel::tessalo2d {

namespace {

/// All nodes as a list. False when there is no storage for it.
bool list_all(const dense2D<double>& coords, dense1D<unsigned, 8>& nodes)
{
    if (coords.cols > UNSET_ID || !nodes.resize(coords.cols)) return false;
    std::iota(nodes.begin(), nodes.end(), 0u);
    return true;
}

} // namespace

int interpolate_metrics(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                        const dense2D<unsigned>& neighbors,
                        const dense1D<unsigned, 8>& node_element, dense2D<double>& metrics,
                        const dense1D<unsigned, 8>& nodes, bool keep_valid, element_type type)
{
    const interpolation_arguments a{coords, connect, neighbors, node_element, nodes};
    if (nodes.size == 0) return success;
    // Kept: callers rely on metrics being taken from triangles only, whatever `type` says.
    if (const int status = check_background(a, ELEMENT_T3)) return status;
    if (metrics.cols != coords.cols) return bad_argument(5);
    if (!has_rows(metrics, 3, 6)) return bad_argument(5);
    if (!tessalo::check_IDs(nodes, node_bound(coords))) return bad_argument(6);
    if (metrics.rows == 3)
        serve_targets_of_form(a, type, metric_carrier<2>(metrics, keep_valid));
    else
        serve_targets_of_form(a, type, metric_carrier<3>(metrics, keep_valid));
    return success;
}

int interpolate_metrics(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                        const dense2D<unsigned>& neighbors,
                        const dense1D<unsigned, 8>& node_element, dense2D<double>& metrics,
                        bool keep_valid, element_type type)
{
    dense1D<unsigned, 8> nodes;
    if (!list_all(coords, nodes)) return out_of_memory;
    return interpolate_metrics(coords, connect, neighbors, node_element, metrics, nodes, keep_valid,
                               type);
}

int interpolate_metrics(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                        const dense2D<unsigned>& neighbors,
                        const dense1D<unsigned, 8>& node_element, dense1D<double, 8>& sizes,
                        const dense1D<unsigned, 8>& nodes, bool keep_valid, element_type type)
{
    const interpolation_arguments a{coords, connect, neighbors, node_element, nodes};
    if (nodes.size == 0) return success;
    if (const int status = check_background(a, type)) return status;
    if (sizes.size != coords.cols) return bad_argument(5);
    if (!tessalo::check_IDs(nodes, node_bound(coords))) return bad_argument(6);
    serve_targets_of_form(a, type, size_carrier(sizes, keep_valid));
    return success;
}

int interpolate_metrics(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                        const dense2D<unsigned>& neighbors,
                        const dense1D<unsigned, 8>& node_element, dense1D<double, 8>& sizes,
                        bool keep_valid, element_type type)
{
    dense1D<unsigned, 8> nodes;
    if (!list_all(coords, nodes)) return out_of_memory;
    return interpolate_metrics(coords, connect, neighbors, node_element, sizes, nodes, keep_valid,
                               type);
}

} // namespace vorel::tessalo2d
