// Pairs of metrics of every kind that their intersection has to deal with, and what "covers" and
// "touches" mean in numbers.
#pragma once

#include "metrics/reference.h"

#include <vorel/minimum_metric.h>

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <utility>
#include <vector>

namespace pairs_of_metrics {

using namespace vorel;
using reference::real;
using reference::same_bits;
using metric = symmetric_fixed<double, 3>;
using matrix = reference::matrix<3>;

/// What "to rounding" means: of the entries ij as a fraction of sqrt(Sii Sjj).
inline constexpr real ROUNDING = 16 * std::numeric_limits<double>::epsilon();

inline metric minimum(const metric& a, const metric& b)
{
    metric m;
    for (double& x : m.data) x = -77.0;
    EXPECT_TRUE(tessalo::minimum_metric(a, b, m));
    return m;
}

inline metric diagonal(real x, real y, real z)
{
    return reference::diagonal_metric<3>({x, y, z});
}

/// With row and column k multiplied by f[k].
inline metric scaled(metric m, const double (&f)[3])
{
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j <= i; ++j) m(i, j) = m(i, j) * f[i] * f[j];
    return m;
}

/// The eigenvalues of M - A, ascending, after the axes were scaled so that S has a diagonal of
/// ones: what is left of A's constraint in the directions in which M is more than A.
inline std::vector<real> slack(const metric& m, const metric& a, const matrix& s)
{
    matrix rest = reference::combination<3>(1, reference::full(m), -1, reference::full(a));
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j) {
            const real unit = std::sqrt(s[i][i]) * std::sqrt(s[j][j]);
            rest[i][j] = unit > 0 ? rest[i][j] / unit : 0;
        }
    return reference::eigen_of(rest).values;
}

/// As fractions of S = A + B.
inline std::vector<real> slack(const metric& m, const metric& a, const metric& b)
{
    return slack(m, a, reference::combination<3>(1, reference::full(a), 1, reference::full(b)));
}

/// Covers both operands to rounding.
inline void expect_covers(const metric& m, const metric& a, const metric& b)
{
    ASSERT_GE(slack(m, a, b)[0], -ROUNDING);
    ASSERT_GE(slack(m, b, a)[0], -ROUNDING);
}

/// Is no larger than needed: each operand is reached in some direction, or it is the other one that
/// comes back.
inline void expect_touches(const metric& m, const metric& a, const metric& b)
{
    ASSERT_TRUE(same_bits(m, b) || slack(m, a, b)[0] <= ROUNDING);
    ASSERT_TRUE(same_bits(m, a) || slack(m, b, a)[0] <= ROUNDING);
}

/// Largest difference of entries ij as a fraction of sqrt(Mii Mjj).
inline real scaled_difference(const metric& m, const matrix& expected)
{
    const matrix rest = reference::combination<3>(1, reference::full(m), -1, expected);
    real most = 0;
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j)
            most = std::fmax(most, std::fabs(rest[i][j]) / std::sqrt(expected[i][i]) /
                                       std::sqrt(expected[j][j]));
    return most;
}

enum class kind {
    ordinary,
    near_the_range_end, ///< has no room for another scale
    slightly_negative   ///< is a metric by a tolerance that the scales of the axes count in
};

struct pair_maker {
    const char* name;
    std::pair<metric, metric> (*make)(std::mt19937&);
    kind what = kind::ordinary;
};

inline std::ostream& operator<<(std::ostream& out, const pair_maker& maker)
{
    return out << maker.name;
}

inline std::pair<metric, metric> with_conditions(std::mt19937& draw, double condition,
                                                 double scale = 1.0)
{
    const metric a = reference::random_metric<3>(draw, condition, scale);
    return {a, reference::random_metric<3>(draw, condition, scale)};
}

inline std::pair<metric, metric> with_eigenvalues(std::mt19937& draw, const std::vector<real>& a,
                                                  const std::vector<real>& b)
{
    const metric first = reference::random_symmetric<3>(draw, a);
    return {first, reference::random_symmetric<3>(draw, b)};
}

inline std::pair<metric, metric> in_one_frame(std::mt19937& draw, const std::vector<real>& a,
                                              const std::vector<real>& b)
{
    const matrix r = reference::random_rotation<3>(draw);
    const matrix t = reference::transpose(r);
    return {reference::packed(r * reference::diagonal<3>(a) * t),
            reference::packed(r * reference::diagonal<3>(b) * t)};
}

/// Two metrics with these eigenvalues in one random frame, the second one turned in the plane of
/// the last two by 1e-10 to 1e-6: S may be singular to rounding in a direction in which the
/// difference of the two, linear in the angle, is not.
inline std::pair<metric, metric> close_to_each_other(std::mt19937& draw, const std::vector<real>& a,
                                                     const std::vector<real>& b)
{
    std::uniform_real_distribution<double> exponent(-10.0, -6.0);
    const real angle = std::pow(10.0, exponent(draw));
    const matrix r = reference::random_rotation<3>(draw);
    matrix turn = reference::diagonal<3>({1, std::cos(angle), std::cos(angle)});
    turn[1][2] = -std::sin(angle);
    turn[2][1] = std::sin(angle);
    const auto in_frame = [](const matrix& f, const std::vector<real>& values) {
        return reference::packed(f * reference::diagonal<3>(values) * reference::transpose(f));
    };
    return {in_frame(r, a), in_frame(r * turn, b)};
}

inline const pair_maker all_pairs[] = {
    {"round", [](std::mt19937& draw) { return with_conditions(draw, 10.0); }},
    {"condition 1e6", [](std::mt19937& draw) { return with_conditions(draw, 1e6); }},
    {"condition 1e12", [](std::mt19937& draw) { return with_conditions(draw, 1e12); }},
    {"needles and plates",
     [](std::mt19937& draw) {
         return with_eigenvalues(draw, {1, 1, 1e12L}, {1, 1e12L, 1e12L});
     }},
    {"scale 1e-150", [](std::mt19937& draw) { return with_conditions(draw, 1e3, 1e-150); }},
    {"scale 1e150", [](std::mt19937& draw) { return with_conditions(draw, 1e3, 1e150); }},
    {"scale 1e300", [](std::mt19937& draw) { return with_conditions(draw, 1e3, 1e300); },
     kind::near_the_range_end},
    {"scale 1e-300", [](std::mt19937& draw) { return with_conditions(draw, 1e3, 1e-300); },
     kind::near_the_range_end},
    {"one far larger",
     [](std::mt19937& draw) {
         const metric a = reference::random_metric<3>(draw, 1e6, 1e150);
         return std::pair{a, reference::random_metric<3>(draw, 1e6, 1e-150)};
     }},
    {"axes of different scales",
     [](std::mt19937& draw) {
         const auto [a, b] = with_conditions(draw, 1e3);
         const double f[3] = {1e-70, 1.0, 1e60};
         return std::pair{scaled(a, f), scaled(b, f)};
     }},
    {"nearly equal",
     [](std::mt19937& draw) {
         const metric a = reference::random_metric<3>(draw, 1e3);
         metric b = a;
         std::uniform_real_distribution<double> change(-1e-9, 1e-9);
         for (double& x : b.data) x *= 1.0 + change(draw);
         return std::pair{a, b};
     }},
    {"nearly proportional",
     [](std::mt19937& draw) {
         const metric a = reference::random_metric<3>(draw, 1e3);
         metric b = a;
         std::uniform_real_distribution<double> change(-1e-14, 1e-14);
         for (double& x : b.data) x *= 3.0 + change(draw);
         return std::pair{a, b};
     }},
    {"in one frame",
     [](std::mt19937& draw) {
         return in_one_frame(draw, {1, 1e3L, 10}, {1e6L, 1, 10});
     }},
    {"one singular",
     [](std::mt19937& draw) {
         return with_eigenvalues(draw, {0, 1, 2}, {1, 3, 5});
     }},
    {"one singular in two directions",
     [](std::mt19937& draw) {
         return with_eigenvalues(draw, {0, 0, 2}, {1, 3, 5});
     }},
    {"both singular",
     [](std::mt19937& draw) {
         return with_eigenvalues(draw, {0, 1, 2}, {0, 3, 1});
     }},
    {"a plane and a direction",
     [](std::mt19937& draw) {
         return with_eigenvalues(draw, {0, 0, 2}, {0, 3, 1});
     }},
    {"two directions, the sum singular",
     [](std::mt19937& draw) {
         return with_eigenvalues(draw, {0, 0, 2}, {0, 0, 1});
     }},
    {"one plane, the sum singular",
     [](std::mt19937& draw) {
         return in_one_frame(draw, {0, 1, 4}, {0, 4, 1});
     }},
    {"one plane, thin, the sum singular",
     [](std::mt19937& draw) {
         return in_one_frame(draw, {0, 1, 1e9L}, {0, 1e9L, 1});
     }},
    {"close needles",
     [](std::mt19937& draw) {
         return close_to_each_other(draw, {0, 0, 1}, {0, 0, 1});
     }},
    {"close blades",
     [](std::mt19937& draw) {
         return close_to_each_other(draw, {1, 0, 1}, {2, 0, 1});
     }},
    {"close needles of condition 1e10",
     [](std::mt19937& draw) {
         return close_to_each_other(draw, {1, 1, 1e10L}, {2, 1.5L, 0.7e10L});
     }},
    {"close needles of condition 1e12",
     [](std::mt19937& draw) {
         return close_to_each_other(draw, {1, 1, 1e12L}, {2, 1.5L, 0.7e12L});
     }},
    {"close needles of condition 1e12 in one plane",
     [](std::mt19937& draw) {
         return close_to_each_other(draw, {0, 1, 1e12L}, {0, 1.5L, 0.7e12L});
     }},
    {"close needles of condition 1e15",
     [](std::mt19937& draw) {
         return close_to_each_other(draw, {1, 1, 1e15L}, {2, 1.5L, 0.7e15L});
     }},
    {"slightly negative",
     [](std::mt19937& draw) {
         return with_eigenvalues(draw, {-5e-13L, 1, 1}, {-5e-13L, 1e-13L, 2});
     },
     kind::slightly_negative},
};

} // namespace pairs_of_metrics
