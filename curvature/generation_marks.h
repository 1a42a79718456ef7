// A set of element numbers that is emptied in constant time.
#pragma once

#include <vorel/dense1D.h>

#include <algorithm>

namespace vorel::tessalo2d {

/// An element is in the set when its tag equals the current generation. Emptying the set starts a
/// new generation; the tags are cleared only when the generations have run through all values.
struct generation_marks {
    dense1D<unsigned, 8> tags;
    unsigned generation = 0;
    unsigned increment = 1;

    /// An empty set over `elements` element numbers. False when no storage can be had.
    [[nodiscard]] bool init(std::size_t elements)
    {
        generation = 0;
        increment = 1;
        tags.size = 0;
        return tags.resize(elements, 0u);
    }

    /// Empties the set.
    void start()
    {
        const unsigned step = increment;
        increment = 1;
        if (generation >= 0u - step) {
            generation = 1;
            std::fill(tags.begin(), tags.end(), 0u);
        } else {
            generation += step;
        }
    }

    void insert(unsigned e) { tags[e] = generation; }
    bool holds(unsigned e) const { return tags[e] == generation; }
};

} // namespace vorel::tessalo2d
