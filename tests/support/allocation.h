// Makes any single allocation fail: the raw allocator pair of the library is replaced in the test
// programs by one that counts and can be told to refuse.
#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <string>

namespace support {

enum class failure {
    once,    ///< only the k-th request is refused
    for_good ///< the k-th request and all later ones are refused
};

/// What an allocator asks before it serves, and tells what it has served.
struct request_gate {
    std::size_t served = 0;
    /// Blocks that were served and not freed.
    std::size_t live = 0;
    /// Requests still to be served before one is refused.
    std::size_t until_refusal = std::numeric_limits<std::size_t>::max();
    bool for_good = false;
    /// A request was refused since the gate was armed.
    bool fired = false;

    /// Counts a request; true if it is the one to refuse.
    bool refuse();
};

/// The gate of the raw allocator pair.
request_gate& raw_requests();

/// Arms an allocator for the lifetime of the object: request number `k` from now on, counted from
/// 0, is refused. Not nestable.
class failing_allocation {
public:
    explicit failing_allocation(std::size_t k, failure kind = failure::once,
                                request_gate& gate = raw_requests());
    ~failing_allocation();
    failing_allocation(const failing_allocation&) = delete;
    failing_allocation& operator=(const failing_allocation&) = delete;

    /// True when a request was refused.
    bool fired() const;

private:
    request_gate& armed;
};

/// For the lifetime of the object raw requests above `bytes` are refused, as by a smaller machine.
class limited_memory {
public:
    explicit limited_memory(std::size_t bytes);
    ~limited_memory();
    limited_memory(const limited_memory&) = delete;
    limited_memory& operator=(const limited_memory&) = delete;

    /// True when a request was refused.
    bool fired() const;
};

/// Requests served since the program began.
std::size_t allocations();

/// Blocks that were served and not freed.
std::size_t live_allocations();

/// Runs `attempt` with its k-th storage request refused, for k = 0, 1, ... until no request is left
/// to refuse, first once for each k, then for good. `attempt` sets up its own arguments, makes the
/// call inside `armed`, and checks the outcome; it is told whether the refusal struck and a text
/// for failure messages. Example:
///
///     each_refused_allocation([&](auto armed, const auto& told) {
///         dense2D<unsigned> result;
///         int status = 0;
///         const bool refused = armed([&] { status = split_into_linear(connect, result); });
///         EXPECT_EQ(status, refused ? -199 : 0) << told;
///     });
///
/// Checks after each attempt that nothing leaked. Returns the number of refusals that struck.
std::size_t each_refused_allocation(
    const std::function<void(const std::function<bool(const std::function<void()>&)>& armed,
                             const std::string& told)>& attempt,
    request_gate& gate = raw_requests());

} // namespace support
