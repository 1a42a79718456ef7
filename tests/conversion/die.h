// A seeded die for random meshes.
#pragma once

#include <random>

namespace support {

class die {
public:
    explicit die(unsigned seed) : engine(seed) {}

    /// A number from 0 to `sides` - 1.
    unsigned operator()(std::size_t sides) { return static_cast<unsigned>(engine() % sides); }

    /// A seed for something else.
    unsigned seed() { return static_cast<unsigned>(engine()); }

    std::mt19937 engine;
};

} // namespace support
