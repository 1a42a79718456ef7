// Both dimensions of a metric as types, for tests that are the same in the plane and in space.
#pragma once

#include <gtest/gtest.h>

#include <string>

template <std::size_t D_>
struct dimension {
    static constexpr std::size_t D = D_;
    /// Entries of a metric.
    static constexpr std::size_t rows = D_ * (D_ + 1) / 2;
};

using dimensions = testing::Types<dimension<2>, dimension<3>>;

struct dimension_name {
    template <class Dimension>
    static std::string GetName(int)
    {
        return "In" + std::to_string(Dimension::D) + "D";
    }
};
