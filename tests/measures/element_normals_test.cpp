// Normals of elements: their directions, lengths and bits, in blocks with and without gaps.
#include "measures/triangle_normal.h"
#include "support/matrices.h"
#include "support/meshes.h"

#include <cmath>

using namespace vorel;
using support::columns;
using tessalo2d::normals;
using tessalo2d::vec3;

namespace {

constexpr unsigned U = UNSET_ID;
using vectors = std::vector<std::vector<double>>;

vectors at_elements(const dense2D<double>& coords, const dense2D<unsigned>& connect, bool unit)
{
    dense2D<double> result{{5, 5, 5, 5}};
    EXPECT_EQ(normals(coords, connect, unit, result), 0);
    return columns(result);
}

double norm(const std::vector<double>& v)
{
    return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
}

} // namespace

TEST(ElementNormals, OfARightTriangleAndAUnitSquareAreTwiceTheirAreas)
{
    const dense2D<double> coords{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    EXPECT_EQ(at_elements(coords, {{0, 1, 3}}, false), (vectors{{0, 0, 1}}));
    EXPECT_EQ(at_elements(coords, {{0, 1, 2, 3}, {0, 3, 1, U}}, false),
              (vectors{{0, 0, 2}, {0, 0, -1}}));
    EXPECT_EQ(at_elements(coords, {{0, 1, 2, 3}, {0, 3, 1, U}}, true),
              (vectors{{0, 0, 1}, {0, 0, -1}}));
}

TEST(ElementNormals, AreUnitVectorsOrZero)
{
    for (unsigned seed = 1; seed <= 5; ++seed) {
        support::mesh m = support::grid_mixed(7, 6, 3, seed);
        support::jitter(m, 0.5, seed);
        const vectors raw = at_elements(m.coords, m.connect, false);
        const vectors unit = at_elements(m.coords, m.connect, true);
        for (std::size_t e = 0; e < raw.size(); ++e) {
            EXPECT_NEAR(norm(unit[e]), 1.0, 1e-15);
            for (std::size_t i = 0; i < 3; ++i)
                EXPECT_NEAR(unit[e][i] * norm(raw[e]), raw[e][i], 1e-14);
        }
    }
    const dense2D<double> line{{0, 0, 0}, {1, 1, 1}, {2, 2, 2}};
    EXPECT_EQ(at_elements(line, {{0, 1, 2}, {0, 0, 0}}, true), (vectors{{0, 0, 0}, {0, 0, 0}}));
    EXPECT_EQ(at_elements(line, {{0, 1, 2, 1}}, true), (vectors{{0, 0, 0}}));
}

TEST(ElementNormals, FollowTheTurnOfTheCorners)
{
    support::mesh m = support::grid_mixed(7, 6, 3, 2);
    support::jitter(m, 0.3, 2);
    dense2D<unsigned> turned = support::copy_of(m.connect);
    for (std::size_t e = 0; e < turned.cols; ++e) std::swap(turned(0, e), turned(2, e));
    const vectors n = at_elements(m.coords, m.connect, false);
    const vectors back = at_elements(m.coords, turned, false);
    for (std::size_t e = 0; e < n.size(); ++e)
        for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(back[e][i], -n[e][i], 1e-14);
}

TEST(ElementNormals, OfAFlatMeshAddUpToTwiceItsArea)
{
    support::mesh m = support::grid_mixed(7, 6, 2, 2);
    support::jitter(m, 0.3, 2);
    double area = 0;
    ASSERT_EQ(tessalo2d::area(m.coords, m.connect, area), 0);
    const support::mesh up = support::lifted(m, [](double, double) { return 4.0; });
    double sum = 0;
    for (const auto& n : at_elements(up.coords, up.connect, false)) sum += n[2];
    EXPECT_NEAR(sum, 2 * area, 1e-12 * area);
}

TEST(ElementNormals, AnElementWithoutACornerItNeedsHasNone)
{
    const dense2D<double> coords{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    for (const bool unit : {false, true}) {
        EXPECT_EQ(at_elements(coords, {{U, 1, 3}, {0, U, 3}, {0, 1, U}, {0, 1, 3}}, unit),
                  (vectors{{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 1}}));
        EXPECT_EQ(at_elements(coords, {{U, 1, 3, 2}, {0, U, 3, U}, {U, U, U, U}}, unit),
                  (vectors{{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}));
    }
}

TEST(ElementNormals, AnElementWithoutACornerLeavesTheOthersOfItsBlockAlone)
{
    const dense2D<double> coords{{0, 0, 0}, {1, 0, 0}, {0, 2, 0}, {0, 0, 3}};
    for (const std::size_t n : {1u, 2u, 63u, 64u, 65u, 127u, 128u, 129u})
        for (const std::size_t hole : {std::size_t(0), n / 2, n - 1}) {
            dense2D<unsigned> connect(3, n);
            vectors expected;
            for (std::size_t j = 0; j < n; ++j) {
                const bool odd = j % 2 != 0;
                connect(0, j) = 0;
                connect(1, j) = odd ? 2 : 1;
                connect(2, j) = odd ? 3 : 2;
                expected.push_back(odd ? std::vector<double>{6, 0, 0}
                                       : std::vector<double>{0, 0, 2});
            }
            connect(1, hole) = U;
            expected[hole] = {0, 0, 0};
            EXPECT_EQ(at_elements(coords, connect, false), expected) << n << ", hole " << hole;
        }
}

TEST(ElementNormals, AreThoseOfEachElementAloneNearOrFarApart)
{
    // Large enough for several blocks, and for nodes that lie far apart in them.
    for (const bool mixed : {false, true})
        for (const bool shuffled : {false, true})
            for (const bool holes : {false, true}) {
                support::mesh m =
                    mixed ? support::grid_mixed(40, 25, 3) : support::grid_T3(40, 25, 3);
                support::jitter(m, 0.4, 3);
                if (shuffled) support::shuffle(m, 4);
                if (holes) m.connect(1, m.connect.cols / 2) = m.connect(2, m.connect.cols - 1) = U;
                const vectors raw = at_elements(m.coords, m.connect, false);
                const vectors unit = at_elements(m.coords, m.connect, true);
                ASSERT_EQ(raw.size(), m.connect.cols);
                for (std::size_t e = 0; e < raw.size(); ++e) {
                    const unsigned* const c = m.connect.column(e);
                    vec3 n{{0, 0, 0}};
                    if (c[1] != U && c[2] != U)
                        n = mixed && c[3] != U
                                ? tessalo2d::quad_normal(m.coords.column(0), m.coords.ld, c)
                                : tessalo2d::triangle_normal(m.coords.column(0), m.coords.ld, c);
                    const double q = n[0] * n[0] + n[1] * n[1] + n[2] * n[2];
                    const double scale = q == 0 || q == 1 ? 1 : 1 / std::sqrt(q);
                    EXPECT_EQ(raw[e], (std::vector<double>{n[0], n[1], n[2]})) << "element " << e;
                    EXPECT_EQ(unit[e],
                              (std::vector<double>{scale * n[0], scale * n[1], scale * n[2]}))
                        << "element " << e;
                }
            }
}
