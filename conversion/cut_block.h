// Scores the cuts of some quadrilaterals at a time, with arithmetic that runs across them.
#pragma once

#include "conversion/diagonal.h"

namespace vorel::tessalo2d {

/// A triangle's quality in single precision, and the product of lengths that its area was divided
/// by.
struct estimate {
    float quality;
    float product;
};

template <int D>
inline float estimated_length(const float (&v)[D])
{
    float sum = v[0] * v[0];
    for (int d = 1; d < D; ++d) sum += v[d] * v[d];
    return std::sqrt(sum);
}

/// Twice the area that a and b span, over a product of lengths. In space it is divided before its
/// length is taken: the square of an area leaves the range long before the product of two lengths
/// does.
inline float estimated_ratio(const float (&a)[2], const float (&b)[2], float product)
{
    return (a[0] * b[1] - a[1] * b[0]) / product;
}
inline float estimated_ratio(const float (&a)[3], const float (&b)[3], float product)
{
    const float scale = 1.0f / product;
    const float n[3] = {scale * (a[1] * b[2] - a[2] * b[1]), scale * (a[2] * b[0] - a[0] * b[2]),
                        scale * (a[0] * b[1] - a[1] * b[0])};
    return estimated_length(n);
}

/// Of the triangle that a and b span, from the lengths of its three sides.
template <int D>
inline estimate estimate_quality(const float (&a)[D], const float (&b)[D], float a_length,
                                 float b_length, float third_length)
{
    const float longest = std::max(std::max(a_length, b_length), third_length);
    const float product = longest * (a_length + b_length + third_length);
    return {estimated_ratio(a, b, product) * 3.4641016f, product};
}

/// The corners of up to `CAPACITY` quadrilaterals, one array a coordinate, and the scores of their
/// cuts.
///
/// Nearly all decisions are clear to a few digits, and single precision is cheap. With roundings of
/// u = 2^-24, and products of lengths between 1e-30 and 1e30, an estimated quality is off by less
/// than 40 u: the differences of the corners are formed in double precision and rounded once; an
/// area is then off by at most 9 u of the product of its sides, which makes 16 u of the quality;
/// both factors of the product and the operations on them add less than 20 u. Nothing overflows. A
/// number below the normal range is off by 2^-150: in an area that is less than 1e-14 of the
/// product, in a length at most 2 u of the longest side. What underflows after the division by the
/// product is too small to count in a ratio.
///
/// Two scores that are more than 1e-5 = 168 u apart are therefore in the right order, and by far
/// more than the margin of a tie and the error of the exact scores. Where any score of a block is
/// nearer than that, all of them are formed as `score_by_quality` has them.
template <int D>
class cut_block {
public:
    static constexpr std::size_t CAPACITY = 64;

    void set_corner(std::size_t quad, int k, const double* point)
    {
        for (int d = 0; d < D; ++d) corner[k][d][quad] = point[d];
    }

    /// Scores the first `quads` of them; the order of the two scores is as by `score_by_quality`.
    void score(std::size_t quads)
    {
        if (!score_by_estimate(quads)) score_exactly(quads);
    }

    cut_scores scores(std::size_t quad) const { return {first[quad], second[quad]}; }

private:
    vec<D> point(std::size_t quad, int k) const
    {
        vec<D> p;
        for (int d = 0; d < D; ++d) p[d] = corner[k][d][quad];
        return p;
    }

    void score_exactly(std::size_t quads)
    {
        for (std::size_t i = 0; i < quads; ++i) {
            const cut_scores s =
                score_by_quality(point(i, 0), point(i, 1), point(i, 2), point(i, 3));
            first[i] = s.first;
            second[i] = s.second;
        }
    }

    /// False when the estimates leave a decision open.
    bool score_by_estimate(std::size_t quads)
    {
        unsigned open = 0;
        for (std::size_t i = 0; i < quads; ++i) {
            // The sides from corner k to k + 1, then the diagonals.
            float side[4][D];
            float diagonal02[D], diagonal20[D], diagonal13[D], diagonal31[D];
            for (int d = 0; d < D; ++d) {
                for (int k = 0; k < 4; ++k)
                    side[k][d] = static_cast<float>(corner[k][d][i] - corner[(k + 1) % 4][d][i]);
                diagonal02[d] = static_cast<float>(corner[0][d][i] - corner[2][d][i]);
                diagonal13[d] = static_cast<float>(corner[1][d][i] - corner[3][d][i]);
                diagonal20[d] = -diagonal02[d];
                diagonal31[d] = -diagonal13[d];
            }
            float l[4];
            for (int k = 0; k < 4; ++k) l[k] = estimated_length(side[k]);
            const float length02 = estimated_length(diagonal02);
            const float length13 = estimated_length(diagonal13);
            const estimate a = estimate_quality(diagonal02, side[1], length02, l[1], l[0]);
            const estimate b = estimate_quality(diagonal20, side[3], length02, l[3], l[2]);
            const estimate c = estimate_quality(diagonal13, side[2], length13, l[2], l[1]);
            const estimate d = estimate_quality(diagonal31, side[0], length13, l[0], l[3]);
            const float one = std::min(a.quality, b.quality);
            const float other = std::min(c.quality, d.quality);
            // A product that is not a number is not in range either.
            const auto in_range = [](float product) {
                return (product > 1e-30f) & (product < 1e30f);
            };
            const bool clear = (std::abs(one - other) > 1e-5f) & in_range(a.product) &
                               in_range(b.product) & in_range(c.product) & in_range(d.product);
            open |= !clear;
            first[i] = one;
            second[i] = other;
        }
        return open == 0;
    }

    double corner[4][D][CAPACITY];
    double first[CAPACITY] = {};
    double second[CAPACITY] = {};
};

} // namespace vorel::tessalo2d
