// Patches of triangles around the nodes of a surface, and what their triangles and edges
// contribute.
#pragma once

#include "curvature/generation_marks.h"
#include "foundation/vec.h"

#include <vorel/dense2D.h>

#include <cstddef>

namespace vorel::tessalo2d {

/// Everything that the patches of one call share, computed once: one facet a triangle, and the
/// dihedral share of each interior edge. About 150 bytes a triangle.
struct surface_patches {
    /// What a patch asks of a triangle; one cache line.
    struct facet {
        vec3 normal;   ///< not scaled: its length is twice the area
        double length; ///< of the normal
        double square; ///< of that length
        vec3 centroid;
    };

    /// The triangles across the three edges, `UNSET_ID` for none.
    struct links {
        unsigned across[3];
        unsigned closed;         ///< bit k: a patch may not cross edge k
        std::size_t first_share; ///< of the edges that count from this triangle
    };

    /// An interior edge in the curvature tensor: its signed dihedral angle times its length, along
    /// its unit direction. It counts from the triangle with the higher number.
    struct edge_share {
        double weight;
        vec3 direction;
    };

    double squared_radius = 0.0;
    unsigned max_triangles = 0;
    dense1D<facet, 8> facets;
    dense1D<links, 8> triangles;
    dense1D<edge_share, 8> shares;
};

/// What ends a patch: a distance, a count, edges listed as ridges (one that their set has no room
/// for is crossed) and edges that turn by an angle or more or stand beside a triangle without area.
struct patch_limits {
    double radius;
    double max_angle;
    unsigned max_triangles;
    const dense2D<unsigned>& ridges;
};

/// Fills the record for a mesh of triangles. IDs in `connect` and `ridges` are valid; an entry of
/// `neighbors` that stands outside the matrix or names no triangle is no neighbour. False when
/// storage can't be had. O(E).
[[nodiscard]] bool prepare_patches(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                                   const dense2D<unsigned>& neighbors, const patch_limits& limits,
                                   surface_patches& surface);

/// The triangles around a point, grown from a seed across edges: the seed first, then by distance
/// in edges, those found from one triangle in ascending order. A triangle joins when its centroid
/// lies within the radius and the edge is open; one that was refused is not asked again. Growth
/// ends when the list has reached `max_triangles`, tested before each triangle's neighbours, so it
/// may end up longer by two. With a squared radius that is not above 0 the patch is the seed.
void collect_patch(const surface_patches& surface, const vec3& point, unsigned seed,
                   generation_marks& marks, dense1D<unsigned, 8>& list);

} // namespace vorel::tessalo2d
