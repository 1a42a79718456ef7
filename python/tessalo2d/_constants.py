"""The codes that arguments take."""

from enum import IntEnum


class ElementType(IntEnum):
    """The kinds of element.

    Node order: corners first, cyclic; then edge nodes in the order of the local edges; then
    interior nodes. Local edge k of a triangle lies opposite corner k and runs from corner k + 1 to
    corner k + 2; local edge k of a quadrilateral runs from corner k to corner k + 1.
    """

    ELEMENT_NONE = 0
    ELEMENT_NODE = 1
    ELEMENT_ANY_EDGE = 2
    ELEMENT_E2 = 3
    ELEMENT_E3 = 4
    ELEMENT_ANY_FACE = 5
    ELEMENT_T3 = 6
    ELEMENT_Q4 = 7
    ELEMENT_T6 = 8
    ELEMENT_Q8 = 9
    ELEMENT_Q9 = 10
    ELEMENT_ANY_SOLID = 11
    ELEMENT_TETRA4 = 12
    ELEMENT_TETRA10 = 13
    ELEMENT_PYRAMID5 = 14
    ELEMENT_PYRAMID13 = 15
    ELEMENT_PYRAMID14 = 16
    ELEMENT_WEDGE6 = 17
    ELEMENT_WEDGE15 = 18
    ELEMENT_WEDGE18 = 19
    ELEMENT_HEXA8 = 20
    ELEMENT_HEXA20 = 21
    ELEMENT_HEXA27 = 22


class DiagonalChoice(IntEnum):
    """What the diagonal of a cut is chosen by, of the two triangles on each side of it."""

    DIAGONAL_BEST_QUALITY = 1
    """The better worst triangle."""
    DIAGONAL_BEST_ANGLE = 2
    """The largest angles nearer to right ones."""
    DIAGONAL_LEAST_LARGER_AREA = 3
    """The smaller larger triangle."""
    DIAGONAL_LEAST_AREA = 4
    """The smaller area in all: the valley, not the roof."""
    DIAGONAL_LEAST_FOLD = 5
    """In space: the smaller fold across the diagonal."""
    DIAGONAL_LEAST_WEIGHTED_FOLD = 6
    """In space: the smaller fold times length of the diagonal."""


ELEMENT_NONE = ElementType.ELEMENT_NONE
ELEMENT_NODE = ElementType.ELEMENT_NODE
ELEMENT_ANY_EDGE = ElementType.ELEMENT_ANY_EDGE
ELEMENT_E2 = ElementType.ELEMENT_E2
ELEMENT_E3 = ElementType.ELEMENT_E3
ELEMENT_ANY_FACE = ElementType.ELEMENT_ANY_FACE
ELEMENT_T3 = ElementType.ELEMENT_T3
ELEMENT_Q4 = ElementType.ELEMENT_Q4
ELEMENT_T6 = ElementType.ELEMENT_T6
ELEMENT_Q8 = ElementType.ELEMENT_Q8
ELEMENT_Q9 = ElementType.ELEMENT_Q9
ELEMENT_ANY_SOLID = ElementType.ELEMENT_ANY_SOLID
ELEMENT_TETRA4 = ElementType.ELEMENT_TETRA4
ELEMENT_TETRA10 = ElementType.ELEMENT_TETRA10
ELEMENT_PYRAMID5 = ElementType.ELEMENT_PYRAMID5
ELEMENT_PYRAMID13 = ElementType.ELEMENT_PYRAMID13
ELEMENT_PYRAMID14 = ElementType.ELEMENT_PYRAMID14
ELEMENT_WEDGE6 = ElementType.ELEMENT_WEDGE6
ELEMENT_WEDGE15 = ElementType.ELEMENT_WEDGE15
ELEMENT_WEDGE18 = ElementType.ELEMENT_WEDGE18
ELEMENT_HEXA8 = ElementType.ELEMENT_HEXA8
ELEMENT_HEXA20 = ElementType.ELEMENT_HEXA20
ELEMENT_HEXA27 = ElementType.ELEMENT_HEXA27
DIAGONAL_BEST_QUALITY = DiagonalChoice.DIAGONAL_BEST_QUALITY
DIAGONAL_BEST_ANGLE = DiagonalChoice.DIAGONAL_BEST_ANGLE
DIAGONAL_LEAST_LARGER_AREA = DiagonalChoice.DIAGONAL_LEAST_LARGER_AREA
DIAGONAL_LEAST_AREA = DiagonalChoice.DIAGONAL_LEAST_AREA
DIAGONAL_LEAST_FOLD = DiagonalChoice.DIAGONAL_LEAST_FOLD
DIAGONAL_LEAST_WEIGHTED_FOLD = DiagonalChoice.DIAGONAL_LEAST_WEIGHTED_FOLD
