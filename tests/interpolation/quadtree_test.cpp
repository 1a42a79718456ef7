// The quadtree against sets of nodes: its cells, and both searches.
#include "interpolation/node_quadtree.h"
#include "interpolation/plain_locator.h"
#include "support/allocation.h"
#include "support/matrices.h"

#include <cmath>
#include <functional>
#include <limits>
#include <numeric>

using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INF = std::numeric_limits<double>::infinity();

struct cloud {
    std::string name;
    dense2D<double> coords;
};

cloud make_cloud(const char* name, unsigned n, unsigned seed,
                 const std::function<plain::point(std::mt19937&, unsigned)>& place)
{
    std::mt19937 draw(seed);
    cloud c{std::string(name) + ", seed " + std::to_string(seed), dense2D<double>(2, n)};
    for (unsigned j = 0; j < n; ++j) {
        const plain::point p = place(draw, j);
        c.coords(0, j) = p[0];
        c.coords(1, j) = p[1];
    }
    return c;
}

double unit(std::mt19937& draw)
{
    return std::uniform_real_distribution<double>(0.0, 1.0)(draw);
}

std::vector<cloud> clouds(unsigned n, unsigned seed)
{
    std::vector<cloud> all;
    all.push_back(make_cloud("random", n, seed, [](auto& d, unsigned) {
        return plain::point{unit(d) * 7 - 3, unit(d) * 2 + 100};
    }));
    all.push_back(make_cloud("clustered", n, seed, [](auto& d, unsigned j) {
        const double r = std::pow(10.0, -double(j % 9));
        return plain::point{unit(d) * r + double(j % 2), unit(d) * r};
    }));
    all.push_back(make_cloud("collinear", n, seed, [](auto& d, unsigned) {
        const double t = unit(d);
        return plain::point{t, 0.25 + 0.5 * t};
    }));
    all.push_back(make_cloud("on a horizontal line", n, seed, [](auto& d, unsigned) {
        return plain::point{unit(d), -4.0};
    }));
    all.push_back(make_cloud("coincident in groups", n, seed, [](auto& d, unsigned j) {
        (void)unit(d);
        return plain::point{double(j % 5), double(j % 3) * 0.1};
    }));
    all.push_back(make_cloud("all at one place", n, seed, [](auto&, unsigned) {
        return plain::point{-2.5, 8.0};
    }));
    all.push_back(make_cloud("lattice", n, seed, [](auto&, unsigned j) {
        return plain::point{double(j % 8), double(j / 8)};
    }));
    all.push_back(make_cloud("with NaN and infinity", n, seed, [](auto& d, unsigned j) {
        if (j % 7 == 3) return plain::point{NOT_A_NUMBER, unit(d)};
        if (j % 11 == 5) return plain::point{unit(d), INF};
        return plain::point{unit(d), unit(d)};
    }));
    return all;
}

void bounds(const dense2D<double>& coords, vec2& low, vec2& high)
{
    low = {{INF, INF}};
    high = {{-INF, -INF}};
    for (std::size_t j = 0; j < coords.cols; ++j)
        for (int i = 0; i < 2; ++i) {
            const double x = coords(std::size_t(i), j);
            if (!std::isfinite(x)) continue;
            low[i] = std::min(low[i], x);
            high[i] = std::max(high[i], x);
        }
}

dense1D<unsigned, 8> all_ids(std::size_t n)
{
    dense1D<unsigned, 8> ids(n);
    std::iota(ids.begin(), ids.end(), 0u);
    return ids;
}

dense1D<unsigned, 8> shuffled_ids(std::size_t n, unsigned seed)
{
    dense1D<unsigned, 8> ids = all_ids(n);
    std::mt19937 draw(seed);
    std::shuffle(ids.begin(), ids.end(), draw);
    return ids;
}

plain::tree plain_tree(const dense2D<double>& coords, const vec2& low, const vec2& high,
                       const dense1D<unsigned, 8>& ids, std::size_t& stored)
{
    plain::tree t(coords, {low[0], low[1]}, {high[0], high[1]});
    stored = t.insert(support::elements(ids));
    return t;
}

/// Leaves from child 0 to child 3, as text that doesn't depend on the numbers of the cells.
void shape(const node_quadtree& tree, unsigned cell, unsigned level, std::string& text,
           std::vector<unsigned>& ids)
{
    const unsigned* const c = tree.cells.column(cell);
    if (c[0] < 4) {
        text += "(" + std::to_string(level) + ":";
        for (unsigned row = 1; row <= c[0]; ++row) {
            text += " " + std::to_string(c[row]);
            ids.push_back(c[row]);
            if (row > 1) {
                EXPECT_LT(c[row - 1], c[row]);
            }
        }
        text += ")";
        return;
    }
    for (unsigned k = 0; k < 4; ++k) {
        ASSERT_GE(c[k], 4u);
        ASSERT_LT(c[k], tree.cells.cols);
        shape(tree, c[k], level - 1, text, ids);
    }
}

/// Points to search around: the nodes, points between, the corners of the box, points outside.
std::vector<vec2> probes(const dense2D<double>& coords, const vec2& low, const vec2& high,
                         unsigned seed)
{
    std::vector<vec2> all{low, high, {{low[0], high[1]}}, 0.5 * (low + high)};
    std::mt19937 draw(seed);
    for (std::size_t j = 0; j < coords.cols; j += 3) all.push_back(load<2>(coords.column(j)));
    for (std::size_t j = 1; j < coords.cols; j += 5)
        all.push_back(0.5 * (load<2>(coords.column(j)) + load<2>(coords.column(j - 1))));
    for (int k = 0; k < 60; ++k)
        all.push_back(
            {{low[0] + unit(draw) * (high[0] - low[0]), low[1] + unit(draw) * (high[1] - low[1])}});
    all.push_back({{std::nextafter(low[0], -INF), low[1]}});
    all.push_back({{high[0], std::nextafter(high[1], INF)}});
    all.push_back({{NOT_A_NUMBER, low[1]}});
    all.push_back({{low[0], NOT_A_NUMBER}});
    return all;
}

} // namespace

TEST(NodeQuadtree, ResetLeavesARootAndThreeIdleCells)
{
    const dense2D<double> coords{{0.0, 0.0}};
    node_quadtree tree(coords);
    tree.set_box({{0, 0}}, {{1, 1}});
    EXPECT_EQ(tree.count, 0u);
    EXPECT_EQ(support::columns(tree.cells),
              std::vector<std::vector<unsigned>>(4, std::vector<unsigned>(4, 0)));
    ASSERT_TRUE(tree.insert_node(0));
    tree.free_stack.append(9);
    tree.reset();
    EXPECT_EQ(tree.count, 0u);
    EXPECT_EQ(tree.cells.cols, 4u);
    EXPECT_EQ(tree.free_stack.size, 0u);
    EXPECT_EQ(tree.cells(0, 0), 0u);
}

TEST(NodeQuadtree, RootIsASquareOnTheCentreOfTheBox)
{
    const dense2D<double> coords;
    node_quadtree tree(coords);
    tree.set_box({{1, 10}}, {{5, 12}});
    const double size = 4 * 1.000000000001;
    EXPECT_EQ(tree.origin[0], 3.0 - size * 0.5);
    EXPECT_EQ(tree.origin[1], 11.0 - size * 0.5);
    EXPECT_EQ(tree.scale, 4294967295.0 / size);
    tree.set_box({{7, 7}}, {{7, 7}});
    EXPECT_EQ(tree.scale, 4294967295.0 / 1e-12);
}

TEST(NodeQuadtree, QuantisationTruncatesAndCutsToTheSquare)
{
    const dense2D<double> coords;
    node_quadtree tree(coords);
    tree.origin = {{0, -1}};
    tree.scale = 2.0;
    const auto at = [&](double x, double y) {
        const integer_point p = tree.quantize(x, y);
        return std::vector<std::uint32_t>{p.x, p.y};
    };
    using pair = std::vector<std::uint32_t>;
    EXPECT_EQ(at(1.4, -1), (pair{2, 0}));
    EXPECT_EQ(at(1.5, -0.5), (pair{3, 1}));
    EXPECT_EQ(at(-0.1, -1.1), (pair{0, 0}));
    EXPECT_EQ(at(NOT_A_NUMBER, INF), (pair{0, 0xFFFFFFFFu}));
    EXPECT_EQ(at(-INF, 2147483646.5), (pair{0, 0xFFFFFFFFu}));
    EXPECT_EQ(at(2147483647.25, 2147483646.0), (pair{4294967294u, 4294967294u}));
}

TEST(NodeQuadtree, BoxIsClosedAndItsUpperCornerStaysInRange)
{
    const dense2D<double> coords{{0.0, 0.0}, {1.0, 1.0}, {1.0, 1.0000000000000002}, {-1e-300, 0.5}};
    node_quadtree tree(coords);
    tree.set_box({{0, 0}}, {{1, 1}});
    EXPECT_TRUE(tree.insert_node(0));
    EXPECT_TRUE(tree.insert_node(1));
    EXPECT_FALSE(tree.insert_node(2));
    EXPECT_FALSE(tree.insert_node(3));
    EXPECT_EQ(tree.count, 2u);
    EXPECT_LT(tree.quantize(1.0, 1.0).x, 0xFFFFFFFFu);
}

TEST(NodeQuadtree, LeafKeepsUpToThreeNodesInAscendingOrder)
{
    const dense2D<double> coords{{0.1, 0.1}, {0.9, 0.1}, {0.1, 0.9}, {0.9, 0.9}};
    node_quadtree tree(coords);
    tree.set_box({{0, 0}}, {{1, 1}});
    ASSERT_TRUE(tree.insert_node(3));
    ASSERT_TRUE(tree.insert_node(0));
    ASSERT_TRUE(tree.insert_node(2));
    EXPECT_EQ(support::columns(tree.cells)[0], (std::vector<unsigned>{3, 0, 2, 3}));
    ASSERT_TRUE(tree.insert_node(1));
    const auto cells = support::columns(tree.cells);
    ASSERT_EQ(cells.size(), 8u);
    EXPECT_EQ(cells[0], (std::vector<unsigned>{4, 5, 6, 7}));
    // Children by 2 * (y bit) + (x bit).
    EXPECT_EQ(cells[4][1], 0u);
    EXPECT_EQ(cells[5][1], 1u);
    EXPECT_EQ(cells[6][1], 2u);
    EXPECT_EQ(cells[7][1], 3u);
}

TEST(NodeQuadtree, FourthNodeAtOnePlaceIsRefusedAtTheEndOfAChainOfCells)
{
    const dense2D<double> coords{{0.3, 0.3}, {0.3, 0.3}, {0.3, 0.3}, {0.3, 0.3}, {0.6, 0.6}};
    node_quadtree tree(coords);
    tree.set_box({{0, 0}}, {{1, 1}});
    EXPECT_TRUE(tree.insert_node(2));
    EXPECT_TRUE(tree.insert_node(3));
    EXPECT_TRUE(tree.insert_node(1));
    EXPECT_FALSE(tree.insert_node(0));
    EXPECT_EQ(tree.count, 3u);
    EXPECT_EQ(tree.cells.cols, 4u + 32 * 4);
    EXPECT_TRUE(tree.insert_node(4));
    EXPECT_EQ(tree.count, 4u);
    std::string text;
    std::vector<unsigned> ids;
    shape(tree, 0, 32, text, ids);
    EXPECT_EQ(ids, (std::vector<unsigned>{1, 2, 3, 4}));
}

TEST(NodeQuadtree, FreeCellsAreUsedAgain)
{
    const dense2D<double> coords{{0.1, 0.1}, {0.9, 0.1}, {0.1, 0.9}, {0.9, 0.9}};
    node_quadtree tree(coords);
    tree.set_box({{0, 0}}, {{1, 1}});
    ASSERT_TRUE(tree.cells.resize(4, 6, 77u));
    ASSERT_TRUE(tree.free_flags.resize(1, 0x30u));
    tree.free_stack.append(5);
    tree.free_stack.append(4);
    tree.free_stack.append(6); // no cell: skipped
    for (unsigned id = 0; id < 4; ++id) ASSERT_TRUE(tree.insert_node(id));
    EXPECT_EQ(support::columns(tree.cells)[0], (std::vector<unsigned>{4, 5, 6, 7}));
    EXPECT_EQ(tree.free_flags[0], 0u);
    EXPECT_EQ(tree.free_stack.size, 0u);
    EXPECT_EQ(support::columns(tree.cells)[4], (std::vector<unsigned>{1, 0, 0, 0}));
}

TEST(NodeQuadtree, CellsAreThoseOfTheirNodes)
{
    for (const unsigned n : {1u, 3u, 4u, 5u, 40u, 150u})
        for (const cloud& c : clouds(n, n + 17)) {
            vec2 low, high;
            bounds(c.coords, low, high);
            const auto ids = shuffled_ids(n, 3);
            node_quadtree tree(c.coords);
            tree.set_box(low, high);
            std::size_t stored = 0;
            for (const unsigned id : ids) stored += tree.insert_node(id);
            std::size_t expected;
            const plain::tree reference = plain_tree(c.coords, low, high, ids, expected);
            EXPECT_EQ(stored, expected) << c.name;
            EXPECT_EQ(tree.count, expected) << c.name;
            std::string text;
            std::vector<unsigned> met;
            shape(tree, 0, 32, text, met);
            EXPECT_EQ(met, reference.traversal) << c.name;
        }
}

TEST(NodeQuadtree, InsertingManyAtOnceGivesTheSameTreeAsOneByOne)
{
    for (const unsigned n : {0u, 3u, 4u, 7u, 100u, 2500u, 9000u})
        for (const cloud& c : clouds(n, n + 5)) {
            if (n == 0) continue;
            vec2 low, high;
            bounds(c.coords, low, high);
            const auto ids = shuffled_ids(n, n);
            node_quadtree one_by_one(c.coords);
            one_by_one.set_box(low, high);
            for (const unsigned id : ids) (void)one_by_one.insert_node(id);
            node_quadtree at_once(c.coords);
            at_once.set_box(low, high);
            EXPECT_EQ(at_once.insert_nodes(ids), one_by_one.count) << c.name << " " << n;
            EXPECT_EQ(at_once.count, one_by_one.count);
            EXPECT_EQ(at_once.cells.cols, one_by_one.cells.cols) << c.name << " " << n;
            std::string expected, got;
            std::vector<unsigned> met;
            shape(one_by_one, 0, 32, expected, met);
            shape(at_once, 0, 32, got, met);
            EXPECT_EQ(got, expected) << c.name << " " << n;
        }
}

TEST(NodeQuadtree, InsertingManyIntoATreeWithNodesAddsToThem)
{
    for (const cloud& c : clouds(600, 3)) {
        vec2 low, high;
        bounds(c.coords, low, high);
        const auto ids = shuffled_ids(600, 1);
        node_quadtree tree(c.coords);
        tree.set_box(low, high);
        dense1D<unsigned, 8> part = ids;
        part.size = 300;
        (void)tree.insert_nodes(part);
        part.offset += 300;
        (void)tree.insert_nodes(part);
        node_quadtree one_by_one(c.coords);
        one_by_one.set_box(low, high);
        for (const unsigned id : ids) (void)one_by_one.insert_node(id);
        EXPECT_EQ(tree.count, one_by_one.count) << c.name;
        std::string expected, got;
        std::vector<unsigned> met;
        shape(one_by_one, 0, 32, expected, met);
        shape(tree, 0, 32, got, met);
        EXPECT_EQ(got, expected) << c.name;
        // Descents that begin below the root still end in the right leaves.
        for (const vec2& p : probes(c.coords, low, high, 1)) {
            unsigned found;
            tree.approximate_nodes(&p, 1, ids, &found);
            ASSERT_EQ(found, one_by_one.approximate_node(p, ids)) << c.name;
        }
    }
}

TEST(NodeQuadtree, BlocksOfPointsFindWhatSinglePointsFind)
{
    for (const unsigned n : {1u, 5u, 20u, 300u, 2000u})
        for (const cloud& c : clouds(n, n)) {
            vec2 low, high;
            bounds(c.coords, low, high);
            node_quadtree tree(c.coords);
            tree.set_box(low, high);
            (void)tree.insert_nodes(all_ids(n));
            dense1D<unsigned, 8> filter(n, 0u);
            for (const unsigned kept : {1u, 4u, 700u}) {
                for (unsigned id = 0; id < n; ++id)
                    filter[id] = id % kept == kept / 2 ? id : UNSET_ID;
                const auto points = probes(c.coords, low, high, 2);
                for (std::size_t first = 0; first < points.size();) {
                    const unsigned block = static_cast<unsigned>(std::min<std::size_t>(
                        node_quadtree::BLOCK - first % 3, points.size() - first));
                    unsigned found[node_quadtree::BLOCK];
                    tree.approximate_nodes(&points[first], block, filter, found);
                    for (unsigned i = 0; i < block; ++i)
                        ASSERT_EQ(found[i], tree.approximate_node(points[first + i], filter))
                            << c.name << ", " << n << " nodes, point " << first + i;
                    first += block;
                }
            }
        }
}

TEST(NodeQuadtree, InsertingManySurvivesEveryRefusedAllocation)
{
    const cloud c = clouds(60, 2)[0];
    vec2 low, high;
    bounds(c.coords, low, high);
    const auto ids = all_ids(60);
    const std::size_t refusals =
        support::each_refused_allocation([&](auto armed, const auto& told) {
            node_quadtree tree(c.coords);
            tree.set_box(low, high);
            std::size_t stored = 0;
            (void)armed([&] { stored = tree.insert_nodes(ids); });
            EXPECT_EQ(stored, tree.count) << told;
            EXPECT_LE(stored, 60u) << told;
            std::string text;
            std::vector<unsigned> met;
            shape(tree, 0, 32, text, met);
            EXPECT_EQ(met.size(), stored) << told;
        });
    EXPECT_GE(refusals, 3u);
}

TEST(NodeQuadtree, WithoutStorageForCellsNothingIsStored)
{
    const dense2D<double> coords{{0.5, 0.5}};
    node_quadtree tree(coords);
    {
        const support::failing_allocation none(0, support::failure::for_good);
        tree.set_box({{0, 0}}, {{1, 1}});
    }
    EXPECT_FALSE(tree.insert_node(0));
    EXPECT_EQ(tree.insert_nodes(all_ids(1)), 0u);
    EXPECT_EQ(tree.approximate_node({{0.5, 0.5}}, all_ids(1)), UNSET_ID);
}

TEST(NodeQuadtree, EmptyTreeFindsNothing)
{
    const dense2D<double> coords{{0.5, 0.5}};
    node_quadtree tree(coords);
    tree.set_box({{0, 0}}, {{1, 1}});
    double distance2 = 9.0;
    EXPECT_EQ(tree.approximate_node({{0.5, 0.5}}, all_ids(1)), UNSET_ID);
    EXPECT_EQ(tree.nearest_node({{0.5, 0.5}}, distance2, all_ids(1)), UNSET_ID);
    EXPECT_EQ(distance2, 9.0);
}

TEST(NodeQuadtree, SearchesAgreeWithBruteForce)
{
    for (const unsigned n : {1u, 2u, 4u, 13u, 80u, 200u})
        for (const unsigned seed : {1u, 2u})
            for (const cloud& c : clouds(n, seed)) {
                vec2 low, high;
                bounds(c.coords, low, high);
                const auto ids = shuffled_ids(n, seed);
                node_quadtree tree(c.coords);
                tree.set_box(low, high);
                (void)tree.insert_nodes(ids);
                std::size_t stored;
                const plain::tree reference = plain_tree(c.coords, low, high, ids, stored);
                dense1D<unsigned, 8> filter(n, 0u);
                for (const unsigned kept : {1u, 3u, 20u, 1000u}) {
                    // Every `kept`-th node is a candidate.
                    for (unsigned id = 0; id < n; ++id)
                        filter[id] = id % kept == kept / 2 ? id : UNSET_ID;
                    for (const vec2& p : probes(c.coords, low, high, seed)) {
                        const plain::point q{p[0], p[1]};
                        ASSERT_EQ(tree.approximate_node(p, filter),
                                  reference.approximate(q, filter))
                            << c.name << ", " << n << " nodes, one in " << kept << ", at " << p[0]
                            << " " << p[1];
                        double distance2 = node_quadtree::LARGEST;
                        double expected = node_quadtree::LARGEST;
                        ASSERT_EQ(tree.nearest_node(p, distance2, filter),
                                  reference.nearest(q, expected, filter))
                            << c.name << ", " << n << " nodes, one in " << kept << ", at " << p[0]
                            << " " << p[1];
                        ASSERT_EQ(distance2, expected) << c.name;
                    }
                }
            }
}

TEST(NodeQuadtree, NearestNodeBeatsTheGivenDistanceOrReportsNone)
{
    const dense2D<double> coords{{0.0, 0.0}, {1.0, 0.0}, {1.0, 1.0}, {0.0, 1.0}, {0.5, 0.75}};
    node_quadtree tree(coords);
    tree.set_box({{0, 0}}, {{1, 1}});
    ASSERT_EQ(tree.insert_nodes(all_ids(5)), 5u);
    double distance2 = 0.0625;
    EXPECT_EQ(tree.nearest_node({{0.5, 0.5}}, distance2, all_ids(5)), UNSET_ID);
    EXPECT_EQ(distance2, 0.0625);
    distance2 = 0.0626;
    EXPECT_EQ(tree.nearest_node({{0.5, 0.5}}, distance2, all_ids(5)), 4u);
    EXPECT_EQ(distance2, 0.0625);
}

TEST(NodeQuadtree, OfNodesAtEqualDistanceTheFirstMetStays)
{
    // One leaf: the lower ID.
    const dense2D<double> pair{{1.0, 0.0}, {0.0, 0.0}};
    node_quadtree leaf(pair);
    leaf.set_box({{0, -1}}, {{1, 1}});
    ASSERT_EQ(leaf.insert_nodes(all_ids(2)), 2u);
    EXPECT_EQ(leaf.approximate_node({{0.5, 0.0}}, all_ids(2)), 0u);

    // Four leaves with one candidate each, and a point in an empty corner of none: the lower child
    // index of the whole traversal, unless the leaf of the point has one.
    const dense2D<double> square{{3.0, 3.0}, {1.0, 3.0}, {3.0, 1.0}, {1.0, 1.0}};
    node_quadtree cells(square);
    cells.set_box({{0, 0}}, {{4, 4}});
    ASSERT_EQ(cells.insert_nodes(all_ids(4)), 4u);
    double distance2 = 100.0;
    EXPECT_EQ(cells.nearest_node({{1.999, 2.001}}, distance2, all_ids(4)), 1u);
    dense1D<unsigned, 8> without_own{0, UNSET_ID, 0, UNSET_ID};
    distance2 = 100.0;
    EXPECT_EQ(cells.nearest_node({{1.0, 3.0}}, distance2, without_own), 0u);
    distance2 = 100.0;
    without_own = {0, UNSET_ID, 0, 0};
    // The root is a hair larger than the box: the middle truncates into the lower left cell.
    EXPECT_EQ(cells.nearest_node({{2.0, 2.0}}, distance2, without_own), 3u)
        << "the leaf of the point comes first";
    without_own = {UNSET_ID, 0, 0, UNSET_ID};
    distance2 = 100.0;
    EXPECT_EQ(cells.nearest_node({{2.0, 2.0}}, distance2, without_own), 2u)
        << "then the lower child";
}

TEST(NodeQuadtree, CellMeetsTheClosedBox)
{
    const auto meets = node_quadtree::cell_meets_box;
    EXPECT_TRUE(meets({4, 4}, 2, {8, 8}, {9, 9}));
    EXPECT_FALSE(meets({4, 4}, 2, {9, 8}, {9, 9}));
    EXPECT_TRUE(meets({4, 4}, 2, {0, 0}, {4, 4}));
    EXPECT_FALSE(meets({4, 4}, 2, {0, 0}, {4, 3}));
    EXPECT_TRUE(meets({0x80000000u, 0}, 31, {0xFFFFFFFFu, 7}, {0xFFFFFFFFu, 7}));
    EXPECT_TRUE(meets({0, 0}, 32, {0xFFFFFFFFu, 0xFFFFFFFFu}, {0xFFFFFFFFu, 0xFFFFFFFFu}));
    EXPECT_TRUE(meets({0xFFFFFFFFu, 5}, 0, {0xFFFFFFFFu, 6}, {0xFFFFFFFFu, 6}));
}

TEST(NodeQuadtree, SearchesAllocateNothing)
{
    const cloud c = clouds(3000, 4)[0];
    vec2 low, high;
    bounds(c.coords, low, high);
    node_quadtree tree(c.coords);
    tree.set_box(low, high);
    (void)tree.insert_nodes(all_ids(3000));
    const auto filter = all_ids(3000);
    const std::size_t before = support::allocations();
    for (const vec2& p : probes(c.coords, low, high, 4)) {
        double distance2 = node_quadtree::LARGEST;
        (void)tree.approximate_node(p, filter);
        (void)tree.nearest_node(p, distance2, filter);
    }
    EXPECT_EQ(support::allocations(), before);
}
