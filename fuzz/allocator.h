// The raw allocator pair of the fuzz programs: refuses large requests, and single ones when told.
#pragma once

#include <cstddef>

namespace fuzz {

enum class refusal { none, once, for_good };

/// For the lifetime of the object fresh storage is filled with `fill`, and request number `k` from
/// now on, counted from 0, is refused (and all later ones). Not nestable.
class allocator_rules {
public:
    allocator_rules(unsigned char fill, refusal kind, std::size_t k);
    ~allocator_rules();
    allocator_rules(const allocator_rules&) = delete;
    allocator_rules& operator=(const allocator_rules&) = delete;

    /// True when a request was refused, also one for too much.
    bool refused() const;
};

/// Blocks that were served and not freed.
std::size_t live_blocks();

} // namespace fuzz
