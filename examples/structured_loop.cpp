// Fills a closed loop of boundary nodes with a structured grid: a quarter of a ring, finer towards
// the inner circle.
#include "check_status.h"

#include <vorel/tessalo2d.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

using namespace vorel;

int main()
{
    const unsigned around = 24;
    const unsigned across = 8;
    const double quarter = std::acos(0.0);
    dense2D<double> coords;
    dense1D<unsigned, 8> loop;
    const auto add = [&](double radius, double angle) {
        const auto node = static_cast<unsigned>(coords.cols);
        if (!coords.resize(2, node + 1)) std::exit(EXIT_FAILURE);
        coords(0, node) = radius * std::cos(angle);
        coords(1, node) = radius * std::sin(angle);
        loop.append(node);
    };
    const auto radius = [&](unsigned k) { return std::pow(3.0, double(k) / across); };

    // Four sides, anticlockwise, each without its last node: outwards, around, inwards and back.
    for (unsigned k = 0; k < across; ++k) add(radius(k), 0.0);
    for (unsigned k = 0; k < around; ++k) add(3.0, quarter * k / around);
    for (unsigned k = across; k > 0; --k) add(radius(k), quarter);
    for (unsigned k = around; k > 0; --k) add(1.0, quarter * k / around);
    loop.append(0);

    dense2D<unsigned> quads;
    check_status(tessalo2d::mesh_struct_Q4(coords, loop, around, quads), "mesh_struct_Q4");

    double area = 0.0;
    check_status(tessalo2d::area(coords, quads, area), "area");
    dense1D<double, 8> smallest;
    dense1D<double, 8> largest;
    check_status(tessalo2d::angles(coords, quads, true, smallest, largest), "angles");
    std::printf("%zu quadrilaterals on %zu nodes, %zu of them new\n", quads.cols, coords.cols,
                coords.cols - (loop.size - 1));
    std::printf("area %.3f of %.3f\n", area, 4.0 * quarter);
    std::printf("corner angles from %.3f to %.3f right angles\n",
                *std::min_element(smallest.begin(), smallest.end()),
                *std::max_element(largest.begin(), largest.end()));

    // The number of subdivisions has to fit the length of the loop: argument 3 is checked.
    const int status = tessalo2d::mesh_struct_Q4(coords, loop, 100, quads);
    std::printf("with 100 subdivisions: status %d\n", status);
}
