// The nodes and cells of grids on loops.
#include "structured/grid_loops.h"

#include <cmath>
#include <random>
#include <string>

using namespace grid_tests;
using support::columns;
using tessalo2d::area;
using tessalo2d::mesh_struct_Q4;
using tessalo2d::mesh_struct_T3;

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
