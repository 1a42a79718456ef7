#include "support/allocation.h"

#include <vorel/vector_num.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>

namespace support {

namespace {

constexpr std::size_t NEVER = std::numeric_limits<std::size_t>::max();
/// Larger requests are refused always, as a machine without that much memory would.
constexpr std::size_t LARGEST_REQUEST = std::size_t(1) << 34;

struct {
    std::size_t served = 0;
    std::size_t live = 0;
    std::size_t largest = LARGEST_REQUEST;
    std::size_t until_refusal = NEVER;
    bool for_good = false;
    bool fired = false;
} state;

bool refuse()
{
    if (state.until_refusal == NEVER) return false;
    if (state.until_refusal > 0) {
        --state.until_refusal;
        return false;
    }
    if (!state.for_good) state.until_refusal = NEVER;
    state.fired = true;
    return true;
}

} // namespace

failing_allocation::failing_allocation(std::size_t k, failure kind)
{
    state.until_refusal = k;
    state.for_good = kind == failure::for_good;
    state.fired = false;
}

failing_allocation::~failing_allocation()
{
    state.until_refusal = NEVER;
}

bool failing_allocation::fired() const
{
    return state.fired;
}

limited_memory::limited_memory(std::size_t bytes)
{
    state.largest = bytes;
}

limited_memory::~limited_memory()
{
    state.largest = LARGEST_REQUEST;
}

std::size_t allocations()
{
    return state.served;
}

std::size_t live_allocations()
{
    return state.live;
}

std::size_t each_refused_allocation(
    const std::function<void(const std::function<bool(const std::function<void()>&)>& armed,
                             const std::string& told)>& attempt)
{
    constexpr std::size_t MOST = 100000;
    std::size_t refusals = 0;
    for (const failure kind : {failure::once, failure::for_good}) {
        bool struck = true;
        for (std::size_t k = 0; struck && k < MOST; ++k) {
            const std::string told = "request " + std::to_string(k) + " refused " +
                                     (kind == failure::once ? "once" : "for good");
            struck = false;
            const std::size_t live_before = live_allocations();
            attempt(
                [&](const std::function<void()>& call) {
                    failing_allocation armed(k, kind);
                    call();
                    struck = struck || armed.fired();
                    return armed.fired();
                },
                told);
            EXPECT_EQ(live_allocations(), live_before) << "storage leaked: " << told;
            if (struck) ++refusals;
        }
        EXPECT_FALSE(struck) << "never served";
    }
    return refusals;
}

} // namespace support

namespace vorel {

void* __vector_num_alloc(std::size_t bytes) noexcept
{
    if (bytes > support::state.largest || support::refuse()) return nullptr;
    void* const memory = std::malloc(bytes);
    if (memory) {
        ++support::state.served;
        ++support::state.live;
    }
    return memory;
}

void __vector_num_free(void* memory) noexcept
{
    EXPECT_NE(memory, nullptr);
    --support::state.live;
    std::free(memory);
}

} // namespace vorel
