// Layer counts from sizes, where all motions count alike.
#include "extrusion/overloads.h"
#include "support/matrices.h"

using namespace extrusion_tests;

namespace {

/// A path of that length for every motion: the line starts at distance 1 from the centre.
arguments path_of(double length)
{
    arguments given;
    given.plane = {{length, 0.0}};
    given.translation = {{0.0, 0.0, length}};
    given.plane_center = {{0.0, 0.0}};
    given.center = {{0.0, 0.0, 0.0}};
    given.angle = length;
    given.rotation = {{0.0, 0.0, length}};
    return given;
}

std::size_t layers(const overload& o, const arguments& given)
{
    dense2D<double> coords = {{1.0, 0.0}, {2.0, 0.0}};
    dense2D<unsigned> output;
    EXPECT_EQ(o.run(coords, {{0, 1}}, given, output), 0);
    const std::size_t count = output.cols / (o.rows == 4 ? 1 : 2);
    EXPECT_EQ(coords.cols, 2 + 2 * count);
    return count;
}

} // namespace

TEST(ExtrusionBySizes, ThreeHeightsAreThreeLayersOrFourWhereEven)
{
    for (const overload& o : overloads()) {
        if (!o.by_size) continue;
        SCOPED_TRACE(o.name);
        arguments given = path_of(0.75);
        given.h0 = given.h1 = 0.25;
        EXPECT_EQ(layers(o, given), 3u);
        given.force_even = true;
        EXPECT_EQ(layers(o, given), 4u);
    }
}

TEST(ExtrusionBySizes, TheLowThirtyTwoBitsOfTheCountAreTheLayers)
{
    for (const overload& o : overloads()) {
        if (!o.by_size) continue;
        SCOPED_TRACE(o.name);
        // 2^32 + 3 heights. The product of the neighbouring counts passes 64 bits and the larger
        // one is taken, 2^32 + 4.
        arguments given = path_of(4294967299.0);
        given.h0 = given.h1 = 1.0;
        EXPECT_EQ(layers(o, given), 4u);

        // 2^32 - 1/4 heights make 2^32 layers: none, and a motion that needs a layer gets one.
        given = path_of(4294967295.75);
        given.h0 = given.h1 = 1.0;
        EXPECT_EQ(layers(o, given), o.moves == motion::spiral ? 0u : 1u);
    }
}
