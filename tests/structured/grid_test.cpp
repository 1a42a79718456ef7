#include "support/allocation.h"
#include "support/matrices.h"

#include <cmath>
#include <random>
#include <string>

using namespace vorel;
using support::columns;
using tessalo2d::area;
using tessalo2d::mesh_struct_Q4;
using tessalo2d::mesh_struct_T3;

namespace {

constexpr unsigned U = UNSET_ID;

/// A closed loop and its nodes, and the place of each grid node on it.
struct loop {
    dense2D<double> coords;
    dense1D<unsigned, 8> boundary;
    std::size_t M;
    unsigned N;
};

using place = double (*)(double, double);

/// The loop around the image of the unit square; `idle` nodes that it does not use come first. The
/// IDs fall along the loop, so that no ID is its position.
loop loop_around(std::size_t M, unsigned N, place x, place y, place z = nullptr,
                 std::size_t idle = 1)
{
    const std::size_t perimeter = 2 * (M + N);
    loop made{dense2D<double>(z ? 3 : 2, perimeter + idle, -7.0), {}, M, N};
    std::vector<std::pair<double, double>> uv;
    const double m = static_cast<double>(M);
    const double n = static_cast<double>(N);
    for (std::size_t i = 0; i < M; ++i) uv.push_back({static_cast<double>(i) / m, 0.0});
    for (std::size_t j = 0; j < N; ++j) uv.push_back({1.0, static_cast<double>(j) / n});
    for (std::size_t i = M; i > 0; --i) uv.push_back({static_cast<double>(i) / m, 1.0});
    for (std::size_t j = N; j > 0; --j) uv.push_back({0.0, static_cast<double>(j) / n});
    for (std::size_t k = 0; k < perimeter; ++k) {
        const unsigned id = static_cast<unsigned>(idle + perimeter - 1 - k);
        made.boundary.append(id);
        made.coords(0, id) = x(uv[k].first, uv[k].second);
        made.coords(1, id) = y(uv[k].first, uv[k].second);
        if (z) made.coords(2, id) = z(uv[k].first, uv[k].second);
    }
    made.boundary.append(made.boundary[0]);
    return made;
}

double same_u(double u, double)
{
    return u;
}
double same_v(double, double v)
{
    return v;
}

loop square(std::size_t M, unsigned N)
{
    return loop_around(M, N, same_u, same_v);
}

/// Node of the grid, written as the table of the five places.
unsigned grid_node(const loop& l, std::size_t nods0, std::size_t i, std::size_t j)
{
    if (j == 0) return l.boundary[i];
    if (i == l.M) return l.boundary[l.M + j];
    if (j == l.N) return l.boundary[2 * l.M - i + l.N];
    if (i != 0) return static_cast<unsigned>(nods0 + (i - 1) * (l.N - 1) + (j - 1));
    return l.boundary[2 * (l.M + l.N) - j];
}

/// The blend of one coordinate, by the names of its nodes.
double blend(const loop& l, std::size_t i, std::size_t j, std::size_t row)
{
    const auto X = [&](std::size_t at_i, std::size_t at_j) {
        return l.coords(row, grid_node(l, l.coords.cols, at_i, at_j));
    };
    const double u = static_cast<double>(i) / static_cast<double>(l.M);
    const double v = static_cast<double>(j) / static_cast<double>(l.N);
    return (1 - v) * X(i, 0) + u * X(l.M, j) + v * X(i, l.N) + (1 - u) * X(0, j) +
           (v - 1) * (1 - u) * X(0, 0) + (v - 1) * u * X(l.M, 0) + -(v * u) * X(l.M, l.N) +
           -((1 - u) * v) * X(0, l.N);
}

std::vector<std::vector<unsigned>> expected_T3(const loop& l, std::size_t nods0, int pattern)
{
    std::vector<std::vector<unsigned>> all;
    for (std::size_t i = 0; i < l.M; ++i)
        for (std::size_t j = 0; j < l.N; ++j) {
            const unsigned g00 = grid_node(l, nods0, i, j);
            const unsigned g10 = grid_node(l, nods0, i + 1, j);
            const unsigned g11 = grid_node(l, nods0, i + 1, j + 1);
            const unsigned g01 = grid_node(l, nods0, i, j + 1);
            if (pattern == 0 || (pattern == 2 && (i + j) % 2 == 1)) {
                all.push_back({g00, g10, g01});
                all.push_back({g10, g11, g01});
            } else {
                all.push_back({g00, g10, g11});
                all.push_back({g00, g11, g01});
            }
        }
    return all;
}

std::vector<std::vector<unsigned>> expected_Q4(const loop& l, std::size_t nods0)
{
    std::vector<std::vector<unsigned>> all;
    for (std::size_t i = 0; i < l.M; ++i)
        for (std::size_t j = 0; j < l.N; ++j)
            all.push_back({grid_node(l, nods0, i, j), grid_node(l, nods0, i + 1, j),
                           grid_node(l, nods0, i + 1, j + 1), grid_node(l, nods0, i, j + 1)});
    return all;
}

dense1D<unsigned, 8> loop_of(std::size_t size)
{
    return dense1D<unsigned, 8>(size, 0u);
}

} // namespace

TEST(MeshStructQ4, TwoByTwoGridByHand)
{
    loop l = square(2, 2);
    dense2D<unsigned> connect;
    ASSERT_EQ(mesh_struct_Q4(l.coords, l.boundary, 2, connect), 0);
    // The loop is 8 7 6 5 4 3 2 1 8 around the node 9.
    EXPECT_EQ(columns(connect), (std::vector<std::vector<unsigned>>{
                                    {8, 7, 9, 1}, {1, 9, 3, 2}, {7, 6, 5, 9}, {9, 5, 4, 3}}));
    ASSERT_EQ(l.coords.cols, 10u);
    EXPECT_EQ(l.coords(0, 9), 0.5);
    EXPECT_EQ(l.coords(1, 9), 0.5);
}

TEST(MeshStructT3, PatternsByHand)
{
    const std::vector<std::vector<unsigned>> by_pattern[3] = {
        {{8, 7, 1}, {7, 9, 1}, {1, 9, 2}, {9, 3, 2}, {7, 6, 9}, {6, 5, 9}, {9, 5, 3}, {5, 4, 3}},
        {{8, 7, 9}, {8, 9, 1}, {1, 9, 3}, {1, 3, 2}, {7, 6, 5}, {7, 5, 9}, {9, 5, 4}, {9, 4, 3}},
        {{8, 7, 9}, {8, 9, 1}, {1, 9, 2}, {9, 3, 2}, {7, 6, 9}, {6, 5, 9}, {9, 5, 4}, {9, 4, 3}}};
    for (int pattern = 0; pattern < 3; ++pattern) {
        loop l = square(2, 2);
        dense2D<unsigned> connect;
        ASSERT_EQ(mesh_struct_T3(l.coords, l.boundary, 2, pattern, connect), 0);
        EXPECT_EQ(columns(connect), by_pattern[pattern]) << pattern;
    }
}

TEST(MeshStruct, CellsAndNodesOfAllShapesFollowTheTables)
{
    const place x = [](double u, double v) { return u + 0.3 * std::sin(3.0 * v); };
    const place y = [](double u, double v) { return 2.0 * v - u * u; };
    const place z = [](double u, double v) { return std::exp(u) * v; };
    // More than 128 cells along a side: the interior is blended in stretches.
    const std::pair<std::size_t, unsigned> shapes[] = {{1, 1}, {1, 2}, {2, 1},   {2, 2},  {3, 2},
                                                       {2, 3}, {7, 4}, {4, 131}, {130, 3}};
    for (const auto& [M, N] : shapes)
        for (const place height : {place(nullptr), z}) {
            const std::string told = std::to_string(M) + " x " + std::to_string(N);
            const loop l = loop_around(M, N, x, y, height);
            const std::size_t nods0 = l.coords.cols;
            dense2D<double> coords = support::copy_of(l.coords);
            dense2D<unsigned> connect;
            ASSERT_EQ(mesh_struct_Q4(coords, l.boundary, N, connect), 0) << told;
            EXPECT_EQ(columns(connect), expected_Q4(l, nods0)) << told;
            ASSERT_EQ(coords.cols, nods0 + (M - 1) * (N - 1)) << told;
            dense2D<double> expected = support::copy_of(l.coords);
            ASSERT_TRUE(expected.resize(coords.rows, coords.cols));
            for (std::size_t i = 1; i < M; ++i)
                for (std::size_t j = 1; j < N; ++j)
                    for (std::size_t row = 0; row < coords.rows; ++row)
                        expected(row, grid_node(l, nods0, i, j)) = blend(l, i, j, row);
            EXPECT_EQ(support::bits(coords), support::bits(expected)) << told;

            for (int pattern = 0; pattern < 3; ++pattern) {
                dense2D<double> coords_T3 = support::copy_of(l.coords);
                dense2D<unsigned> connect_T3;
                ASSERT_EQ(mesh_struct_T3(coords_T3, l.boundary, N, pattern, connect_T3), 0) << told;
                EXPECT_EQ(columns(connect_T3), expected_T3(l, nods0, pattern)) << told;
                EXPECT_EQ(support::bits(coords_T3), support::bits(expected)) << told;
            }
        }
}

TEST(MeshStruct, StraightSidesAreReproducedBilinearly)
{
    std::mt19937 draw(20);
    std::uniform_real_distribution<double> shift(-0.2, 0.2);
    for (int round = 0; round < 20; ++round) {
        const std::size_t M = 1 + draw() % 9;
        const unsigned N = 1 + static_cast<unsigned>(draw() % 9);
        double corner[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
        for (auto& c : corner)
            for (double& value : c) value += shift(draw);
        const auto at = [&](double u, double v, int d) {
            return (1 - u) * (1 - v) * corner[0][d] + u * (1 - v) * corner[1][d] +
                   u * v * corner[2][d] + (1 - u) * v * corner[3][d];
        };
        loop l = square(M, N);
        for (std::size_t k = 1; k < l.coords.cols; ++k) {
            const double u = l.coords(0, k);
            const double v = l.coords(1, k);
            l.coords(0, k) = at(u, v, 0);
            l.coords(1, k) = at(u, v, 1);
        }
        const std::size_t nods0 = l.coords.cols;
        dense2D<unsigned> connect;
        ASSERT_EQ(mesh_struct_Q4(l.coords, l.boundary, N, connect), 0);
        for (std::size_t i = 0; i <= M; ++i)
            for (std::size_t j = 0; j <= N; ++j)
                for (int d = 0; d < 2; ++d)
                    EXPECT_NEAR(l.coords(static_cast<std::size_t>(d), grid_node(l, nods0, i, j)),
                                at(static_cast<double>(i) / static_cast<double>(M),
                                   static_cast<double>(j) / N, d),
                                1e-14)
                        << "round " << round << " node " << i << ", " << j;
    }
}

TEST(MeshStruct, AreasAddUpAndHaveTheSignOfTheLoop)
{
    const place x = [](double u, double v) { return 3.0 * u + 0.1 * v; };
    const place y = [](double u, double v) { return v + 0.2 * u * (1.0 - u) * (1.0 - 2.0 * v); };
    for (const bool clockwise : {false, true}) {
        loop l = clockwise ? loop_around(9, 5, y, x) : loop_around(9, 5, x, y);
        // The area inside the polygon of the loop, by the shoelace formula.
        double inside = 0.0;
        for (std::size_t k = 0; k + 1 < l.boundary.size; ++k) {
            const unsigned a = l.boundary[k];
            const unsigned b = l.boundary[k + 1];
            inside += 0.5 * (l.coords(0, a) * l.coords(1, b) - l.coords(0, b) * l.coords(1, a));
        }
        EXPECT_EQ(inside < 0.0, clockwise);
        for (int pattern = -1; pattern < 3; ++pattern) {
            dense2D<double> coords = support::copy_of(l.coords);
            dense2D<unsigned> connect;
            ASSERT_EQ(pattern < 0 ? mesh_struct_Q4(coords, l.boundary, 5, connect)
                                  : mesh_struct_T3(coords, l.boundary, 5, pattern, connect),
                      0);
            double sum = 0.0;
            ASSERT_EQ(area(coords, connect, sum), 0);
            EXPECT_NEAR(sum, inside, 1e-13);
            for (std::size_t e = 0; e < connect.cols; ++e) {
                dense2D<unsigned> one;
                ASSERT_TRUE(append_selected_columns(connect, {static_cast<unsigned>(e)}, one));
                double single = 0.0;
                ASSERT_EQ(area(coords, one, single), 0);
                EXPECT_EQ(single < 0.0, clockwise) << "element " << e;
            }
        }
    }
}

TEST(MeshStruct, SmallestLoopIsOneCell)
{
    loop l = square(1, 1);
    ASSERT_EQ(l.boundary.size, 5u);
    dense2D<unsigned> quad;
    EXPECT_EQ(mesh_struct_Q4(l.coords, l.boundary, 1, quad), 0);
    EXPECT_EQ(columns(quad), (std::vector<std::vector<unsigned>>{{4, 3, 2, 1}}));
    dense2D<unsigned> triangles;
    EXPECT_EQ(mesh_struct_T3(l.coords, l.boundary, 1, 0, triangles), 0);
    EXPECT_EQ(columns(triangles), (std::vector<std::vector<unsigned>>{{4, 3, 1}, {3, 2, 1}}));
    EXPECT_EQ(l.coords.cols, 5u);
}

TEST(MeshStruct, RepeatedBoundaryEntryStandsTwiceInItsCells)
{
    loop l = square(2, 1);
    l.boundary[1] = l.boundary[0];
    dense2D<unsigned> connect;
    EXPECT_EQ(mesh_struct_Q4(l.coords, l.boundary, 1, connect), 0);
    EXPECT_EQ(columns(connect), (std::vector<std::vector<unsigned>>{{6, 6, 2, 1}, {6, 4, 3, 2}}));
}

TEST(MeshStruct, EarlierOutputIsKept)
{
    loop l = square(3, 2);
    dense2D<unsigned> quads{{4, 5, 6, 7}};
    ASSERT_EQ(mesh_struct_Q4(l.coords, l.boundary, 2, quads), 0);
    EXPECT_EQ(quads.cols, 7u);
    EXPECT_EQ(columns(quads)[0], (std::vector<unsigned>{4, 5, 6, 7}));
    const std::size_t nods1 = l.coords.cols;
    ASSERT_EQ(mesh_struct_Q4(l.coords, l.boundary, 2, quads), 0);
    EXPECT_EQ(quads.cols, 13u);
    const auto all = columns(quads);
    EXPECT_EQ(std::vector<std::vector<unsigned>>(all.begin() + 7, all.end()),
              expected_Q4(l, nods1));

    dense2D<unsigned> triangles{{9, 8, 7}};
    ASSERT_EQ(mesh_struct_T3(l.coords, l.boundary, 2, 1, triangles), 0);
    EXPECT_EQ(triangles.cols, 13u);
    EXPECT_EQ(columns(triangles)[0], (std::vector<unsigned>{9, 8, 7}));
}

TEST(MeshStruct, OutputWithColumnsButNoRowsKeepsThemUnset)
{
    loop l = square(1, 1);
    dense2D<unsigned> connect;
    connect.cols = 2;
    EXPECT_EQ(mesh_struct_Q4(l.coords, l.boundary, 1, connect), 0);
    EXPECT_EQ(columns(connect),
              (std::vector<std::vector<unsigned>>{{U, U, U, U}, {U, U, U, U}, {4, 3, 2, 1}}));
}

TEST(MeshStruct, LayoutsGiveTheSame)
{
    const place x = [](double u, double v) { return u + v * v; };
    const place z = [](double u, double v) { return u * v; };
    for (const place height : {place(nullptr), z}) {
        loop l = loop_around(5, 4, x, same_v, height);
        dense2D<double> dense_coords = support::copy_of(l.coords);
        dense2D<unsigned> dense_Q4{{0, 1, 2, 3}};
        dense2D<unsigned> dense_T3{{0, 1, 2}};
        ASSERT_EQ(mesh_struct_Q4(dense_coords, l.boundary, 4, dense_Q4), 0);
        dense2D<double> coords_T3 = support::copy_of(l.coords);
        ASSERT_EQ(mesh_struct_T3(coords_T3, l.boundary, 4, 2, dense_T3), 0);

        for (const std::size_t gap : {1u, 3u}) {
            support::placed<double> coords(l.coords, 5, gap);
            support::placed<unsigned> quads(dense2D<unsigned>{{0, 1, 2, 3}}, 3, gap);
            const dense1D<unsigned, 8> boundary = support::placed_run(l.boundary, 4);
            ASSERT_EQ(mesh_struct_Q4(coords.view, boundary, 4, quads.view), 0);
            EXPECT_EQ(support::bits(coords.view), support::bits(dense_coords));
            EXPECT_EQ(columns(quads.view), columns(dense_Q4));
            EXPECT_EQ(support::elements(boundary), support::elements(l.boundary));

            support::placed<unsigned> triangles(dense2D<unsigned>{{0, 1, 2}}, 3, gap);
            support::placed<double> others(l.coords, 5, gap);
            ASSERT_EQ(mesh_struct_T3(others.view, boundary, 4, 2, triangles.view), 0);
            EXPECT_EQ(columns(triangles.view), columns(dense_T3));
        }
    }
}

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
