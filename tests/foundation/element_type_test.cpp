#include <vorel/element_type.h>

#include <gtest/gtest.h>

#include <limits>
#include <type_traits>

using namespace vorel;

TEST(ElementType, IsA32BitInteger)
{
    EXPECT_TRUE((std::is_same_v<std::underlying_type_t<element_type>, int>));
    EXPECT_EQ(UNSET_ID, 0xFFFFFFFFu);
    EXPECT_TRUE((std::is_same_v<decltype(UNSET_ID), const unsigned>));
}

TEST(ElementType, CodesAndNodeCountsOfAllKinds)
{
    const struct {
        element_type type;
        int code;
        unsigned nodes;
    } table[] = {
        {ELEMENT_NONE, 0, 0},        {ELEMENT_NODE, 1, 1},        {ELEMENT_ANY_EDGE, 2, 2},
        {ELEMENT_E2, 3, 2},          {ELEMENT_E3, 4, 3},          {ELEMENT_ANY_FACE, 5, 4},
        {ELEMENT_T3, 6, 3},          {ELEMENT_Q4, 7, 4},          {ELEMENT_T6, 8, 6},
        {ELEMENT_Q8, 9, 8},          {ELEMENT_Q9, 10, 9},         {ELEMENT_ANY_SOLID, 11, 8},
        {ELEMENT_TETRA4, 12, 4},     {ELEMENT_TETRA10, 13, 10},   {ELEMENT_PYRAMID5, 14, 5},
        {ELEMENT_PYRAMID13, 15, 13}, {ELEMENT_PYRAMID14, 16, 14}, {ELEMENT_WEDGE6, 17, 6},
        {ELEMENT_WEDGE15, 18, 15},   {ELEMENT_WEDGE18, 19, 18},   {ELEMENT_HEXA8, 20, 8},
        {ELEMENT_HEXA20, 21, 20},    {ELEMENT_HEXA27, 22, 27}};
    for (const auto& row : table) {
        EXPECT_EQ(static_cast<int>(row.type), row.code);
        EXPECT_EQ(element_node_count(row.type), row.nodes) << "code " << row.code;
    }
}

TEST(ElementType, MixedKindsAnswerTheirLargestMember)
{
    EXPECT_EQ(element_node_count(ELEMENT_ANY_FACE), 4u);
    EXPECT_EQ(element_node_count(ELEMENT_ANY_SOLID), 8u);
}

TEST(ElementType, BothLineKindsAnswerTwo)
{
    EXPECT_EQ(element_node_count(ELEMENT_ANY_EDGE), 2u);
    EXPECT_EQ(element_node_count(ELEMENT_E2), 2u);
}

TEST(ElementType, CodesOutsideTheTableHaveNoNodes)
{
    for (const int code :
         {-1, 23, 24, 1000, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        EXPECT_EQ(element_node_count(static_cast<element_type>(code)), 0u) << code;
}

TEST(ElementType, NodeCountIsAConstantExpression)
{
    static_assert(element_node_count(ELEMENT_Q9) == 9);
    unsigned column[element_node_count(ELEMENT_T6)] = {};
    EXPECT_EQ(sizeof(column), 24u);
}
