// The same arguments in awkward places: gaps between columns, offsets, memory that ends with the
// last entry, blocks that several views share.
#pragma once

#include "fuzz/arguments.h"
#include "fuzz/input.h"

#include <cstdlib>
#include <memory>
#include <vector>

namespace fuzz {

struct free_memory {
    void operator()(void* p) const { std::free(p); }
};

/// A deep copy of arguments, each view in a block of its own, and a picture of these blocks.
class placement {
public:
    placement(input& in, const arguments& a);

    arguments placed;

    /// The view is what it was, and no byte of its block has changed.
    bool is_untouched(view v) const;

    /// What the block held in front of the view and, for one that keeps its gaps, between its
    /// columns is as it was.
    bool has_kept_surroundings(view v, bool keeps_gaps) const;

private:
    struct picture {
        shape before;
        shape now;
        const void* block_before;
        const void* block_now;
        const unsigned char* data;
        std::size_t element;
        std::vector<unsigned char> bytes;
    };
    picture look_at(view v) const;

    std::vector<std::unique_ptr<void, free_memory>> foreign;
    std::vector<picture> before;
};

/// Moves views of one kind of entry into one block, where they may overlap, and lets names stand
/// for one object.
void share(input& in, arguments& a);

} // namespace fuzz
