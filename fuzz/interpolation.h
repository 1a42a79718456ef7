// What the interpolation family promises, and what it says about its fields for that.
#pragma once

#include "fuzz/expectations.h"
#include "fuzz/trial.h"

#include <vector>

namespace fuzz {

/// The position in `arguments::count` of whether the fields are ones that interpolation reproduces:
/// the value is linear in the coordinates, the metric is one and the same.
inline constexpr unsigned REPRODUCED = 1;

inline double linear_value(const dense2D<double>& coords, std::size_t node)
{
    return 12.0 + coords(0, node) + 2.0 * coords(1, node);
}

/// The nodes that elements use.
inline std::vector<bool> used_nodes(const arguments& a)
{
    return used_nodes(a.connect(), a.coords().cols);
}

void verify_kept(const arguments& before, const arguments& after, int status);

// Targets are `all` nodes, or those of the list.

template <bool all>
void verify_matrix(const arguments& before, const arguments& after, int status);

/// In quadrilaterals `interpolate` is bilinear, while sizes are not.
template <bool all, bool bilinear>
void verify_list(const arguments& before, const arguments& after, int status);

} // namespace fuzz
