// Fields from a background mesh: argument checks, values, and the whole loop against the plain
// version.
#include "interpolation/background.h"
#include "interpolation/carried_values.h"
#include "interpolation/serve_targets.h"
#include "interpolation/storage.h"
#include "support/matrices.h"

using namespace vorel;
using namespace vorel::tessalo2d;
using support::background;
using support::bits;

namespace {

using field_of = double (*)(double, double);

dense1D<double, 8> field(const background& b, field_of f, double at_targets)
{
    dense1D<double, 8> values(b.coords.cols, at_targets);
    for (std::size_t j = 0; j < b.coords.cols; ++j)
        if (b.node_element[j] != UNSET_ID) values[j] = f(b.coords(0, j), b.coords(1, j));
    return values;
}

int run(const background& b, dense1D<double, 8>& values)
{
    return interpolate(b.coords, b.connect, b.neighbors, b.node_element, values, b.targets, b.type);
}

double wavy(double x, double y)
{
    return std::sin(3 * x) + x * y - 0.1 * y * y;
}

double tilted(double x, double y)
{
    return 3 * x - 2 * y + 0.5;
}

double hyperbolic(double x, double y)
{
    return 1 + x - 4 * y + 2 * x * y;
}

/// The values that the plain search and the formulas give.
dense1D<double, 8> expected_values(const background& b, const dense1D<double, 8>& before)
{
    dense1D<double, 8> values;
    EXPECT_TRUE(values.copy(before));
    plain::draws d;
    const auto places = plain::places(b.plain(), b.targets, d);
    for (std::size_t k = 0; k < b.targets.size; ++k) {
        const unsigned node = b.targets[k];
        const auto& place = places[k];
        if (place.element == UNSET_ID - 1) continue;
        if (place.element == UNSET_ID) {
            if (place.nearest != UNSET_ID) values[node] = values[place.nearest];
            continue;
        }
        const unsigned* const n = b.connect.column(place.element);
        const vec2 p = load<2>(b.coords.column(node));
        vec2 local;
        if (b.plain().corners(place.element) == 3) {
            (void)local_coords_T3(b.coords.column(0), b.coords.ld, n, p, local);
            values[node] = (values[n[0]] - values[n[2]]) * local[0] +
                           (values[n[1]] - values[n[2]]) * local[1] + values[n[2]];
        } else {
            (void)local_coords_Q4(b.coords.column(0), b.coords.ld, n, p, local, 1e-12);
            const double s = (local[0] + 1) * 0.5;
            const double t = (local[1] + 1) * 0.5;
            const double low = (values[n[1]] - values[n[0]]) * s + values[n[0]];
            const double high = (values[n[2]] - values[n[3]]) * s + values[n[3]];
            values[node] = (high - low) * t + low;
        }
    }
    return values;
}

} // namespace

TEST(Interpolate, WholeLoopAgreesWithThePlainVersionBitForBit)
{
    for (unsigned seed = 1; seed < 9; ++seed)
        for (const background& b : support::backgrounds(seed)) {
            dense1D<double, 8> values = field(b, wavy, -77.0);
            const auto expected = expected_values(b, values);
            ASSERT_EQ(run(b, values), 0) << b.name;
            ASSERT_EQ(bits(values), bits(expected)) << b.name << " seed " << seed;
        }
}

TEST(Interpolate, ManyTargetsOnALargerMeshAgreeWithThePlainVersion)
{
    for (const auto& [m, type] : {std::pair(support::grid_T3(14, 11), ELEMENT_T3),
                                  std::pair(support::grid_mixed(13, 12), ELEMENT_ANY_FACE)}) {
        support::mesh moved = m;
        support::jitter(moved, 0.25, 3);
        const background b = support::with_random_targets(moved, type, 1500, 8);
        dense1D<double, 8> values = field(b, wavy, -77.0);
        const auto expected = expected_values(b, values);
        ASSERT_EQ(run(b, values), 0);
        ASSERT_EQ(bits(values), bits(expected)) << b.name;
    }
}

TEST(Interpolate, LinearFieldsAreReproducedOnTriangles)
{
    for (const unsigned seed : {1u, 2u, 3u}) {
        support::mesh m = support::grid_T3(9, 7);
        support::jitter(m, 0.25, seed);
        const background b = support::with_random_targets(m, ELEMENT_T3, 300, seed);
        dense1D<double, 8> values = field(b, tilted, 1e6);
        ASSERT_EQ(run(b, values), 0);
        plain::draws d;
        const auto places = plain::places(b.plain(), b.targets, d);
        unsigned inside = 0;
        for (std::size_t k = 0; k < b.targets.size; ++k) {
            if (places[k].element >= b.connect.cols) continue;
            ++inside;
            const unsigned node = b.targets[k];
            EXPECT_NEAR(values[node], tilted(b.coords(0, node), b.coords(1, node)), 1e-12)
                << "seed " << seed;
        }
        EXPECT_GT(inside, 150u);
    }
}

TEST(Interpolate, BilinearFieldsAreReproducedOnRectangles)
{
    const background b = support::with_random_targets(support::grid_Q4(6, 5), ELEMENT_Q4, 300, 4);
    dense1D<double, 8> values = field(b, hyperbolic, 1e6);
    ASSERT_EQ(run(b, values), 0);
    for (const unsigned node : b.targets) {
        const double x = b.coords(0, node);
        const double y = b.coords(1, node);
        if (x < 0 || x > 6 || y < 0 || y > 5) continue;
        EXPECT_NEAR(values[node], hyperbolic(x, y), 1e-11);
    }
}

TEST(Interpolate, LinearFieldsAreReproducedOnParallelograms)
{
    support::mesh m = support::grid_Q4(5, 5);
    for (std::size_t j = 0; j < m.coords.cols; ++j) m.coords(0, j) += 0.5 * m.coords(1, j);
    const background b = support::with_random_targets(m, ELEMENT_Q4, 300, 4);
    dense1D<double, 8> values = field(b, tilted, 1e6);
    ASSERT_EQ(run(b, values), 0);
    for (const unsigned node : b.targets) {
        const double x = b.coords(0, node);
        const double y = b.coords(1, node);
        if (y < 0 || y > 5 || x - 0.5 * y < 0 || x - 0.5 * y > 5) continue;
        EXPECT_NEAR(values[node], tilted(x, y), 1e-11);
    }
}

TEST(Interpolate, TargetOnABackgroundNodeTakesItsValue)
{
    const background t =
        support::with_targets(support::grid_T3(2, 2), ELEMENT_T3, {{1, 1}, {2, 0}});
    dense1D<double, 8> values = field(t, wavy, 0.0);
    ASSERT_EQ(run(t, values), 0);
    EXPECT_EQ(values[10], wavy(2, 0));
    const background q =
        support::with_targets(support::grid_Q4(2, 2), ELEMENT_Q4, {{1, 1}, {2, 0}});
    values = field(q, wavy, 0.0);
    ASSERT_EQ(run(q, values), 0);
    EXPECT_NEAR(values[9], wavy(1, 1), 1e-11);
    EXPECT_NEAR(values[10], wavy(2, 0), 1e-11);
}

TEST(Interpolate, TargetInAHoleTakesTheNearestNodesValue)
{
    // Three squares around a missing one.
    support::mesh m = support::grid_Q4(2, 2);
    ASSERT_TRUE(m.connect.resize(4, 3));
    const background b = support::with_targets(m, ELEMENT_Q4, {{1.9, 1.2}, {1.2, 1.4}});
    dense1D<double, 8> values = field(b, wavy, 0.0);
    ASSERT_EQ(b.node_element[8], UNSET_ID);
    ASSERT_EQ(run(b, values), 0);
    EXPECT_EQ(values[9], wavy(2, 1));
    EXPECT_EQ(values[10], wavy(1, 1));
    EXPECT_EQ(values[8], 0.0);
}

TEST(Interpolate, TargetOutsideTheBoxKeepsItsValue)
{
    const background b =
        support::with_targets(support::grid_T3(2, 2), ELEMENT_T3, {{2.0000001, 1}, {-1e-9, 1}});
    dense1D<double, 8> values = field(b, wavy, 123.0);
    ASSERT_EQ(run(b, values), 0);
    EXPECT_EQ(values[9], 123.0);
    EXPECT_EQ(values[10], 123.0);
}

TEST(Interpolate, ListedBackgroundNodesAreSkipped)
{
    background b = support::with_targets(support::grid_T3(2, 2), ELEMENT_T3, {{0.5, 0.5}});
    dense1D<double, 8> values = field(b, tilted, 0.0);
    values[4] = -1000.0;
    for (unsigned id = 0; id < 9; ++id) b.targets.append(id);
    const auto before = support::elements(values);
    ASSERT_EQ(run(b, values), 0);
    for (unsigned id = 0; id < 9; ++id) EXPECT_EQ(values[id], before[id]);
}

TEST(Interpolate, WithoutNeighboursOnlyTheStartElementAndTheNearestNodeServe)
{
    background b = support::with_random_targets(support::grid_T3(3, 3), ELEMENT_T3, 50, 2);
    b.neighbors = dense2D<unsigned>(3, b.connect.cols, UNSET_ID);
    dense1D<double, 8> values = field(b, wavy, -5.0);
    const auto expected = expected_values(b, values);
    ASSERT_EQ(run(b, values), 0);
    EXPECT_EQ(bits(values), bits(expected));
}

TEST(Interpolate, NodesThatOccurTwiceAreServedTwice)
{
    background b = support::with_random_targets(support::grid_T3(3, 3), ELEMENT_T3, 30, 2);
    for (std::size_t k = 0; k < 30; ++k) b.targets.append(b.targets[29 - k]);
    dense1D<double, 8> values = field(b, wavy, -5.0);
    const auto expected = expected_values(b, values);
    ASSERT_EQ(run(b, values), 0);
    EXPECT_EQ(bits(values), bits(expected));
}

TEST(Interpolate, KindsWithoutAnEngineAreNothingToDo)
{
    const background b = support::with_targets(support::grid_T3(2, 2), ELEMENT_ANY_FACE, {{1, 1}});
    dense1D<double, 8> values = field(b, tilted, 5.0);
    EXPECT_EQ(run(b, values), 0) << "three rows pass as faces of any kind";
    EXPECT_EQ(values[9], 5.0);

    background quadratic = b;
    const support::mesh m = support::grid_T6(2, 2);
    quadratic = support::with_targets(m, ELEMENT_T6, {{1, 1}});
    values = dense1D<double, 8>(quadratic.coords.cols, 5.0);
    EXPECT_EQ(run(quadratic, values), 0);
    EXPECT_EQ(values[quadratic.targets[0]], 5.0);

    background empty = b;
    empty.connect = support::without_columns<unsigned>(3);
    empty.neighbors = empty.connect;
    for (const element_type type : {ELEMENT_T3, ELEMENT_NONE, ELEMENT_HEXA27}) {
        empty.type = type;
        values = field(empty, tilted, 5.0);
        EXPECT_EQ(run(empty, values), 0) << int(type);
        EXPECT_EQ(values[9], 5.0);
    }
}

TEST(Interpolate, LayoutsDoNotMatterAndInputsStay)
{
    for (const background& b : support::backgrounds(3)) {
        dense1D<double, 8> expected = field(b, wavy, -1.0);
        ASSERT_EQ(run(b, expected), 0);
        const support::placed<double> coords(b.coords, 3, 2);
        const support::placed<unsigned> connect(b.connect, 5, 1);
        const support::placed<unsigned> neighbors(b.neighbors, 1, 4);
        const auto node_element = support::placed_run(b.node_element, 7);
        const auto targets = support::placed_run(b.targets, 2);
        auto values = support::placed_run(field(b, wavy, -1.0), 4);
        ASSERT_EQ(interpolate(coords.view, connect.view, neighbors.view, node_element, values,
                              targets, b.type),
                  0);
        EXPECT_EQ(bits(values), bits(expected)) << b.name;
        coords.expect_gaps_untouched();
        connect.expect_gaps_untouched();
        neighbors.expect_gaps_untouched();
        EXPECT_EQ(bits(coords.view), bits(b.coords));
        EXPECT_EQ(support::columns(connect.view), support::columns(b.connect));
        EXPECT_EQ(support::columns(neighbors.view), support::columns(b.neighbors));
        EXPECT_EQ(support::elements(node_element), support::elements(b.node_element));
        EXPECT_EQ(support::elements(targets), support::elements(b.targets));
    }
}

TEST(Interpolate, RefusedAllocationsAreNotReported)
{
    const background b = support::with_random_targets(support::grid_T3(8, 8), ELEMENT_T3, 90, 1);
    const dense1D<double, 8> before = field(b, tilted, 1e6);
    const std::size_t refusals =
        support::each_refused_allocation([&](auto armed, const auto& told) {
            dense1D<double, 8> values;
            ASSERT_TRUE(values.copy(before));
            int status = -1;
            (void)armed([&] { status = run(b, values); });
            EXPECT_EQ(status, 0) << told;
            for (const unsigned node : b.targets) {
                const double exact = tilted(b.coords(0, node), b.coords(1, node));
                const double v = values[node];
                EXPECT_TRUE(v == 1e6 || std::abs(v - exact) < 12) << told << ": " << v;
            }
        });
    EXPECT_GE(refusals, 4u);
}

TEST(Interpolate, SingleRefusalsServeAllTargetsOrNone)
{
    const background b = support::with_random_targets(support::grid_T3(8, 8), ELEMENT_T3, 90, 1);
    dense1D<double, 8> whole = field(b, wavy, -1.0);
    ASSERT_EQ(run(b, whole), 0);
    for (std::size_t k = 0; k < support::REQUESTS_OF_A_TREE; ++k) {
        dense1D<double, 8> values = field(b, wavy, -1.0);
        EXPECT_TRUE(support::with_request_refused(k, [&] { EXPECT_EQ(run(b, values), 0); })) << k;
        EXPECT_EQ(bits(values),
                  bits(support::leaves_the_tree_empty(k) ? field(b, wavy, -1.0) : whole))
            << k;
    }
}

TEST(Interpolate, TargetsCostNoAllocationEach)
{
    for (const background& few : support::backgrounds(3)) {
        const background many = support::with_list_repeated(few, 10);
        dense1D<double, 8> values = field(few, wavy, -1.0);
        const std::size_t of_few = support::allocations_of([&] { ASSERT_EQ(run(few, values), 0); });
        const std::size_t of_many =
            support::allocations_of([&] { ASSERT_EQ(run(many, values), 0); });
        EXPECT_EQ(of_few, of_many) << few.name;
    }
}

TEST(Interpolate, AwkwardMeshesEnd)
{
    for (const support::mesh& m : support::awkward_meshes(2)) {
        const element_type type = m.connect.rows == 3 ? ELEMENT_T3 : ELEMENT_ANY_FACE;
        const background b = support::with_random_targets(m, type, 40, 5);
        dense1D<double, 8> values = field(b, wavy, -1.0);
        const auto expected = expected_values(b, values);
        EXPECT_EQ(run(b, values), 0) << m.name;
        EXPECT_EQ(bits(values), bits(expected)) << m.name;
    }
}

TEST(InterpolateRows, ChangesNothing)
{
    for (const background& b : support::backgrounds(2)) {
        dense2D<double> rows(3, b.coords.cols, 0.0);
        for (std::size_t j = 0; j < rows.cols; ++j)
            for (std::size_t i = 0; i < 3; ++i) rows(i, j) = static_cast<double>(10 * j + i);
        const auto before = bits(rows);
        EXPECT_EQ(
            interpolate(b.coords, b.connect, b.neighbors, b.node_element, rows, b.targets, b.type),
            0);
        EXPECT_EQ(bits(rows), before) << b.name;
    }
}

TEST(InterpolateRows, WithoutStorageForAValueChangesNothing)
{
    const background b = support::with_random_targets(support::grid_T3(2, 2), ELEMENT_T3, 9, 1);
    (void)support::each_refused_allocation([&](auto armed, const auto& told) {
        dense2D<double> rows(3, b.coords.cols, 4.0);
        int status = -1;
        (void)armed([&] {
            status = interpolate(b.coords, b.connect, b.neighbors, b.node_element, rows, b.targets,
                                 b.type);
        });
        EXPECT_EQ(status, 0) << told;
        for (std::size_t j = 0; j < rows.cols; ++j) EXPECT_EQ(rows(2, j), 4.0) << told;
    });
}

TEST(InterpolateRows, EnginesCarryEveryRowWhenTheirTreeIsFilled)
{
    for (const background& b : support::backgrounds(4)) {
        const field_of fields[] = {wavy, tilted, hyperbolic};
        dense2D<double> rows(3, b.coords.cols);
        std::vector<dense1D<double, 8>> expected;
        for (std::size_t i = 0; i < 3; ++i) {
            expected.push_back(field(b, fields[i], -2.0));
            for (std::size_t j = 0; j < rows.cols; ++j) rows(i, j) = expected[i][j];
            ASSERT_EQ(run(b, expected[i]), 0);
        }
        support::placed<double> placed(rows, 3, 2);
        const interpolation_arguments a{b.coords, b.connect, b.neighbors, b.node_element,
                                        b.targets};
        const rows_carrier carrier(placed.view);
        if (b.type == ELEMENT_T3) serve_targets<mesh_form::T3>(a, carrier, true);
        if (b.type == ELEMENT_Q4) serve_targets<mesh_form::Q4>(a, carrier, true);
        if (b.type == ELEMENT_ANY_FACE) serve_targets<mesh_form::mixed>(a, carrier, true);
        for (std::size_t i = 0; i < 3; ++i)
            for (std::size_t j = 0; j < rows.cols; ++j)
                EXPECT_EQ(bits(placed.view(i, j)), bits(expected[i][j])) << b.name;
        placed.expect_gaps_untouched();
    }
}
