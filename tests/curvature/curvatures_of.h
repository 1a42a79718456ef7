// Principal curvatures of a mesh that passes all checks, and the directions in a column of them.
#pragma once

#include "foundation/vec.h"

#include "support/meshes.h"
#include "support/topology.h"

#include <vorel/tessalo2d.h>

#include <gtest/gtest.h>

#include <cmath>

namespace curvature_tests {

using namespace vorel;
using namespace vorel::tessalo2d;

inline const double PI = std::acos(-1.0);

inline vec3 first_direction(const dense2D<double>& c, std::size_t i)
{
    return load<3>(c.column(i));
}
inline vec3 second_direction(const dense2D<double>& c, std::size_t i)
{
    return load<3>(c.column(i) + 3);
}

inline dense2D<double> curvatures_of(const support::mesh& m, double radius)
{
    dense2D<double> result;
    EXPECT_EQ(principal_curvatures(m.coords, m.connect, support::neighbors_of(m.connect), radius,
                                   PI, 100000, dense2D<unsigned>(), result),
              0)
        << m.name;
    return result;
}

} // namespace curvature_tests
