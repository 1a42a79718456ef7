// The motions in space to the last bit: which operations, and in which order.
#include "extrusion/overloads.h"
#include "extrusion/rotation_record.h"
#include "extrusion/spacing.h"
#include "support/matrices.h"

using namespace extrusion_tests;
using support::bits;

namespace {

/// One entry of the copy of a node at position `t` of the path. Volatile: every operation rounded,
/// in this order.
double moved(const overload& o, const arguments& a, double t, const double p[3], std::size_t i)
{
    volatile double scaled[3];
    for (std::size_t k = 0; k < 3; ++k) scaled[k] = t * a.rotation[k];
    const double v[3] = {scaled[0], scaled[1], scaled[2]};
    tessalo2d::rotation_record record;
    tessalo2d::rotation_from_vector(record, v);

    volatile double d[3];
    for (std::size_t k = 0; k < 3; ++k) d[k] = p[k] - a.center[k];
    volatile double product = record.R[i] * d[0];
    volatile double sum = product;
    product = record.R[3 + i] * d[1];
    sum = sum + product;
    product = record.R[6 + i] * d[2];
    sum = sum + product;
    volatile double x = a.center[i] + sum;
    if (o.moves == motion::spiral) {
        volatile double w = t * a.translation[i];
        x = x + w;
    }
    return x;
}

} // namespace

TEST(ExtrusionInSpace, EveryOperationIsRoundedInItsPlace)
{
    for (const overload& o : overloads())
        for (const std::size_t rows : {2u, 3u})
            for (unsigned seed = 1; seed <= 5; ++seed) {
                if (o.dimension != 3 || o.moves == motion::translate) continue;
                SCOPED_TRACE(o.name + std::string(", rows ") + std::to_string(rows) + ", seed " +
                             std::to_string(seed));
                // Sizes apart by a factor of 2, for a fixed count equal heights.
                arguments given;
                given.N = 7;
                given.h0 = 0.05;
                given.h1 = 0.1;
                const dense2D<double> before = nodes(rows, 4, seed);
                dense2D<double> coords = support::copy_of(before);
                dense2D<unsigned> output;
                ASSERT_EQ(o.run(coords, LINE, given, output), 0);
                const std::size_t N = (coords.cols - 4) / 3;
                ASSERT_GT(N, 2u);
                volatile double d = 1.0 / static_cast<double>(N);
                for (std::size_t l = 1; l <= N; ++l)
                    for (std::size_t k = 0; k < 3; ++k) {
                        volatile double share = static_cast<double>(l) * d;
                        const double t =
                            o.by_size ? tessalo2d::geometric_fraction(share, given.h0, given.h1)
                                      : share;
                        const double p[3] = {before(0, SOURCES[k]), before(1, SOURCES[k]),
                                             rows == 3 ? before(2, SOURCES[k]) : 0.0};
                        for (std::size_t i = 0; i < 3; ++i)
                            EXPECT_EQ(bits(coords(i, 4 + (l - 1) * 3 + k)),
                                      bits(moved(o, given, t, p, i)))
                                << "layer " << l << ", rank " << k << ", entry " << i;
                    }
            }
}
