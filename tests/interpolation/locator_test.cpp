// Filling the tree, and locating points: the whole search against the plain version.
#include "interpolation/background.h"
#include "interpolation/background_locator.h"
#include "support/allocation.h"
#include "support/matrices.h"

using namespace vorel;
using namespace vorel::tessalo2d;
using support::background;

namespace {

template <mesh_form F>
background_locator<F> locator_of(const background& b)
{
    return background_locator<F>(b.coords, b.connect, b.neighbors, b.node_element);
}

template <class Call>
void by_form(const background& b, Call call)
{
    if (b.type == ELEMENT_T3) call(std::integral_constant<mesh_form, mesh_form::T3>());
    if (b.type == ELEMENT_Q4) call(std::integral_constant<mesh_form, mesh_form::Q4>());
    if (b.type == ELEMENT_ANY_FACE) call(std::integral_constant<mesh_form, mesh_form::mixed>());
}

/// The squares of a 4 x 2 grid without the second and third of the lower row.
support::mesh with_a_hole()
{
    support::mesh m = support::grid_Q4(4, 2);
    const dense2D<unsigned> all = m.connect;
    m.connect = dense2D<unsigned>(4, 6);
    std::size_t kept = 0;
    for (std::size_t e = 0; e < 8; ++e)
        if (e != 1 && e != 2) std::copy(all.column(e), all.column(e) + 4, m.connect.column(kept++));
    return m;
}

} // namespace

TEST(FillTree, TakesTheNodesThatElementsUse)
{
    // Five targets and an idle node stay outside.
    support::mesh m = support::grid_T3(3, 2);
    ASSERT_TRUE(m.coords.resize(2, 13, -50.0));
    const background b = support::with_random_targets(m, ELEMENT_T3, 5, 1);
    auto locator = locator_of<mesh_form::T3>(b);
    EXPECT_EQ(locator.fill_tree(), 12u);
    EXPECT_EQ(locator.nodes().count, 12u);
    EXPECT_EQ(locator.nodes().box_low[0], 0.0);
    EXPECT_EQ(locator.nodes().box_low[1], 0.0);
    EXPECT_EQ(locator.nodes().box_high[0], 3.0);
    EXPECT_EQ(locator.nodes().box_high[1], 2.0);
}

TEST(FillTree, OfMixedStorageReadsRowThreeOfQuadsOnly)
{
    const support::mesh m{"pair",
                          {{0.0, 0.0}, {1.0, 0.0}, {1.0, 1.0}, {0.0, 1.0}, {2.0, 0.5}},
                          {{0, 1, 2, 3}, {1, 4, 2, UNSET_ID}}};
    const background b = support::with_targets(m, ELEMENT_ANY_FACE, {});
    EXPECT_EQ(locator_of<mesh_form::mixed>(b).fill_tree(), 5u);
}

TEST(FillTree, WithoutElementsKeepsTheUnitBoxAndNoNodes)
{
    background b = support::with_targets(support::grid_T3(1, 1), ELEMENT_T3, {});
    b.connect = support::without_columns<unsigned>(3);
    b.neighbors = b.connect;
    auto locator = locator_of<mesh_form::T3>(b);
    EXPECT_EQ(locator.fill_tree(), 0u);
    EXPECT_EQ(locator.nodes().box_high[0], 1.0);
    unsigned element = UNSET_ID;
    side_draw draw;
    EXPECT_FALSE(locator.locate_element({{0.5, 0.5}}, element, 1e-6, true, draw));
}

TEST(FillTree, BoxIgnoresNaN)
{
    support::mesh m = support::grid_T3(2, 1);
    m.coords(0, 1) = NAN;
    m.coords(1, 5) = NAN;
    const background b = support::with_targets(m, ELEMENT_T3, {});
    auto locator = locator_of<mesh_form::T3>(b);
    EXPECT_EQ(locator.fill_tree(), 4u);
    EXPECT_EQ(locator.nodes().box_low[0], 0.0);
    EXPECT_EQ(locator.nodes().box_high[0], 2.0);
    EXPECT_EQ(locator.nodes().box_high[1], 1.0);
}

TEST(FillTree, WithoutStorageLeavesTheTreeAsItIs)
{
    const background b = support::with_targets(support::grid_T3(8, 8), ELEMENT_T3, {});
    auto locator = locator_of<mesh_form::T3>(b);
    const support::failing_allocation none(0, support::failure::for_good);
    EXPECT_EQ(locator.fill_tree(), 0u);
    EXPECT_EQ(locator.nodes().box_high[0], 1.0);
    EXPECT_EQ(locator.nodes().count, 0u);
}

TEST(LocateElement, TakesNoDrawOutsideTheBox)
{
    const background b = support::with_targets(support::grid_T3(3, 3), ELEMENT_T3, {});
    auto locator = locator_of<mesh_form::T3>(b);
    (void)locator.fill_tree();
    side_draw draw;
    unsigned element = UNSET_ID;
    EXPECT_FALSE(locator.locate_element({{3.0000001, 1}}, element, 1e-6, true, draw));
    EXPECT_EQ(element, UNSET_ID);
    EXPECT_EQ(draw.draws_left, 0u);
}

TEST(LocateElement, StartsAtTheGivenElement)
{
    const background b = support::with_targets(support::grid_T3(3, 3), ELEMENT_T3, {});
    auto locator = locator_of<mesh_form::T3>(b);
    side_draw draw;
    unsigned element = 2;
    EXPECT_TRUE(locator.locate_element({{1.5, 0.1}}, element, 1e-6, false, draw));
    EXPECT_EQ(element, 2u);
    EXPECT_EQ(draw.draws_left, 15u);
}

TEST(LocateElement, FindsNothingInAHole)
{
    const background b = support::with_targets(with_a_hole(), ELEMENT_Q4, {});
    auto locator = locator_of<mesh_form::Q4>(b);
    (void)locator.fill_tree();
    side_draw draw;
    unsigned element = UNSET_ID;
    EXPECT_FALSE(locator.locate_element({{2.1, 0.5}}, element, 1e-6, true, draw));
    EXPECT_EQ(element, UNSET_ID);
    EXPECT_NE(draw.draws_left, 0u);
}

TEST(LocateElement, FallbackReachesAPartThatTheWalkDoesNot)
{
    // Two triangles that share no side and have no neighbours: the walk from the one leaves the
    // mesh at its third boundary, and the ball of the nearest node holds the other.
    const support::mesh m{"two parts",
                          {{0.0, 0.0}, {4.0, 0.0}, {0.0, 4.0}, {4.0, 4.0}, {3.9, 0.1}, {0.1, 3.9}},
                          {{0, 1, 2}, {3, 5, 4}, {0, 1, 2}, {0, 1, 2}, {0, 1, 2}}};
    background b = support::with_targets(m, ELEMENT_T3, {});
    b.neighbors = dense2D<unsigned>(3, 5, UNSET_ID);
    auto locator = locator_of<mesh_form::T3>(b);
    (void)locator.fill_tree();
    for (const bool fallback : {false, true}) {
        side_draw draw;
        unsigned element = 0;
        EXPECT_EQ(locator.locate_element({{3.5, 3.5}}, element, 1e-6, fallback, draw), fallback);
        EXPECT_EQ(element, fallback ? 1u : UNSET_ID);
        EXPECT_EQ(draw.draws_left, fallback ? 14u : 15u);
    }
}

TEST(LocateElement, DegenerateElementEndsTheSearchWithoutFallback)
{
    const support::mesh m{"two parts",
                          {{0.0, 0.0}, {4.0, 0.0}, {0.0, 4.0}, {4.0, 4.0}, {3.9, 0.1}, {0.1, 3.9}},
                          {{0, 2, 1}, {3, 5, 4}, {0, 1, 2}, {0, 1, 2}, {0, 1, 2}}};
    background b = support::with_targets(m, ELEMENT_T3, {});
    b.neighbors = dense2D<unsigned>(3, 5, UNSET_ID);
    auto locator = locator_of<mesh_form::T3>(b);
    (void)locator.fill_tree();
    side_draw draw;
    unsigned element = 0;
    EXPECT_FALSE(locator.locate_element({{3.5, 3.5}}, element, 1e-6, true, draw));
    EXPECT_EQ(element, UNSET_ID);
}

TEST(LocateElement, SingleElementHasNoFallback)
{
    const support::mesh m{"one", {{0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}}, {{0, 1, 2}}};
    const background b = support::with_targets(m, ELEMENT_T3, {});
    auto locator = locator_of<mesh_form::T3>(b);
    (void)locator.fill_tree();
    side_draw draw;
    unsigned element = UNSET_ID;
    EXPECT_FALSE(locator.locate_element({{0.9, 0.9}}, element, 1e-6, true, draw));
    EXPECT_EQ(draw.draws_left, 15u);
    EXPECT_TRUE(locator.locate_element({{0.2, 0.2}}, element, 1e-6, true, draw));
    EXPECT_EQ(element, 0u);
}

TEST(LocateElement, NodeWhoseEntryNamesNoElementYieldsNoStart)
{
    background b = support::with_targets(support::grid_T3(1, 1), ELEMENT_T3, {});
    for (unsigned id = 0; id < 4; ++id) b.node_element[id] = 2 + id;
    auto locator = locator_of<mesh_form::T3>(b);
    EXPECT_EQ(locator.fill_tree(), 4u);
    side_draw draw;
    unsigned element = UNSET_ID;
    EXPECT_FALSE(locator.locate_element({{0.4, 0.3}}, element, 1e-6, true, draw));
    EXPECT_EQ(draw.draws_left, 0u);
    EXPECT_EQ(locator.nearest_node({{0.4, 0.3}}), 0u) << "it is a background node all the same";
}

TEST(LocateElement, AgreesWithThePlainVersionOverAWholeStream)
{
    for (unsigned seed = 1; seed < 7; ++seed)
        for (const background& b : support::backgrounds(seed))
            by_form(b, [&](auto form) {
                auto locator = locator_of<form.value>(b);
                (void)locator.fill_tree();
                const plain::tree tree = plain::filled(b.plain());
                EXPECT_EQ(locator.nodes().count, tree.traversal.size());
                side_draw draw;
                plain::draws d;
                for (const unsigned node : b.targets) {
                    const plain::point p{b.coords(0, node), b.coords(1, node)};
                    unsigned element = UNSET_ID;
                    unsigned expected = UNSET_ID;
                    const bool found =
                        locator.locate_element({{p[0], p[1]}}, element, 1e-6, true, draw);
                    ASSERT_EQ(found, plain::locate(b.plain(), tree, p, expected, d))
                        << b.name << " seed " << seed << " node " << node;
                    ASSERT_EQ(element, expected) << b.name << " seed " << seed;
                    ASSERT_EQ(draw.draws_left, (16 - d.taken % 16) % 16) << b.name;
                }
            });
}

TEST(LocateElement, AllocatesOnlyForItsFirstFallbacks)
{
    const background b = support::with_random_targets(with_a_hole(), ELEMENT_Q4, 400, 9);
    auto locator = locator_of<mesh_form::Q4>(b);
    (void)locator.fill_tree();
    side_draw draw;
    std::size_t before = 0;
    for (int round = 0; round < 2; ++round) {
        before = support::allocations();
        for (const unsigned node : b.targets) {
            unsigned element = UNSET_ID;
            (void)locator.locate_element(load<2>(b.coords.column(node)), element, 1e-6, true, draw);
        }
    }
    EXPECT_EQ(support::allocations(), before);
}
