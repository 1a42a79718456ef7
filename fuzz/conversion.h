// What the two halves of the conversion family, order conversion and splits, need of each other.
#pragma once

#include "fuzz/trial.h"

#include <vector>

namespace fuzz {

/// A mesh, and sometimes edges that have their node in the middle already.
void prepare_middle(input& in, arguments& a);

/// The half of the table that follows the order conversion.
std::vector<call> splits();

} // namespace fuzz
