// Neighbors and entries that contradict the elements: how far a walk goes on them, held to the
// procedure written out step by step.
#include "structured/connected_fans.h"
#include "support/matrices.h"

#include <algorithm>
#include <random>
#include <set>
#include <utility>

using namespace vorel;
using namespace fan_tests;

namespace {

/// The procedure step by step, for any content of the matrices.
std::pair<list, list> reference(const fans& f)
{
    const dense2D<unsigned>& c = f.connect;
    const std::size_t elements = c.cols;
    list offsets;
    list result;
    const auto find = [&](unsigned e, unsigned n) {
        const unsigned rows = c.rows == 4 && c(3, e) != U ? 4 : 3;
        for (unsigned k = 0; k < rows; ++k)
            if (c(k, e) == n) return k;
        return U;
    };
    const auto is_quad = [&](unsigned e) { return c.rows == 4 && c(3, e) != U; };
    const auto side_a = [&](unsigned e, unsigned k) {
        return is_quad(e) ? (k + 3) % 4 : (k + 1) % 3;
    };
    const auto side_b = [&](unsigned e, unsigned k) { return is_quad(e) ? k : (k + 2) % 3; };
    const auto across = [&](unsigned side, unsigned e) {
        const unsigned x = f.neighbors(side, e);
        return x < elements ? x : U;
    };
    for (unsigned n = 0; n < f.node_element.size; ++n) {
        offsets.push_back(static_cast<unsigned>(result.size()));
        const unsigned s = f.node_element[n];
        if (s == U) continue;
        list ring;
        int status = 0;
        bool closed = false;
        unsigned e = s;
        std::size_t steps = 0;
        for (;;) {
            ring.push_back(e);
            const unsigned k = find(e, n);
            if (k == U) {
                status = -1;
                break;
            }
            e = across(side_a(e, k), e);
            closed = e != U;
            if (e == U || e == s) break;
            if (++steps == elements) {
                status = -1;
                break;
            }
        }
        if (!closed && status == 0) {
            list stack{ring.back()};
            std::set<unsigned> marked{ring.back()};
            ring.clear();
            while (!stack.empty()) {
                const unsigned at = stack.back();
                stack.pop_back();
                const unsigned k = find(at, n);
                if (k == U) {
                    status = -1;
                    break;
                }
                ring.push_back(at);
                for (const unsigned side : {side_b(at, k), side_a(at, k)}) {
                    const unsigned x = across(side, at);
                    if (x != U && marked.insert(x).second) stack.push_back(x);
                }
            }
            std::reverse(ring.begin(), ring.end());
        }
        result.insert(result.end(), ring.begin(), ring.end());
        if (status < 0) break;
    }
    offsets.push_back(static_cast<unsigned>(result.size()));
    return {offsets, result};
}

} // namespace

TEST(GetConnectedElements, NodeThatIsNotInItsElementEndsTheRun)
{
    fans f = of_mesh(wheel(6, true), 7);
    f.node_element[3] = 5;
    EXPECT_EQ(f.run(), 0);
    // Nodes 0 to 2 are complete; the list of node 3 is what was met until then.
    EXPECT_EQ(support::elements(f.offsets), (list{0, 6, 8, 10, 11}));
    EXPECT_EQ(f.elements[10], 5u);
}

TEST(GetConnectedElements, NeighborThatDoesNotHoldTheNodeEndsTheRun)
{
    fans f = of_mesh(wheel(6, true), 7);
    f.neighbors(1, 2) = 4;
    f.connect(0, 4) = 6;
    EXPECT_EQ(f.run(), 0);
    EXPECT_EQ(support::elements(f.offsets), (list{0, 4}));
    EXPECT_EQ(support::elements(f.elements), (list{0, 1, 2, 4}));
}

TEST(GetConnectedElements, FailedFloodIsReversedToo)
{
    // An open fan of 0 to 4 around node 0; element 1 is replaced by one that does not hold it.
    fans f = of_mesh(wheel(6, false), 7);
    f.node_element[0] = 3;
    f.connect(0, 1) = 6;
    EXPECT_EQ(f.run(), 0);
    EXPECT_EQ(support::elements(f.offsets), (list{0, 3}));
    EXPECT_EQ(support::elements(f.elements), (list{2, 3, 4}));
}

TEST(GetConnectedElements, WalkIntoACircleWithoutItsStartEnds)
{
    // From element 0 the walk enters the circle 1 2 1 2 ...
    fans f;
    f.connect = dense2D<unsigned>{{0, 1, 2}, {0, 3, 4}, {0, 5, 6}};
    f.neighbors = dense2D<unsigned>(3, 3, U);
    f.neighbors(1, 0) = 1;
    f.neighbors(1, 1) = 2;
    f.neighbors(1, 2) = 1;
    f.node_element = {0, 0};
    EXPECT_EQ(f.run(), 0);
    EXPECT_EQ(support::elements(f.offsets), (list{0, 3}));
    EXPECT_EQ(support::elements(f.elements), (list{0, 1, 2}));
}

TEST(GetConnectedElements, NeighborsBeyondTheColumnsAreNone)
{
    fans f = of_mesh(wheel(6, false), 7);
    for (std::size_t e = 0; e < f.neighbors.cols; ++e)
        for (std::size_t r = 0; r < 3; ++r)
            if (f.neighbors(r, e) == U) f.neighbors(r, e) = r % 2 ? 5u : 0xFFFFFFF0u;
    EXPECT_EQ(f.run(), 0);
    EXPECT_EQ(f.of(0), (list{0, 1, 2, 3, 4}));
    EXPECT_EQ(f.offsets.size, 8u);
}

TEST(GetConnectedElements, ContradictoryNeighborsFollowTheProcedure)
{
    for (unsigned seed = 0; seed < 400; ++seed) {
        std::mt19937 draw(seed);
        const std::size_t rows = 3 + seed % 2;
        const unsigned elements = 1 + static_cast<unsigned>(draw() % 30);
        const unsigned nodes = 1 + static_cast<unsigned>(draw() % 40);
        // Mostly node 0, so that walks last.
        fans f;
        f.connect = dense2D<unsigned>(rows, elements);
        f.neighbors = dense2D<unsigned>(rows, elements);
        for (std::size_t e = 0; e < elements; ++e)
            for (std::size_t i = 0; i < rows; ++i) {
                const unsigned spread = static_cast<unsigned>(draw() % nodes);
                f.connect(i, e) = draw() % 2 ? 0 : draw() % 4 ? spread : U;
                f.neighbors(i, e) = draw() % 5 ? static_cast<unsigned>(draw() % elements)
                                               : U - static_cast<unsigned>(draw() % 2);
            }
        for (unsigned n = 0; n < nodes; ++n)
            f.node_element.append(draw() % 4 ? static_cast<unsigned>(draw() % elements) : U);
        // Some nodes whose start holds them.
        for (unsigned e = 0; e < elements; ++e)
            if (f.connect(0, e) < nodes) f.node_element[f.connect(0, e)] = e;
        const auto expected = reference(f);
        EXPECT_EQ(f.run(), 0) << "seed " << seed;
        EXPECT_EQ(support::elements(f.offsets), expected.first) << "seed " << seed;
        EXPECT_EQ(support::elements(f.elements), expected.second) << "seed " << seed;

        support::placed<unsigned> connect(f.connect, 2, 3);
        support::placed<unsigned> neighbors(f.neighbors, 1, 2);
        fans placed{connect.view,
                    neighbors.view,
                    support::placed_run(f.node_element, 5),
                    support::placed_run(dense1D<unsigned, 8>{7}, 2),
                    {}};
        EXPECT_EQ(placed.run(), 0) << "seed " << seed;
        EXPECT_EQ(support::elements(placed.offsets), expected.first) << "seed " << seed;
        EXPECT_EQ(support::elements(placed.elements), expected.second) << "seed " << seed;
        connect.expect_gaps_untouched();
        neighbors.expect_gaps_untouched();
    }
}
