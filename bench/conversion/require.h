// A benchmark of calls that fail would measure nothing.
#pragma once

#include <cstdlib>

namespace bench_support {

inline void require(bool done)
{
    if (!done) std::abort();
}

} // namespace bench_support
