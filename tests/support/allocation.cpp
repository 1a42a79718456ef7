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

request_gate raw;
std::size_t largest_request = LARGEST_REQUEST;

} // namespace

bool request_gate::refuse()
{
    if (until_refusal == NEVER) return false;
    if (until_refusal > 0) {
        --until_refusal;
        return false;
    }
    if (!for_good) until_refusal = NEVER;
    fired = true;
    return true;
}

request_gate& raw_requests()
{
    return raw;
}

failing_allocation::failing_allocation(std::size_t k, failure kind, request_gate& gate)
    : armed(gate)
{
    armed.until_refusal = k;
    armed.for_good = kind == failure::for_good;
    armed.fired = false;
}

failing_allocation::~failing_allocation()
{
    armed.until_refusal = NEVER;
}

bool failing_allocation::fired() const
{
    return armed.fired;
}

limited_memory::limited_memory(std::size_t bytes)
{
    largest_request = bytes;
    raw.fired = false;
}

limited_memory::~limited_memory()
{
    largest_request = LARGEST_REQUEST;
}

bool limited_memory::fired() const
{
    return raw.fired;
}

std::size_t allocations()
{
    return raw.served;
}

std::size_t live_allocations()
{
    return raw.live;
}

std::size_t each_refused_allocation(
    const std::function<void(const std::function<bool(const std::function<void()>&)>& armed,
                             const std::string& told)>& attempt,
    request_gate& gate)
{
    constexpr std::size_t MOST = 100000;
    std::size_t refusals = 0;
    for (const failure kind : {failure::once, failure::for_good}) {
        bool struck = true;
        for (std::size_t k = 0; struck && k < MOST; ++k) {
            const std::string told = "request " + std::to_string(k) + " refused " +
                                     (kind == failure::once ? "once" : "for good");
            struck = false;
            const std::size_t live_before = gate.live;
            attempt(
                [&](const std::function<void()>& call) {
                    failing_allocation armed(k, kind, gate);
                    call();
                    struck = struck || armed.fired();
                    return armed.fired();
                },
                told);
            EXPECT_EQ(gate.live, live_before) << "storage leaked: " << told;
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
    if (bytes > support::largest_request) {
        support::raw.fired = true;
        return nullptr;
    }
    if (support::raw.refuse()) return nullptr;
    void* const memory = std::malloc(bytes);
    if (memory) {
        ++support::raw.served;
        ++support::raw.live;
    }
    return memory;
}

void __vector_num_free(void* memory) noexcept
{
    EXPECT_NE(memory, nullptr);
    --support::raw.live;
    std::free(memory);
}

} // namespace vorel
