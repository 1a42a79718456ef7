// The curvature tensor of a patch of triangles.
#pragma once

#include "curvature/surface_patches.h"

namespace vorel::tessalo2d {

/// Two unit directions across each other and the value of each.
struct principal_pair {
    vec3 first;
    vec3 second;
    double first_value;
    double second_value;
};

/// The eigenvectors and eigenvalues of the patch's tensor: the sum over its interior edges of
/// dihedral angle times length along the edge, divided by half the patch's doubled area. The first
/// value is the one of largest magnitude; a second value not above a thousandth of it has no
/// direction of its own and gets the one across the first and the seed's normal. All zero for a
/// patch without area and where the eigenvalues can't be had.
principal_pair curvature_tensor_at_node(const surface_patches& surface,
                                        const dense1D<unsigned, 8>& list, generation_marks& marks);

} // namespace vorel::tessalo2d
