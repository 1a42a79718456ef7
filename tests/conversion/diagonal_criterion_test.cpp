#include "conversion/diagonal_criterion.h"

#include <vorel/tessalo2d.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using namespace vorel::tessalo2d;

namespace {

const double PI = std::acos(-1.0);
const unsigned IN_ORDER[] = {0, 1, 2, 3};

template <int D>
cut_scores score(int criterion, const std::vector<double>& points)
{
    return score_cuts<D>(criterion, points.data(), D, turned_quad(IN_ORDER));
}

template <int D>
std::vector<double> qualities(const std::vector<double>& points)
{
    const unsigned t[4][3] = {{0, 1, 2}, {2, 3, 0}, {1, 2, 3}, {3, 0, 1}};
    std::vector<double> all;
    for (const auto& ids : t) all.push_back(triangle_quality<D>(points.data(), D, ids));
    return all;
}

// Diagonals from (0, 0) to (4, 4) and from (3, 0) to (0, 2).
const std::vector<double> PLANE{0, 0, 3, 0, 4, 4, 0, 2};
// Two right isosceles triangles of legs sqrt(2) along the diagonal from node 0 to node 2, of length
// 2, folded there by 60 degrees.
const std::vector<double> ROOF{0, 0, 0, 1, -1, 0, 2, 0, 0, 1, std::cos(PI / 3), std::sin(PI / 3)};

} // namespace

TEST(TurnedQuad, BeginsWithTheFirstOfTheSmallestIDsAndKeepsTheOrder)
{
    const auto turned = [](std::vector<unsigned> ids) {
        const turned_quad t(ids.data());
        return std::vector<unsigned>(t.node, t.node + 4);
    };
    using column = std::vector<unsigned>;
    EXPECT_EQ(turned({0, 1, 2, 3}), (column{0, 1, 2, 3}));
    EXPECT_EQ(turned({3, 0, 1, 2}), (column{0, 1, 2, 3}));
    EXPECT_EQ(turned({2, 3, 0, 1}), (column{0, 1, 2, 3}));
    EXPECT_EQ(turned({5, 7, 9, 2}), (column{2, 5, 7, 9}));
    EXPECT_EQ(turned({4, 1, 3, 1}), (column{1, 3, 1, 4}));
    EXPECT_EQ(turned({1, 4, 1, 3}), (column{1, 4, 1, 3}));
    EXPECT_EQ(turned({1, 1, 1, 1}), (column{1, 1, 1, 1}));
}

TEST(DiagonalCriterion, QualityIsThatOfTheWorseTriangle)
{
    const std::vector<double> q = qualities<2>(PLANE);
    const cut_scores s = score<2>(DIAGONAL_BEST_QUALITY, PLANE);
    EXPECT_EQ(s.first, std::min(q[0], q[1]));
    EXPECT_EQ(s.second, std::min(q[2], q[3]));
}

TEST(DiagonalCriterion, AngleIsTheWorseNearnessOfALargestAngleToARightOne)
{
    // The unit square's halves have right angles; this dart's first cut has a flat pair.
    const cut_scores square = score<2>(DIAGONAL_BEST_ANGLE, {0, 0, 1, 0, 1, 1, 0, 1});
    EXPECT_DOUBLE_EQ(square.first, 1.0);
    EXPECT_DOUBLE_EQ(square.second, 1.0);
    // First cut: the triangles' largest angles lie at nodes 1 and 3, second cut at 2 and 0.
    const cut_scores s = score<2>(DIAGONAL_BEST_ANGLE, PLANE);
    const double at1 = PI - std::atan2(4, 1);
    const double at3 = PI / 2 + std::atan2(2, 4);
    EXPECT_DOUBLE_EQ(s.first, std::min(2 - at1 / (PI / 2), 2 - at3 / (PI / 2)));
    const double corner = PI / 2;
    // The triangle of nodes 1, 2, 3 is acute or not by its own sides: sqrt(17), sqrt(20), sqrt(13).
    const double acute = std::acos((17 + 13 - 20) / (2 * std::sqrt(17.0 * 13)));
    EXPECT_NEAR(s.second, std::min(corner / (PI / 2), acute / (PI / 2)), 1e-14);
}

TEST(DiagonalCriterion, LargerAreaIsThatOfTheLargerTriangleNegative)
{
    const cut_scores s = score<2>(DIAGONAL_LEAST_LARGER_AREA, PLANE);
    EXPECT_DOUBLE_EQ(s.first, -12);            // 12 and 8
    EXPECT_DOUBLE_EQ(s.second, -(20.0 - 6.0)); // 14 and 6
}

TEST(DiagonalCriterion, AreaIsTheSumOfBothNegative)
{
    const cut_scores flat = score<2>(DIAGONAL_LEAST_AREA, PLANE);
    EXPECT_DOUBLE_EQ(flat.first, -20);
    EXPECT_DOUBLE_EQ(flat.second, -20);
    // Nodes 1 and 3 of the folded pair are sqrt(3) apart; heights over that are 1/2 lower.
    const cut_scores roof = score<3>(DIAGONAL_LEAST_AREA, ROOF);
    EXPECT_DOUBLE_EQ(roof.first, -4);
    const double span = std::sqrt(3.0);
    const double height = std::sqrt(2.0 - span * span / 4);
    EXPECT_DOUBLE_EQ(roof.second, -2 * span * height);
}

TEST(DiagonalCriterion, FoldIsTheAngleAcrossTheDiagonal)
{
    const cut_scores s = score<3>(DIAGONAL_LEAST_FOLD, ROOF);
    EXPECT_DOUBLE_EQ(s.first, -PI / 3);
    // Across the other diagonal: normals of (1, 2, 3) and (3, 0, 1), mirror images in x.
    const vec3 p1 = load<3>(&ROOF[3]);
    const vec3 p3 = load<3>(&ROOF[9]);
    const vec3 n = cross(p3 - p1, vec3{{2, 0, 0}} - p1);
    EXPECT_NEAR(s.second, -2 * std::atan2(std::abs(n[0]), std::hypot(n[1], n[2])), 1e-14);
}

TEST(DiagonalCriterion, WeightedFoldIsTheAngleTimesTheLengthOfTheDiagonal)
{
    const cut_scores plain = score<3>(DIAGONAL_LEAST_FOLD, ROOF);
    const cut_scores weighted = score<3>(DIAGONAL_LEAST_WEIGHTED_FOLD, ROOF);
    EXPECT_NEAR(weighted.first, plain.first * 2, 1e-14);
    EXPECT_NEAR(weighted.second, plain.second * std::sqrt(3.0), 1e-14);
}

TEST(DiagonalCriterion, ADiagonalOfLengthOneOrZeroIsNotScaled)
{
    // The fold of 60 degrees about a diagonal of length 1.
    std::vector<double> half = ROOF;
    for (double& x : half) x /= 2;
    EXPECT_NEAR(score<3>(DIAGONAL_LEAST_WEIGHTED_FOLD, half).first, -PI / 3, 1e-14);
    // Without length there is no fold: judged by quality, which is 0.
    const std::vector<double> closed{1, 1, 1, 2, 1, 1, 1, 1, 1, 1, 2, 1};
    EXPECT_EQ(score<3>(DIAGONAL_LEAST_WEIGHTED_FOLD, closed).first, 0.0);
}

TEST(DiagonalCriterion, AFlatPairIsJudgedByQualityEvenAgainstAFoldedOne)
{
    const std::vector<double> square{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
    const std::vector<double> q = qualities<3>(square);
    for (const int criterion : {DIAGONAL_LEAST_FOLD, DIAGONAL_LEAST_WEIGHTED_FOLD}) {
        const cut_scores s = score<3>(criterion, square);
        EXPECT_EQ(s.first, std::min(q[0], q[1]));
        EXPECT_EQ(s.second, std::min(q[2], q[3]));
    }
    // A dart: flat across its reflex corner, folded over across the other diagonal.
    const std::vector<double> dart{4, 0, 0, 1, 1, 0, 0, 4, 0, -4, -4, 0};
    const std::vector<double> r = qualities<3>(dart);
    const cut_scores s = score<3>(DIAGONAL_LEAST_FOLD, dart);
    EXPECT_DOUBLE_EQ(s.first, -PI);
    EXPECT_EQ(s.second, std::min(r[2], r[3]));
}

TEST(DiagonalCriterion, OtherNumbersAndFoldsInThePlaneTakeTheFirstCut)
{
    for (const int criterion : {0, 7, -1, std::numeric_limits<int>::max(), 5, 6}) {
        const cut_scores s = score<2>(criterion, PLANE);
        EXPECT_EQ(s.first, 1.0) << criterion;
        EXPECT_EQ(s.second, 0.0) << criterion;
    }
    for (const int criterion : {0, 7, -1, std::numeric_limits<int>::min()})
        EXPECT_EQ(score<3>(criterion, ROOF).first, 1.0) << criterion;
}
