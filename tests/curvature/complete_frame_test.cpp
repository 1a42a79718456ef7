#include "curvature/complete_frame.h"

#include "support/matrices.h"

#include <cmath>
#include <random>

using namespace vorel::tessalo2d;

namespace {

void expect_vec(const vec3& v, double x, double y, double z)
{
    EXPECT_EQ(v[0], x);
    EXPECT_EQ(v[1], y);
    EXPECT_EQ(v[2], z);
}

} // namespace

TEST(CompleteFrame, ScalesTheFirstVectorAndMakesTheSecondCrossIt)
{
    vec3 a = {{0, 0, 2}};
    vec3 b = {{3, 0, 5}};
    vec3 c = {{9, 9, 9}};
    complete_frame(a, b, c);
    expect_vec(a, 0, 0, 1);
    expect_vec(b, 1, 0, 0);
    expect_vec(c, 0, 1, 0);
}

TEST(CompleteFrame, AZeroFirstVectorBecomesTheFirstAxis)
{
    vec3 a = {{0, 0, 0}};
    vec3 b = {{0, 4, 0}};
    vec3 c = {};
    complete_frame(a, b, c);
    expect_vec(a, 1, 0, 0);
    expect_vec(b, 0, 1, 0);
    expect_vec(c, 0, 0, 1);
}

TEST(CompleteFrame, AZeroSecondVectorBecomesTheAxisInWhichTheFirstIsSmallest)
{
    vec3 a = {{0.6, 0, -0.8}};
    vec3 b = {{0, 0, 0}};
    vec3 c = {};
    complete_frame(a, b, c);
    // b = (0, 1, 0), c = a x b = (0.8, 0, 0.6).
    EXPECT_NEAR(c[0], 0.8, 1e-15);
    EXPECT_EQ(c[1], 0.0);
    EXPECT_NEAR(c[2], 0.6, 1e-15);
    EXPECT_NEAR(b[1], 1.0, 1e-15);
}

TEST(CompleteFrame, OfEquallySmallEntriesTheFirstIsTaken)
{
    vec3 a = {{0, 0, 1}};
    vec3 b = {{0, 0, -7}};
    vec3 c = {};
    complete_frame(a, b, c);
    expect_vec(b, 1, 0, 0);
    expect_vec(c, 0, 1, 0);
}

TEST(CompleteFrame, AUnitFirstVectorKeepsItsBits)
{
    vec3 a = {{-0.0, 1, 0}};
    vec3 b = {{1, 0, 0}};
    vec3 c = {};
    complete_frame(a, b, c);
    EXPECT_TRUE(std::signbit(a[0]));
    EXPECT_EQ(a[1], 1.0);
}

TEST(CompleteFrame, IsOrthonormalForRandomVectors)
{
    std::mt19937 draw(7);
    std::uniform_real_distribution<double> value(-1, 1);
    for (int round = 0; round < 1000; ++round) {
        vec3 a = {{value(draw), value(draw), value(draw)}};
        vec3 b = {{value(draw), value(draw), value(draw)}};
        vec3 c = {};
        const vec3 direction = normalized(a);
        complete_frame(a, b, c);
        EXPECT_NEAR(dot(a, direction), 1.0, 1e-14) << "round " << round;
        EXPECT_NEAR(dot(a, b), 0.0, 1e-14) << "round " << round;
        EXPECT_NEAR(length(b), 1.0, 1e-14) << "round " << round;
        EXPECT_NEAR(length(cross(a, b) - c), 0.0, 1e-14) << "round " << round;
    }
}
