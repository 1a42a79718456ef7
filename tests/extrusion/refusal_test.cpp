// What the matrices hold after storage was refused at each step.
#include "extrusion/overloads.h"
#include "support/allocation.h"
#include "support/matrices.h"

#include <cmath>

using namespace extrusion_tests;
using support::bits;
using support::columns;

namespace {

const dense2D<unsigned> EDGES = {{3, 1}, {1, 0}, {4, 3}};
constexpr std::size_t NODES = 5;

/// Overloads that leave two rows of `coords` after a failed step, whatever they had.
bool leaves_two_rows(const overload& o)
{
    const std::string name = o.name;
    return name == "rotate Q4 plane fixed" || name == "rotate T3 plane fixed" ||
           name == "rotate T3 plane sized" || o.moves == motion::spiral;
}

/// Overloads that widen `coords` ahead of the steps.
bool widens(const overload& o)
{
    return (o.dimension == 3 && o.moves != motion::spiral) ||
           o.name == std::string("translate T3 plane sized");
}

struct matrices {
    dense2D<double> coords;
    dense2D<unsigned> output;
};

/// Fresh arguments. An output with entries has the rows that the overload takes.
matrices fresh(const overload& o, std::size_t rows, bool filled)
{
    const bool wants_three = o.moves == motion::rotate && o.dimension == 3;
    matrices m;
    m.coords = nodes(rows, NODES);
    if (filled) m.output = dense2D<unsigned>(wants_three ? 3 : o.rows, 2, 9u);
    return m;
}

/// Calls `check(o, rows, filled)` for all overloads, accepted row counts, and outputs.
template <class Check>
void for_each_case(Check check)
{
    for (const overload& o : overloads())
        for (const std::size_t rows : coords_rows(o))
            for (const bool filled : {false, true}) {
                SCOPED_TRACE(o.name + std::string(", rows ") + std::to_string(rows) +
                             (filled ? ", filled" : ", empty"));
                check(o, rows, filled);
            }
}

/// The first `rows` rows of the old nodes, and nothing else.
void expect_old_nodes(const dense2D<double>& coords, const dense2D<double>& before,
                      std::size_t rows)
{
    ASSERT_EQ(coords.rows, rows);
    ASSERT_EQ(coords.cols, before.cols);
    for (std::size_t j = 0; j < coords.cols; ++j)
        for (std::size_t i = 0; i < rows; ++i)
            EXPECT_EQ(support::bits(coords(i, j)), support::bits(before(i, j)));
}

/// The old elements, unset in rows that they lacked, and nothing else.
void expect_old_elements(const dense2D<unsigned>& output, const dense2D<unsigned>& before)
{
    ASSERT_EQ(output.cols, before.cols);
    for (std::size_t j = 0; j < output.cols; ++j)
        for (std::size_t i = 0; i < output.rows; ++i)
            EXPECT_EQ(output(i, j), i < before.rows ? before(i, j) : UNSET_ID);
}

void expect_unchanged(const matrices& m, const matrices& before)
{
    expect_old_nodes(m.coords, before.coords, before.coords.rows);
    EXPECT_EQ(m.output.rows, before.output.rows);
    EXPECT_EQ(m.output.cols, before.output.cols);
    EXPECT_EQ(columns(m.output), columns(before.output));
}

/// Where the entries of a matrix lie: a refusal that is certain from the start moves nothing.
struct storage {
    explicit storage(const dense2D<double>& m)
        : data(m.block->data), capacity(m.block->capacity), ld(m.ld)
    {
    }

    void expect_kept(const dense2D<double>& m) const
    {
        EXPECT_EQ(m.block->data, data);
        EXPECT_EQ(m.block->capacity, capacity);
        EXPECT_EQ(m.ld, ld);
    }

    const double* data;
    std::size_t capacity;
    std::size_t ld;
};

std::size_t rows_after_undo(const overload& o, std::size_t rows)
{
    return leaves_two_rows(o) ? 2 : rows;
}

/// Number of storage requests of a call that succeeds on matrices that `prepare` made ready.
template <class Prepare>
std::size_t requests(const overload& o, std::size_t rows, bool filled, Prepare prepare)
{
    matrices m = fresh(o, rows, filled);
    prepare(m);
    const std::size_t before = support::allocations();
    EXPECT_EQ(o.run(m.coords, EDGES, {}, m.output), 0);
    return support::allocations() - before;
}

/// Runs with the last storage request, and all that follow it, refused.
template <class Prepare>
matrices with_last_refused(const overload& o, std::size_t rows, bool filled, Prepare prepare)
{
    const std::size_t count = requests(o, rows, filled, prepare);
    EXPECT_GT(count, 0u);
    matrices m = fresh(o, rows, filled);
    prepare(m);
    support::failing_allocation armed(count - 1, support::failure::for_good);
    EXPECT_EQ(o.run(m.coords, EDGES, {}, m.output), -199);
    EXPECT_TRUE(armed.fired());
    return m;
}

} // namespace

TEST(ExtrusionRefusal, OfTheNodeMapChangesNothing)
{
    for_each_case([](const overload& o, std::size_t rows, bool filled) {
        const auto roomy = [](matrices& m) {
            EXPECT_TRUE(m.coords.reserve(3, 100, 1));
            EXPECT_TRUE(m.output.reserve(4, 100, 1));
        };
        const std::size_t count = requests(o, rows, filled, roomy);
        EXPECT_GT(count, 0u);
        for (std::size_t k = 0; k < count; ++k) {
            matrices m = fresh(o, rows, filled);
            roomy(m);
            support::failing_allocation armed(k);
            EXPECT_EQ(o.run(m.coords, EDGES, {}, m.output), -199);
            expect_unchanged(m, fresh(o, rows, filled));
        }
    });
}

TEST(ExtrusionRefusal, OfTheWideningChangesNothing)
{
    for_each_case([](const overload& o, std::size_t rows, bool filled) {
        if (!widens(o) || rows == 3) return;
        const matrices m = with_last_refused(
            o, rows, filled, [](matrices& ready) { EXPECT_TRUE(ready.output.reserve(4, 100, 1)); });
        expect_unchanged(m, fresh(o, rows, filled));
    });
}

TEST(ExtrusionRefusal, OfTheElementStepKeepsTheOutputAndRestoresTheNodes)
{
    for_each_case([](const overload& o, std::size_t rows, bool filled) {
        const matrices m = with_last_refused(
            o, rows, filled, [](matrices& ready) { EXPECT_TRUE(ready.coords.reserve(3, 100, 1)); });
        const matrices before = fresh(o, rows, filled);
        EXPECT_EQ(m.output.rows, before.output.rows);
        EXPECT_EQ(columns(m.output), columns(before.output));
        expect_old_nodes(m.coords, before.coords, rows_after_undo(o, rows));
    });
}

TEST(ExtrusionRefusal, OfTheCoordinateStepKeepsTheRowsThatTheOutputGot)
{
    for_each_case([](const overload& o, std::size_t rows, bool filled) {
        const matrices m = with_last_refused(o, rows, filled, [](matrices& ready) {
            // Room to widen, and none for another node.
            EXPECT_TRUE(ready.coords.reserve(3, NODES, 1));
            EXPECT_TRUE(ready.output.reserve(4, 100, 1));
        });
        const matrices before = fresh(o, rows, filled);
        EXPECT_EQ(m.output.rows, o.rows);
        expect_old_elements(m.output, before.output);
        expect_old_nodes(m.coords, before.coords, rows_after_undo(o, rows));
    });
}

TEST(ExtrusionRefusal, OfAnyOneRequestGivesTheFullResultOrNone)
{
    for_each_case([](const overload& o, std::size_t rows, bool filled) {
        matrices whole = fresh(o, rows, filled);
        ASSERT_EQ(o.run(whole.coords, EDGES, {}, whole.output), 0);
        const matrices before = fresh(o, rows, filled);
        const std::size_t refusals =
            support::each_refused_allocation([&](const auto& armed, const std::string& told) {
                matrices m = fresh(o, rows, filled);
                int status = 0;
                const bool refused = armed([&] { status = o.run(m.coords, EDGES, {}, m.output); });
                // Room ahead of the widening may be refused without harm.
                EXPECT_TRUE(status == 0 || (refused && status == -199)) << told;
                if (status == 0) {
                    EXPECT_EQ(bits(m.coords), bits(whole.coords)) << told;
                    EXPECT_EQ(columns(m.output), columns(whole.output)) << told;
                } else {
                    SCOPED_TRACE(told);
                    EXPECT_TRUE(m.coords.rows == rows || m.coords.rows == rows_after_undo(o, rows));
                    expect_old_nodes(m.coords, before.coords, m.coords.rows);
                    EXPECT_TRUE(m.output.rows == before.output.rows || m.output.rows == o.rows);
                    expect_old_elements(m.output, before.output);
                }
            });
        EXPECT_GT(refusals, 0u);
    });
}

/// Refuses each request for working storage in the extrusion of a line with so many nodes among
/// 5000. What it grows has room already: no refusal there hides one before.
void expect_all_or_none(const dense2D<unsigned>& connect, std::size_t distinct)
{
    const overload& o = overload_named("translate Q4 plane fixed");
    const std::size_t refusals =
        support::each_refused_allocation([&](const auto& armed, const std::string& told) {
            dense2D<double> coords = nodes(2, 5000);
            dense2D<unsigned> output;
            ASSERT_TRUE(coords.reserve(2, 6000, 1));
            ASSERT_TRUE(output.reserve(4, 1000, 1));
            int status = 0;
            const bool refused = armed([&] { status = o.run(coords, connect, {}, output); });
            EXPECT_TRUE(status == 0 || (refused && status == -199)) << told;
            EXPECT_EQ(coords.cols, status == 0 ? 5000u + 3u * distinct : 5000u) << told;
            EXPECT_EQ(output.cols, status == 0 ? 3u * connect.cols : 0u) << told;
        });
    EXPECT_GT(refusals, 4u);
}

TEST(ExtrusionRefusal, OfAGrowingHashOfASparseLine)
{
    // All nodes are distinct, so there are twice as many as edges and the table grows on the way.
    dense2D<unsigned> connect(2, 60);
    for (unsigned e = 0; e < 60; ++e) {
        connect(0, e) = 80 * e;
        connect(1, e) = 80 * e + 40;
    }
    expect_all_or_none(connect, 120);
}

TEST(ExtrusionRefusal, OfTheHashOfASparseLineThatRisesFirst)
{
    // A closed loop: all nodes are numbered when the last edge asks for the hash table.
    dense2D<unsigned> connect(2, 60);
    for (unsigned e = 0; e < 60; ++e) {
        connect(0, e) = 80 * e;
        connect(1, e) = 80 * ((e + 1) % 60);
    }
    expect_all_or_none(connect, 60);
}

TEST(ExtrusionRefusal, MoreNodesThanIDsAreRefusedAsAFailedElementStep)
{
    for_each_case([](const overload& o, std::size_t rows, bool filled) {
        arguments given;
        given.N = 0xFFFFFFFFu;
        if (o.by_size) {
            // About 2.0e9 layers.
            given.h0 = given.h1 = 1e-9;
            given.angle = given.rotation[2] = 2.0;
        }
        matrices m = fresh(o, rows, filled);
        const storage held(m.coords);
        EXPECT_EQ(o.run(m.coords, EDGES, given, m.output), -199);
        const matrices before = fresh(o, rows, filled);
        if (widens(o)) held.expect_kept(m.coords);
        EXPECT_EQ(m.output.rows, before.output.rows);
        EXPECT_EQ(columns(m.output), columns(before.output));
        expect_old_nodes(m.coords, before.coords, rows_after_undo(o, rows));
    });
}

TEST(ExtrusionRefusal, ACountOfElementsBeyondIDsIsRefused)
{
    // One node, so the node IDs would suffice, and two edges.
    for (const overload& o : overloads()) {
        SCOPED_TRACE(o.name);
        if (o.by_size || o.moves == motion::spiral) continue;
        arguments given;
        given.N = 0xFFFFFF00u;
        dense2D<double> coords = nodes(2, 1);
        const storage held(coords);
        dense2D<unsigned> output;
        EXPECT_EQ(o.run(coords, {{0, 0}, {0, 0}}, given, output), -199);
        EXPECT_EQ(coords.cols, 1u);
        EXPECT_EQ(coords.rows, 2u);
        held.expect_kept(coords);
        EXPECT_EQ(output.cols, 0u);
    }
}

TEST(ExtrusionSafety, SizesThatAreNoNumbersOrHaveNoCountEnd)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const double values[] = {std::nan(""), infinity, -infinity, 1e300, -1e300, 5e-324, 0.0};
    for (const overload& o : overloads())
        for (const double value : values)
            for (int place = 0; place < 6; ++place) {
                SCOPED_TRACE(o.name + std::string(", ") + std::to_string(value) + " in place " +
                             std::to_string(place));
                arguments given;
                matrices m = fresh(o, 2, false);
                if (place == 0) given.h0 = value;
                if (place == 1) given.h1 = value;
                if (place == 2) given.plane[1] = given.translation[1] = given.angle = value;
                if (place == 3) given.plane_center[0] = given.center[0] = value;
                if (place == 4) given.rotation[0] = value;
                if (place == 5) m.coords(0, 3) = value;
                const int status = o.run(m.coords, EDGES, given, m.output);
                if (status == 0) {
                    const std::size_t per_layer = EDGES.cols * (o.rows == 4 ? 1 : 2);
                    EXPECT_EQ(m.output.cols % per_layer, 0u);
                    EXPECT_EQ(m.coords.cols, NODES + 4 * (m.output.cols / per_layer));
                } else {
                    EXPECT_EQ(m.output.cols, 0u);
                    EXPECT_EQ(m.coords.cols, NODES);
                }
            }
}
