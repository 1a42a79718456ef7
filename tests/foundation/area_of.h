// The area of a mesh that passes all checks, for tests of its value.
#pragma once

#include <vorel/tessalo2d.h>

#include <gtest/gtest.h>

namespace area_tests {

using namespace vorel;

using IDs = dense2D<unsigned>;
using reals = dense2D<double>;

inline constexpr unsigned U = UNSET_ID;

inline double area_of(const reals& coords, const IDs& connect)
{
    double result = -1.0;
    EXPECT_EQ(tessalo2d::area(coords, connect, result), 0);
    return result;
}

} // namespace area_tests
