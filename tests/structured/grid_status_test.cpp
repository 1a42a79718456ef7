// Which calls for a grid are refused, in which order, and what they leave behind.
#include "structured/grid_loops.h"
#include "support/allocation.h"

#include <cmath>

using namespace grid_tests;
using support::columns;
using tessalo2d::mesh_struct_Q4;
using tessalo2d::mesh_struct_T3;

TEST(MeshStructQ4, NothingToDoComesBeforeAllChecks)
{
    dense2D<double> coords(7, 1, 0.0);
    dense2D<unsigned> connect(9, 9, 0u);
    EXPECT_EQ(mesh_struct_Q4(coords, loop_of(0), 3, connect), 0);
    EXPECT_EQ(mesh_struct_Q4(coords, loop_of(9), 0, connect), 0);
    // No cells along the first side: a loop of 2 N + 1 or 2 N + 2 entries.
    EXPECT_EQ(mesh_struct_Q4(coords, loop_of(7), 3, connect), 0);
    EXPECT_EQ(mesh_struct_Q4(coords, loop_of(8), 3, connect), 0);
    EXPECT_EQ(mesh_struct_Q4(coords, loop_of(9), 3, connect), -1);
    EXPECT_EQ(coords.cols, 1u);
    EXPECT_EQ(connect.cols, 9u);
}

TEST(MeshStructT3, NothingToDoComesBeforeAllChecks)
{
    dense2D<double> coords(7, 1, 0.0);
    dense2D<unsigned> connect(9, 9, 0u);
    EXPECT_EQ(mesh_struct_T3(coords, loop_of(0), 3, 7, connect), 0);
    EXPECT_EQ(mesh_struct_T3(coords, loop_of(9), 0, 7, connect), 0);
    EXPECT_EQ(mesh_struct_T3(coords, loop_of(7), 3, 7, connect), -1);
}

TEST(MeshStructT3, LoopWithoutFirstSideCutsNodesOff)
{
    dense2D<double> coords(2, 9, 1.5);
    dense2D<unsigned> connect;
    EXPECT_EQ(mesh_struct_T3(coords, loop_of(7), 3, 0, connect), 0);
    EXPECT_EQ(coords.cols, 7u);
    EXPECT_EQ(connect.rows, 3u);
    EXPECT_EQ(connect.cols, 0u);

    // With N = 1 nothing is left to cut; the loop of 3 is too short.
    EXPECT_EQ(mesh_struct_T3(coords, loop_of(3), 1, 0, connect), -2);
    // All nodes may go.
    dense2D<double> two(2, 2, 0.0);
    EXPECT_EQ(mesh_struct_T3(two, loop_of(7), 3, 0, connect), 0);
    EXPECT_EQ(two.cols, 0u);
    // 2 N + 2 entries: an odd count is left.
    EXPECT_EQ(mesh_struct_T3(coords, loop_of(8), 3, 0, connect), -3);
}

TEST(MeshStructT3, LoopWithoutFirstSideAndTooFewNodesIsOutOfMemory)
{
    dense2D<double> coords(2, 1, 2.5);
    dense2D<unsigned> connect;
    EXPECT_EQ(mesh_struct_T3(coords, loop_of(7), 3, 0, connect), -199);
    EXPECT_EQ(coords.cols, 1u);
    EXPECT_EQ(coords.rows, 2u);
    EXPECT_EQ(coords(0, 0), 2.5);
    EXPECT_EQ(connect.rows, 3u);
    EXPECT_EQ(connect.cols, 0u);
}

TEST(MeshStructT3, RefusedStorageAfterAllNodesWereCutOffLeavesTheirLayout)
{
    const std::size_t refusals = support::each_refused_allocation([](auto armed, const auto& told) {
        support::placed<double> coords(dense2D<double>{{10, 11}, {20, 21}}, 1, 2);
        const dense1D<unsigned, 8> boundary = loop_of(7);
        dense2D<unsigned> connect;
        connect.cols = 3;
        int status = 1;
        const bool refused =
            armed([&] { status = mesh_struct_T3(coords.view, boundary, 3, 0, connect); });
        EXPECT_EQ(status, refused ? -199 : 0) << told;
        EXPECT_EQ(connect.cols, 3u) << told;
        // The undo may find the storage that was refused before.
        EXPECT_TRUE(connect.rows == 3 || (refused && connect.rows == 0)) << told;
        for (const auto& column : columns(connect))
            for (const unsigned id : column) EXPECT_EQ(id, U) << told;
        if (!refused) return;
        EXPECT_EQ(coords.view.ld, 4u) << told;
        EXPECT_EQ(coords.view.size, 6u) << told;
        EXPECT_EQ(columns(coords.view), (std::vector<std::vector<double>>{{10, 11}, {20, 21}}))
            << told;
        coords.expect_gaps_untouched();
    });
    EXPECT_EQ(refusals, 2u);
}

TEST(MeshStruct, CountThatDoesNotFitTheLoopIsRefused)
{
    dense2D<double> coords(2, 20, 0.0);
    dense2D<unsigned> connect;
    for (const std::size_t L : {6u, 8u, 12u}) {
        EXPECT_EQ(mesh_struct_Q4(coords, loop_of(L), 1, connect), -3) << L;
        EXPECT_EQ(mesh_struct_T3(coords, loop_of(L), 1, 0, connect), -3) << L;
    }
    // 2 N above L, by little and so far that 2 N leaves 32 bits.
    for (const unsigned N : {3u, 4u, 100u, 0x80000000u, 0x80000001u, 0xFFFFFFFFu}) {
        EXPECT_EQ(mesh_struct_Q4(coords, loop_of(5), N, connect), -3) << N;
        EXPECT_EQ(mesh_struct_T3(coords, loop_of(5), N, 0, connect), -3) << N;
    }
    EXPECT_EQ(coords.cols, 20u);
    EXPECT_EQ(connect.rows, 0u);
}

TEST(MeshStruct, SidesOfTheLoopAreCountedIn32Bits)
{
    // 2 N is 4 there, and nothing is left of 5 entries.
    dense2D<double> seven(7, 1, 0.0);
    dense2D<unsigned> connect;
    EXPECT_EQ(mesh_struct_Q4(seven, loop_of(5), 0x80000002u, connect), 0);
    dense2D<double> coords(2, 5, 0.0);
    EXPECT_EQ(mesh_struct_T3(coords, loop_of(5), 0x80000002u, 0, connect), -3);
}

TEST(MeshStruct, EachCheckHasItsCode)
{
    struct row {
        const char* what;
        std::size_t coords_rows;
        dense1D<unsigned, 8> boundary;
        unsigned N;
        int pattern;
        std::size_t connect_rows;
        int status_Q4;
        int status_T3;
    };
    const dense1D<unsigned, 8> good{0, 1, 2, 3, 0};
    const row table[] = {
        {"coords of 1 row", 1, good, 1, 0, 0, -1, -1},
        {"coords of 4 rows", 4, good, 1, 0, 0, -1, -1},
        {"4 entries", 2, {0, 1, 2, 0}, 2, 0, 0, -2, -2},
        {"open loop", 2, {0, 1, 2, 3, 4}, 1, 0, 0, -2, -2},
        {"ID beyond the nodes", 2, {0, 1, 9, 3, 0}, 1, 0, 0, -2, -2},
        {"unset ID", 2, {0, 1, U, 3, 0}, 1, 0, 0, -2, -2},
        {"even loop", 2, {0, 1, 2, 3, 4, 0}, 1, 0, 0, -3, -3},
        {"pattern 3", 2, good, 1, 3, 0, 0, -4},
        {"pattern -1", 2, good, 1, -1, 0, 0, -4},
        {"output of 5 rows", 2, good, 1, 0, 5, -4, -5},
    };
    for (const row& r : table) {
        // A loop of 4 with N = 1 has no cells for Q4; 2 N = 4 leaves the wrapped count.
        dense2D<double> coords(r.coords_rows, 9, 0.0);
        dense2D<unsigned> quads(r.connect_rows, 1, 0u);
        EXPECT_EQ(mesh_struct_Q4(coords, r.boundary, r.N, quads), r.status_Q4) << r.what;
        EXPECT_EQ(coords.cols, 9u) << r.what;
        dense2D<double> others(r.coords_rows, 9, 0.0);
        dense2D<unsigned> triangles(r.connect_rows, 1, 0u);
        EXPECT_EQ(mesh_struct_T3(others, r.boundary, r.N, r.pattern, triangles), r.status_T3)
            << r.what;
        EXPECT_EQ(others.cols, 9u) << r.what;
    }
    // Each kind refuses the rows of the other.
    dense2D<double> coords(2, 9, 0.0);
    dense2D<unsigned> three(3, 1, 0u);
    dense2D<unsigned> four(4, 1, 0u);
    EXPECT_EQ(mesh_struct_Q4(coords, good, 1, three), -4);
    EXPECT_EQ(mesh_struct_T3(coords, good, 1, 0, four), -5);
}

TEST(MeshStruct, ChecksRunInOrder)
{
    // Everything is wrong at first; each repair uncovers the next check.
    dense2D<double> coords(1, 4, 0.0);
    dense1D<unsigned, 8> boundary{0, 1, 2, 5, 3, 9};
    dense2D<unsigned> connect(5, 1, 0u);
    const auto both = [&](int status_Q4, int status_T3, int pattern) {
        EXPECT_EQ(mesh_struct_Q4(coords, boundary, 1, connect), status_Q4);
        EXPECT_EQ(mesh_struct_T3(coords, boundary, 1, pattern, connect), status_T3);
    };
    both(-1, -1, 5);
    coords = dense2D<double>(2, 4, 0.0);
    both(-2, -2, 5);
    boundary[5] = 0;
    both(-2, -2, 5);
    boundary[3] = 3;
    both(-3, -3, 5);
    boundary = {0, 1, 2, 3, 0};
    both(-4, -4, 5);
    both(-4, -5, 2);
}

TEST(MeshStruct, NodesBeyondTheLastIDAreOutOfMemory)
{
    // Only the loop's nodes are read: the view may claim as many columns as it likes.
    loop l = square(3, 3);
    for (const std::size_t claimed : {std::size_t(U) - 3, std::size_t(U) + 5}) {
        dense2D<double> coords = l.coords;
        coords.cols = claimed;
        dense2D<unsigned> connect;
        EXPECT_EQ(mesh_struct_Q4(coords, l.boundary, 3, connect), -199);
        EXPECT_EQ(coords.cols, claimed);
        EXPECT_EQ(connect.rows, 4u);
        EXPECT_EQ(connect.cols, 0u);
    }
}

TEST(MeshStruct, RefusedStorageLeavesTheCountsOfBefore)
{
    const loop l = square(4, 3);
    for (const bool filled : {false, true})
        for (int pattern = -1; pattern < 3; ++pattern) {
            const std::size_t rows = pattern < 0 ? 4 : 3;
            const std::size_t refusals =
                support::each_refused_allocation([&](auto armed, const auto& told) {
                    dense2D<double> coords = support::copy_of(l.coords);
                    dense2D<unsigned> connect;
                    ASSERT_TRUE(!filled || connect.resize(rows, 2, 5u));
                    int status = 1;
                    const bool refused = armed([&] {
                        status = pattern < 0
                                     ? mesh_struct_Q4(coords, l.boundary, 3, connect)
                                     : mesh_struct_T3(coords, l.boundary, 3, pattern, connect);
                    });
                    EXPECT_EQ(status, refused ? -199 : 0) << told;
                    EXPECT_EQ(connect.rows, rows) << told;
                    const std::size_t cells = pattern < 0 ? 12 : 24;
                    EXPECT_EQ(connect.cols, (filled ? 2 : 0) + (refused ? 0 : cells)) << told;
                    EXPECT_EQ(coords.rows, 2u) << told;
                    EXPECT_EQ(coords.cols, l.coords.cols + (refused ? 0 : 6)) << told;
                    for (std::size_t j = 0; j < l.coords.cols; ++j)
                        EXPECT_EQ(coords(1, j), l.coords(1, j)) << told;
                });
            EXPECT_EQ(refusals, 4u);
        }
}

TEST(MeshStruct, CoordinatesThatAreNoNumbersPass)
{
    loop l = square(3, 3);
    l.coords(0, l.boundary[1]) = std::nan("");
    l.coords(1, l.boundary[4]) = HUGE_VAL;
    dense2D<unsigned> connect;
    EXPECT_EQ(mesh_struct_Q4(l.coords, l.boundary, 3, connect), 0);
    EXPECT_TRUE(std::isnan(l.coords(0, grid_node(l, 13, 1, 1))));
    EXPECT_FALSE(std::isnan(l.coords(0, grid_node(l, 13, 2, 1))));
}
