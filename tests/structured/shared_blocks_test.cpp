// Outputs that stand in the block of an input: the result is that of separate blocks.
#include "support/matrices.h"
#include "support/meshes.h"
#include "support/topology.h"

#include <algorithm>

using namespace vorel;
using support::columns;
using namespace tessalo2d;

namespace {

/// The closed loop 0, 1, ..., 11, 0 around 3 x 3 cells.
dense1D<unsigned, 8> loop_of_12()
{
    return {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 0};
}

dense2D<double> loop_coords()
{
    dense2D<double> coords(2, 12);
    for (std::size_t j = 0; j < coords.cols; ++j) {
        coords(0, j) = static_cast<double>(j % 5);
        coords(1, j) = static_cast<double>(j * j % 7);
    }
    return coords;
}

int fill_loop(int pattern, dense2D<double>& coords, const dense1D<unsigned, 8>& boundary,
              dense2D<unsigned>& connect)
{
    if (pattern < 0) return mesh_struct_Q4(coords, boundary, 3, connect);
    return mesh_struct_T3(coords, boundary, 3, pattern, connect);
}

} // namespace

TEST(SharedBlocks, GridInTheBlockOfItsLoop)
{
    for (int pattern = -1; pattern < 3; ++pattern)
        for (const std::size_t room : {0u, 1000u}) {
            dense2D<double> expected_coords = loop_coords();
            dense2D<unsigned> expected;
            ASSERT_EQ(fill_loop(pattern, expected_coords, loop_of_12(), expected), 0);

            dense2D<double> coords = loop_coords();
            dense1D<unsigned, 8> boundary = loop_of_12();
            ASSERT_TRUE(boundary.reserve(13 + room, 1));
            dense2D<unsigned> connect;
            connect.block = boundary.block;
            ASSERT_EQ(fill_loop(pattern, coords, boundary, connect), 0);
            EXPECT_EQ(columns(connect), columns(expected)) << pattern << ", room " << room;
            EXPECT_EQ(support::bits(coords), support::bits(expected_coords));
        }
}

TEST(SharedBlocks, GridAfterElementsInFrontOfItsLoop)
{
    // One column, and the loop behind it.
    dense2D<unsigned> expected{{7, 8, 9, 10}};
    dense2D<double> expected_coords = loop_coords();
    ASSERT_EQ(mesh_struct_Q4(expected_coords, loop_of_12(), 3, expected), 0);

    dense2D<unsigned> connect{{7, 8, 9, 10}};
    dense1D<unsigned, 8> boundary;
    boundary.block = connect.block;
    boundary.offset = 4;
    ASSERT_TRUE(boundary.resize(13));
    const dense1D<unsigned, 8> loop = loop_of_12();
    std::copy(loop.begin(), loop.end(), boundary.begin());
    dense2D<double> coords = loop_coords();
    ASSERT_EQ(mesh_struct_Q4(coords, boundary, 3, connect), 0);
    EXPECT_EQ(columns(connect), columns(expected));
    EXPECT_EQ(support::bits(coords), support::bits(expected_coords));
}

TEST(SharedBlocks, FansInTheBlockOfAnyInputOrOfEachOther)
{
    const support::mesh m = support::grid_T3(12, 9);
    const dense2D<unsigned> neighbors = support::neighbors_of(m.connect);
    const dense1D<unsigned, 8> starts = support::node_element_of(m.connect, m.coords.cols);
    dense1D<unsigned, 8> expected_offsets;
    dense1D<unsigned, 8> expected_elements;
    ASSERT_EQ(
        get_connected_elements(m.connect, neighbors, starts, expected_offsets, expected_elements),
        0);
    // The owner of the block: connect, neighbors, node_element; 3: none. In front of the entries
    // and behind them.
    for (int of_offsets = 0; of_offsets < 4; ++of_offsets)
        for (int of_elements = 0; of_elements < 5; ++of_elements)
            for (const bool behind : {false, true}) {
                SCOPED_TRACE(testing::Message()
                             << of_offsets << ' ' << of_elements << ' ' << behind);
                const dense2D<unsigned> connect = support::copy_of(m.connect);
                const dense2D<unsigned> across = support::copy_of(neighbors);
                dense1D<unsigned, 8> first;
                ASSERT_TRUE(first.copy(starts));
                dense1D<unsigned, 8> offsets;
                dense1D<unsigned, 8> elements;
                const auto move_in = [&](dense1D<unsigned, 8>& output, int owner) {
                    if (owner == 0) output.block = connect.block;
                    if (owner == 1) output.block = across.block;
                    if (owner == 2) output.block = first.block;
                    if (owner == 4) output.block = offsets.block;
                    if (behind && owner != 3) output.offset = output.block->capacity;
                };
                move_in(offsets, of_offsets);
                move_in(elements, of_elements);
                ASSERT_EQ(get_connected_elements(connect, across, first, offsets, elements), 0);
                EXPECT_EQ(support::elements(offsets), support::elements(expected_offsets));
                EXPECT_EQ(support::elements(elements), support::elements(expected_elements));
                EXPECT_EQ(columns(connect), columns(m.connect));
                EXPECT_EQ(columns(across), columns(neighbors));
                EXPECT_EQ(support::elements(first), support::elements(starts));
            }
}

TEST(SharedBlocks, ConvertedIDsInTheBlockOfTheElements)
{
    dense2D<unsigned> connect(4, 50);
    for (unsigned j = 0; j < 50; ++j)
        for (unsigned i = 0; i < 4; ++i) connect(i, j) = 10 * j + (i == 3 && j % 3 ? 2 : i);
    dense2D<unsigned> expected = support::copy_of(connect);
    dense1D<unsigned, 8> expected_IDs;
    ASSERT_EQ(convert_degenerated_Q(expected, expected_IDs), 33);
    for (const std::size_t offset : {std::size_t(0), std::size_t(3), connect.block->capacity}) {
        dense2D<unsigned> converted = support::copy_of(connect);
        dense1D<unsigned, 8> IDs;
        IDs.block = converted.block;
        IDs.offset = offset;
        EXPECT_EQ(convert_degenerated_Q(converted, IDs), 33) << offset;
        EXPECT_EQ(columns(converted), columns(expected)) << offset;
        EXPECT_EQ(support::elements(IDs), support::elements(expected_IDs)) << offset;
    }
}
