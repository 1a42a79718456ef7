// Metrics from a background mesh: values, shapes, and targets that are kept.
#include "interpolation/anisotropy.h"
#include "support/matrices.h"

using namespace vorel;
using namespace vorel::tessalo2d;
using support::background;
using support::bits;
using support::run;
using support::unit_square;
using support::unit_triangle;

TEST(InterpolateMetrics, IsotropicMetricsHaveLinearSizes)
{
    const background b = unit_triangle({{0.25, 0.5}});
    const double h[] = {1.0, 2.0, 4.0};
    const double expected = 0.25 * 1 + 0.25 * 2 + 0.5 * 4;
    dense2D<double> plane(3, 4, 0.0);
    dense2D<double> space(6, 4, 0.0);
    for (std::size_t j = 0; j < 3; ++j) {
        plane(0, j) = plane(2, j) = 1 / (h[j] * h[j]);
        space(0, j) = space(2, j) = space(5, j) = 1 / (h[j] * h[j]);
    }
    ASSERT_EQ(run(b, plane), 0);
    EXPECT_NEAR(plane(0, 3), 1 / (expected * expected), 1e-14);
    EXPECT_NEAR(plane(2, 3), 1 / (expected * expected), 1e-14);
    EXPECT_NEAR(plane(1, 3), 0.0, 1e-14);
    ASSERT_EQ(run(b, space), 0);
    EXPECT_NEAR(space(0, 3), 1 / (expected * expected), 1e-14);
    EXPECT_NEAR(space(5, 3), 1 / (expected * expected), 1e-14);
}

TEST(InterpolateMetrics, KeepValidLeavesDefiniteTargetsAlone)
{
    struct {
        std::vector<double> metric;
        bool kept;
    } const cases[] = {
        {{2, 1, 2}, true},  // 1 and 3
        {{1, 1, 1}, false}, // 0 and 2
        {{1, 2, 1}, false}, // -1 and 3
        {{-1, 0, -1}, false},
        {{NAN, 0, 1}, false},
        {{2, 0, 1, 0, 0, 3}, true},
        {{2, 0, 1, 0, 0, 0}, false},
        {{2, 0, 1, 0, 0, -1}, false},
        {{2, 1, 2, 0, 0, 1}, true},
        // What LAPACK leaves of these, zeros or NaN, is not above 0.
        {{NAN, NAN, NAN, NAN, NAN, NAN}, false},
        {{NAN, 0, 1, 0, 0, 1}, false},
    };
    for (const bool keep_valid : {false, true})
        for (const auto& c : cases) {
            const background b = unit_triangle({{0.25, 0.25}});
            const std::size_t rows = c.metric.size();
            const std::vector<double> unit =
                rows == 3 ? std::vector<double>{4, 0, 4} : std::vector<double>{4, 0, 4, 0, 0, 4};
            dense2D<double> metrics = support::matrix<double>({unit, unit, unit, c.metric});
            ASSERT_EQ(run(b, metrics, keep_valid), 0);
            for (std::size_t i = 0; i < rows; ++i) {
                if (keep_valid && c.kept) {
                    EXPECT_EQ(bits(metrics(i, 3)), bits(c.metric[i]));
                } else {
                    EXPECT_NEAR(metrics(i, 3), unit[i], 1e-14);
                }
            }
        }
}

TEST(InterpolateMetrics, RefusedMetricLeavesTheTargetAsItWas)
{
    const background b = unit_triangle({{0.25, 0.25}});
    dense2D<double> metrics{{1, 0, -1}, {1, 0, 1}, {1, 0, 1}, {7, 8, 9}};
    ASSERT_EQ(run(b, metrics), 0);
    EXPECT_EQ(support::columns(metrics)[3], (std::vector<double>{7, 8, 9}));
}

TEST(InterpolateMetrics, QuadsAreRefusedWhateverTheKindWhileSizesRun)
{
    background b = unit_square({{0.0, 0.5}});
    for (const element_type type : {ELEMENT_Q4, ELEMENT_ANY_FACE, ELEMENT_T3}) {
        b.type = type;
        dense2D<double> metrics(3, 5, 1.0);
        EXPECT_EQ(run(b, metrics), -2) << int(type);
    }
    b.type = ELEMENT_Q4;
    dense1D<double, 8> sizes{1.0, 1.0, 1.0, 1.0, 0.0};
    EXPECT_EQ(run(b, sizes), 0);
    EXPECT_EQ(sizes[4], 1.0);
}

TEST(InterpolateMetrics, TrianglesOfAnotherKindAreNothingToDo)
{
    background b = unit_triangle({{0.25, 0.25}});
    for (const element_type type : {ELEMENT_Q4, ELEMENT_ANY_FACE, ELEMENT_NONE}) {
        b.type = type;
        dense2D<double> metrics{{1, 0, 1}, {1, 0, 1}, {1, 0, 1}, {7, 8, 9}};
        EXPECT_EQ(run(b, metrics), 0) << int(type);
        EXPECT_EQ(metrics(0, 3), 7.0);
    }
}

TEST(InterpolateMetrics, MetricsHaveThreeOrSixRows)
{
    for (const std::size_t rows : {0u, 1u, 4u, 5u, 7u}) {
        background b = unit_triangle({{0.25, 0.25}});
        dense2D<double> metrics(rows, 4, 1.0);
        metrics.cols = 4;
        EXPECT_EQ(run(b, metrics), -5) << rows;
        b.targets[0] = UNSET_ID;
        EXPECT_EQ(run(b, metrics), -5) << rows << ": before the list";
    }
}
