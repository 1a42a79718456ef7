// Node and element IDs by formula, for all overloads on all kinds of line, and what must not
// depend on how the matrices lie in memory.
#include "extrusion/node_map.h"
#include "extrusion/overloads.h"
#include "support/matrices.h"

#include <map>

using namespace extrusion_tests;
using support::bits;
using support::columns;

namespace {

using element_columns = std::vector<std::vector<unsigned>>;

/// True where the diagonal runs from b to the copy of a.
bool from_b(int pattern, std::size_t l, std::size_t e)
{
    return pattern == 0 || (pattern == 2 && (l + e) % 2 == 1);
}

/// The new elements column by column, by formula.
element_columns expected_elements(const dense2D<unsigned>& connect, std::size_t nods0,
                                  std::size_t layers, std::size_t rows, int pattern)
{
    std::map<unsigned, std::size_t> rank;
    const std::vector<unsigned> order = first_appearances(connect);
    for (std::size_t k = 0; k < order.size(); ++k) rank[order[k]] = k;
    const auto id = [&](unsigned source, std::size_t layer) {
        return layer == 0
                   ? source
                   : static_cast<unsigned>(nods0 + (layer - 1) * order.size() + rank[source]);
    };
    element_columns all;
    for (std::size_t e = 0; e < connect.cols; ++e)
        for (std::size_t l = 0; l < layers; ++l) {
            const unsigned a = id(connect(0, e), l);
            const unsigned b = id(connect(1, e), l);
            const unsigned a1 = id(connect(0, e), l + 1);
            const unsigned b1 = id(connect(1, e), l + 1);
            if (rows == 4) {
                all.push_back({a, b, b1, a1});
            } else if (from_b(pattern, l, e)) {
                all.push_back({a, b, a1});
                all.push_back({b, b1, a1});
            } else {
                all.push_back({a, b, b1});
                all.push_back({a, b1, a1});
            }
        }
    return all;
}

element_columns from_column(const dense2D<unsigned>& m, std::size_t first)
{
    const element_columns all = columns(m);
    return {all.begin() + static_cast<std::ptrdiff_t>(first), all.end()};
}

} // namespace

TEST(ExtrusionNumbering, ElementsFollowTheFormulaOnEveryLine)
{
    for (const line_mesh& line : line_meshes())
        for (const overload& o : overloads())
            for (const unsigned N : {1u, 2u, 3u, 6u}) {
                SCOPED_TRACE(line.name + ", " + o.name + ", N " + std::to_string(N));
                const dense2D<unsigned> connect = support::matrix(line.edges);
                const std::size_t distinct = first_appearances(connect).size();
                arguments given;
                given.N = N;
                dense2D<double> coords = nodes(2, line.nodes);
                dense2D<unsigned> output;
                ASSERT_EQ(o.run(coords, connect, given, output), 0);

                const std::size_t per_edge = o.rows == 4 ? 1 : 2;
                const std::size_t layers = output.cols / (connect.cols * per_edge);
                if (!o.by_size) {
                    EXPECT_EQ(layers, N);
                }
                ASSERT_EQ(output.rows, o.rows);
                ASSERT_EQ(output.cols, layers * connect.cols * per_edge);
                ASSERT_EQ(coords.cols, line.nodes + distinct * layers);
                EXPECT_EQ(columns(output),
                          expected_elements(connect, line.nodes, layers, o.rows, given.pattern));
            }
}

TEST(ExtrusionNumbering, DiagonalsFollowThePattern)
{
    const dense2D<unsigned> connect = {{0, 1}, {3, 2}, {1, 2}};
    for (const overload& o : overloads()) {
        if (o.rows != 3) continue;
        const bool checks =
            o.moves == motion::translate || o.name == std::string("rotate T3 plane sized");
        for (const int pattern : {0, 1, 2, 3, 7, -1, -2}) {
            if (checks && (pattern < 0 || pattern > 2)) continue;
            for (const unsigned N : {1u, 2u, 3u, 4u, 5u}) {
                SCOPED_TRACE(o.name + std::string(", pattern ") + std::to_string(pattern));
                arguments given;
                given.N = N;
                given.pattern = pattern;
                dense2D<double> coords = nodes(2, 4);
                dense2D<unsigned> output;
                ASSERT_EQ(o.run(coords, connect, given, output), 0);
                const std::size_t layers = output.cols / 6;
                EXPECT_EQ(columns(output), expected_elements(connect, 4, layers, 3, pattern));
            }
        }
    }
}

TEST(ExtrusionNumbering, TheFourDiagonalsOfASmallCheckerboardByHand)
{
    dense2D<double> coords = {{0, 0}, {1, 0}, {2, 0}};
    dense2D<unsigned> output;
    const vector_fixed<double, 2> V = {{0.0, 1.0}};
    EXPECT_EQ(tessalo2d::extrude_translate_T3(coords, {{0, 1}, {1, 2}}, V, 2, 2, output), 0);
    const element_columns expected = {
        {0, 1, 4}, {0, 4, 3}, // edge 0, layer 0: even, from a
        {3, 4, 6}, {4, 7, 6}, // edge 0, layer 1: odd, from b
        {1, 2, 4}, {2, 5, 4}, // edge 1, layer 0: odd
        {4, 5, 8}, {4, 8, 7}, // edge 1, layer 1: even
    };
    EXPECT_EQ(columns(output), expected);
}

TEST(ExtrusionNumbering, ParityFollowsTheColumnsAndNotTheLine)
{
    // The same line, its columns exchanged: the triangles of an edge change their cut.
    const vector_fixed<double, 2> V = {{0.0, 1.0}};
    dense2D<double> coords = {{0, 0}, {1, 0}, {2, 0}};
    dense2D<unsigned> output;
    EXPECT_EQ(tessalo2d::extrude_translate_T3(coords, {{1, 2}, {0, 1}}, V, 1, 2, output), 0);
    // Ranks 0, 1, 2 are now nodes 1, 2, 0.
    EXPECT_EQ(columns(output), (element_columns{{1, 2, 4}, {1, 4, 3}, {0, 1, 5}, {1, 3, 5}}));
}

TEST(ExtrusionNumbering, AClosedLineGivesAClosedBand)
{
    dense2D<double> coords = {{0, 0}, {1, 0}, {0, 1}};
    dense2D<unsigned> output;
    const vector_fixed<double, 3> V = {{0.0, 0.0, 1.0}};
    EXPECT_EQ(tessalo2d::extrude_translate_Q4(coords, {{0, 1}, {1, 2}, {2, 0}}, V, 2, output), 0);
    EXPECT_EQ(coords.cols, 9u);
    EXPECT_EQ(
        columns(output),
        (element_columns{
            {0, 1, 4, 3}, {3, 4, 7, 6}, {1, 2, 5, 4}, {4, 5, 8, 7}, {2, 0, 3, 5}, {5, 3, 6, 8}}));
}

TEST(ExtrusionNumbering, ASharedNodeHasOneCopyALayer)
{
    dense2D<double> coords = {{0, 0}, {1, 0}, {2, 0}};
    dense2D<unsigned> output;
    const vector_fixed<double, 2> V = {{0.0, 1.0}};
    EXPECT_EQ(tessalo2d::extrude_translate_Q4(coords, {{0, 1}, {1, 2}}, V, 4, output), 0);
    EXPECT_EQ(coords.cols, 3u + 4u * 3u);
}

TEST(ExtrusionNumbering, OldColumnsAndTheLineStayAsTheyAre)
{
    const dense2D<unsigned> line = {{3, 1}, {1, 0}};
    for (const overload& o : overloads())
        for (const std::size_t rows : coords_rows(o)) {
            SCOPED_TRACE(o.name);
            const bool wants_three = o.moves == motion::rotate && o.dimension == 3;
            const std::size_t output_rows = wants_three ? 3 : o.rows;
            const dense2D<double> before = nodes(rows, 5);
            const dense2D<unsigned> old(output_rows, 2, 4u);
            const dense2D<unsigned> connect = support::copy_of(line);
            dense2D<double> coords = support::copy_of(before);
            dense2D<unsigned> output = support::copy_of(old);
            ASSERT_EQ(o.run(coords, connect, {}, output), 0);

            EXPECT_EQ(columns(connect), columns(line));
            EXPECT_EQ(coords.rows, o.dimension == 3 ? 3 : rows);
            for (std::size_t j = 0; j < before.cols; ++j)
                for (std::size_t i = 0; i < coords.rows; ++i)
                    EXPECT_EQ(coords(i, j), i < rows ? before(i, j) : 0.0);
            for (std::size_t j = 0; j < 2; ++j)
                for (std::size_t i = 0; i < output.rows; ++i)
                    EXPECT_EQ(output(i, j), i < output_rows ? 4u : UNSET_ID);
            const std::size_t layers = (output.cols - 2) / (o.rows == 4 ? 2 : 4);
            EXPECT_EQ(from_column(output, 2), expected_elements(line, 5, layers, o.rows, 1));
        }
}

TEST(ExtrusionNumbering, AnOutputOfColumnsWithoutRowsKeepsThemUnset)
{
    dense2D<double> coords = nodes(2, 2);
    dense2D<unsigned> output;
    output.cols = 2;
    const vector_fixed<double, 2> V = {{0.0, 1.0}};
    EXPECT_EQ(tessalo2d::extrude_translate_Q4(coords, {{0, 1}}, V, 1, output), 0);
    const std::vector<unsigned> unset(4, UNSET_ID);
    EXPECT_EQ(columns(output), (element_columns{unset, unset, {0, 1, 3, 2}}));
}

TEST(ExtrusionNumbering, ResultsDoNotDependOnTheLayout)
{
    const dense2D<unsigned> line = {{3, 1}, {1, 0}, {4, 3}};
    for (const overload& o : overloads())
        for (const std::size_t rows : coords_rows(o))
            for (const std::size_t gap : {0u, 1u, 3u}) {
                SCOPED_TRACE(o.name + std::string(", gap ") + std::to_string(gap));
                const bool wants_three = o.moves == motion::rotate && o.dimension == 3;
                const dense2D<unsigned> old(wants_three ? 3 : o.rows, 3, 2u);
                arguments given;
                given.pattern = 2;

                dense2D<double> coords = nodes(rows, 5);
                dense2D<unsigned> output = support::copy_of(old);
                support::placed<double> placed_coords(coords, 5, gap);
                support::placed<unsigned> placed_line(line, 3, gap);
                support::placed<unsigned> placed_output(old, 7, gap);
                ASSERT_EQ(o.run(coords, line, given, output), 0);
                ASSERT_EQ(o.run(placed_coords.view, placed_line.view, given, placed_output.view),
                          0);

                EXPECT_EQ(bits(placed_coords.view), bits(coords));
                EXPECT_EQ(columns(placed_output.view), columns(output));
                placed_line.expect_gaps_untouched();
                if (o.dimension == 2 && o.name != std::string("translate T3 plane sized"))
                    placed_coords.expect_gaps_untouched();
                if (!(wants_three && o.rows == 4)) placed_output.expect_gaps_untouched();
            }
}

TEST(ExtrusionNumbering, RoomThatTheCallerHasIsUsed)
{
    for (const overload& o : overloads()) {
        SCOPED_TRACE(o.name);
        dense2D<double> coords = nodes(2, 3);
        dense2D<unsigned> output;
        ASSERT_TRUE(coords.reserve(3, 1000, 1));
        ASSERT_TRUE(output.reserve(4, 1000, 1));
        const double* const points = coords.block->data;
        const unsigned* const elements = output.block->data;
        ASSERT_EQ(o.run(coords, {{0, 1}, {1, 2}}, {}, output), 0);
        EXPECT_EQ(coords.block->data, points);
        EXPECT_EQ(output.block->data, elements);
    }
}

TEST(ExtrusionNodeMap, RanksFirstAppearancesAlikeByTableAndByHash)
{
    for (const line_mesh& line : line_meshes())
        // A larger mesh makes the same line a sparse one.
        for (const std::size_t nodes : {line.nodes, line.nodes + 1000 * line.edges.size()}) {
            SCOPED_TRACE(line.name + ", nodes " + std::to_string(nodes));
            const dense2D<unsigned> connect = support::matrix(line.edges);
            tessalo2d::node_map map;
            ASSERT_TRUE(tessalo2d::extrusion_node_map(connect, 70, nodes, map));
            const std::vector<unsigned> order = first_appearances(connect);
            EXPECT_EQ(support::elements(map.sources), order);
            ASSERT_EQ(map.copies.cols, connect.cols);
            for (std::size_t e = 0; e < connect.cols; ++e)
                for (std::size_t i = 0; i < 2; ++i) {
                    const unsigned rank = map.copies(i, e) - 70;
                    ASSERT_LT(rank, order.size());
                    EXPECT_EQ(order[rank], connect(i, e));
                }
        }
}

TEST(ExtrusionNodeMap, RanksDoNotDependOnTheFirstCopysID)
{
    // The copies' IDs pass through the unset one, by table and by hash.
    for (const std::size_t nodes : {3u, 5000u}) {
        tessalo2d::node_map map;
        ASSERT_TRUE(
            tessalo2d::extrusion_node_map({{0, 1}, {1, 2}, {2, 0}}, UNSET_ID - 1, nodes, map));
        EXPECT_EQ(support::elements(map.sources), (std::vector<unsigned>{0, 1, 2})) << nodes;
        EXPECT_EQ(columns(map.copies),
                  (element_columns{{UNSET_ID - 1, UNSET_ID}, {UNSET_ID, 0}, {0, UNSET_ID - 1}}))
            << nodes;
    }
}
