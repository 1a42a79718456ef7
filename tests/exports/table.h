// The table of all exported functions with their contracts.
#pragma once

#include "exports/contract.h"

namespace exports {

/// One row for each exported function, written from their documentation.
const std::vector<exported>& table();

std::vector<exported> measures();
std::vector<exported> conversions();
std::vector<exported> splits();
std::vector<exported> extrusions();
std::vector<exported> grids();
std::vector<exported> connectivity();
std::vector<exported> interpolations();
std::vector<exported> curvatures();

} // namespace exports
