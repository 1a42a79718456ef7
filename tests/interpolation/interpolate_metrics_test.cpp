// Sizes and metrics from a background mesh.
#include "interpolation/background.h"
#include "interpolation/carried_metrics.h"
#include "interpolation/serve_targets.h"
#include "support/allocation.h"
#include "support/matrices.h"

#include <limits>

using namespace vorel;
using namespace vorel::tessalo2d;
using support::background;

namespace {

constexpr double LARGEST = std::numeric_limits<double>::max();

int run(const background& b, dense1D<double, 8>& sizes, bool keep_valid = false)
{
    return interpolate_metrics(b.coords, b.connect, b.neighbors, b.node_element, sizes, b.targets,
                               keep_valid, b.type);
}

int run(const background& b, dense2D<double>& metrics, bool keep_valid = false)
{
    return interpolate_metrics(b.coords, b.connect, b.neighbors, b.node_element, metrics, b.targets,
                               keep_valid, b.type);
}

/// Positive, of ratio up to 3.
double size_at(double x, double y)
{
    return 1.0 + 0.5 * std::sin(x) * std::cos(2 * y);
}

dense1D<double, 8> sizes_of(const background& b, double at_targets)
{
    dense1D<double, 8> sizes(b.coords.cols, at_targets);
    for (std::size_t j = 0; j < b.coords.cols; ++j)
        if (b.node_element[j] != UNSET_ID) sizes[j] = size_at(b.coords(0, j), b.coords(1, j));
    return sizes;
}

/// A definite metric at each background node, varying; zeros at targets.
dense2D<double> metrics_of(const background& b, std::size_t rows)
{
    dense2D<double> metrics(rows, b.coords.cols, 0.0);
    for (std::size_t j = 0; j < b.coords.cols; ++j) {
        if (b.node_element[j] == UNSET_ID) continue;
        const double x = b.coords(0, j);
        const double y = b.coords(1, j);
        metrics(0, j) = 2 + std::sin(x);
        metrics(1, j) = 0.3 * std::cos(x + y);
        metrics(2, j) = 3 + std::cos(y);
        if (rows == 6) {
            metrics(3, j) = 0.1 * std::sin(y);
            metrics(4, j) = -0.2;
            metrics(5, j) = 1.5 + 0.2 * std::sin(x - y);
        }
    }
    return metrics;
}

std::vector<std::uint64_t> bits(const dense1D<double, 8>& values)
{
    std::vector<std::uint64_t> all;
    for (const double v : values) all.push_back(support::bits(v));
    return all;
}

/// Calls `inside(node, column, local)` or `nearest(node, from)` for each target in order, as the
/// plain search places it.
template <class Inside, class Nearest>
void in_order(const background& b, Inside inside, Nearest nearest)
{
    plain::draws d;
    const auto places = plain::places(b.plain(), b.targets, d);
    for (std::size_t k = 0; k < b.targets.size; ++k) {
        const unsigned node = b.targets[k];
        if (places[k].element == UNSET_ID - 1) continue;
        if (places[k].element == UNSET_ID) {
            if (places[k].nearest != UNSET_ID) nearest(node, places[k].nearest);
            continue;
        }
        const unsigned* const n = b.connect.column(places[k].element);
        const vec2 p = load<2>(b.coords.column(node));
        vec2 local;
        const bool quad = b.plain().corners(places[k].element) == 4;
        if (quad)
            (void)local_coords_Q4(b.coords.column(0), b.coords.ld, n, p, local, 1e-12);
        else
            (void)local_coords_T3(b.coords.column(0), b.coords.ld, n, p, local);
        inside(node, n, quad, local);
    }
}

template <std::size_t D>
dense2D<double> expected_metrics(const background& b, const dense2D<double>& before)
{
    dense2D<double> m = support::copy_of(before);
    const auto store = [&](unsigned node, const symmetric_fixed<double, D>& value) {
        for (std::size_t k = 0; k < value.size; ++k) m(k, node) = value[k];
    };
    in_order(
        b,
        [&](unsigned node, const unsigned* n, bool quad, const vec2& local) {
            symmetric_fixed<double, D> value;
            const bool accepted = quad ? interpolate_metric_quad_columns<D>(
                                             m, local[0], local[1], n[0], n[1], n[2], n[3], value)
                                       : interpolate_metric_triangle<D>(m, local[0], local[1], n[0],
                                                                        n[1], n[2], value);
            if (accepted) store(node, value);
        },
        [&](unsigned node, unsigned from) { store(node, metric_column<D>(m, from)); });
    return m;
}

dense1D<double, 8> expected_sizes(const background& b, const dense1D<double, 8>& before)
{
    dense1D<double, 8> h;
    EXPECT_TRUE(h.copy(before));
    in_order(
        b,
        [&](unsigned node, const unsigned* n, bool quad, const vec2& local) {
            double value = 0;
            const bool accepted =
                quad ? interpolate_size_quad(local[0], local[1], h[n[0]], h[n[1]], h[n[2]], h[n[3]],
                                             value)
                     : interpolate_size_triangle(h, local[0], local[1], n[0], n[1], n[2], value);
            if (accepted) h[node] = value;
        },
        [&](unsigned node, unsigned from) { h[node] = h[from]; });
    return h;
}

background unit_triangle(const std::vector<plain::point>& points)
{
    const support::mesh m{"triangle", {{0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}}, {{0, 1, 2}}};
    return support::with_targets(m, ELEMENT_T3, points);
}

background unit_square(const std::vector<plain::point>& points)
{
    const support::mesh m{
        "square", {{-1.0, -1.0}, {1.0, -1.0}, {1.0, 1.0}, {-1.0, 1.0}}, {{0, 1, 2, 3}}};
    return support::with_targets(m, ELEMENT_Q4, points);
}

} // namespace

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
                const auto before = support::bits(metrics);
                const auto expected =
                    rows == 3 ? expected_metrics<2>(b, metrics) : expected_metrics<3>(b, metrics);
                if (b.type == ELEMENT_T3) {
                    ASSERT_EQ(run(b, metrics), 0) << b.name;
                    ASSERT_EQ(support::bits(metrics), support::bits(expected)) << b.name;
                    continue;
                }
                ASSERT_EQ(run(b, metrics), -2) << b.name;
                ASSERT_EQ(support::bits(metrics), before) << b.name;
                // The engines of the other forms are there all the same.
                const interpolation_arguments a{b.coords, b.connect, b.neighbors, b.node_element,
                                                b.targets};
                if (rows == 3)
                    serve_targets_of_form(a, b.type, metric_carrier<2>(metrics, false));
                else
                    serve_targets_of_form(a, b.type, metric_carrier<3>(metrics, false));
                ASSERT_EQ(support::bits(metrics), support::bits(expected)) << b.name;
            }
}

TEST(InterpolateSizes, AreLinearInATriangle)
{
    const background b = unit_triangle({{0.25, 0.5}, {0.5, 0.0}});
    dense1D<double, 8> sizes{1.0, 2.0, 4.0, 0.0, 0.0};
    ASSERT_EQ(run(b, sizes), 0);
    EXPECT_NEAR(sizes[3], 0.25 * 1 + 0.25 * 2 + 0.5 * 4, 1e-15);
    EXPECT_NEAR(sizes[4], 1.5, 1e-15);
}

TEST(InterpolateSizes, OnASideOfAQuadDifferFromALittleInside)
{
    const background b = unit_square({{0.0, -1.0}, {0.0, -1.0 + 1e-9}, {0.0, 0.0}});
    dense1D<double, 8> sizes{1.0, 2.0, 4.0, 8.0, 0.0, 0.0, 0.0};
    ASSERT_EQ(run(b, sizes), 0);
    EXPECT_EQ(sizes[4], 1.5);
    // Half between 1.75 and 5.
    EXPECT_NEAR(sizes[5], 3.375, 1e-8);
    EXPECT_EQ(sizes[6], 0.0625 + 0.375 + 2.25 + 1.5);
}

TEST(InterpolateSizes, KeepValidLeavesValidTargetsAlone)
{
    const double values[] = {
        0.5, 0.0, -3.0, std::nan(""), LARGEST, std::numeric_limits<double>::infinity(), 5e-324};
    const bool kept[] = {true, false, false, false, false, false, true};
    for (const bool keep_valid : {false, true})
        for (int k = 0; k < 7; ++k) {
            const background b = unit_triangle({{0.25, 0.25}});
            dense1D<double, 8> sizes{2.0, 2.0, 2.0, values[k]};
            ASSERT_EQ(run(b, sizes, keep_valid), 0);
            EXPECT_EQ(support::bits(sizes[3]),
                      support::bits(keep_valid && kept[k] ? values[k] : 2.0))
                << values[k] << " " << keep_valid;
        }
}

TEST(InterpolateSizes, TargetServedOnceIsKeptTheSecondTime)
{
    // Under keep_valid the second mention of a node takes no draw: later walks stay the same.
    background once = support::with_random_targets(support::grid_T3(4, 4), ELEMENT_T3, 60, 3);
    background twice = once;
    twice.targets = dense1D<unsigned, 8>();
    for (const unsigned node : once.targets) {
        twice.targets.append(node);
        twice.targets.append(node);
    }
    dense1D<double, 8> a = sizes_of(once, 0.0);
    dense1D<double, 8> b = sizes_of(twice, 0.0);
    ASSERT_EQ(run(once, a, true), 0);
    ASSERT_EQ(run(twice, b, true), 0);
    for (std::size_t j = 0; j < a.size; ++j) EXPECT_EQ(a[j] > 0.0, b[j] > 0.0);
    EXPECT_EQ(bits(a), bits(b));
}

TEST(InterpolateSizes, ZeroCornerIsRefusedInsideAndCopiedFromTheNearestNode)
{
    const background inside = unit_triangle({{0.25, 0.25}});
    dense1D<double, 8> sizes{0.0, 2.0, 2.0, 7.0};
    ASSERT_EQ(run(inside, sizes), 0);
    EXPECT_EQ(sizes[3], 7.0);
    const background square = unit_square({{0.25, 0.25}});
    sizes = {1.0, 2.0, 0.0, 2.0, 7.0};
    ASSERT_EQ(run(square, sizes), 0);
    EXPECT_EQ(sizes[4], 7.0);
    // In the box, but beyond the long edge: the nearest node is 1.
    const background outside = unit_triangle({{0.95, 0.3}});
    sizes = {2.0, 0.0, 2.0, 7.0};
    ASSERT_EQ(run(outside, sizes), 0);
    EXPECT_EQ(sizes[3], 0.0);
}

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
        {{-1, 0, -1}, false},        {{NAN, 0, 1}, false},         {{2, 0, 1, 0, 0, 3}, true},
        {{2, 0, 1, 0, 0, 0}, false}, {{2, 0, 1, 0, 0, -1}, false}, {{2, 1, 2, 0, 0, 1}, true},
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
                    EXPECT_EQ(support::bits(metrics(i, 3)), support::bits(c.metric[i]));
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
        EXPECT_EQ(support::bits(metrics), support::bits(listed_metrics)) << b.name;
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

TEST(InterpolateMetrics, KindOfSizesIsChecked)
{
    background b = unit_triangle({{0.25, 0.25}});
    b.type = ELEMENT_Q4;
    dense1D<double, 8> sizes(4, 1.0);
    EXPECT_EQ(run(b, sizes), -2);
    b.type = ELEMENT_ANY_FACE;
    sizes[3] = 0.0;
    EXPECT_EQ(run(b, sizes), 0);
    EXPECT_EQ(sizes[3], 0.0);
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
            EXPECT_EQ(support::bits(metrics.view), support::bits(expected)) << b.name;
            metrics.expect_gaps_untouched();
            EXPECT_EQ(support::bits(coords.view), support::bits(b.coords));
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
