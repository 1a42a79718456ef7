#include <vorel/fixed.h>

#include <gtest/gtest.h>

#include <type_traits>

using namespace vorel;

TEST(VectorFixed, IsItsNumbersAndNothingElse)
{
    EXPECT_EQ(sizeof(vector_fixed<double, 2>), 16u);
    EXPECT_EQ(sizeof(vector_fixed<double, 3>), 24u);
    EXPECT_TRUE((std::is_trivial_v<vector_fixed<double, 3>>));
    vector_fixed<double, 3> v{{1.0, 2.0, 3.0}};
    v[1] = 20.0;
    const vector_fixed<double, 3>& constant = v;
    EXPECT_EQ(constant[0] + constant[1] + constant[2], 24.0);
    EXPECT_EQ(&v[2], v.data + 2);
    EXPECT_EQ((vector_fixed<double, 3>::size), 3u);
}

TEST(SymmetricFixed, PacksTheUpperTriangleByColumns)
{
    symmetric_fixed<double, 3> m{{0, 1, 2, 3, 4, 5}};
    EXPECT_EQ(sizeof(m), 48u);
    EXPECT_EQ(sizeof(symmetric_fixed<double, 2>), 24u);
    const double full[3][3] = {{0, 1, 3}, {1, 2, 4}, {3, 4, 5}};
    const symmetric_fixed<double, 3>& constant = m;
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j) EXPECT_EQ(constant(i, j), full[i][j]);
    m(2, 0) = 30.0;
    EXPECT_EQ(m[3], 30.0);
    symmetric_fixed<double, 3> copy;
    copy = m;
    EXPECT_EQ(copy(0, 2), 30.0);
}

TEST(FixedTypes, WorkInConstantExpressions)
{
    constexpr vector_fixed<double, 2> v{{1.0, 2.0}};
    static_assert(v[1] == 2.0);
    constexpr symmetric_fixed<double, 2> m{{1.0, 2.0, 3.0}};
    static_assert(m(1, 0) == 2.0 && m(0, 1) == 2.0 && m(1, 1) == 3.0);
}
