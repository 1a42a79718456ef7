"""Between tessalo2d and the rest of the ecosystem: node order, element blocks, IDs, metrics.

What differs, and what this module converts:

    T6, T7      tessalo2d has nodes 3, 4, 5 on edges 1-2, 2-0, 0-1; VTK, gmsh and meshio have them
                on 0-1, 1-2, 2-0. Node 6 of a T7 is its centre in both.
    E3, Q8, Q9  are the same: nodes 4 to 7 on edges 0-1, 1-2, 2-3, 3-0, node 8 the centre.
    blocks      meshio keeps a block of cells a kind; tessalo2d one array, in which short rows are
                filled up with UNSET_ID.
    IDs         int64 elsewhere, uint32 here.
    metrics     m00, m01, m11, m02, m12, m22 here; see `METRIC_ORDERS`.

Everything works on plain arrays. `from_meshio` and `to_meshio` alone need meshio.
"""

from __future__ import annotations

from typing import TYPE_CHECKING, Any, Dict, List, Mapping, Optional, Sequence, Tuple

import numpy as np
from numpy.typing import ArrayLike, NDArray

from ._core import UNSET_ID

if TYPE_CHECKING:
    import meshio  # type: ignore[import]

Coords = NDArray[np.float64]
IDs = NDArray[np.uint32]
Block = Tuple[str, NDArray[np.int64]]

__all__ = [
    "METRIC_ORDERS",
    "as_IDs",
    "as_coords",
    "from_blocks",
    "from_meshio",
    "from_vtk_order",
    "full_metrics",
    "neighbors",
    "node_element",
    "pack_metrics",
    "reorder_metrics",
    "to_blocks",
    "to_meshio",
    "to_vtk_order",
]

# ----------------------------------------------------------------------------------------- arrays


def as_coords(points: ArrayLike, dim: Optional[int] = None) -> Coords:
    """Points as (n, 2) or (n, 3) float64 in C order; no copy if they are that already.

    With `dim` 2 a third column is dropped, which must hold zeros; with `dim` 3 one of zeros is
    added to plane points.
    """
    coords = np.ascontiguousarray(points, dtype=np.float64)
    if coords.ndim != 2 or coords.shape[1] not in (2, 3):
        raise ValueError(f"points must have the shape (n, 2) or (n, 3), not {coords.shape}")
    if dim not in (None, 2, 3):
        raise ValueError("dim must be 2 or 3")
    if dim == 2 and coords.shape[1] == 3:
        if coords[:, 2].any():
            raise ValueError("points do not lie in the plane z = 0")
        return np.ascontiguousarray(coords[:, :2])
    if dim == 3 and coords.shape[1] == 2:
        return np.column_stack([coords, np.zeros(len(coords))])
    return coords


def as_IDs(ids: ArrayLike, n: int = UNSET_ID, unset: Optional[int] = None) -> IDs:
    """IDs of any integer type as uint32 in C order; no copy if they are that already.

    Each must be from 0 to n - 1, or `unset`, the number that stands for no node elsewhere (such as
    -1): it becomes UNSET_ID. An array of uint32 may hold UNSET_ID.
    """
    n = min(n, UNSET_ID)
    values = np.asarray(ids)
    if values.size == 0:
        return np.ascontiguousarray(values, dtype=np.uint32)
    if values.dtype.kind not in "iu":
        raise TypeError(f"IDs must be integers, not {values.dtype}")
    outside = (values < 0) | (values >= n)
    absent = np.zeros(values.shape, dtype=bool)
    if unset is not None:
        absent |= values == unset
    if values.dtype == np.uint32:
        absent |= values == UNSET_ID
    if (outside & ~absent).any():
        wrong = values[outside & ~absent].flat[0]
        raise ValueError(f"ID {wrong} is not from 0 to {n - 1}")
    result = np.ascontiguousarray(values, dtype=np.uint32)
    if unset is not None and absent.any():
        result = np.where(absent, np.uint32(UNSET_ID), result)
    return result


def _elements(connect: IDs) -> IDs:
    if connect.ndim != 2:
        raise ValueError("connect must have 2 dimensions")
    if connect.dtype != np.uint32:
        raise TypeError("connect must be uint32: use interop.as_IDs(connect)")
    return connect


# ------------------------------------------------------------------------------------- node order

# Entry k of a row there is entry _VTK_TRIANGLE[k] of ours: edge 0-1 comes first and carries our 5.
_VTK_TRIANGLE = [0, 1, 2, 5, 3, 4]
_OUR_TRIANGLE = [0, 1, 2, 4, 5, 3]


def _reorder_triangles(connect: IDs, order: List[int]) -> IDs:
    result = _elements(connect).copy()
    if connect.shape[1] in (6, 7):
        result[:, :6] = connect[:, order]
    elif connect.shape[1] in (8, 9):
        # A triangle has no node 7, as a T6 or a T7 with its centre.
        triangles = connect[:, 7] == UNSET_ID
        result[triangles, :6] = connect[triangles][:, order]
    return result


def to_vtk_order(connect: IDs) -> IDs:
    """The nodes of T6 and T7 in the order of VTK, gmsh and meshio; other elements as they are.

    `connect` is (m, k) uint32; in 8 and 9 columns triangles are told from quadrilaterals by
    UNSET_ID in their eighth.
    """
    return _reorder_triangles(connect, _VTK_TRIANGLE)


def from_vtk_order(connect: IDs) -> IDs:
    """The reverse of `to_vtk_order`."""
    return _reorder_triangles(connect, _OUR_TRIANGLE)


# ----------------------------------------------------------------------------------------- blocks

_NODES = {
    "line": 2,
    "line3": 3,
    "triangle": 3,
    "quad": 4,
    "triangle6": 6,
    "triangle7": 7,
    "quad8": 8,
    "quad9": 9,
}
_FACES = {n: kind for kind, n in _NODES.items() if not kind.startswith("line")}
_LINES = {n: kind for kind, n in _NODES.items() if kind.startswith("line")}
# Kinds that one array can hold.
_TOGETHER = (
    {"line"},
    {"line3"},
    {"triangle", "quad"},
    {"triangle6", "quad8"},
    {"triangle6", "quad9"},
    {"triangle7"},
)


def from_blocks(blocks: Sequence[Tuple[str, ArrayLike]], n: int = UNSET_ID) -> IDs:
    """One array of all elements of some blocks of cells, block after block.

    Blocks are pairs of a kind, as meshio names them ("triangle", "quad", "triangle6", "triangle7",
    "quad8", "quad9", "line", "line3"), and an array of one cell a row. IDs are below `n`. Rows of
    triangles among quadrilaterals are filled up with UNSET_ID. Kinds of different order can't stand
    in one array, nor T7 with others.
    """
    # Told first: rows of an unknown kind may differ in length, which makes no array of IDs.
    for kind, data in blocks:
        if kind not in _NODES and np.asarray(data, dtype=object).size:
            raise ValueError(f"cells of the kind {kind!r} are not supported")
    known = [(kind, as_IDs(data, n)) for kind, data in blocks if kind in _NODES]
    used = [(kind, data) for kind, data in known if data.size]
    kinds = {kind for kind, _ in used}
    if not any(kinds <= together for together in _TOGETHER):
        raise ValueError(f"one array can't hold {', '.join(sorted(kinds))}")
    columns = max((_NODES[kind] for kind in kinds), default=3)
    connect = np.full((sum(len(data) for _, data in used), columns), UNSET_ID, dtype=np.uint32)
    first = 0
    for kind, cells in used:
        if cells.ndim != 2 or cells.shape[1] != _NODES[kind]:
            raise ValueError(f"cells of the kind {kind!r} must have {_NODES[kind]} columns")
        connect[first : first + len(cells), : cells.shape[1]] = cells
        first += len(cells)
    return from_vtk_order(connect)


def to_blocks(connect: IDs, lines: bool = False) -> Tuple[List[Block], List[NDArray[np.intp]]]:
    """The blocks of cells of an array of elements, one for each kind that occurs, triangles first.

    Returns the blocks, as pairs of a kind and an int64 array, and for each the rows of `connect`
    that it holds. With `lines` the array is one of lines: 2 columns, or 3 (end, end, middle).
    """
    kinds = _LINES if lines else _FACES
    ordered = _elements(connect) if lines else to_vtk_order(connect)
    # A row has as many nodes as stand before its first UNSET_ID.
    unset = ordered == UNSET_ID
    lengths = np.where(unset.any(axis=1), unset.argmax(axis=1), connect.shape[1])
    blocks: List[Block] = []
    rows: List[NDArray[np.intp]] = []
    for length in np.unique(lengths):
        if length not in kinds:
            raise ValueError(f"there are elements of {length} nodes")
        members = np.flatnonzero(lengths == length)
        blocks.append((kinds[length], ordered[members, :length].astype(np.int64)))
        rows.append(members)
    return blocks, rows


def from_meshio(
    mesh: "meshio.Mesh", dim: Optional[int] = None, lines: bool = False
) -> Tuple[Coords, IDs]:
    """The coordinates and the faces of a meshio mesh, or with `lines` its lines.

    `dim` is that of `as_coords`. Cells of other dimensions are passed over. Elements stand in the
    order of the blocks; so do those of `mesh.cell_data`.
    """
    coords = as_coords(mesh.points, dim)
    wanted = ("line",) if lines else ("triangle", "quad", "polygon")
    blocks = [(b.type, b.data) for b in mesh.cells if b.type.startswith(wanted)]
    connect = from_blocks(blocks, len(coords))
    if lines and not len(connect):
        connect = np.empty((0, 2), dtype=np.uint32)
    return coords, connect


def to_meshio(
    coords: Coords,
    connect: IDs,
    lines: Optional[IDs] = None,
    point_data: Optional[Mapping[str, ArrayLike]] = None,
    cell_data: Optional[Mapping[str, ArrayLike]] = None,
) -> "meshio.Mesh":
    """A meshio mesh of faces, and of lines if they are given.

    `point_data` has an entry for each node, `cell_data` one for each row of `connect`; lines get
    zeros. Plane coordinates get z = 0, which file formats ask for.
    """
    import meshio

    blocks, rows = to_blocks(connect)
    line_blocks = [] if lines is None else to_blocks(lines, lines=True)[0]
    data: Dict[str, List[Any]] = {}
    for name, values in (cell_data or {}).items():
        per_element = np.asarray(values)
        if len(per_element) != len(connect):
            raise ValueError(f"cell_data {name!r} must have an entry for each element")
        data[name] = [per_element[members] for members in rows]
        for _, block in line_blocks:
            shape = (len(block),) + per_element.shape[1:]
            data[name].append(np.zeros(shape, dtype=per_element.dtype))
    return meshio.Mesh(
        as_coords(coords, 3),
        blocks + line_blocks,
        point_data=dict(point_data or {}),
        cell_data=data,
    )


# ----------------------------------------------------------------------------------------- topology


def _corners(connect: IDs) -> IDs:
    if _elements(connect).shape[1] not in (3, 4):
        raise ValueError("connect must have 3 columns (T3) or 4 (Q4, or T3 with UNSET_ID)")
    return connect


def neighbors(connect: IDs) -> IDs:
    """The element across each local edge, or UNSET_ID; the shape of `connect`, (m, 3) or (m, 4).

    Local edge k of a triangle lies opposite corner k, from corner k + 1 to corner k + 2; that of a
    quadrilateral runs from corner k to corner k + 1. A triangle among quadrilaterals has UNSET_ID
    in its last place. There is nothing across an edge that more than two elements share, that one
    element has twice, or whose ends are one node. The orientation of elements does not matter.
    """
    corners = _corners(connect)
    m, k = corners.shape
    if k == 3:
        start, end = corners[:, [1, 2, 0]], corners[:, [2, 0, 1]]
    else:
        start, end = corners.copy(), corners[:, [1, 2, 3, 0]]
        triangles = corners[:, 3] == UNSET_ID
        # The last place has no edge: its two ends are one.
        start[triangles] = corners[triangles][:, [1, 2, 0, 3]]
        end[triangles] = corners[triangles][:, [2, 0, 1, 3]]
    low = np.minimum(start, end).ravel().astype(np.uint64)
    high = np.maximum(start, end).ravel().astype(np.uint64)
    slots = np.flatnonzero((low != high) & (high != UNSET_ID))
    key = ((low << np.uint64(32)) | high)[slots]
    order = np.argsort(key, kind="stable")
    slots, key = slots[order], key[order]
    # Runs of equal keys are edges; those of length two join two elements.
    begin = np.flatnonzero(np.concatenate([[True], key[1:] != key[:-1]])) if len(key) else slots
    length = np.diff(np.append(begin, len(key)))
    pairs = begin[length == 2]
    first, second = slots[pairs], slots[pairs + 1]
    apart = first // k != second // k
    first, second = first[apart], second[apart]
    result = np.full(m * k, UNSET_ID, dtype=np.uint32)
    result[first] = second // k
    result[second] = first // k
    return result.reshape(m, k)


def node_element(connect: IDs, n: int) -> IDs:
    """For each of `n` nodes the first element that holds it, or UNSET_ID; shape (n,).

    Nodes that no element holds are the targets of an interpolation from the mesh.
    """
    flat = _elements(connect).ravel()
    used = flat != UNSET_ID
    if (flat[used] >= n).any():
        raise ValueError(f"connect has IDs that are not below {n}")
    result = np.full(n, UNSET_ID, dtype=np.uint32)
    holder = np.repeat(np.arange(len(connect), dtype=np.uint32), connect.shape[1])
    # The last assignment to a node stays: backwards, that of its first element.
    result[flat[used][::-1]] = holder[used][::-1]
    return result


# ------------------------------------------------------------------------------------------ metrics

METRIC_ORDERS: Dict[str, Dict[int, List[Tuple[int, int]]]] = {
    "tessalo2d": {
        3: [(0, 0), (0, 1), (1, 1)],
        6: [(0, 0), (0, 1), (1, 1), (0, 2), (1, 2), (2, 2)],
    },
    "voigt": {
        3: [(0, 0), (1, 1), (0, 1)],
        6: [(0, 0), (1, 1), (2, 2), (1, 2), (0, 2), (0, 1)],
    },
    "vtk": {
        3: [(0, 0), (1, 1), (0, 1)],
        6: [(0, 0), (1, 1), (2, 2), (0, 1), (1, 2), (0, 2)],
    },
    "upper": {
        3: [(0, 0), (0, 1), (1, 1)],
        6: [(0, 0), (0, 1), (0, 2), (1, 1), (1, 2), (2, 2)],
    },
}
"""The entries of packed symmetric matrices of 3 and 6 numbers: those of this library (the upper
triangle by columns, the same as the lower one by rows), Voigt's (without factors), VTK's symmetric
tensors, and the upper triangle by rows."""


def _packed(metrics: ArrayLike) -> NDArray[np.float64]:
    values = np.asarray(metrics, dtype=np.float64)
    if values.ndim != 2 or values.shape[1] not in (3, 6):
        raise ValueError(f"packed metrics must have the shape (n, 3) or (n, 6), not {values.shape}")
    return values


def pack_metrics(full: ArrayLike, order: str = "tessalo2d") -> NDArray[np.float64]:
    """Symmetric matrices (n, 2, 2) or (n, 3, 3) as packed ones, (n, 3) or (n, 6)."""
    matrices = np.asarray(full, dtype=np.float64)
    if matrices.ndim != 3 or matrices.shape[1:] not in ((2, 2), (3, 3)):
        raise ValueError(
            f"metrics must have the shape (n, 2, 2) or (n, 3, 3), not {matrices.shape}"
        )
    scale = np.abs(matrices).max(axis=(1, 2), initial=0.0)
    skew = np.abs(matrices - matrices.transpose(0, 2, 1)).max(axis=(1, 2), initial=0.0)
    if (skew > 1e-12 * scale).any():
        raise ValueError("metrics must be symmetric")
    entries = METRIC_ORDERS[order][3 if matrices.shape[1] == 2 else 6]
    return np.column_stack([matrices[:, i, j] for i, j in entries])


def full_metrics(packed: ArrayLike, order: str = "tessalo2d") -> NDArray[np.float64]:
    """Packed symmetric matrices (n, 3) or (n, 6) as (n, 2, 2) or (n, 3, 3)."""
    values = _packed(packed)
    dim = 2 if values.shape[1] == 3 else 3
    full = np.empty((len(values), dim, dim))
    for k, (i, j) in enumerate(METRIC_ORDERS[order][values.shape[1]]):
        full[:, i, j] = full[:, j, i] = values[:, k]
    return full


def reorder_metrics(
    packed: ArrayLike, source: str, target: str = "tessalo2d"
) -> NDArray[np.float64]:
    """Packed symmetric matrices (n, 3) or (n, 6) from one of `METRIC_ORDERS` to another."""
    values = _packed(packed)
    given = METRIC_ORDERS[source][values.shape[1]]
    wanted = METRIC_ORDERS[target][values.shape[1]]
    return np.ascontiguousarray(values[:, [given.index(entry) for entry in wanted]])
