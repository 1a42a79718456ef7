#include "conversion/die.h"
#include "conversion/high_order.h"
#include "conversion/reference_high_order.h"
#include "support/matrices.h"
#include "support/meshes.h"
#include "support/topology.h"

#include <algorithm>
#include <cmath>
#include <set>

using namespace vorel;
using support::bits;
using support::columns;
using support::copy_of;
using tessalo2d::convert_worker;

namespace {

constexpr unsigned U = UNSET_ID;

const dense2D<unsigned> NO_EDGES;
const dense1D<double, 8> NO_SIZES;

struct counts {
    unsigned edge;
    unsigned quad;
    unsigned triangle;
};

counts random_counts(support::die& draw)
{
    constexpr unsigned SQUARES[] = {0, 1, 4, 9};
    constexpr unsigned TRIANGLE[] = {0, 1, 3};
    return {1 + draw(4), SQUARES[draw(4)], TRIANGLE[draw(3)]};
}

/// Any corners in any order: edges of many elements, repeated corners, hubs.
support::mesh soup(support::die& draw, std::size_t dimension)
{
    const unsigned nodes = 1 + draw(60);
    const std::size_t elements = 1 + draw(200);
    support::mesh m{"soup", dense2D<double>(dimension, nodes, 0.0),
                    dense2D<unsigned>(3 + draw(2), elements)};
    for (std::size_t e = 0; e < elements; ++e)
        for (std::size_t i = 0; i < m.connect.rows; ++i)
            m.connect(i, e) = i == 3 && draw(2) ? U : draw(nodes);
    support::jitter(m, 5.0, draw.seed());
    return m;
}

/// `spokes` triangles around one node, whose number is the lowest, the highest or between.
support::mesh fan(support::die& draw, unsigned spokes)
{
    support::mesh m{"fan", dense2D<double>(2, spokes + 1, 0.0), dense2D<unsigned>(3, spokes)};
    const unsigned hub = draw(spokes + 1);
    const auto rim = [&](unsigned i) { return (hub + 1 + i % spokes) % (spokes + 1); };
    for (unsigned i = 0; i < spokes; ++i) {
        const unsigned corners[] = {hub, rim(i), rim(i + 1)};
        std::copy(corners, corners + 3, m.connect.column(i));
    }
    support::jitter(m, 5.0, draw.seed());
    return m;
}

support::mesh random_mesh(support::die& draw)
{
    const std::size_t dimension = 2 + draw(2);
    const auto nx = 1 + draw(8);
    const auto ny = 1 + draw(8);
    support::mesh m;
    switch (draw(6)) {
    case 0:
        m = support::grid_T3(nx, ny, dimension);
        break;
    case 1:
        m = support::grid_Q4(nx, ny, dimension);
        break;
    case 2:
        return soup(draw, dimension);
    case 3:
        return fan(draw, 1 + draw(200));
    default:
        m = support::grid_mixed(nx, ny, dimension, draw.seed());
        break;
    }
    support::jitter(m, 0.3, draw.seed());
    if (draw(2)) support::shuffle(m, draw.seed());
    return m;
}

/// Columns on edges of the mesh in both directions, some off it, some with unset entries, some
/// twice.
dense2D<unsigned> random_edges(const support::mesh& m, unsigned edge_nodes, support::die& draw)
{
    const auto nodes = unsigned(m.coords.cols);
    dense2D<unsigned> edges(edge_nodes + 2, draw(30));
    for (std::size_t j = 0; j < edges.cols; ++j) {
        const std::size_t e = draw(m.connect.cols);
        const unsigned from = draw(3);
        for (std::size_t i = 0; i < edges.rows; ++i) edges(i, j) = draw(20) ? draw(nodes) : U;
        if (draw(4)) {
            edges(0, j) = m.connect(from, e);
            edges(1, j) = m.connect((from + 1 + draw(2)) % 3, e);
        }
    }
    return edges;
}

dense1D<double, 8> random_sizes(const support::mesh& m, support::die& draw)
{
    dense1D<double, 8> sizes(m.coords.cols - draw(m.coords.cols / 4 + 1));
    for (double& h : sizes) {
        h = std::exp(std::uniform_real_distribution<double>(-3, 3)(draw.engine));
        if (draw(30) == 0) h = -h;
    }
    return sizes;
}

double area_of(const dense2D<double>& coords, const dense2D<unsigned>& connect)
{
    double sum = 0.0;
    EXPECT_EQ(tessalo2d::area(coords, connect, sum), 0);
    return sum;
}

} // namespace

TEST(HighOrderProperty, EqualsOneTableForAllEdgesBitForBit)
{
    for (unsigned seed = 1; seed <= 400; ++seed) {
        support::die draw(seed);
        const support::mesh m = random_mesh(draw);
        const counts n = random_counts(draw);
        const dense2D<unsigned> edges =
            draw(3) ? random_edges(m, n.edge, draw) : dense2D<unsigned>();
        const dense1D<double, 8> sizes = draw(2) ? random_sizes(m, draw) : dense1D<double, 8>();
        const std::string told = m.name + ", seed " + std::to_string(seed);

        dense2D<double> expected_coords = copy_of(m.coords);
        dense2D<unsigned> expected;
        reference::convert_into_high_order(expected_coords, m.connect, n.edge, n.quad, n.triangle,
                                           expected, edges, sizes);
        dense2D<double> coords = copy_of(m.coords);
        dense2D<unsigned> result;
        ASSERT_EQ(
            convert_worker(coords, m.connect, n.edge, n.quad, n.triangle, result, edges, sizes), 0)
            << told;
        ASSERT_EQ(columns(result), columns(expected)) << told;
        ASSERT_EQ(bits(coords), bits(expected_coords)) << told;
    }
}

TEST(HighOrderProperty, EqualsOneTableOnAwkwardMeshes)
{
    for (const std::size_t dimension : {2u, 3u})
        for (const support::mesh& m : support::awkward_meshes(dimension))
            for (const counts n : {counts{1, 1, 0}, counts{3, 9, 3}}) {
                dense2D<double> expected_coords = copy_of(m.coords);
                dense2D<unsigned> expected;
                reference::convert_into_high_order(expected_coords, m.connect, n.edge, n.quad,
                                                   n.triangle, expected, NO_EDGES, NO_SIZES);
                dense2D<double> coords = copy_of(m.coords);
                dense2D<unsigned> result;
                ASSERT_EQ(convert_worker(coords, m.connect, n.edge, n.quad, n.triangle, result,
                                         NO_EDGES, NO_SIZES),
                          0);
                EXPECT_EQ(columns(result), columns(expected)) << m.name;
                EXPECT_EQ(bits(coords), bits(expected_coords)) << m.name;
            }
}

TEST(HighOrderProperty, WithoutEdgeNodesInteriorIDsRunElementByElement)
{
    for (unsigned seed = 1; seed <= 40; ++seed) {
        support::die draw(seed);
        const support::mesh m = random_mesh(draw);
        counts n = random_counts(draw);
        if (n.quad + n.triangle == 0) n.quad = 4;
        dense2D<double> coords = copy_of(m.coords);
        dense2D<unsigned> result;
        ASSERT_EQ(
            convert_worker(coords, m.connect, 0, n.quad, n.triangle, result, NO_EDGES, NO_SIZES),
            0);
        auto next = unsigned(m.coords.cols);
        for (std::size_t e = 0; e < result.cols; ++e) {
            const bool quad = m.connect.rows == 4 && m.connect(3, e) != U;
            const std::size_t first = quad ? 4 : 3;
            const std::size_t count = quad ? n.quad : n.triangle;
            for (std::size_t i = 0; i < result.rows; ++i)
                ASSERT_EQ(result(i, e), i >= first && i < first + count ? next++ : U)
                    << "seed " << seed << " row " << i << " column " << e;
        }
        ASSERT_EQ(coords.cols, next);
        for (std::size_t j = m.coords.cols; j < next; ++j)
            for (std::size_t i = 0; i < coords.rows; ++i) ASSERT_EQ(coords(i, j), 0.0);
    }
}

TEST(HighOrderProperty, NodesCountAsEdgesAndElementsDo)
{
    for (unsigned seed = 1; seed <= 40; ++seed) {
        support::die draw(seed);
        const support::mesh m = random_mesh(draw);
        const counts n = random_counts(draw);
        dense2D<double> coords = copy_of(m.coords);
        dense2D<unsigned> result;
        ASSERT_EQ(convert_worker(coords, m.connect, n.edge, n.quad, n.triangle, result, NO_EDGES,
                                 NO_SIZES),
                  0);
        const std::size_t triangles = tessalo2d::count_triangles(m.connect);
        EXPECT_EQ(coords.cols, m.coords.cols + n.edge * support::edge_count(m.connect) +
                                   n.triangle * triangles + n.quad * (m.connect.cols - triangles))
            << m.name << ", seed " << seed;
        // Every new node is listed.
        std::set<unsigned> listed;
        for (const auto& column : columns(result)) listed.insert(column.begin(), column.end());
        for (std::size_t id = m.coords.cols; id < coords.cols; ++id)
            EXPECT_EQ(listed.count(unsigned(id)), 1u) << m.name << ", seed " << seed;
    }
}

TEST(HighOrderProperty, EdgeNodesStandAtTheirFractionAndBothSidesListThemInOppositeOrder)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        support::die draw(seed);
        support::mesh m = support::grid_mixed(6, 5, 3, seed);
        support::jitter(m, 0.3, seed);
        support::shuffle(m, seed);
        const counts n = random_counts(draw);
        const dense2D<unsigned> neighbors = support::neighbors_of(m.connect);
        dense2D<double> coords = copy_of(m.coords);
        dense2D<unsigned> result;
        ASSERT_EQ(convert_worker(coords, m.connect, n.edge, n.quad, n.triangle, result, NO_EDGES,
                                 NO_SIZES),
                  0);
        const auto corners = [&](std::size_t e) { return m.connect(3, e) == U ? 3u : 4u; };
        const auto run = [&](std::size_t e, unsigned k) {
            const unsigned* const at = result.column(e) + corners(e) + k * n.edge;
            return std::vector<unsigned>(at, at + n.edge);
        };
        for (std::size_t e = 0; e < m.connect.cols; ++e)
            for (unsigned k = 0; k < corners(e); ++k) {
                const bool quad = corners(e) == 4;
                const unsigned from = m.connect(quad ? k : (k + 1) % 3, e);
                const unsigned to = m.connect(quad ? (k + 1) % 4 : (k + 2) % 3, e);
                const std::vector<unsigned> nodes = run(e, k);
                for (unsigned i = 0; i < n.edge; ++i)
                    for (std::size_t r = 0; r < 3; ++r)
                        ASSERT_NEAR(coords(r, nodes[i]),
                                    coords(r, from) + (coords(r, to) - coords(r, from)) *
                                                          (i + 1.0) / (n.edge + 1.0),
                                    1e-14)
                            << "seed " << seed;
                const unsigned other = neighbors(k, e);
                if (other == U) continue;
                for (unsigned l = 0; l < corners(other); ++l)
                    if (neighbors(l, other) == e) {
                        const std::vector<unsigned> theirs = run(other, l);
                        ASSERT_EQ(nodes, std::vector<unsigned>(theirs.rbegin(), theirs.rend()))
                            << "seed " << seed;
                    }
            }
    }
}

TEST(HighOrderProperty, SplitAtTheNewNodesKeepsAreaAndOrientation)
{
    for (unsigned seed = 1; seed <= 10; ++seed) {
        support::mesh m = support::grid_mixed(6, 5, 2, seed);
        support::jitter(m, 0.2, seed);
        support::shuffle(m, seed);
        dense2D<double> coords = copy_of(m.coords);
        dense2D<unsigned> connect = copy_of(m.connect);
        ASSERT_EQ(tessalo2d::convert_into_quadratic(coords, connect), 0);
        dense2D<unsigned> split;
        ASSERT_EQ(tessalo2d::split_into_linear(connect, split), 0);
        EXPECT_NEAR(area_of(coords, split), area_of(m.coords, m.connect), 1e-12) << "seed " << seed;
        for (const auto& child : columns(split))
            EXPECT_GT(area_of(coords, support::matrix<unsigned>({child})), 0.0) << "seed " << seed;
    }
}

TEST(HighOrderProperty, PlaneEqualsSpaceWithZeroHeight)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        support::die draw(seed);
        support::mesh plane = support::grid_mixed(5, 5, 2, seed);
        support::jitter(plane, 0.3, seed);
        const support::mesh space = support::lifted(plane, [](double, double) { return 0.0; });
        const counts n = random_counts(draw);
        const dense1D<double, 8> sizes = random_sizes(plane, draw);
        dense2D<double> flat = copy_of(plane.coords);
        dense2D<double> high = copy_of(space.coords);
        dense2D<unsigned> in_plane;
        dense2D<unsigned> in_space;
        ASSERT_EQ(convert_worker(flat, plane.connect, n.edge, n.quad, n.triangle, in_plane,
                                 NO_EDGES, sizes),
                  0);
        ASSERT_EQ(convert_worker(high, space.connect, n.edge, n.quad, n.triangle, in_space,
                                 NO_EDGES, sizes),
                  0);
        EXPECT_EQ(columns(in_plane), columns(in_space));
        for (std::size_t j = 0; j < flat.cols; ++j) {
            EXPECT_EQ(support::bits(flat(0, j)), support::bits(high(0, j)));
            EXPECT_EQ(support::bits(flat(1, j)), support::bits(high(1, j)));
            EXPECT_EQ(high(2, j), 0.0);
        }
    }
}
