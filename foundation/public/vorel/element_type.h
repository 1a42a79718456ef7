// Element kinds and the ID that means "none".
#pragma once

namespace vorel {

/// No node or no element. Valid IDs are below it.
inline constexpr unsigned UNSET_ID = 0xFFFFFFFFu;

/// The kinds of element. A `connect` matrix of exactly one kind has as many rows as the kind has
/// nodes. Node order: corners first, cyclic; then edge nodes in the order of the local edges; then
/// interior nodes. Local edge k of a triangle lies opposite corner k and runs from corner k + 1 to
/// corner k + 2 (modulo 3); local edge k of a quadrilateral runs from corner k to corner k + 1
/// (modulo 4). So rows 3, 4, 5 of a T6 lie on edges 1-2, 2-0, 0-1, and rows 4 to 7 of a Q8 or Q9 on
/// edges 0-1, 1-2, 2-3, 3-0; row 8 of a Q9 is the centre.
enum element_type : int {
    ELEMENT_NONE = 0,
    ELEMENT_NODE = 1,
    ELEMENT_ANY_EDGE = 2, ///< line element of unstated kind
    ELEMENT_E2 = 3,       ///< line: end, end
    ELEMENT_E3 = 4,       ///< line: end, end, middle
    ELEMENT_ANY_FACE = 5, ///< triangles and quadrilaterals in 3 or 4 rows
    ELEMENT_T3 = 6,
    ELEMENT_Q4 = 7,
    ELEMENT_T6 = 8,
    ELEMENT_Q8 = 9,
    ELEMENT_Q9 = 10,
    ELEMENT_ANY_SOLID = 11,
    ELEMENT_TETRA4 = 12,
    ELEMENT_TETRA10 = 13,
    ELEMENT_PYRAMID5 = 14,
    ELEMENT_PYRAMID13 = 15,
    ELEMENT_PYRAMID14 = 16,
    ELEMENT_WEDGE6 = 17,
    ELEMENT_WEDGE15 = 18,
    ELEMENT_WEDGE18 = 19,
    ELEMENT_HEXA8 = 20,
    ELEMENT_HEXA20 = 21,
    ELEMENT_HEXA27 = 22
};

/// Node count of a kind: the rows of a matrix of exactly that kind; 0 for a code outside the table.
constexpr unsigned element_node_count(element_type type)
{
    constexpr unsigned NODES[] = {0, 1,  2, 2,  3,  4, 3,  4,  6, 8,  9, 8,
                                  4, 10, 5, 13, 14, 6, 15, 18, 8, 20, 27};
    constexpr int KINDS = sizeof(NODES) / sizeof(NODES[0]);
    const int code = static_cast<int>(type);
    return code >= 0 && code < KINDS ? NODES[code] : 0;
}

} // namespace vorel
