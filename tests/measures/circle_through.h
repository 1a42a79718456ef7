// A circumcenter and its squared radius as one value.
#pragma once

#include "measures/circumcenters.h"

#include "support/matrices.h"

#include <vector>

namespace support {

using point = std::vector<double>;

struct circle {
    point center;
    double radius2;
};

/// The circle through three points, by the function for one triangle.
inline circle circle_through(const std::vector<point>& corners)
{
    const vorel::dense2D<double> coords = matrix(corners);
    const unsigned nodes[] = {0, 1, 2};
    circle c{point(coords.rows), -1.0};
    if (coords.rows == 2)
        vorel::tessalo2d::circumcenter_2d(coords, nodes, c.radius2, c.center.data());
    else
        vorel::tessalo2d::circumcenter_3d(coords, nodes, c.radius2, c.center.data());
    return c;
}

} // namespace support
