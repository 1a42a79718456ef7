// The reorientation held to its procedure, written out step by step: neighbors that contradict the
// elements or themselves, and fronts of many elements.
#include "structured/reorient_region.h"
#include "support/matrices.h"
#include "support/meshes.h"
#include "support/topology.h"

#include <cstdint>
#include <queue>
#include <random>

using namespace vorel;
using namespace reorient_tests;
using support::columns;
using tessalo2d::mesh_reorient;

namespace {

/// The procedure step by step, for any content of the matrices: 32-bit positions, a queue that
/// takes an element as often as it is met, a count that carries the mark of a conflict.
int reference(region& m, unsigned seed, bool all_regions)
{
    dense2D<unsigned>& c = m.connect;
    const bool mixed = c.rows == 4;
    const unsigned elements = static_cast<unsigned>(c.cols);
    std::vector<bool> visited(elements, false);
    std::int64_t flip_count = 0;

    const auto position = [&](unsigned b, unsigned node, unsigned rows) {
        for (unsigned i = 0; i < rows; ++i)
            if (c(i, b) == node) return i;
        return 0xFFFFFFFFu;
    };
    const auto test = [&](unsigned e, unsigned r, unsigned b) {
        unsigned v = U;
        unsigned w = U;
        if (mixed && c(3, e) != U) {
            v = c(r, e);
            w = c((r + 1) % 4, e);
        } else if (r < 3) {
            v = c((r + 1) % 3, e);
            w = c((r + 2) % 3, e);
        }
        const unsigned n = mixed && c(3, b) != U ? 4 : 3;
        const unsigned pv = position(b, v, n);
        const unsigned pw = position(b, w, n);
        if (pw == (pv + 1u) % n) {
            std::swap(c(0, b), c(2, b));
            if (n == 3) {
                std::swap(m.neighbors(0, b), m.neighbors(2, b));
            } else {
                std::swap(m.neighbors(0, b), m.neighbors(1, b));
                std::swap(m.neighbors(2, b), m.neighbors(3, b));
            }
            ++flip_count;
        } else if (pv != (pw + 1u) % n) {
            flip_count = -2;
        }
        return flip_count >= 0;
    };

    unsigned e = seed;
    do {
        while (e < elements && visited[e]) ++e;
        if (e >= elements) break;
        std::queue<unsigned> waiting;
        waiting.push(e);
        while (!waiting.empty()) {
            const unsigned at = waiting.front();
            waiting.pop();
            if (visited[at]) continue;
            visited[at] = true;
            for (unsigned r = 0; r < c.rows; ++r) {
                const unsigned b = m.neighbors(r, at);
                if (b >= elements || visited[b]) continue;
                const bool go_on = test(at, r, b);
                waiting.push(b);
                if (!go_on) break;
            }
        }
    } while (all_regions);
    return static_cast<int>(flip_count);
}

} // namespace

TEST(MeshReorient, NeighborWithoutTheEdgeIsAConflict)
{
    region m{dense2D<unsigned>{{0, 1, 2}, {5, 6, 7}}, dense2D<unsigned>(3, 2, U)};
    m.neighbors(0, 0) = 1;
    EXPECT_EQ(mesh_reorient(m.connect, m.neighbors, 0, 0), -2);
    EXPECT_EQ(columns(m.connect), columns(dense2D<unsigned>{{0, 1, 2}, {5, 6, 7}}));
}

TEST(MeshReorient, ConflictCountClimbsBackWithLaterFlips)
{
    // Element 1 is no neighbor of 0. From it a chain leads on in which each element runs the edge
    // as the one before it does.
    for (unsigned flips = 0; flips < 5; ++flips) {
        const unsigned elements = 2 + flips;
        region m{dense2D<unsigned>(3, elements), dense2D<unsigned>(3, elements, U)};
        m.connect(0, 0) = 90;
        m.connect(1, 0) = 91;
        m.connect(2, 0) = 92;
        m.neighbors(0, 0) = 1;
        for (unsigned k = 1; k < elements; ++k) {
            // Fan around node 50, turned from element to element.
            const bool turned = k % 2 == 0;
            m.connect(0, k) = turned ? k + 1 : k;
            m.connect(1, k) = turned ? k : k + 1;
            m.connect(2, k) = 50;
        }
        const dense2D<unsigned> fan = support::neighbors_of(m.connect);
        for (unsigned k = 1; k < elements; ++k)
            for (unsigned r = 0; r < 3; ++r) m.neighbors(r, k) = fan(r, k);
        region copy = with_neighbors(m.connect);
        copy.neighbors = support::copy_of(m.neighbors);
        // Every second element of the fan is turned.
        const int turned = static_cast<int>(flips / 2 + flips % 2);
        EXPECT_EQ(mesh_reorient(m.connect, m.neighbors, 0, 0), -2 + turned) << flips;
        EXPECT_EQ(reference(copy, 0, false), -2 + turned);
        EXPECT_EQ(columns(m.connect), columns(copy.connect));
    }
}

TEST(MeshReorient, ConflictEndsTheScanOfItsElementOnly)
{
    // Side 0 of element 0 leads to a stranger, side 1 to an element that would have to be flipped.
    const dense2D<unsigned> connect{{0, 1, 2}, {5, 6, 7}, {2, 0, 8}};
    region m{support::copy_of(connect), dense2D<unsigned>(3, 3, U)};
    m.neighbors(0, 0) = 1;
    m.neighbors(1, 0) = 2;
    EXPECT_EQ(mesh_reorient(m.connect, m.neighbors, 0, 0), -2);
    EXPECT_EQ(columns(m.connect), columns(connect));
    // The other way round the flip comes first.
    m.neighbors(0, 0) = U;
    m.neighbors(2, 0) = 1;
    EXPECT_EQ(mesh_reorient(m.connect, m.neighbors, 0, 0), -2);
    EXPECT_EQ(columns(m.connect)[2], (std::vector<unsigned>{8, 0, 2}));
}

TEST(MeshReorient, AbsentNodeWrapsToTheFirstPosition)
{
    const auto result = [](std::vector<unsigned> first, std::vector<unsigned> second) {
        region m{support::matrix<unsigned>({first, second}), dense2D<unsigned>(first.size(), 2, U)};
        m.neighbors(0, 0) = 1;
        return mesh_reorient(m.connect, m.neighbors, 0, 0);
    };
    // The edge runs from 1 to 2. Only 2 is there, in row 0: taken for the same direction.
    EXPECT_EQ(result({0, 1, 2}, {2, 8, 9}), 1);
    EXPECT_EQ(result({1, 2, 3, 4}, {2, 7, 8, 9}), 1);
    EXPECT_EQ(result({1, 2, 3, 4}, {2, 8, 9, U}), 1);
    // Only 1 is there, in row 0: taken for the opposite one.
    EXPECT_EQ(result({0, 1, 2}, {1, 8, 9}), 0);
    EXPECT_EQ(result({1, 2, 3, 4}, {1, 7, 8, 9}), 0);
    // In another row it is a conflict.
    EXPECT_EQ(result({0, 1, 2}, {8, 2, 9}), -2);
    EXPECT_EQ(result({0, 1, 2}, {8, 9, 1}), -2);
    // Opposite corners of a quadrilateral are no edge.
    EXPECT_EQ(result({1, 2, 3, 4}, {1, 7, 2, 9}), -2);
    // First positions count: 1 stands in row 0 and again before 2.
    EXPECT_EQ(result({1, 2, 3, 4}, {1, 8, 1, 2}), 0);
    // An edge of one node.
    EXPECT_EQ(result({0, 1, 1}, {1, 8, 9}), -2);
}

TEST(MeshReorient, ElementInTheLastRowOfATriangleIsAConflict)
{
    for (const unsigned last : {U, 7u}) {
        region m{dense2D<unsigned>{{0, 1, 2, U}, {1, 2, 6, last}}, dense2D<unsigned>(4, 2, U)};
        m.neighbors(3, 0) = 1;
        EXPECT_EQ(mesh_reorient(m.connect, m.neighbors, 0, 0), -2);
    }
}

TEST(MeshReorient, ElementThatIsItsOwnNeighborIsSkipped)
{
    region m = with_neighbors(dense2D<unsigned>{{0, 1, 2}, {1, 2, 3}});
    m.neighbors(1, 0) = 0;
    m.neighbors(2, 1) = m.neighbors(2, 1) == U ? 1 : m.neighbors(2, 1);
    EXPECT_EQ(mesh_reorient(m.connect, m.neighbors, 0, 0), 1);
}

TEST(MeshReorient, NeighborsBeyondTheColumnsAreNone)
{
    region m{dense2D<unsigned>{{0, 1, 2}, {3, 4, 5}}, dense2D<unsigned>(3, 2, 2u)};
    m.neighbors(0, 0) = 0x80000000u;
    EXPECT_EQ(mesh_reorient(m.connect, m.neighbors, 0, 1), 0);
}

TEST(MeshReorient, WideFrontsFollowTheProcedure)
{
    // Fronts of many elements, which are fetched ahead of their visit.
    for (support::mesh& m :
         std::vector<support::mesh>{support::grid_T3(60, 60), support::grid_Q4(60, 60),
                                    support::grid_mixed(60, 60, 2, 8)}) {
        std::mt19937 draw(8);
        support::shuffle(m, 8);
        turn_some(m.connect, draw);
        region r = with_neighbors(m.connect);
        region expected{support::copy_of(r.connect), support::copy_of(r.neighbors)};
        const unsigned seed = static_cast<unsigned>(draw() % m.connect.cols);
        EXPECT_EQ(mesh_reorient(r.connect, r.neighbors, seed, 1), reference(expected, seed, true))
            << m.name;
        EXPECT_EQ(columns(r.connect), columns(expected.connect)) << m.name;
        EXPECT_EQ(columns(r.neighbors), columns(expected.neighbors)) << m.name;
    }
}

TEST(MeshReorient, ContradictoryNeighborsFollowTheProcedure)
{
    for (unsigned seed = 0; seed < 400; ++seed) {
        std::mt19937 draw(seed);
        const std::size_t rows = 3 + seed % 2;
        const unsigned elements = 1 + static_cast<unsigned>(draw() % 30);
        const unsigned nodes = 3 + static_cast<unsigned>(draw() % 6);
        region m{dense2D<unsigned>(rows, elements), dense2D<unsigned>(rows, elements)};
        for (std::size_t e = 0; e < elements; ++e)
            for (std::size_t i = 0; i < rows; ++i) {
                const bool none = i == 3 && draw() % 2;
                m.connect(i, e) = none ? U : static_cast<unsigned>(draw() % nodes);
                const unsigned wild[] = {U, elements, 0xFFFFFFFEu};
                m.neighbors(i, e) =
                    draw() % 3 ? static_cast<unsigned>(draw() % elements) : wild[draw() % 3];
            }
        const unsigned start = static_cast<unsigned>(draw() % elements);
        const bool all = draw() % 2;
        region expected{support::copy_of(m.connect), support::copy_of(m.neighbors)};
        support::placed<unsigned> connect(m.connect, 2, 3);
        support::placed<unsigned> neighbors(m.neighbors, 1, 2);
        const int status = reference(expected, start, all);
        EXPECT_EQ(mesh_reorient(m.connect, m.neighbors, start, all), status) << "seed " << seed;
        EXPECT_EQ(columns(m.connect), columns(expected.connect)) << "seed " << seed;
        EXPECT_EQ(columns(m.neighbors), columns(expected.neighbors)) << "seed " << seed;

        EXPECT_EQ(mesh_reorient(connect.view, neighbors.view, start, all), status) << seed;
        EXPECT_EQ(columns(connect.view), columns(expected.connect)) << "seed " << seed;
        EXPECT_EQ(columns(neighbors.view), columns(expected.neighbors)) << "seed " << seed;
        connect.expect_gaps_untouched();
        neighbors.expect_gaps_untouched();
    }
}

TEST(MeshReorient, NeighborsThatAreTheConnectivityDoNoHarm)
{
    for (unsigned seed = 0; seed < 20; ++seed) {
        std::mt19937 draw(seed);
        dense2D<unsigned> both(3 + seed % 2, 12);
        for (std::size_t e = 0; e < both.cols; ++e)
            for (std::size_t i = 0; i < both.rows; ++i)
                both(i, e) = static_cast<unsigned>(draw() % 14);
        (void)mesh_reorient(both, both, 0, 1);
        EXPECT_EQ(both.cols, 12u);
    }
}
