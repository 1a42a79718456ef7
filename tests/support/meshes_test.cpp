#include "support/matrices.h"
#include "support/meshes.h"

#include <array>
#include <set>

using namespace vorel;
using support::mesh;

namespace {

constexpr unsigned NX = 4;
constexpr unsigned NY = 3;

std::vector<mesh> grids(std::size_t dimension)
{
    return {support::grid_T3(NX, NY, dimension),       support::grid_Q4(NX, NY, dimension),
            support::grid_mixed(NX, NY, dimension),    support::grid_T6(NX, NY, dimension),
            support::grid_Q8(NX, NY, dimension),       support::grid_Q8(NX, NY, dimension, true),
            support::grid_Q9(NX, NY, dimension, true), support::grid_Q9(NX, NY, dimension)};
}

/// Number of corners of a column, by the storage form.
unsigned corners(const dense2D<unsigned>& connect, std::size_t e)
{
    switch (connect.rows) {
    case 3:
    case 6:
        return 3;
    case 4:
        return connect(3, e) == UNSET_ID ? 3 : 4;
    default:
        return connect(6, e) == UNSET_ID ? 3 : 4;
    }
}

/// Signed area by the corners, as the shoelace formula has it.
double shoelace(const mesh& m, std::size_t e)
{
    const unsigned n = corners(m.connect, e);
    double twice = 0.0;
    for (unsigned k = 0; k < n; ++k) {
        const double* const p = m.coords.column(m.connect(k, e));
        const double* const q = m.coords.column(m.connect((k + 1) % n, e));
        twice += p[0] * q[1] - p[1] * q[0];
    }
    return twice / 2.0;
}

} // namespace

TEST(MeshMakers, IDsAreValidAndNodesUsed)
{
    for (const std::size_t dimension : {2u, 3u})
        for (const mesh& m : grids(dimension)) {
            EXPECT_EQ(m.coords.rows, dimension) << m.name;
            const auto nodes = static_cast<unsigned>(m.coords.cols);
            EXPECT_TRUE(tessalo::check_IDs(m.connect, nodes)) << m.name;
            std::set<unsigned> used;
            for (std::size_t e = 0; e < m.connect.cols; ++e)
                for (std::size_t i = 0; i < m.connect.rows; ++i) used.insert(m.connect(i, e));
            used.erase(UNSET_ID);
            EXPECT_EQ(used.size(), m.coords.cols) << m.name;
        }
}

TEST(MeshMakers, ElementsAreCounterclockwiseAndFillTheGrid)
{
    for (const mesh& m : grids(2)) {
        double sum = 0.0;
        for (std::size_t e = 0; e < m.connect.cols; ++e) {
            EXPECT_GT(shoelace(m, e), 0.0) << m.name << " element " << e;
            sum += shoelace(m, e);
        }
        EXPECT_EQ(sum, double(NX) * NY) << m.name;
    }
}

TEST(MeshMakers, MixedFormsHoldBothKinds)
{
    for (const mesh& m : {support::grid_mixed(NX, NY), support::grid_Q8(NX, NY, 2, true),
                          support::grid_Q9(NX, NY, 2, true)}) {
        std::set<unsigned> kinds;
        for (std::size_t e = 0; e < m.connect.cols; ++e) kinds.insert(corners(m.connect, e));
        EXPECT_EQ(kinds.size(), 2u) << m.name;
    }
}

TEST(MeshMakers, MidnodesStandBetweenTheirEnds)
{
    // Pairs of rows whose middle is the row from `first` on.
    const std::array<std::array<int, 2>, 3> triangle{{{1, 2}, {2, 0}, {0, 1}}};
    const std::array<std::array<int, 2>, 4> quadrilateral{{{0, 1}, {1, 2}, {2, 3}, {3, 0}}};
    for (const mesh& m : grids(3)) {
        if (m.connect.rows < 6) continue;
        for (std::size_t e = 0; e < m.connect.cols; ++e) {
            const unsigned n = corners(m.connect, e);
            for (unsigned k = 0; k < n; ++k) {
                const auto& ends = n == 3 ? triangle[k] : quadrilateral[k];
                for (std::size_t i = 0; i < 3; ++i) {
                    const double middle =
                        (m.coords(i, m.connect(static_cast<std::size_t>(ends[0]), e)) +
                         m.coords(i, m.connect(static_cast<std::size_t>(ends[1]), e))) /
                        2.0;
                    EXPECT_EQ(m.coords(i, m.connect(n + k, e)), middle) << m.name;
                }
            }
            for (std::size_t i = n == 3 ? 6 : 9; i < m.connect.rows; ++i)
                EXPECT_EQ(m.connect(i, e), UNSET_ID) << m.name;
        }
    }
}

TEST(Shuffle, KeepsTheMeshButForItsNumbers)
{
    for (mesh m : grids(2)) {
        std::multiset<double> before;
        for (std::size_t e = 0; e < m.connect.cols; ++e) before.insert(shoelace(m, e));
        const auto natural = support::columns(m.connect);
        support::shuffle(m, 5);
        std::multiset<double> after;
        for (std::size_t e = 0; e < m.connect.cols; ++e) after.insert(shoelace(m, e));
        EXPECT_EQ(after, before) << m.name;
        EXPECT_NE(support::columns(m.connect), natural) << m.name;
    }
}

TEST(Jitter, MovesByNoMoreThanTold)
{
    const mesh still = support::grid_T3(NX, NY, 3);
    mesh moved = support::grid_T3(NX, NY, 3);
    support::jitter(moved, 0.25, 9);
    bool any = false;
    for (std::size_t j = 0; j < still.coords.cols; ++j)
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_LE(std::abs(moved.coords(i, j) - still.coords(i, j)), 0.25);
            any = any || moved.coords(i, j) != still.coords(i, j);
        }
    EXPECT_TRUE(any);
}

TEST(Lifted, LiesOnTheSurface)
{
    const mesh m = support::lifted(support::grid_Q4(NX, NY),
                                   [](double x, double y) { return x * x - 3.0 * y; });
    ASSERT_EQ(m.coords.rows, 3u);
    for (std::size_t j = 0; j < m.coords.cols; ++j)
        EXPECT_EQ(m.coords(2, j), m.coords(0, j) * m.coords(0, j) - 3.0 * m.coords(1, j));
}

TEST(AwkwardMeshes, HaveValidIDs)
{
    for (const std::size_t dimension : {2u, 3u})
        for (const mesh& m : support::awkward_meshes(dimension)) {
            EXPECT_EQ(m.coords.rows, dimension) << m.name;
            EXPECT_TRUE(tessalo::check_IDs(m.connect, ELEMENT_ANY_FACE,
                                           static_cast<unsigned>(m.coords.cols)))
                << m.name;
        }
}
