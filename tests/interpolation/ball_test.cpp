// The elements around a node.
#include "interpolation/background.h"
#include "interpolation/ball.h"
#include "support/allocation.h"
#include "support/matrices.h"

using namespace vorel;
using namespace vorel::tessalo2d;
using support::background;

namespace {

struct result {
    int status;
    bool closed;
    std::vector<unsigned> list;
};

template <mesh_form F>
result ball(const background& b, unsigned node, unsigned element)
{
    const background_mesh mesh(b.coords, b.connect, b.neighbors);
    dense1D<unsigned, 8> list, stack;
    element_set visited;
    EXPECT_TRUE(visited.init(23, 23));
    result r{};
    r.status = collect_ball<F>(node, element, mesh, list, r.closed, stack, visited);
    r.list = support::elements(list);
    return r;
}

result ball(const background& b, unsigned node, unsigned element)
{
    if (b.type == ELEMENT_T3) return ball<mesh_form::T3>(b, node, element);
    if (b.type == ELEMENT_Q4) return ball<mesh_form::Q4>(b, node, element);
    return ball<mesh_form::mixed>(b, node, element);
}

} // namespace

TEST(Ball, OfAnInnerNodeIsClosedAndGoesRoundDepthFirst)
{
    // Cells 0 1 / 2 3 around node 4. From cell 0 (row 2 is the node): side 2 leads up to cell 2,
    // side 1 right to cell 1. Cell 1 is pushed last and popped first, and leads to cell 3.
    const background b = support::with_targets(support::grid_Q4(2, 2), ELEMENT_Q4, {});
    const result r = ball(b, 4, 0);
    EXPECT_EQ(r.status, 0);
    EXPECT_TRUE(r.closed);
    EXPECT_EQ(r.list, (std::vector<unsigned>{0, 1, 3, 2}));
}

TEST(Ball, OfATriangleFanStartsWithTheSideTwoAfterTheNode)
{
    const background b = support::with_targets(support::grid_T3(2, 2), ELEMENT_T3, {});
    const result r = ball(b, 4, 0);
    // Element 0 is 0 1 4, the node in row 2: side 1 (4 to 0) leads to 1, side 0 (1 to 4) to 3,
    // which is pushed last and popped first. It leads on round the node to 1.
    EXPECT_EQ(r.list, (std::vector<unsigned>{0, 3, 6, 7, 4, 1}));
    EXPECT_TRUE(r.closed);
}

TEST(Ball, OfABoundaryNodeIsOpen)
{
    const background b = support::with_targets(support::grid_Q4(2, 2), ELEMENT_Q4, {});
    const result r = ball(b, 1, 1);
    EXPECT_EQ(r.status, 0);
    EXPECT_FALSE(r.closed);
    EXPECT_EQ(r.list, (std::vector<unsigned>{1, 0}));
}

TEST(Ball, WithoutAnElementIsEmpty)
{
    const background b = support::with_targets(support::grid_Q4(2, 2), ELEMENT_Q4, {});
    const result r = ball(b, 1, UNSET_ID);
    EXPECT_EQ(r.status, 0);
    EXPECT_FALSE(r.closed);
    EXPECT_TRUE(r.list.empty());
}

TEST(Ball, StopsAtAnElementWithoutTheNodeAndKeepsItsList)
{
    background b = support::with_targets(support::grid_Q4(3, 1), ELEMENT_Q4, {});
    // Cell 0's right neighbour is said to be cell 2, which doesn't hold node 1.
    b.neighbors(1, 0) = 2;
    const result r = ball(b, 1, 0);
    EXPECT_EQ(r.status, -1);
    EXPECT_EQ(r.list, (std::vector<unsigned>{0}));
}

TEST(Ball, AppendsToItsList)
{
    const background b = support::with_targets(support::grid_Q4(1, 1), ELEMENT_Q4, {});
    const background_mesh mesh(b.coords, b.connect, b.neighbors);
    dense1D<unsigned, 8> list{77}, stack{5};
    element_set visited;
    ASSERT_TRUE(visited.init(23, 23));
    bool closed;
    EXPECT_EQ(collect_ball<mesh_form::Q4>(0, 0, mesh, list, closed, stack, visited), 0);
    EXPECT_EQ(support::elements(list), (std::vector<unsigned>{77, 0}));
    // An element that was visited before is pushed by nobody, but starts all the same.
    EXPECT_EQ(collect_ball<mesh_form::Q4>(0, 0, mesh, list, closed, stack, visited), 0);
    EXPECT_EQ(support::elements(list), (std::vector<unsigned>{77, 0, 0}));
}

TEST(Ball, WithoutStorageForTheSetHoldsTheFirstElement)
{
    const background b = support::with_targets(support::grid_Q4(2, 2), ELEMENT_Q4, {});
    const background_mesh mesh(b.coords, b.connect, b.neighbors);
    dense1D<unsigned, 8> list, stack;
    element_set visited;
    ASSERT_TRUE(list.reserve(8, 1));
    ASSERT_TRUE(stack.reserve(8, 1));
    bool closed;
    const support::failing_allocation none(0, support::failure::for_good);
    EXPECT_FALSE(visited.init(23, 23));
    EXPECT_EQ(collect_ball<mesh_form::Q4>(4, 0, mesh, list, closed, stack, visited), 0);
    EXPECT_EQ(support::elements(list), (std::vector<unsigned>{0}));
}

TEST(Ball, LargeFansGrowTheSet)
{
    // 200 triangles around node 0.
    const unsigned n = 200;
    support::mesh m{"fan", dense2D<double>(2, n + 1, 0.0), dense2D<unsigned>(3, n)};
    for (unsigned k = 0; k < n; ++k) {
        m.connect(0, k) = 1 + k;
        m.connect(1, k) = 1 + (k + 1) % n;
        m.connect(2, k) = 0;
    }
    const background b = support::with_targets(m, ELEMENT_T3, {});
    const result r = ball(b, 0, 50);
    EXPECT_EQ(r.list.size(), n);
    EXPECT_TRUE(r.closed);
}

TEST(Ball, AgreesWithThePlainVersion)
{
    for (const unsigned seed : {5u, 6u})
        for (const background& b : support::backgrounds(seed))
            for (unsigned node = 0; node < b.coords.cols; ++node)
                for (const unsigned element :
                     {b.node_element[node], node % static_cast<unsigned>(b.connect.cols)}) {
                    if (element >= b.connect.cols) continue;
                    std::vector<unsigned> expected;
                    bool closed;
                    const int status = plain::ball(b.plain(), node, element, expected, closed);
                    const result r = ball(b, node, element);
                    ASSERT_EQ(r.status, status) << b.name << " node " << node;
                    ASSERT_EQ(r.list, expected) << b.name << " node " << node;
                    ASSERT_EQ(r.closed, closed) << b.name << " node " << node;
                }
}
