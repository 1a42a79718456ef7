#include "support/matrices.h"
#include "support/meshes.h"
#include "support/topology.h"

using namespace vorel;
using support::mesh;
using support::neighbors_of;

namespace {

constexpr unsigned U = UNSET_ID;

std::vector<mesh> meshes()
{
    std::vector<mesh> all{support::grid_T3(5, 4), support::grid_Q4(5, 4),
                          support::grid_mixed(5, 4)};
    for (mesh m : {support::grid_T3(3, 3), support::grid_mixed(6, 3)}) {
        support::shuffle(m, 4);
        all.push_back(m);
    }
    return all;
}

unsigned corners(const dense2D<unsigned>& connect, std::size_t e)
{
    return connect.rows == 4 && connect(3, e) != U ? 4 : 3;
}

} // namespace

TEST(NeighborsOf, AreSymmetric)
{
    for (const mesh& m : meshes()) {
        const dense2D<unsigned> neighbors = neighbors_of(m.connect);
        ASSERT_EQ(neighbors.rows, m.connect.rows);
        ASSERT_EQ(neighbors.cols, m.connect.cols);
        for (std::size_t e = 0; e < neighbors.cols; ++e)
            for (std::size_t k = 0; k < neighbors.rows; ++k) {
                const unsigned other = neighbors(k, e);
                if (other == U) continue;
                ASSERT_LT(other, neighbors.cols) << m.name;
                bool back = false;
                for (std::size_t l = 0; l < neighbors.rows; ++l)
                    back = back || neighbors(l, other) == e;
                EXPECT_TRUE(back) << m.name << ": " << e << " to " << other;
            }
    }
}

TEST(NeighborsOf, ShareTheNodesOfTheLocalEdge)
{
    for (const mesh& m : meshes()) {
        const dense2D<unsigned> neighbors = neighbors_of(m.connect);
        for (std::size_t e = 0; e < neighbors.cols; ++e) {
            const unsigned n = corners(m.connect, e);
            for (std::size_t k = 0; k < neighbors.rows; ++k) {
                const unsigned other = neighbors(k, e);
                if (k >= n) {
                    EXPECT_EQ(other, U) << "a triangle has no side 3";
                    continue;
                }
                if (other == U) continue;
                // Opposite corner k of a triangle; from corner k on of a quadrilateral.
                const std::size_t ends[] = {n == 3 ? (k + 1) % 3 : k,
                                            n == 3 ? (k + 2) % 3 : (k + 1) % 4};
                for (const std::size_t end : ends) {
                    bool shared = false;
                    for (std::size_t i = 0; i < corners(m.connect, other); ++i)
                        shared = shared || m.connect(i, other) == m.connect(end, e);
                    EXPECT_TRUE(shared) << m.name;
                }
            }
        }
    }
}

TEST(NeighborsOf, OfTwoTrianglesByHand)
{
    // 0 1 2 and 2 3 0 share the edge 0-2: side 1 of the first, side 1 of the second.
    const dense2D<unsigned> neighbors = neighbors_of({{0, 1, 2}, {2, 3, 0}});
    EXPECT_EQ(support::columns(neighbors),
              (std::vector<std::vector<unsigned>>{{U, 1, U}, {U, 0, U}}));
    // A quadrilateral and a triangle on its edge 1-2, which is the triangle's side 2.
    const dense2D<unsigned> mixed = neighbors_of({{0, 1, 2, 3}, {2, 1, 4, U}});
    EXPECT_EQ(support::columns(mixed),
              (std::vector<std::vector<unsigned>>{{U, 1, U, U}, {U, U, 0, U}}));
}

TEST(EdgeCount, FollowsEulersFormula)
{
    for (const mesh& m : meshes())
        EXPECT_EQ(support::edge_count(m.connect), m.coords.cols + m.connect.cols - 1) << m.name;
}

TEST(NodeElementOf, NamesTheFirstElementThatHoldsTheNode)
{
    const dense1D<unsigned> first = support::node_element_of({{0, 1, 2, U}, {2, 1, 4, 3}}, 6);
    EXPECT_EQ(support::elements(first), (std::vector<unsigned>{0, 0, 0, 1, 1, U}));
}
