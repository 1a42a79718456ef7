#include "metrics/sizes.h"

#include "support/matrices.h"

#include <random>

using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double LARGEST = 1.7976931348623157e308;

struct outcome {
    bool valid;
    double size;
};

outcome pair(double t, double first, double second)
{
    outcome o = {false, -77.0};
    o.valid = interpolate_size_pair(t, first, second, o.size);
    return o;
}

outcome triangle(double u, double v, double a, double b, double c)
{
    const dense1D<double, 8> sizes{9.0, a, b, 9.0, c};
    outcome o = {false, -77.0};
    o.valid = interpolate_size_triangle(sizes, u, v, 1, 2, 4, o.size);
    return o;
}

void expect(const outcome& o, bool valid, double size)
{
    EXPECT_EQ(o.valid, valid);
    EXPECT_EQ(o.size, size);
}

} // namespace

TEST(Spectrum, IsValidAboveZeroAndBelowTheLargestDouble)
{
    EXPECT_TRUE(spectrum_is_valid<2>({1.0, 2.0}));
    EXPECT_TRUE(spectrum_is_valid<3>({5e-324, 1.0, 1.7976931348623155e308}));
    EXPECT_FALSE(spectrum_is_valid<2>({0.0, 2.0}));
    EXPECT_FALSE(spectrum_is_valid<2>({-0.0, 2.0}));
    EXPECT_FALSE(spectrum_is_valid<3>({1.0, 2.0, -1e-300}));
    EXPECT_FALSE(spectrum_is_valid<3>({1.0, LARGEST, 2.0}));
    EXPECT_FALSE(spectrum_is_valid<3>({1.0, INF, 2.0}));
}

TEST(Spectrum, ANumberThatIsNoneFailsAnywhere)
{
    for (int at = 0; at < 3; ++at) {
        double values[3] = {1.0, 2.0, 3.0};
        values[at] = NOT_A_NUMBER;
        EXPECT_FALSE(spectrum_is_valid(values)) << at;
    }
}

TEST(SizesToEigenvalues, AreTheInverseSquares)
{
    double l[3];
    sizes_to_eigenvalues<3>({2.0, 0.5, 10.0}, l);
    EXPECT_EQ(l[0], 0.25);
    EXPECT_EQ(l[1], 4.0);
    EXPECT_EQ(l[2], 1.0 / 100.0);
}

TEST(SizesToEigenvalues, OutsideTheRangeGiveTheLargestDoubleAndZeroEachByItself)
{
    double l[3];
    sizes_to_eigenvalues<3>({1e-160, 2.0, 1e160}, l);
    EXPECT_EQ(l[0], LARGEST);
    EXPECT_EQ(l[1], 0.25);
    EXPECT_EQ(l[2], 0.0);
    sizes_to_eigenvalues<3>({0.0, -3.0, INF}, l);
    EXPECT_EQ(l[0], LARGEST);
    EXPECT_EQ(l[1], LARGEST);
    EXPECT_EQ(l[2], 0.0);
}

TEST(SizesToEigenvalues, AtTheLimitsStillGiveTheInverseSquare)
{
    const double floor = 1.4916681462400413e-154;
    const double ceiling = 1.3407807929942596e154;
    double l[2];
    sizes_to_eigenvalues<2>({floor, ceiling}, l);
    EXPECT_EQ(l[0], 1.0 / (floor * floor));
    EXPECT_EQ(l[1], 1.0 / (ceiling * ceiling));
    EXPECT_LT(l[0], LARGEST);
    EXPECT_GT(l[1], 0.0);
    sizes_to_eigenvalues<2>({std::nextafter(floor, 0.0), std::nextafter(ceiling, INF)}, l);
    EXPECT_EQ(l[0], LARGEST);
    EXPECT_EQ(l[1], 0.0);
}

TEST(SizesToEigenvalues, KeepWhatIsNotANumber)
{
    double l[2];
    sizes_to_eigenvalues<2>({NOT_A_NUMBER, 2.0}, l);
    EXPECT_TRUE(std::isnan(l[0]));
    EXPECT_EQ(l[1], 0.25);
}

TEST(EigenvaluesToSizes, AreTheInverseRoots)
{
    double h[3];
    eigenvalues_to_sizes<3>({4.0, 0.25, 1.0}, h);
    EXPECT_EQ(h[0], 0.5);
    EXPECT_EQ(h[1], 2.0);
    EXPECT_EQ(h[2], 1.0);
}

TEST(EigenvaluesToSizes, ZeroAndTheLargestDoubleAnswerToEachOther)
{
    double h[3];
    eigenvalues_to_sizes<3>({0.0, LARGEST, 4.0}, h);
    EXPECT_EQ(h[0], LARGEST);
    EXPECT_EQ(h[1], 0.0);
    EXPECT_EQ(h[2], 0.5);
}

TEST(EigenvaluesToSizes, ANegativeEigenvalueHasNoTestOfItsOwn)
{
    double h[2];
    eigenvalues_to_sizes<2>({-1.0, 4.0}, h);
    EXPECT_TRUE(std::isnan(h[0]));
    EXPECT_EQ(h[1], 0.5);
}

TEST(EigenvaluesToSizes, AreUndoneBySizesToEigenvalues)
{
    for (const double l : {1e-300, 1e-20, 0.3, 1.0, 7.0, 1e20, 1e300}) {
        double h[2];
        double back[2];
        eigenvalues_to_sizes<2>({l, l}, h);
        sizes_to_eigenvalues(h, back);
        EXPECT_NEAR(back[0] / l, 1.0, 1e-15) << l;
    }
}

TEST(InterpolateSizePair, IsLinearAndMayLeaveTheEnds)
{
    expect(pair(0.25, 1.0, 3.0), true, 1.5);
    expect(pair(0.5, 3.0, 1.0), true, 2.0);
    expect(pair(2.0, 1.0, 3.0), true, 5.0);
    expect(pair(-0.25, 1.0, 3.0), true, 0.5);
}

TEST(InterpolateSizePair, StoresTheSizeAtAnEndAndThenJudgesIt)
{
    expect(pair(0.0, 2.0, -1.0), true, 2.0);
    expect(pair(9e-13, 2.0, 3.0), true, 2.0);
    expect(pair(-9e-13, 2.0, 3.0), true, 2.0);
    expect(pair(1.0, -2.0, 3.0), true, 3.0);
    expect(pair(1.0 - 9e-13, 2.0, 3.0), true, 3.0);
    expect(pair(0.0, -2.0, 3.0), false, -2.0);
    expect(pair(1.0, 2.0, 0.0), false, 0.0);
    expect(pair(0.0, INF, 1.0), false, INF);
    expect(pair(1.0, 1.0, LARGEST), false, LARGEST);
    expect(pair(NOT_A_NUMBER, 2.0, 3.0), true, 2.0);
    EXPECT_FALSE(pair(0.0, NOT_A_NUMBER, 3.0).valid);
    EXPECT_TRUE(std::isnan(pair(0.0, NOT_A_NUMBER, 3.0).size));
}

TEST(InterpolateSizePair, JustOffAnEndInterpolates)
{
    const double t = 1e-12;
    expect(pair(t, 2.0, 1002.0), true, 1000.0 * t + 2.0);
    EXPECT_NE(pair(t, 2.0, 1002.0).size, 2.0);
}

TEST(InterpolateSizePair, OffTheEndsBothSizesMustBeAboveZero)
{
    expect(pair(0.5, 0.0, 3.0), false, 0.0);
    expect(pair(0.5, 3.0, -1.0), false, 0.0);
    expect(pair(0.5, NOT_A_NUMBER, 3.0), false, 0.0);
    expect(pair(0.5, 3.0, NOT_A_NUMBER), false, 0.0);
}

TEST(InterpolateSizePair, AResultOutOfRangeIsStoredAndRefused)
{
    expect(pair(2.0, 3.0, 1.0), false, -1.0);
    expect(pair(1.5, 3.0, 1.0), false, 0.0);
    expect(pair(0.5, 1.0, INF), false, INF);
}

TEST(InterpolateSizeTriangle, GivesTheNodesAtTheirCoordinates)
{
    expect(triangle(1.0, 0.0, 2.0, 3.0, 4.0), true, 2.0);
    expect(triangle(0.0, 1.0, 2.0, 3.0, 4.0), true, 3.0);
    expect(triangle(0.0, 0.0, 2.0, 3.0, 4.0), true, 4.0);
    expect(triangle(1.0, 0.0, 2.0, -3.0, -4.0), true, 2.0);
    expect(triangle(0.0, 0.0, 2.0, 3.0, 0.0), false, 0.0);
}

TEST(InterpolateSizeTriangle, AnEdgeIsThePairOfItsEndsAndDoesNotLookAtTheThirdNode)
{
    expect(triangle(0.0, 0.25, -1.0, 3.0, 5.0), true, 4.5);
    expect(triangle(0.25, 0.0, 3.0, -1.0, 5.0), true, 4.5);
    expect(triangle(0.75, 0.25, 5.0, 3.0, -1.0), true, 4.5);
    expect(triangle(0.0, 0.25, 1.0, -3.0, 5.0), false, 0.0);
}

TEST(InterpolateSizeTriangle, TheToleranceOfTheLongEdgeIsWider)
{
    // 1.3e-12 short of the edge: on it, so a third size that is none does not matter.
    EXPECT_TRUE(triangle(0.5, 0.5 - 1.3e-12, 5.0, 3.0, -1.0).valid);
    EXPECT_FALSE(triangle(0.5, 0.5 - 1.5e-12, 5.0, 3.0, -1.0).valid);
    EXPECT_TRUE(triangle(0.5, 0.5 + 1.3e-12, 5.0, 3.0, -1.0).valid);
    EXPECT_FALSE(triangle(0.5, 0.5 + 1.5e-12, 5.0, 3.0, -1.0).valid);
}

TEST(InterpolateSizeTriangle, IsAffineInside)
{
    expect(triangle(0.25, 0.5, 2.0, 3.0, 4.0), true, (2.0 - 4.0) * 0.25 + (3.0 - 4.0) * 0.5 + 4.0);
    std::mt19937 draw(11);
    std::uniform_real_distribution<double> weight(0.05, 0.45);
    for (int trial = 0; trial < 1000; ++trial) {
        const double u = weight(draw);
        const double v = weight(draw);
        const outcome o = triangle(u, v, 2.0, 7.0, 0.5);
        EXPECT_TRUE(o.valid);
        EXPECT_NEAR(o.size, u * 2.0 + v * 7.0 + (1.0 - u - v) * 0.5, 1e-14) << "trial " << trial;
    }
}

TEST(InterpolateSizeTriangle, RefusesASizeThatIsNotAboveZeroWithAResultOfZero)
{
    expect(triangle(0.25, 0.25, 0.0, 3.0, 4.0), false, 0.0);
    expect(triangle(0.25, 0.25, 2.0, -3.0, 4.0), false, 0.0);
    expect(triangle(0.25, 0.25, 2.0, 3.0, NOT_A_NUMBER), false, 0.0);
}

TEST(InterpolateSizeTriangle, ACoordinateThatIsNoNumberCountsAsZero)
{
    expect(triangle(NOT_A_NUMBER, 0.25, -1.0, 3.0, 5.0), true, 4.5);
    expect(triangle(0.25, NOT_A_NUMBER, 3.0, -1.0, 5.0), true, 4.5);
}

TEST(InterpolateSizeTriangle, OutsideTheTriangleTheResultIsJudged)
{
    expect(triangle(3.0, 1.0, 1.0, 4.0, 4.0), false, -5.0);
}
