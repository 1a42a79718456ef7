// In this program `operator new` can be told to refuse, as the raw allocator pair can.
#pragma once

#include "support/allocation.h"

namespace exports {

support::request_gate& new_requests();

} // namespace exports
