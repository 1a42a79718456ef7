#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"
#include "support/topology.h"

#include <random>

using namespace vorel;
using support::placed;
using tessalo::check_IDs;

namespace {

using IDs = dense2D<unsigned>;
using run = dense1D<unsigned, 8>;

constexpr unsigned U = UNSET_ID;

const int ALL_CODES[] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12,
                         13, 14, 15, 16, 17, 18, 19, 20, 21, 22, -1, 23, 1000};

/// The rules, entry by entry.
bool typed_by_the_rules(const IDs& m, element_type type, unsigned n)
{
    if (m.rows * m.cols == 0) return true;
    const bool mixed = type == ELEMENT_ANY_FACE && m.rows == 4;
    const bool rows_fit =
        type == ELEMENT_ANY_FACE ? m.rows == 3 || m.rows == 4 : m.rows == element_node_count(type);
    if (!rows_fit) return false;
    for (std::size_t j = 0; j < m.cols; ++j)
        for (std::size_t i = 0; i < m.rows; ++i) {
            if (m(i, j) < n) continue;
            if (mixed && i == 3 && m(i, j) == U) continue;
            return false;
        }
    return true;
}

bool untyped_by_the_rules(const IDs& m, unsigned n)
{
    for (std::size_t j = 0; j < m.cols; ++j)
        for (std::size_t i = 0; i < m.rows; ++i)
            if (m(i, j) >= n && m(i, j) != U) return false;
    return true;
}

} // namespace

TEST(CheckIDs, AnyFaceTakesThreeRowsBelowTheBound)
{
    EXPECT_TRUE(check_IDs(IDs{{0, 1, 2}, {2, 1, 3}}, ELEMENT_ANY_FACE, 4));
    EXPECT_FALSE(check_IDs(IDs{{0, 1, 2}, {2, 1, 3}}, ELEMENT_ANY_FACE, 3));
    EXPECT_FALSE(check_IDs(IDs{{0, 1, U}}, ELEMENT_ANY_FACE, 4));
}

TEST(CheckIDs, AnyFaceTakesFourRowsWithAnUnsetLastOne)
{
    EXPECT_TRUE(check_IDs(IDs{{0, 1, 2, 3}, {0, 1, 2, U}}, ELEMENT_ANY_FACE, 4));
    EXPECT_FALSE(check_IDs(IDs{{0, 1, 2, 4}}, ELEMENT_ANY_FACE, 4));
    for (std::size_t i = 0; i < 3; ++i) {
        IDs m{{0, 1, 2, 3}};
        m(i, 0) = U;
        EXPECT_FALSE(check_IDs(m, ELEMENT_ANY_FACE, 4)) << "unset in row " << i;
    }
}

TEST(CheckIDs, FiveRowsAreNoFace)
{
    EXPECT_FALSE(check_IDs(IDs{{0, 1, 2, 3, 4}}, ELEMENT_ANY_FACE, 5));
    EXPECT_FALSE(check_IDs(IDs{{0, 1}}, ELEMENT_ANY_FACE, 5));
}

TEST(CheckIDs, ARepeatedCornerIsAValidQuadrilateral)
{
    EXPECT_TRUE(check_IDs(IDs{{0, 1, 2, 2}}, ELEMENT_ANY_FACE, 3));
    EXPECT_TRUE(check_IDs(IDs{{0, 0, 0, U}}, ELEMENT_ANY_FACE, 3)) << "a triangle all the same";
}

TEST(CheckIDs, EachKindTakesItsOwnRowCountOnly)
{
    for (const int code : ALL_CODES)
        for (std::size_t rows = 1; rows <= 28; ++rows) {
            const auto type = static_cast<element_type>(code);
            const bool fits = code == 5 ? rows == 3 || rows == 4 : rows == element_node_count(type);
            EXPECT_EQ(check_IDs(IDs(rows, 3, 1u), type, 2), fits) << code << ", rows " << rows;
        }
}

TEST(CheckIDs, SpecificKindsTakeNoUnsetEntry)
{
    for (const element_type type :
         {ELEMENT_E2, ELEMENT_E3, ELEMENT_T3, ELEMENT_Q4, ELEMENT_T6, ELEMENT_Q8, ELEMENT_Q9}) {
        const std::size_t rows = element_node_count(type);
        for (std::size_t i = 0; i < rows; ++i) {
            IDs m(rows, 2, 0u);
            EXPECT_TRUE(check_IDs(m, type, 1));
            m(i, 1) = U;
            EXPECT_FALSE(check_IDs(m, type, 1)) << type << " row " << i;
            m(i, 1) = 1;
            EXPECT_FALSE(check_IDs(m, type, 1)) << type << " row " << i;
        }
    }
}

TEST(CheckIDs, AnEmptyMatrixIsTrueBeforeAnythingElse)
{
    IDs hollow;
    hollow.cols = 7;
    for (const int code : ALL_CODES) {
        const auto type = static_cast<element_type>(code);
        EXPECT_TRUE(check_IDs(IDs(), type, 0)) << code;
        EXPECT_TRUE(check_IDs(support::without_columns<unsigned>(5), type, 0)) << code;
        EXPECT_TRUE(check_IDs(hollow, type, 0)) << code;
    }
    EXPECT_TRUE(check_IDs(IDs(), 0));
    EXPECT_TRUE(check_IDs(hollow, 0));
    EXPECT_TRUE(check_IDs(run(), 0));
}

TEST(CheckIDs, WithTheLargestBoundOnlyRowsAndPlacesOfUnsetCount)
{
    EXPECT_TRUE(check_IDs(IDs{{0, U - 1, 5, U}}, ELEMENT_ANY_FACE, U));
    EXPECT_FALSE(check_IDs(IDs{{0, U, 5, 1}}, ELEMENT_ANY_FACE, U));
    EXPECT_FALSE(check_IDs(IDs{{0, 1, 2, 3, 4}}, ELEMENT_ANY_FACE, U));
    EXPECT_TRUE(check_IDs(IDs{{0, 1, U - 1}}, ELEMENT_T3, U));
    EXPECT_FALSE(check_IDs(IDs{{0, 1, U}}, ELEMENT_T3, U));
    EXPECT_TRUE(check_IDs(IDs{{U, U - 1}}, U));
    EXPECT_FALSE(check_IDs(run{U}, U));
    EXPECT_TRUE(check_IDs(run{U - 1}, U));
}

TEST(CheckIDs, WithoutNodesNoEntryIsValid)
{
    EXPECT_FALSE(check_IDs(IDs{{0, 0, 0}}, ELEMENT_T3, 0));
    EXPECT_FALSE(check_IDs(IDs{{0, 0, 0, U}}, ELEMENT_ANY_FACE, 0));
    EXPECT_TRUE(check_IDs(IDs{{U, U, U}}, 0));
    EXPECT_FALSE(check_IDs(IDs{{U, U, 0}}, 0));
    EXPECT_FALSE(check_IDs(run{0}, 0));
}

TEST(CheckIDs, NeighborsFullOfUnsetAreValid)
{
    EXPECT_TRUE(check_IDs(IDs(4, 9, U), 9));
    EXPECT_TRUE(check_IDs(IDs(7, 9, U), 0)) << "any row count";
    const support::mesh m = support::grid_mixed(4, 3);
    const unsigned elements = static_cast<unsigned>(m.connect.cols);
    EXPECT_TRUE(check_IDs(support::neighbors_of(m.connect), elements));
    EXPECT_FALSE(check_IDs(support::neighbors_of(m.connect), elements - 1));
}

TEST(CheckIDs, RunIsStrict)
{
    EXPECT_TRUE(check_IDs(run{0, 1, 2}, 3));
    EXPECT_FALSE(check_IDs(run{0, 1, 3}, 3));
    EXPECT_FALSE(check_IDs(run{0, U, 1}, 3));
    EXPECT_TRUE(check_IDs(support::placed_run(run{2, 1}, 9), 3)) << "looks at its elements only";
}

/// A single bad entry anywhere is found, and nothing outside the entries is looked at.
TEST(CheckIDs, FindsTheOnlyBadEntryWhereverItStands)
{
    for (const std::size_t rows : {1u, 2u, 3u, 4u, 5u, 6u, 8u, 9u})
        for (const std::size_t cols : {1u, 2u, 3u, 5u, 8u, 17u, 40u})
            for (const std::size_t gap : {0u, 1u, 3u}) {
                placed<unsigned> p(IDs(rows, cols, 7u), 1 + gap, gap);
                IDs& m = p.view;
                const element_type kinds[] = {ELEMENT_NONE, ELEMENT_NODE, ELEMENT_E2, ELEMENT_E3,
                                              ELEMENT_Q4};
                const element_type type = rows < 5    ? kinds[rows]
                                          : rows == 6 ? ELEMENT_T6
                                          : rows == 8 ? ELEMENT_Q8
                                          : rows == 9 ? ELEMENT_Q9
                                                      : ELEMENT_PYRAMID5;
                ASSERT_TRUE(check_IDs(m, type, 8));
                ASSERT_TRUE(check_IDs(m, 8));
                const bool face = rows == 3 || rows == 4;
                ASSERT_EQ(check_IDs(m, ELEMENT_ANY_FACE, 8), face);
                for (std::size_t j = 0; j < cols; ++j)
                    for (std::size_t i = 0; i < rows; ++i)
                        for (const unsigned bad : {8u, 0x80000000u, U - 1, U}) {
                            m(i, j) = bad;
                            EXPECT_FALSE(check_IDs(m, type, 8)) << i << ", " << j;
                            EXPECT_EQ(check_IDs(m, 8), bad == U) << i << ", " << j;
                            EXPECT_EQ(check_IDs(m, ELEMENT_ANY_FACE, 8),
                                      rows == 4 && i == 3 && bad == U)
                                << i << ", " << j;
                            m(i, j) = 7;
                        }
                p.expect_gaps_untouched();
            }
}

TEST(CheckIDs, AgreesWithTheRulesOnRandomMatrices)
{
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        std::mt19937 draw(seed);
        const unsigned bounds[] = {0, 1, 5, 1000, 0x7FFFFFFFu, 0x80000000u, 0x80000001u, U - 1, U};
        const unsigned n = bounds[draw() % 9];
        IDs m(draw() % 7, draw() % 30);
        for (std::size_t j = 0; j < m.cols; ++j)
            for (std::size_t i = 0; i < m.rows; ++i) switch (draw() % 60) {
                case 0:
                    m(i, j) = n;
                    break;
                case 1:
                    m(i, j) = U;
                    break;
                case 2:
                    m(i, j) = static_cast<unsigned>(draw());
                    break;
                case 3:
                    m(i, j) = n - 1;
                    break;
                default:
                    m(i, j) = n ? static_cast<unsigned>(draw()) % n : 0;
                }
        if (m.rows == 4 && draw() % 2)
            for (std::size_t j = 0; j < m.cols; j += 2) m(3, j) = U;
        const placed<unsigned> p(m, draw() % 5, draw() % 4);
        for (const int code : {3, 4, 5, 6, 7, 8, 0, -1}) {
            const auto type = static_cast<element_type>(code);
            const bool expected = typed_by_the_rules(m, type, n);
            EXPECT_EQ(check_IDs(m, type, n), expected) << "seed " << seed << " code " << code;
            EXPECT_EQ(check_IDs(p.view, type, n), expected) << "seed " << seed << " code " << code;
        }
        const bool expected = untyped_by_the_rules(m, n);
        EXPECT_EQ(check_IDs(m, n), expected) << "seed " << seed;
        EXPECT_EQ(check_IDs(p.view, n), expected) << "seed " << seed;
        if (m.is_empty()) continue;
        bool strict = true;
        const run v = m.as_vector();
        for (const unsigned id : v) strict = strict && id < n;
        EXPECT_EQ(check_IDs(v, n), strict) << "seed " << seed;
    }
}

TEST(CheckIDs, NeverAllocates)
{
    const support::mesh m = support::grid_mixed(5, 5);
    const std::size_t refusals =
        support::each_refused_allocation([&](const auto& armed, const auto& told) {
            bool valid = false;
            armed([&] { valid = check_IDs(m.connect, ELEMENT_ANY_FACE, 36); });
            EXPECT_TRUE(valid) << told;
        });
    EXPECT_EQ(refusals, 0u);
}
