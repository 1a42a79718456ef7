#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"
#include "support/topology.h"

#include <algorithm>
#include <queue>
#include <random>

using namespace vorel;
using support::columns;
using tessalo2d::flip;
using tessalo2d::mesh_reorient;

namespace {

constexpr unsigned U = UNSET_ID;

struct region {
    dense2D<unsigned> connect;
    dense2D<unsigned> neighbors;
};

region with_neighbors(const dense2D<unsigned>& connect)
{
    return {support::copy_of(connect), support::neighbors_of(connect)};
}

/// Flips each element with probability 1/2.
void turn_some(dense2D<unsigned>& connect, std::mt19937& draw)
{
    for (std::size_t e = 0; e < connect.cols; ++e)
        if (draw() % 2) std::swap(connect(0, e), connect(2, e));
}

std::size_t corners(const dense2D<unsigned>& connect, std::size_t e)
{
    return connect.rows == 4 && connect(3, e) != U ? 4 : 3;
}

/// The local edge r of an element in its direction.
std::pair<unsigned, unsigned> edge(const dense2D<unsigned>& connect, std::size_t e, std::size_t r)
{
    const std::size_t n = corners(connect, e);
    const std::size_t from = n == 3 ? (r + 1) % 3 : r;
    return {connect(from, e), connect((from + 1) % n, e)};
}

/// Every inner edge runs one way in one element and the other way in the other.
void expect_consistent(const region& m)
{
    for (std::size_t e = 0; e < m.connect.cols; ++e)
        for (std::size_t r = 0; r < corners(m.connect, e); ++r) {
            const unsigned b = m.neighbors(r, e);
            if (b == U) continue;
            const auto mine = edge(m.connect, e, r);
            bool opposite = false;
            for (std::size_t k = 0; k < corners(m.connect, b); ++k) {
                const auto theirs = edge(m.connect, b, k);
                opposite |= theirs.first == mine.second && theirs.second == mine.first;
            }
            EXPECT_TRUE(opposite) << "elements " << e << " and " << b;
        }
}

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

std::vector<support::mesh> surfaces(unsigned seed)
{
    std::vector<support::mesh> all{support::grid_T3(6, 5), support::grid_Q4(6, 5),
                                   support::grid_mixed(6, 5, 2, seed), support::grid_T3(1, 1),
                                   support::grid_Q4(1, 1)};
    for (support::mesh& m : all) support::shuffle(m, seed);
    return all;
}

} // namespace

TEST(MeshReorient, EmptyConnectivityIsNothingWhateverTheSeed)
{
    dense2D<unsigned> connect;
    dense2D<unsigned> neighbors(2, 2, 0u);
    EXPECT_EQ(mesh_reorient(connect, neighbors, 77, 1), 0);
    dense2D<unsigned> none = support::without_columns<unsigned>(7);
    EXPECT_EQ(mesh_reorient(none, neighbors, 77, 1), 0);
}

TEST(MeshReorient, EachCheckHasItsCodeInOrder)
{
    dense2D<unsigned> neighbors(4, 1, U);
    for (const std::size_t rows : {1u, 2u, 5u, 6u, 8u}) {
        dense2D<unsigned> connect(rows, 2, 0u);
        EXPECT_EQ(mesh_reorient(connect, neighbors, 9, 0), -1) << rows;
    }
    dense2D<unsigned> misplaced{{0, 1, U, 3}};
    EXPECT_EQ(mesh_reorient(misplaced, neighbors, 9, 0), -1);
    dense2D<unsigned> misplaced_T3{{U, 1, 2}};
    EXPECT_EQ(mesh_reorient(misplaced_T3, neighbors, 9, 0), -1);
    dense2D<unsigned> connect{{0, 1, 2}, {3, 4, 5}};
    EXPECT_EQ(mesh_reorient(connect, neighbors, 9, 0), -2);
    dense2D<unsigned> one_short(3, 1, U);
    EXPECT_EQ(mesh_reorient(connect, one_short, 9, 0), -2);
    dense2D<unsigned> too_high(4, 2, U);
    EXPECT_EQ(mesh_reorient(connect, too_high, 9, 0), -2);
    dense2D<unsigned> right(3, 2, U);
    EXPECT_EQ(mesh_reorient(connect, right, 9, 0), -3);
    EXPECT_EQ(mesh_reorient(connect, right, 2, 0), -3);
    EXPECT_EQ(mesh_reorient(connect, right, 1, 0), 0);
}

TEST(MeshReorient, ColumnsWithoutRowsHaveNothingToTurn)
{
    dense2D<unsigned> connect;
    connect.cols = 3;
    dense2D<unsigned> neighbors;
    EXPECT_EQ(mesh_reorient(connect, neighbors, 0, 1), -2);
    neighbors.cols = 3;
    EXPECT_EQ(mesh_reorient(connect, neighbors, 3, 1), -3);
    EXPECT_EQ(mesh_reorient(connect, neighbors, 2, 1), 0);
}

TEST(MeshReorient, ConsistentMeshStaysAsItIs)
{
    for (const support::mesh& m : surfaces(3)) {
        region r = with_neighbors(m.connect);
        const auto connect = columns(r.connect);
        const auto neighbors = columns(r.neighbors);
        EXPECT_EQ(mesh_reorient(r.connect, r.neighbors, 0, 1), 0) << m.name;
        EXPECT_EQ(columns(r.connect), connect);
        EXPECT_EQ(columns(r.neighbors), neighbors);
    }
}

TEST(MeshReorient, FlippedTriangleTakesItsNeighborsAlong)
{
    // Both run the edge from 1 to 2; it is side r of the second one.
    const std::vector<unsigned> second[3] = {{3, 1, 2}, {2, 3, 1}, {1, 2, 3}};
    for (std::size_t r = 0; r < 3; ++r) {
        region m{support::matrix<unsigned>({{0, 1, 2}, second[r]}), dense2D<unsigned>(3, 2, U)};
        m.neighbors(0, 0) = 1;
        m.neighbors(r, 1) = 0;
        EXPECT_EQ(mesh_reorient(m.connect, m.neighbors, 0, 0), 1);
        EXPECT_EQ(columns(m.connect)[0], (std::vector<unsigned>{0, 1, 2}));
        EXPECT_EQ(columns(m.connect)[1],
                  (std::vector<unsigned>{second[r][2], second[r][1], second[r][0]}));
        EXPECT_EQ(m.neighbors(2 - r, 1), 0u);
        EXPECT_EQ(columns(m.neighbors), columns(support::neighbors_of(m.connect)));
    }
}

TEST(MeshReorient, MixedPairsAreHandledByTheKindOfEach)
{
    // A quadrilateral and a triangle on its side 1, from 1 to 2; first one, then the other is the
    // seed. The triangle runs the edge the same way.
    const dense2D<unsigned> connect{{0, 1, 2, 3}, {1, 2, 4, U}};
    region from_quad = with_neighbors(connect);
    EXPECT_EQ(mesh_reorient(from_quad.connect, from_quad.neighbors, 0, 0), 1);
    EXPECT_EQ(columns(from_quad.connect),
              (std::vector<std::vector<unsigned>>{{0, 1, 2, 3}, {4, 2, 1, U}}));
    EXPECT_EQ(columns(from_quad.neighbors),
              (std::vector<std::vector<unsigned>>{{U, 1, U, U}, {0, U, U, U}}));

    region from_triangle = with_neighbors(connect);
    EXPECT_EQ(mesh_reorient(from_triangle.connect, from_triangle.neighbors, 1, 0), 1);
    EXPECT_EQ(columns(from_triangle.connect),
              (std::vector<std::vector<unsigned>>{{2, 1, 0, 3}, {1, 2, 4, U}}));
    EXPECT_EQ(columns(from_triangle.neighbors),
              (std::vector<std::vector<unsigned>>{{1, U, U, U}, {U, U, 0, U}}));
}

TEST(MeshReorient, RandomlyTurnedMeshesBecomeConsistentAndKeepTheSeed)
{
    for (unsigned round = 0; round < 30; ++round)
        for (const support::mesh& m : surfaces(round)) {
            SCOPED_TRACE(m.name + ", round " + std::to_string(round));
            std::mt19937 draw(round);
            dense2D<unsigned> turned = support::copy_of(m.connect);
            turn_some(turned, draw);
            region r = with_neighbors(turned);
            const unsigned seed = static_cast<unsigned>(draw() % turned.cols);
            const int count = mesh_reorient(r.connect, r.neighbors, seed, 0);
            expect_consistent(r);
            EXPECT_EQ(columns(r.neighbors), columns(support::neighbors_of(r.connect)));
            EXPECT_EQ(columns(r.connect)[seed], columns(turned)[seed]);
            int different = 0;
            for (std::size_t e = 0; e < turned.cols; ++e) {
                auto before = columns(turned)[e];
                if (before == columns(r.connect)[e]) continue;
                ++different;
                std::swap(before[0], before[2]);
                EXPECT_EQ(before, columns(r.connect)[e]);
            }
            EXPECT_EQ(count, different);
        }
}

TEST(MeshReorient, OnlyLaterRegionsAreTakenAlong)
{
    // Three regions of two triangles each that disagree.
    const dense2D<unsigned> connect{{0, 1, 2},    {1, 2, 3},    {10, 11, 12},
                                    {11, 12, 13}, {20, 21, 22}, {21, 22, 23}};
    const auto flipped = [&](std::vector<std::size_t> which) {
        auto all = columns(connect);
        for (const std::size_t e : which) std::swap(all[e][0], all[e][2]);
        return all;
    };
    region one = with_neighbors(connect);
    EXPECT_EQ(mesh_reorient(one.connect, one.neighbors, 0, 0), 1);
    EXPECT_EQ(columns(one.connect), flipped({1}));
    region all = with_neighbors(connect);
    EXPECT_EQ(mesh_reorient(all.connect, all.neighbors, 0, -5), 3);
    EXPECT_EQ(columns(all.connect), flipped({1, 3, 5}));
    region later = with_neighbors(connect);
    EXPECT_EQ(mesh_reorient(later.connect, later.neighbors, 3, 1), 2);
    EXPECT_EQ(columns(later.connect), flipped({2, 5}));
}

TEST(MeshReorient, LaterRegionKeepsItsLowestElementThatWasNotReached)
{
    // Element 0 belongs to the region of element 3, which is met at 3.
    const dense2D<unsigned> connect{{1, 2, 3}, {10, 11, 12}, {11, 12, 13}, {0, 1, 2}};
    region r = with_neighbors(connect);
    EXPECT_EQ(mesh_reorient(r.connect, r.neighbors, 1, 1), 2);
    EXPECT_EQ(columns(r.connect), (std::vector<std::vector<unsigned>>{
                                      {3, 2, 1}, {10, 11, 12}, {13, 12, 11}, {0, 1, 2}}));
}

TEST(MeshReorient, OneSidedStripIsNoError)
{
    // A ring of five quadrilaterals with a half turn.
    dense2D<unsigned> connect(4, 5);
    for (unsigned k = 0; k < 5; ++k) {
        connect(0, k) = k;
        connect(1, k) = k == 4 ? 5 : k + 1;
        connect(2, k) = k == 4 ? 0 : k + 6;
        connect(3, k) = k + 5;
    }
    region r = with_neighbors(connect);
    EXPECT_GE(mesh_reorient(r.connect, r.neighbors, 0, 1), 0);
    EXPECT_EQ(columns(r.connect)[0], columns(connect)[0]);
    EXPECT_EQ(columns(r.neighbors), columns(support::neighbors_of(r.connect)));
}

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

TEST(MeshReorient, TakesNoStorageFromTheBlocks)
{
    const support::mesh m = support::grid_T3(4, 4);
    support::each_refused_allocation([&](auto armed, const auto& told) {
        region r = with_neighbors(m.connect);
        EXPECT_FALSE(armed([&] { (void)mesh_reorient(r.connect, r.neighbors, 0, 1); })) << told;
    });
}
