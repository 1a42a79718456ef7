// Sizes and metrics of many targets: the whole loop against the plain version, storage and layouts.
#include "interpolation/anisotropy.h"
#include "interpolation/carried_metrics.h"
#include "interpolation/serve_targets.h"
#include "interpolation/storage.h"
#include "support/matrices.h"

using namespace vorel;
using namespace vorel::tessalo2d;
using support::background;
using support::bits;
using support::expected_metrics;
using support::expected_sizes;
using support::metrics_of;
using support::run;
using support::sizes_of;

TEST(InterpolateSizes, WholeLoopAgreesWithThePlainVersionBitForBit)
{
    for (unsigned seed = 1; seed < 6; ++seed)
        for (const background& b : support::backgrounds(seed)) {
            dense1D<double, 8> sizes = sizes_of(b, -1.0);
            // Some corners refuse.
            for (std::size_t j = seed; j < sizes.size; j += 13) sizes[j] = 0.0;
            const auto expected = expected_sizes(b, sizes);
            ASSERT_EQ(run(b, sizes), 0) << b.name;
            ASSERT_EQ(bits(sizes), bits(expected)) << b.name << " seed " << seed;
        }
}

TEST(InterpolateMetrics, WholeLoopAgreesWithThePlainVersionBitForBit)
{
    for (unsigned seed = 1; seed < 4; ++seed)
        for (const background& b : support::backgrounds(seed))
            for (const std::size_t rows : {3u, 6u}) {
                dense2D<double> metrics = metrics_of(b, rows);
                for (std::size_t j = seed; j < metrics.cols; j += 13) metrics(0, j) = -1.0;
                const auto before = bits(metrics);
                const auto expected = expected_metrics(b, metrics);
                if (b.type == ELEMENT_T3) {
                    ASSERT_EQ(run(b, metrics), 0) << b.name;
                    ASSERT_EQ(bits(metrics), bits(expected)) << b.name;
                    continue;
                }
                ASSERT_EQ(run(b, metrics), -2) << b.name;
                ASSERT_EQ(bits(metrics), before) << b.name;
                // The engines of the other forms are there all the same.
                const interpolation_arguments a{b.coords, b.connect, b.neighbors, b.node_element,
                                                b.targets};
                if (rows == 3)
                    serve_targets_of_form(a, b.type, metric_carrier<2>(metrics, false));
                else
                    serve_targets_of_form(a, b.type, metric_carrier<3>(metrics, false));
                ASSERT_EQ(bits(metrics), bits(expected)) << b.name;
            }
}

TEST(InterpolateMetrics, AllNodesAreTheListOfAllNodes)
{
    for (const background& b : support::backgrounds(2)) {
        background all = b;
        all.targets = dense1D<unsigned, 8>(b.coords.cols);
        for (std::size_t j = 0; j < b.coords.cols; ++j) all.targets[j] = static_cast<unsigned>(j);
        dense1D<double, 8> listed = sizes_of(b, 0.0);
        dense1D<double, 8> sizes = sizes_of(b, 0.0);
        ASSERT_EQ(run(all, listed), 0);
        ASSERT_EQ(interpolate_metrics(b.coords, b.connect, b.neighbors, b.node_element, sizes,
                                      false, b.type),
                  0);
        EXPECT_EQ(bits(sizes), bits(listed)) << b.name;
        dense2D<double> listed_metrics = metrics_of(b, 3);
        dense2D<double> metrics = metrics_of(b, 3);
        EXPECT_EQ(interpolate_metrics(b.coords, b.connect, b.neighbors, b.node_element, metrics,
                                      false, b.type),
                  run(all, listed_metrics));
        EXPECT_EQ(bits(metrics), bits(listed_metrics)) << b.name;
    }
}

TEST(InterpolateMetrics, LayoutsDoNotMatterAndInputsStay)
{
    for (const background& b : support::backgrounds(3)) {
        if (b.type != ELEMENT_T3) continue;
        for (const std::size_t rows : {3u, 6u}) {
            dense2D<double> expected = metrics_of(b, rows);
            support::placed<double> metrics(expected, 2, 3);
            ASSERT_EQ(run(b, expected), 0);
            const support::placed<double> coords(b.coords, 3, 2);
            const support::placed<unsigned> connect(b.connect, 5, 1);
            const support::placed<unsigned> neighbors(b.neighbors, 1, 4);
            ASSERT_EQ(interpolate_metrics(coords.view, connect.view, neighbors.view, b.node_element,
                                          metrics.view, b.targets, false, b.type),
                      0);
            EXPECT_EQ(bits(metrics.view), bits(expected)) << b.name;
            metrics.expect_gaps_untouched();
            EXPECT_EQ(bits(coords.view), bits(b.coords));
            EXPECT_EQ(support::columns(connect.view), support::columns(b.connect));
        }
        dense1D<double, 8> expected = sizes_of(b, 0.0);
        auto sizes = support::placed_run(sizes_of(b, 0.0), 5);
        ASSERT_EQ(run(b, expected), 0);
        ASSERT_EQ(run(b, sizes), 0);
        EXPECT_EQ(bits(sizes), bits(expected)) << b.name;
    }
}

TEST(InterpolateMetrics, RefusedAllocationsAreNotReportedButForTheList)
{
    const background b = support::with_random_targets(support::grid_T3(8, 8), ELEMENT_T3, 90, 1);
    bool list_refused = false;
    const std::size_t refusals =
        support::each_refused_allocation([&](auto armed, const auto& told) {
            dense1D<double, 8> sizes = sizes_of(b, -1.0);
            int status = -1;
            (void)armed([&] {
                status = interpolate_metrics(b.coords, b.connect, b.neighbors, b.node_element,
                                             sizes, false, b.type);
            });
            if (status == -199) list_refused = true;
            EXPECT_TRUE(status == 0 || status == -199) << told;
            for (const unsigned node : b.targets) {
                EXPECT_TRUE(sizes[node] == -1.0 || (sizes[node] >= 0.5 && sizes[node] <= 1.5))
                    << told;
                if (status != 0) {
                    EXPECT_EQ(sizes[node], -1.0) << told;
                }
            }
        });
    EXPECT_TRUE(list_refused);
    EXPECT_GE(refusals, 4u);
    (void)support::each_refused_allocation([&](auto armed, const auto& told) {
        dense2D<double> metrics = metrics_of(b, 3);
        int status = -1;
        (void)armed([&] {
            status = interpolate_metrics(b.coords, b.connect, b.neighbors, b.node_element, metrics,
                                         true, b.type);
        });
        EXPECT_TRUE(status == 0 || status == -199) << told;
    });
}

TEST(InterpolateMetrics, AwkwardMeshesEnd)
{
    for (const support::mesh& m : support::awkward_meshes(2)) {
        const element_type type = m.connect.rows == 3 ? ELEMENT_T3 : ELEMENT_ANY_FACE;
        const background b = support::with_random_targets(m, type, 40, 5);
        dense1D<double, 8> sizes = sizes_of(b, -1.0);
        const auto expected = expected_sizes(b, sizes);
        EXPECT_EQ(run(b, sizes), 0) << m.name;
        EXPECT_EQ(bits(sizes), bits(expected)) << m.name;
        for (const std::size_t rows : {3u, 6u}) {
            dense2D<double> metrics = metrics_of(b, rows);
            EXPECT_EQ(run(b, metrics, true), type == ELEMENT_T3 ? 0 : -2) << m.name;
        }
    }
}

TEST(InterpolateSizes, KeepValidSkipsInTheOrderOfTheList)
{
    // Values that stay and values that don't, and each target a second time: those served the first
    // time take no draw then, so that all later walks show who was skipped.
    const double present[] = {0.0, 0.7, -1.0, NAN, 1.9, INFINITY, 5e-324};
    for (unsigned seed = 1; seed < 5; ++seed)
        for (background b : support::backgrounds(seed)) {
            dense1D<double, 8> sizes = sizes_of(b, 0.0);
            for (std::size_t k = 0; k < b.targets.size; ++k)
                sizes[b.targets[k]] = present[(k + seed) % 7];
            for (std::size_t j = seed; j < sizes.size; j += 13) sizes[j] = 0.0;
            b = support::with_list_repeated(b, 2);
            const auto expected = expected_sizes(b, sizes, true);
            ASSERT_EQ(run(b, sizes, true), 0) << b.name;
            ASSERT_EQ(bits(sizes), bits(expected)) << b.name << " seed " << seed;
        }
}

TEST(InterpolateMetrics, KeepValidSkipsInTheOrderOfTheList)
{
    const std::vector<double> present[] = {
        {0, 0, 0, 0, 0, 0},    {2, 1, 2, 0.25, 0, 1}, {2, 3, 2, 0, 0, 1},      {NAN, 0, 1, 0, 0, 1},
        {3, -1, 1, 0, 0.5, 4}, {-1, 0, -1, 0, 0, -1}, {NAN, NAN, NAN, 0, 0, 1}};
    for (unsigned seed = 1; seed < 4; ++seed)
        for (background b : support::backgrounds(seed)) {
            b = support::with_list_repeated(b, 2);
            for (const std::size_t rows : {3u, 6u}) {
                dense2D<double> metrics = metrics_of(b, rows);
                for (std::size_t k = 0; k < b.targets.size / 2; ++k)
                    for (std::size_t i = 0; i < rows; ++i)
                        metrics(i, b.targets[k]) = present[(k + seed) % 7][i];
                const auto expected = expected_metrics(b, metrics, true);
                const interpolation_arguments a{b.coords, b.connect, b.neighbors, b.node_element,
                                                b.targets};
                if (b.type == ELEMENT_T3) {
                    ASSERT_EQ(run(b, metrics, true), 0) << b.name;
                } else if (rows == 3) {
                    serve_targets_of_form(a, b.type, metric_carrier<2>(metrics, true));
                } else {
                    serve_targets_of_form(a, b.type, metric_carrier<3>(metrics, true));
                }
                ASSERT_EQ(bits(metrics), bits(expected)) << b.name << " seed " << seed;
            }
        }
}

TEST(InterpolateMetrics, SingleRefusalsServeAllTargetsOrNone)
{
    const background b = support::with_random_targets(support::grid_T3(8, 8), ELEMENT_T3, 90, 1);
    dense1D<double, 8> whole_sizes = sizes_of(b, -1.0);
    dense2D<double> whole_metrics = metrics_of(b, 3);
    ASSERT_EQ(run(b, whole_sizes), 0);
    ASSERT_EQ(run(b, whole_metrics), 0);
    for (std::size_t k = 0; k < support::REQUESTS_OF_A_TREE; ++k) {
        const bool served = !support::leaves_the_tree_empty(k);
        dense1D<double, 8> sizes = sizes_of(b, -1.0);
        EXPECT_TRUE(support::with_request_refused(k, [&] { EXPECT_EQ(run(b, sizes), 0); })) << k;
        EXPECT_EQ(bits(sizes), bits(served ? whole_sizes : sizes_of(b, -1.0))) << k;
        dense2D<double> metrics = metrics_of(b, 3);
        EXPECT_TRUE(support::with_request_refused(k, [&] { EXPECT_EQ(run(b, metrics), 0); })) << k;
        EXPECT_EQ(bits(metrics), bits(served ? whole_metrics : metrics_of(b, 3))) << k;
    }
}

TEST(InterpolateMetrics, TargetsCostNoAllocationEach)
{
    for (const background& few : support::backgrounds(3)) {
        const background many = support::with_list_repeated(few, 10);
        EXPECT_EQ(support::allocations_of([&] {
                      dense1D<double, 8> sizes = sizes_of(few, -1.0);
                      ASSERT_EQ(run(few, sizes), 0);
                  }),
                  support::allocations_of([&] {
                      dense1D<double, 8> sizes = sizes_of(many, -1.0);
                      ASSERT_EQ(run(many, sizes), 0);
                  }))
            << few.name;
        if (few.type != ELEMENT_T3) continue;
        for (const std::size_t rows : {3u, 6u})
            EXPECT_EQ(support::allocations_of([&] {
                          dense2D<double> metrics = metrics_of(few, rows);
                          ASSERT_EQ(run(few, metrics), 0);
                      }),
                      support::allocations_of([&] {
                          dense2D<double> metrics = metrics_of(many, rows);
                          ASSERT_EQ(run(many, metrics), 0);
                      }))
                << few.name;
    }
}
