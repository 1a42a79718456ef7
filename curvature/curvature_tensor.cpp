// The curvature tensor of a patch of triangles.
#include "curvature/curvature_tensor.h"

#include "curvature/complete_frame.h"
#include "metrics/symmetric3.h"

#include <vorel/element_type.h>
#include <vorel/fixed.h>

#include <cmath>

namespace vorel::tessalo2d {

namespace {

/// T += (weight * v[p]) * v[q] in the packed order. A flat edge adds nothing, also where its
/// direction is no number.
void add_share(const surface_patches::edge_share& share, symmetric_fixed<double, 3>& tensor)
{
    if (share.weight == 0.0) return;
    const vec3& v = share.direction;
    std::size_t at = 0;
    for (int p = 0; p < 3; ++p)
        for (int q = 0; q <= p; ++q) tensor[at++] += share.weight * v[p] * v[q];
}

} // namespace

principal_pair curvature_tensor_at_node(const surface_patches& surface,
                                        const dense1D<unsigned, 8>& list, generation_marks& marks)
{
    marks.start();
    for (std::size_t i = 0; i < list.size; ++i) marks.insert(list[i]);

    const surface_patches::facet* const facets = surface.facets.begin();
    const surface_patches::links* const triangles = surface.triangles.begin();
    const surface_patches::edge_share* const shares = surface.shares.begin();
    double doubled_area = 0.0;
    symmetric_fixed<double, 3> tensor = {};
    for (std::size_t i = 0; i < list.size; ++i) {
        const unsigned e = list[i];
        doubled_area += facets[e].length;
        const surface_patches::edge_share* share = shares + triangles[e].first_share;
        for (int k = 0; k < 3; ++k) {
            const unsigned u = triangles[e].across[k];
            if (u > e) continue;
            if (marks.holds(u)) add_share(*share, tensor);
            ++share;
        }
    }

    principal_pair none = {};
    if (list.size == 0 || doubled_area == 0.0) return none;
    double values[3];
    double vectors[9];
    if (!eigen_sym3(tensor, values, vectors, true)) return none;
    const vec3 z[3] = {load<3>(vectors), load<3>(vectors + 3), load<3>(vectors + 6)};
    const double scale = 2.0 / doubled_area;
    for (double& value : values) value *= scale;

    int lo = 0;
    int hi = 0;
    for (int i = 1; i < 3; ++i) {
        if (std::fabs(values[i]) < std::fabs(values[lo])) lo = i;
        if (std::fabs(values[i]) > std::fabs(values[hi])) hi = i;
    }
    const int mid = hi == lo ? (hi + 1) % 3 : 3 - hi - lo;
    if (std::fabs(values[mid]) > 0.001 * std::fabs(values[hi]))
        return {z[hi], z[mid], values[hi], values[mid]};

    const surface_patches::facet& seed = facets[list[0]];
    vec3 across = {{0.0, 0.0, 0.0}};
    if (seed.length != 0.0) across = across + seed.length * seed.normal;
    vec3 along = z[hi];
    vec3 second;
    complete_frame(along, across, second);
    return {along, second, values[hi], values[mid]};
}

} // namespace vorel::tessalo2d
