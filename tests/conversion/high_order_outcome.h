// What the tests of the order conversion share: a small mesh, and a call with its outputs.
#pragma once

#include "support/matrices.h"

namespace high_order_tests {

using namespace vorel;
using support::bits;
using support::columns;
using support::copy_of;
using tessalo2d::convert_into_high_order;
using tessalo2d::convert_into_quadratic;

constexpr unsigned U = UNSET_ID;

inline const dense2D<unsigned> NO_EDGES;

inline dense2D<double> square()
{
    return {{0, 0}, {2, 0}, {2, 2}, {0, 2}};
}

/// Two triangles over the square, with the common edge 0-2.
inline dense2D<unsigned> two_triangles()
{
    return {{0, 1, 2}, {2, 3, 0}};
}

struct outcome {
    int status = 1;
    dense2D<double> coords;
    dense2D<unsigned> connect;
};

/// The conversion of a copy, with a, b and c new nodes on an edge, in a quadrilateral and in a
/// triangle.
inline outcome converted(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                         unsigned a, unsigned b, unsigned c,
                         const dense2D<unsigned>& edges = NO_EDGES)
{
    outcome to;
    to.coords = copy_of(coords);
    to.status = convert_into_high_order(to.coords, connect, a, b, c, to.connect, edges);
    return to;
}

} // namespace high_order_tests
