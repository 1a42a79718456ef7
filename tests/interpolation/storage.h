// The storage that one interpolation asks for.
#pragma once

#include "support/allocation.h"

namespace support {

/// Requests that a call makes up to the end of the tree's build, for a few hundred nodes: the first
/// cells, the marks and the list of the nodes in use, the array to sort, all cells, the shortcuts.
constexpr std::size_t REQUESTS_OF_A_TREE = 6;

/// Whether the single refusal of request k, the marks or the list, leaves the tree without nodes.
constexpr bool leaves_the_tree_empty(std::size_t k)
{
    return k == 1 || k == 2;
}

/// Makes the call with its request number k refused. Whether there was one.
template <class Call>
bool with_request_refused(std::size_t k, Call call)
{
    const failing_allocation armed(k);
    call();
    return armed.fired();
}

/// How many requests the call makes.
template <class Call>
std::size_t allocations_of(Call call)
{
    const std::size_t before = allocations();
    call();
    return allocations() - before;
}

} // namespace support
