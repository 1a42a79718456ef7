// The pictures of the documentation, one a family: 900 x 300 from `at` on. Everything they show is
// what calls of the library return.
#pragma once

#include "canvas.h"

namespace pictures {

void draw_containers(canvas& c, point at);
void draw_conversion(canvas& c, point at);
void draw_extrusion(canvas& c, point at);
void draw_structured(canvas& c, point at);
void draw_measures(canvas& c, point at);
void draw_interpolation(canvas& c, point at);
void draw_metrics(canvas& c, point at);
void draw_curvature(canvas& c, point at);

/// How far the smallest corner angle of each element is from the ideal one, for colours.
std::vector<double> poor_angles(const vorel::dense2D<double>& coords,
                                const vorel::dense2D<unsigned>& connect);

// Parts that the overview shows, too.
void draw_airfoil_grid(canvas& c, point at, double width, double height);
void draw_screw(canvas& c, point at, double width, double height);
void draw_torus(canvas& c, point at, double width, double height);

} // namespace pictures
