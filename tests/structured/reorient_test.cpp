// Meshes become consistent: what is turned, what stays, and which regions are reached.
#include "structured/reorient_region.h"
#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"
#include "support/topology.h"

#include <random>

using namespace vorel;
using namespace reorient_tests;
using support::columns;
using tessalo2d::mesh_reorient;

namespace {

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

TEST(MeshReorient, TakesNoStorageFromTheBlocks)
{
    const support::mesh m = support::grid_T3(4, 4);
    support::each_refused_allocation([&](auto armed, const auto& told) {
        region r = with_neighbors(m.connect);
        EXPECT_FALSE(armed([&] { (void)mesh_reorient(r.connect, r.neighbors, 0, 1); })) << told;
    });
}
