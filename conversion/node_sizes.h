// Element sizes at nodes, which draw the nodes of a conversion towards the finer end.
#pragma once

#include <vorel/dense1D.h>

#include <limits>

namespace vorel::tessalo2d {

/// Reads a run of sizes that may be shorter than the node count, or empty. Take it only after all
/// growth.
class node_sizes {
public:
    explicit node_sizes(const dense1D<double, 8>& sizes) : first(sizes.begin()), count(sizes.size)
    {
    }

    /// The node has a size that a law can work with: positive and finite, below the largest double.
    bool has(unsigned node) const
    {
        return node < count && first[node] > 0.0 &&
               first[node] < std::numeric_limits<double>::max();
    }

    double operator[](unsigned node) const { return first[node]; }

private:
    const double* first;
    std::size_t count;
};

} // namespace vorel::tessalo2d
