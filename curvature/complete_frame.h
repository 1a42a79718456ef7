// An orthonormal frame from one direction and a hint.
#pragma once

#include "foundation/vec.h"

namespace vorel::tessalo2d {

/// Makes (a, b, c) orthonormal with c = a x b: a keeps its direction, b becomes the part of b
/// across a. A zero a becomes the first axis; a b that is zero or along a is replaced by the axis
/// in which a is smallest, the first of equal ones. The length tests are on squares that are
/// exactly 0 or 1.
inline void complete_frame(vec3& a, vec3& b, vec3& c)
{
    const double q = squared_length(a);
    if (q == 0.0) {
        a[0] = 1.0;
    } else if (q != 1.0) {
        a = (1.0 / std::sqrt(q)) * a;
    }
    c = cross(a, b);
    if (c[0] == 0.0 && c[1] == 0.0 && c[2] == 0.0) {
        int smallest = 0;
        for (int i = 1; i < 3; ++i)
            if (std::fabs(a[i]) < std::fabs(a[smallest])) smallest = i;
        b = {{0.0, 0.0, 0.0}};
        b[smallest] = 1.0;
        c = cross(a, b);
    }
    c = normalized(c);
    b = cross(c, a);
}

} // namespace vorel::tessalo2d
