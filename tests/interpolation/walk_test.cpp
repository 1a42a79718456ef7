// The side test and the walk, against a plain second version and on meshes worked out by hand.
#include "interpolation/background.h"
#include "interpolation/walk.h"
#include "support/matrices.h"

#include <cmath>

using namespace vorel;
using namespace vorel::tessalo2d;
using support::background;

namespace {

background_mesh view(const background& b)
{
    return {b.coords, b.connect, b.neighbors};
}

template <class Call>
void by_form(const background& b, Call call)
{
    if (b.type == ELEMENT_T3) call(std::integral_constant<mesh_form, mesh_form::T3>());
    if (b.type == ELEMENT_Q4) call(std::integral_constant<mesh_form, mesh_form::Q4>());
    if (b.type == ELEMENT_ANY_FACE) call(std::integral_constant<mesh_form, mesh_form::mixed>());
}

plain::point target(const background& b, std::size_t k)
{
    return {b.coords(0, b.targets[k]), b.coords(1, b.targets[k])};
}

background triangle(const std::vector<plain::point>& points)
{
    const support::mesh m{"triangle", {{0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}}, {{0, 1, 2}}};
    return support::with_targets(m, ELEMENT_T3, points);
}

int sides_of_triangle(plain::point p, unsigned start)
{
    const background b = triangle({});
    return side_outside<mesh_form::T3>(view(b), {{p[0], p[1]}}, b.connect.column(0), 1e-6, start);
}

/// n squares in a row, each two triangles; walks go from left to right.
background strip(unsigned n)
{
    return support::with_targets(support::grid_T3(n, 1), ELEMENT_T3, {});
}

} // namespace

TEST(SideOutside, SideOfATriangleLiesOppositeItsNode)
{
    EXPECT_EQ(sides_of_triangle({0.25, 0.25}, 0), INSIDE_ALL_SIDES);
    EXPECT_EQ(sides_of_triangle({1.0, 1.0}, 0), 0);
    EXPECT_EQ(sides_of_triangle({-0.1, 0.5}, 0), 1);
    EXPECT_EQ(sides_of_triangle({0.5, -0.1}, 0), 2);
}

TEST(SideOutside, VisitsSidesFromTheOneAfterTheStartSide)
{
    // Outside sides 1 and 2.
    EXPECT_EQ(sides_of_triangle({-1.0, -1.0}, 0), 1);
    EXPECT_EQ(sides_of_triangle({-1.0, -1.0}, 1), 2);
    EXPECT_EQ(sides_of_triangle({-1.0, -1.0}, 2), 1);
    // Outside side 0 only: found last when it is the start side.
    EXPECT_EQ(sides_of_triangle({1.0, 1.0}, 0), 0);
}

TEST(SideOutside, MarginIsRelativeToTheDoubledArea)
{
    // Doubled area 1, doubled area with side 2 is y.
    EXPECT_EQ(sides_of_triangle({0.5, -1e-6}, 0), INSIDE_ALL_SIDES);
    EXPECT_EQ(sides_of_triangle({0.5, -1.0000001e-6}, 0), 2);
}

TEST(SideOutside, SideOfAQuadStartsAtItsNode)
{
    const background b = support::with_targets(support::grid_Q4(1, 1), ELEMENT_Q4, {});
    const auto side = [&](double x, double y, unsigned start) {
        return side_outside<mesh_form::Q4>(view(b), {{x, y}}, b.connect.column(0), 1e-6, start);
    };
    EXPECT_EQ(side(0.5, -1, 0), 0);
    EXPECT_EQ(side(2, 0.5, 0), 1);
    EXPECT_EQ(side(0.5, 2, 0), 2);
    EXPECT_EQ(side(-1, 0.5, 0), 3);
    EXPECT_EQ(side(0.5, 0.5, 3), INSIDE_ALL_SIDES);
    EXPECT_EQ(side(-1, -1, 3), 0);
    EXPECT_EQ(side(-1, -1, 0), 3);
}

TEST(SideOutside, FlatClockwiseAndEndlessElementsAreDegenerate)
{
    const double huge = 1e200;
    const dense2D<double> coords{{0.0, 0.0},  {1.0, 0.0},  {0.0, 1.0}, {2.0, 0.0},
                                 {huge, 0.0}, {0.0, huge}, {NAN, 0.0}};
    const dense2D<unsigned> connect{{0, 2, 1}, {0, 1, 3}, {0, 4, 5}, {0, 1, 6}};
    const dense2D<unsigned> neighbors(3, 4, UNSET_ID);
    const background_mesh mesh(coords, connect, neighbors);
    for (unsigned e = 0; e < 4; ++e)
        EXPECT_EQ(side_outside<mesh_form::T3>(mesh, {{0.1, 0.1}}, mesh.column(e), 1e-6, 0),
                  DEGENERATE_ELEMENT)
            << e;
}

TEST(SideOutside, NanPointIsOutsideTheSideAfterTheStartSide)
{
    EXPECT_EQ(sides_of_triangle({NAN, 0.0}, 0), 1);
    EXPECT_EQ(sides_of_triangle({NAN, 0.0}, 2), 0);
}

TEST(SideOutside, AgreesWithTheSideBySideVersion)
{
    for (const unsigned seed : {1u, 2u, 3u})
        for (const background& b : support::backgrounds(seed))
            by_form(b, [&](auto form) {
                for (std::size_t k = 0; k < b.targets.size; ++k)
                    for (unsigned e = 0; e < b.connect.cols; e += 3)
                        for (unsigned start = 0; start < b.plain().corners(e); ++start) {
                            const plain::point p = target(b, k);
                            ASSERT_EQ(side_outside<form.value>(view(b), {{p[0], p[1]}},
                                                               b.connect.column(e), 1e-6, start),
                                      plain::side_outside(b.plain(), p, e, 1e-6, int(start)))
                                << b.name << " target " << k << " element " << e;
                        }
            });
}

TEST(StartSide, FourthDrawOfATriangleIsItsFirstSide)
{
    EXPECT_EQ(start_side(2, 3), 2u);
    EXPECT_EQ(start_side(3, 3), 0u);
    EXPECT_EQ(start_side(3, 4), 3u);
}

TEST(Walk, FindsThePointAndTakesOneDrawAStep)
{
    const background b = strip(6);
    side_draw draw;
    std::size_t steps;
    unsigned element = 0;
    const vec2 p{{5.9, 0.05}};
    ASSERT_EQ(walk_to_element<mesh_form::T3>(view(b), p, element, 1e-6, steps, draw), WALK_FOUND);
    EXPECT_EQ(element, 10u);
    // Eleven elements on the straight way, each of them one draw; a word has sixteen.
    EXPECT_EQ(steps, 11u);
    EXPECT_EQ(draw.draws_left, 16u - 11u);
}

TEST(Walk, EndsWithoutAStepWhereThereIsNoElement)
{
    const background b = strip(2);
    side_draw draw;
    std::size_t steps = 7;
    unsigned element = UNSET_ID;
    EXPECT_EQ(walk_to_element<mesh_form::T3>(view(b), {{0, 0}}, element, 1e-6, steps, draw),
              WALK_LEFT);
    EXPECT_EQ(steps, 0u);
    EXPECT_EQ(draw.draws_left, 0u);
}

TEST(Walk, LeavesTheMeshThroughItsBoundary)
{
    const background b = strip(3);
    side_draw draw;
    std::size_t steps;
    unsigned element = 4;
    EXPECT_EQ(walk_to_element<mesh_form::T3>(view(b), {{9, 0.1}}, element, 1e-6, steps, draw),
              WALK_LEFT);
    EXPECT_EQ(steps, 1u);
    EXPECT_EQ(element, UNSET_ID);
}

TEST(Walk, TriesTheOtherSidesAtTheBoundary)
{
    // From element 0 (0,0) (1,0) (1,1) the point lies below side 2, on the boundary, and beyond
    // side 0, which leads on; whichever comes first, the walk goes on.
    const background b = strip(3);
    for (int skipped = 0; skipped < 8; ++skipped) {
        side_draw draw;
        for (int k = 0; k < skipped; ++k) (void)draw.draw();
        std::size_t steps;
        unsigned element = 0;
        EXPECT_EQ(
            walk_to_element<mesh_form::T3>(view(b), {{1.5, -0.2}}, element, 1e-6, steps, draw),
            WALK_LEFT);
        EXPECT_GT(steps, 1u);
    }
}

TEST(Walk, EndOnTheLastPermittedStepIsToldApart)
{
    const background b = triangle({});
    side_draw draw;
    std::size_t steps;
    unsigned element = 0;
    EXPECT_EQ(walk_to_element<mesh_form::T3>(view(b), {{2, 2}}, element, 1e-6, steps, draw),
              WALK_AT_LIMIT);
    EXPECT_EQ(steps, 1u);
    EXPECT_EQ(element, UNSET_ID);
    element = 0;
    EXPECT_EQ(walk_to_element<mesh_form::T3>(view(b), {{0.2, 0.2}}, element, 1e-6, steps, draw),
              WALK_FOUND)
        << "a point that is found on the last step is found";
}

TEST(Walk, OverrunOfTheLimitCountsAsLeaving)
{
    // Every side leads back to the element itself.
    background b = triangle({});
    b.neighbors = dense2D<unsigned>{{0, 0, 0}};
    side_draw draw;
    std::size_t steps;
    unsigned element = 0;
    EXPECT_EQ(walk_to_element<mesh_form::T3>(view(b), {{2, 2}}, element, 1e-6, steps, draw),
              WALK_LEFT);
    EXPECT_EQ(steps, 2u);
    EXPECT_EQ(draw.draws_left, 15u) << "the pass beyond the limit draws nothing";
}

TEST(Walk, DegenerateElementEndsIt)
{
    background b = strip(3);
    std::swap(b.connect(0, 2), b.connect(1, 2));
    side_draw draw;
    std::size_t steps;
    unsigned element = 0;
    EXPECT_EQ(walk_to_element<mesh_form::T3>(view(b), {{2.9, 0.05}}, element, 1e-6, steps, draw),
              WALK_DEGENERATE);
    EXPECT_EQ(element, UNSET_ID);
    EXPECT_EQ(draw.draws_left, 16u - steps) << "the step into it has drawn";
}

TEST(Walk, DegenerateElementOnTheLastStepIsAtTheLimit)
{
    background b = triangle({});
    std::swap(b.connect(0, 0), b.connect(1, 0));
    side_draw draw;
    std::size_t steps;
    unsigned element = 0;
    EXPECT_EQ(walk_to_element<mesh_form::T3>(view(b), {{0.1, 0.1}}, element, 1e-6, steps, draw),
              WALK_AT_LIMIT);
}

TEST(Walk, TakesTheSamePathAsThePlainVersion)
{
    for (const unsigned seed : {1u, 2u, 3u, 4u})
        for (const background& b : support::backgrounds(seed))
            by_form(b, [&](auto form) {
                side_draw draw;
                plain::draws d;
                for (std::size_t k = 0; k < b.targets.size; ++k)
                    for (unsigned start = 0; start < b.connect.cols; start += 7) {
                        const plain::point p = target(b, k);
                        unsigned element = start;
                        unsigned expected = start;
                        std::size_t steps, expected_steps;
                        const int end = walk_to_element<form.value>(view(b), {{p[0], p[1]}},
                                                                    element, 1e-6, steps, draw);
                        ASSERT_EQ(end, plain::walk(b.plain(), p, expected, 1e-6, expected_steps, d))
                            << b.name << " target " << k << " from " << start;
                        ASSERT_EQ(element, expected) << b.name;
                        ASSERT_EQ(steps, expected_steps) << b.name;
                        ASSERT_EQ(draw.draws_left, (16 - d.taken % 16) % 16) << b.name;
                    }
            });
}
