#include "fuzz/allocator.h"

#include <vorel/vector_num.h>

#include <cstdlib>
#include <cstring>
#include <limits>

namespace fuzz {

namespace {

/// Keeps a run short: what needs more is refused, as on a machine without that much memory.
constexpr std::size_t LARGEST_REQUEST = std::size_t(1) << 18;
constexpr std::size_t NEVER = std::numeric_limits<std::size_t>::max();

struct {
    unsigned char fill = 0;
    std::size_t until_refusal = NEVER;
    bool for_good = false;
    bool refused = false;
    std::size_t live = 0;
} state;

bool refuse(std::size_t bytes)
{
    bool refused = bytes > LARGEST_REQUEST;
    if (state.until_refusal == 0) {
        refused = true;
        if (!state.for_good) state.until_refusal = NEVER;
    } else if (state.until_refusal != NEVER) {
        --state.until_refusal;
    }
    state.refused = state.refused || refused;
    return refused;
}

} // namespace

allocator_rules::allocator_rules(unsigned char fill, refusal kind, std::size_t k)
{
    state.fill = fill;
    state.until_refusal = kind == refusal::none ? NEVER : k;
    state.for_good = kind == refusal::for_good;
    state.refused = false;
}

allocator_rules::~allocator_rules()
{
    state.until_refusal = NEVER;
}

bool allocator_rules::refused() const
{
    return state.refused;
}

std::size_t live_blocks()
{
    return state.live;
}

} // namespace fuzz

namespace vorel {

void* __vector_num_alloc(std::size_t bytes) noexcept
{
    if (fuzz::refuse(bytes)) return nullptr;
    void* const memory = std::malloc(bytes);
    if (!memory) return nullptr;
    // Whoever reads what nobody wrote gets another value in each of the runs that are compared.
    std::memset(memory, fuzz::state.fill, bytes);
    ++fuzz::state.live;
    return memory;
}

void __vector_num_free(void* memory) noexcept
{
    if (!memory) std::abort();
    --fuzz::state.live;
    std::free(memory);
}

} // namespace vorel
