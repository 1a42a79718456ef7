// Sizes and metrics on background meshes, and what the plain search makes of them.
#pragma once

#include "interpolation/background.h"

namespace support {

/// The form with a list for the targets of a background.
int run(const background& b, vorel::dense1D<double, 8>& sizes, bool keep_valid = false);
int run(const background& b, vorel::dense2D<double>& metrics, bool keep_valid = false);

/// A positive size of ratio up to 3 at each background node; `at_targets` at targets.
vorel::dense1D<double, 8> sizes_of(const background& b, double at_targets);

/// A definite metric at each background node, varying; zeros at targets.
vorel::dense2D<double> metrics_of(const background& b, std::size_t rows);

/// What a call on these values has to give: targets are placed one by one by the plain search.
vorel::dense1D<double, 8> expected_sizes(const background& b,
                                         const vorel::dense1D<double, 8>& before,
                                         bool keep_valid = false);
vorel::dense2D<double> expected_metrics(const background& b, const vorel::dense2D<double>& before,
                                        bool keep_valid = false);

/// The triangle from the origin along the axes, and the square from -1 to 1.
background unit_triangle(const std::vector<plain::point>& targets);
background unit_square(const std::vector<plain::point>& targets);

} // namespace support
