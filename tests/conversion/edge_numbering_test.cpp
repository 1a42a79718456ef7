#include "conversion/edge_numbering.h"

#include "conversion/die.h"
#include "conversion/edge_nodes.h"
#include "support/allocation.h"
#include "support/matrices.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>

using namespace vorel;
using tessalo2d::edge_numbering;
using tessalo2d::edge_run;

namespace {

const dense2D<unsigned> NONE;

/// What a numbering has to answer, in the plainest way.
class plain_numbering {
public:
    plain_numbering(unsigned nodes, unsigned edge_nodes, const dense2D<unsigned>& prepared)
        : next(nodes), step(edge_nodes)
    {
        for (std::size_t j = 0; j < prepared.cols; ++j) {
            const unsigned a = prepared(0, j);
            known.insert({std::minmax(a, prepared(1, j)), {0, a}});
            known[std::minmax(a, prepared(1, j))].first = prepared(2, j);
        }
    }

    edge_run meet(unsigned from, unsigned to)
    {
        const auto [at, is_new] = known.insert({std::minmax(from, to), {next, from}});
        if (is_new) next += step;
        return {at->second.first, at->second.second != from};
    }

    unsigned next;

private:
    unsigned step;
    /// First node and first end of each edge.
    std::map<std::pair<unsigned, unsigned>, std::pair<unsigned, unsigned>> known;
};

using side = std::pair<unsigned, unsigned>;

void expect_same(edge_numbering& numbering, plain_numbering& plain, const std::vector<side>& sides,
                 const std::string& told)
{
    for (const auto& [from, to] : sides) {
        const edge_run run = numbering.meet(from, to);
        const edge_run expected = plain.meet(from, to);
        ASSERT_EQ(run.first, expected.first) << told << " edge " << from << "-" << to;
        ASSERT_EQ(run.reversed, expected.reversed) << told << " edge " << from << "-" << to;
        ASSERT_EQ(numbering.next_id(), plain.next) << told;
    }
    EXPECT_FALSE(numbering.any_refused()) << told;
}

std::vector<side> random_sides(std::size_t count, unsigned nodes, support::die& draw)
{
    std::vector<side> sides(count);
    for (side& s : sides) s = {draw(nodes), draw(nodes)};
    return sides;
}

dense2D<unsigned> random_edges(std::size_t count, unsigned nodes, support::die& draw)
{
    dense2D<unsigned> edges(3, count);
    for (std::size_t j = 0; j < count; ++j)
        for (std::size_t i = 0; i < 3; ++i) edges(i, j) = draw(nodes);
    return edges;
}

} // namespace

TEST(EdgeNumbering, NumbersInOrderOfMeetingAndKeepsTheFirstDirection)
{
    edge_numbering numbering(100, 2, 8, 3, NONE);
    EXPECT_EQ(numbering.meet(7, 3).first, 100u);
    EXPECT_EQ(numbering.meet(3, 8).first, 103u);
    const edge_run back = numbering.meet(3, 7);
    EXPECT_EQ(back.first, 100u);
    EXPECT_TRUE(back.reversed);
    EXPECT_FALSE(numbering.meet(7, 3).reversed);
    EXPECT_EQ(numbering.next_id(), 106u);
}

TEST(EdgeNumbering, EqualsAMapOnRandomSides)
{
    for (unsigned seed = 1; seed <= 30; ++seed) {
        support::die draw(seed);
        const unsigned nodes = 1 + draw(300);
        const std::size_t count = 4 * (1 + draw(2000));
        const unsigned step = draw(5);
        const dense2D<unsigned> prepared = random_edges(draw(50), nodes, draw);
        edge_numbering numbering(nodes, count / 4, count, step, prepared);
        plain_numbering plain(nodes, step, prepared);
        expect_same(numbering, plain, random_sides(count, nodes, draw),
                    "seed " + std::to_string(seed));
    }
}

TEST(EdgeNumbering, EqualsAMapWhereListsAreFullAtBothEnds)
{
    // Every pair of 200 nodes: the lists are soon full, the table has most.
    for (const bool with_prepared : {false, true}) {
        support::die draw(7);
        constexpr unsigned NODES = 200;
        std::vector<side> sides;
        for (unsigned a = 0; a < NODES; ++a)
            for (unsigned b = 0; b <= a; ++b) {
                sides.push_back({a, b});
                sides.push_back({b, a});
            }
        std::shuffle(sides.begin(), sides.end(), draw.engine);
        const dense2D<unsigned> prepared =
            with_prepared ? random_edges(15000, NODES, draw) : dense2D<unsigned>();
        edge_numbering numbering(NODES, sides.size() / 4, sides.size(), 2, prepared);
        plain_numbering plain(NODES, 2, prepared);
        expect_same(numbering, plain, sides, "all pairs");
    }
}

TEST(EdgeNumbering, EqualsAMapAroundAHub)
{
    for (const unsigned hub : {0u, 500u, 999u}) {
        std::vector<side> sides;
        for (unsigned round = 0; round < 2; ++round)
            for (unsigned i = 0; i < 1000; ++i)
                sides.push_back(round ? side(i, hub) : side(hub, i));
        edge_numbering numbering(1000, sides.size() / 4, sides.size(), 1, NONE);
        plain_numbering plain(1000, 1, NONE);
        expect_same(numbering, plain, sides, "hub " + std::to_string(hub));
    }
}

TEST(EdgeNumbering, AFewElementsOfManyNodesAskForNoWordANode)
{
    for (const unsigned nodes : {10000u, 4000000000u}) {
        const dense2D<unsigned> prepared{{nodes - 1, 0, 5}};
        const std::size_t before = support::allocations();
        edge_numbering numbering(nodes, 1, 4, 1, prepared);
        // The first buckets of the table.
        EXPECT_EQ(support::allocations() - before, 1u);
        EXPECT_EQ(numbering.meet(0, nodes - 1).first, 5u);
        EXPECT_EQ(numbering.meet(1, nodes - 1).first, nodes);
        EXPECT_TRUE(numbering.meet(nodes - 1, 1).reversed);
    }
}

TEST(EdgeNumbering, EqualsAMapWithTheTableAlone)
{
    for (unsigned seed = 1; seed <= 10; ++seed) {
        support::die draw(seed);
        const unsigned nodes = 1 + draw(200);
        const std::size_t count = 4 * (50 + draw(500));
        const dense2D<unsigned> prepared = random_edges(draw(50), nodes, draw);
        support::failing_allocation refuse(0);
        edge_numbering numbering(nodes, count / 4, count, 3, prepared);
        EXPECT_TRUE(refuse.fired());
        plain_numbering plain(nodes, 3, prepared);
        expect_same(numbering, plain, random_sides(count, nodes, draw),
                    "seed " + std::to_string(seed));
    }
}

TEST(EdgeNumbering, ARefusedEdgeHasNoNodesUntilALaterMeetingSucceeds)
{
    std::optional<support::failing_allocation> refuse;
    refuse.emplace(0, support::failure::for_good);
    edge_numbering numbering(10, 1, 4, 2, {{3, 7, 1}});
    EXPECT_EQ(numbering.meet(3, 4).first, UNSET_ID);
    EXPECT_TRUE(numbering.any_refused());
    EXPECT_EQ(numbering.find_refused(3, 4).first, UNSET_ID);
    refuse.reset();
    EXPECT_EQ(numbering.meet(4, 3).first, 10u);
    EXPECT_EQ(numbering.meet(5, 6).first, 12u);
    const edge_run found = numbering.find_refused(3, 4);
    EXPECT_EQ(found.first, 10u);
    EXPECT_TRUE(found.reversed);
    EXPECT_EQ(numbering.find_refused(6, 6).first, UNSET_ID);
}

TEST(EdgeNumbering, APreparedEdgeWithoutStorageChangesNoOther)
{
    // 23 buckets and 11 more slots: the prepared edges fill them, all in one chain, and the next
    // one finds no room. IDs 23 apart share a bucket with each other.
    dense2D<unsigned> prepared(3, 46);
    for (unsigned j = 0; j < prepared.cols; ++j) {
        prepared(0, j) = j;
        prepared(1, j) = 1000;
        prepared(2, j) = j;
    }
    std::optional<support::failing_allocation> refuse;
    refuse.emplace(1, support::failure::for_good);
    edge_numbering numbering(4000000000u, 1, 4, 1, prepared);
    ASSERT_TRUE(refuse->fired());
    for (unsigned j = 0; j < prepared.cols; ++j) {
        const unsigned first = numbering.find_refused(1000, j).first;
        EXPECT_TRUE(first == j || first == UNSET_ID) << j;
    }
    // Nor does a new one take the nodes of another.
    std::set<unsigned> given;
    for (unsigned j = 100; j < 200; ++j) {
        const unsigned first = numbering.meet(j, 1000).first;
        EXPECT_TRUE(first == UNSET_ID || (first >= 4000000000u && given.insert(first).second)) << j;
    }
}

TEST(EdgeNodes, RunOutOfIDsIsReported)
{
    const dense2D<unsigned> connect{{0, 1, 2}};
    for (const std::size_t room : {2u, 3u, 4u}) {
        const std::size_t nodes = UNSET_ID - room;
        edge_numbering numbering(nodes, 1, 3, 1, NONE);
        dense2D<unsigned> result(6, 1, 7u);
        const tessalo2d::element_nodes added{1, 0, 0};
        EXPECT_EQ(number_edge_nodes(numbering, connect, added, result), room >= 3) << room;
        if (room != 3) continue;
        EXPECT_EQ(
            support::columns(result),
            support::columns<unsigned>({{0, 1, 2, UNSET_ID - 3, UNSET_ID - 2, UNSET_ID - 1}}));
    }
}

TEST(EdgeNodes, RunOutOfIDsIsSeenBeforeARunIsWritten)
{
    // An element may have billions of nodes.
    const dense2D<unsigned> connect{{0, 1, 2}};
    edge_numbering numbering(UNSET_ID - 5, 1, 3, 2, NONE);
    dense2D<unsigned> result(9, 1, 7u);
    EXPECT_FALSE(number_edge_nodes(numbering, connect, {2, 0, 0}, result));
    EXPECT_EQ(support::columns(result), support::columns<unsigned>({{0, 1, 2, 7, 7, 7, 7, 7, 7}}));
}

TEST(EdgeNodes, AnEdgeThatOneElementWasRefusedGetsTheNodesOfTheNext)
{
    const dense2D<unsigned> first{{2, 0, 1}};
    const dense2D<unsigned> second{{1, 0, 3}};
    const dense2D<unsigned> both{{2, 0, 1}, {1, 0, 3}};
    const tessalo2d::element_nodes added{2, 0, 0};
    dense2D<double> coords{{0, 0}, {3, 0}, {0, 3}, {3, 3}};
    dense2D<unsigned> result(9, 2);
    dense2D<unsigned> result_of_first = result;
    dense2D<unsigned> result_of_second = result;
    ASSERT_TRUE(result_of_first.resize(9, 1) && result_of_second.resize(9, 1));
    result_of_second.offset += 9;

    std::optional<support::failing_allocation> refuse;
    refuse.emplace(0, support::failure::for_good);
    edge_numbering numbering(4, 2, 6, 2, NONE);
    ASSERT_TRUE(number_edge_nodes(numbering, first, added, result_of_first));
    refuse.reset();
    ASSERT_TRUE(number_edge_nodes(numbering, second, added, result_of_second));
    ASSERT_EQ(numbering.next_id(), 10u);
    ASSERT_TRUE(numbering.any_refused());

    ASSERT_TRUE(coords.resize(2, 10));
    place_edge_nodes(coords, both, added, result, 4, 10, dense1D<double, 8>());
    fill_refused_edges(numbering, both, added, result);
    constexpr unsigned U = UNSET_ID;
    EXPECT_EQ(support::columns(result), support::columns<unsigned>({{2, 0, 1, 9, 8, U, U, U, U},
                                                                    {1, 0, 3, 4, 5, 6, 7, 8, 9}}));
    // The edge runs from 1 to 0, as the element has it that got it numbered.
    EXPECT_EQ(support::columns(coords)[8], (std::vector<double>{3 + 1.0 / 3.0 * -3, 0}));
}
