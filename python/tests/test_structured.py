"""Structured grids, connectivity, against results worked out by hand."""

import numpy as np
import pytest
from calls import AROUND, LOOP, MIXED, UNSET, ids

import tessalo2d as t2
from tessalo2d import interop


def grid_node(i, j):
    """The number of node (i, j) of the 3 x 2 patch whose boundary is LOOP."""
    if j == 0:
        return i
    if i == 3:
        return 3 + j
    if j == 2:
        return 8 - i
    if i == 0:
        return 10 - j
    return 10 + (i - 1)


def test_a_rectangle_is_filled_with_a_regular_grid():
    coords, connect = t2.mesh_struct_Q4(LOOP, AROUND, 2)
    assert (coords[:10] == LOOP).all()
    assert coords[10:] == pytest.approx(np.array([[1, 1], [2, 1]]))
    expected = [
        [grid_node(i, j), grid_node(i + 1, j), grid_node(i + 1, j + 1), grid_node(i, j + 1)]
        for i in range(3)
        for j in range(2)
    ]
    assert connect.tolist() == expected
    before = ids([0, 1, 2, 3])
    assert t2.mesh_struct_Q4(LOOP, AROUND, 2, before)[1].tolist() == before.tolist() + expected


@pytest.mark.parametrize("pattern", [0, 1, 2])
def test_cells_are_cut_along_the_diagonal_of_the_pattern(pattern):
    coords, connect = t2.mesh_struct_T3(LOOP, AROUND, 2, pattern)
    assert t2.area(coords, connect) == pytest.approx(6.0)
    pairs = iter(connect.reshape(6, 2, 3).tolist())
    for i in range(3):
        for j in range(2):
            first, second = next(pairs)
            down = pattern == 0 or (pattern == 2 and (i + j) % 2 == 1)
            ends = ((i + 1, j), (i, j + 1)) if down else ((i, j), (i + 1, j + 1))
            assert set(first) & set(second) == {grid_node(*end) for end in ends}


def test_a_loop_without_cells_can_cut_nodes_off():
    # Kept by the library; what is left are new arrays all the same.
    coords = np.arange(20, dtype=np.float64).reshape(10, 2)
    loop = np.array([0, 1, 2, 3, 4, 5, 0], dtype=np.uint32)
    found, connect = t2.mesh_struct_T3(coords, loop, 3)
    assert (found == coords[:8]).all() and not np.shares_memory(found, coords)
    assert connect.shape == (0, 3)
    with pytest.raises(MemoryError, match="mesh_struct_T3: out of memory or of node IDs"):
        t2.mesh_struct_T3(np.zeros((1, 2)), np.zeros(9, dtype=np.uint32), 4)


def test_sizes_are_carried_inside():
    sizes = 1.0 + LOOP[:, 0]
    found = t2.metrics_struct(AROUND, 2, sizes)
    assert (found[:10] == sizes).all()
    assert found[10:] == pytest.approx([2.0, 3.0])


@pytest.mark.parametrize("packed", [[1, 0, 1], [1, 0, 1, 0, 0, 1]], ids=["plane", "space"])
def test_metrics_are_carried_inside_by_their_sizes(packed):
    metrics = np.array(packed) / ((1.0 + LOOP[:, :1]) ** 2)
    found = t2.metrics_struct(AROUND, 2, metrics)
    assert (found[:10] == metrics).all()
    expected = np.array(packed) / np.array([[4.0], [9.0]])
    assert found[10:] == pytest.approx(expected, abs=1e-12)


# ------------------------------------------------------------------------------------ connectivity


def test_flip_exchanges_corners():
    assert t2.flip(MIXED).tolist() == [[3, 1, 0, 4], [3, 2, 1, UNSET], [2, 5, 1, UNSET]]


def test_flip_of_a_type_moves_midside_nodes():
    # The node of each edge stays with the ends of its edge.
    assert t2.flip(ids(range(6)), t2.ELEMENT_T6).tolist() == [[2, 1, 0, 5, 4, 3]]
    assert t2.flip(ids(range(9)), t2.ELEMENT_Q9).tolist() == [[2, 1, 0, 3, 5, 4, 7, 6, 8]]
    mixed = ids(range(8), [0, 1, 2, 3, 4, 5, UNSET, UNSET])
    assert t2.flip(mixed, t2.ELEMENT_ANY_FACE).tolist() == [
        [2, 1, 0, 3, 5, 4, 7, 6],
        [2, 1, 0, 5, 4, 3, UNSET, UNSET],
    ]


def rotations(row):
    return [row[k:] + row[:k] for k in range(len(row))]


def test_degenerated_quadrilaterals_become_triangles():
    connect, count = t2.convert_degenerated_Q4(ids([0, 1, 1, 2], [0, 1, 2, 3], [5, 6, 7, 5]))
    assert count == 2
    assert connect[:, 3].tolist() == [UNSET, 3, UNSET]
    assert connect[0, :3].tolist() in rotations([0, 1, 2])
    assert connect[2, :3].tolist() in rotations([5, 6, 7])


def test_degenerated_quadratic_quadrilaterals_lose_the_middle_of_their_edge():
    connect, converted = t2.convert_degenerated_Q(
        ids(range(9), [10, 11, 11, 12, 14, 15, 16, 17, 18])
    )
    assert converted.tolist() == [1] and converted.dtype == np.uint32
    assert connect[0].tolist() == list(range(9))
    a, b, c, bc, ca, ab, *rest = connect[1].tolist()
    assert [a, b, c] in rotations([10, 11, 12])
    middles = {frozenset((10, 11)): 14, frozenset((11, 12)): 16, frozenset((12, 10)): 17}
    assert [bc, ca, ab] == [middles[frozenset(e)] for e in ((b, c), (c, a), (a, b))]
    assert rest == [UNSET] * 3


def test_reorientation_follows_the_seed():
    connect = ids([0, 1, 2], [0, 3, 2])
    sides = interop.neighbors(connect)
    found, neighbors, flips = t2.mesh_reorient(connect, sides)
    assert flips == 1
    assert found.tolist() == [[0, 1, 2], [2, 3, 0]]
    assert neighbors.tolist() == [[UNSET, 1, UNSET], [UNSET, 0, UNSET]]
    found, neighbors, flips = t2.mesh_reorient(connect, sides, seed=1)
    assert found.tolist() == [[2, 1, 0], [0, 3, 2]]


def test_reorientation_of_all_regions():
    connect = ids([0, 1, 2], [0, 3, 2], [10, 11, 12], [10, 13, 12])
    sides = interop.neighbors(connect)
    assert t2.mesh_reorient(connect, sides)[2] == 1
    found, _, flips = t2.mesh_reorient(connect, sides, all_regions=True)
    assert flips == 2 and found[3].tolist() == [12, 13, 10]


def test_neighbors_that_contradict_connect_are_named():
    sides = ids([1, UNSET, UNSET], [0, UNSET, UNSET])
    conflict = "neighbors names an element that does not hold the common edge"
    with pytest.raises(ValueError, match=conflict + r" \(status -2\)"):
        t2.mesh_reorient(ids([0, 1, 2], [3, 4, 5]), sides)
    # A flip after the conflict takes the status to -1, which is still not about `connect`.
    connect = ids([0, 1, 2], [3, 4, 5], [6, 4, 5])
    sides = ids([1, UNSET, UNSET], [2, 0, UNSET], [1, UNSET, UNSET])
    with pytest.raises(ValueError, match=conflict + r" \(status -1\)"):
        t2.mesh_reorient(connect, sides)
    # The codes mean their own arguments where these are wrong.
    with pytest.raises(ValueError, match=r"connect must .* \(status -1\)"):
        t2.mesh_reorient(ids([0, UNSET, 2]), ids([UNSET] * 3))
    with pytest.raises(ValueError, match=r"neighbors must have the shape .* \(status -2\)"):
        t2.mesh_reorient(ids([0, 1, 2]), ids([UNSET] * 4))


def test_elements_around_nodes_stand_in_order():
    # A fan of four triangles around node 0, closed.
    connect = ids([0, 1, 2], [0, 2, 3], [0, 3, 4], [0, 4, 1])
    sides = interop.neighbors(connect)
    holders = interop.node_element(connect, 6)
    offsets, elements = t2.get_connected_elements(connect, sides, holders)
    assert offsets.tolist() == [0, 4, 6, 8, 10, 12, 12]
    lists = [elements[a:b].tolist() for a, b in zip(offsets, offsets[1:])]
    assert lists[0] == [0, 1, 2, 3]
    # At the boundary from one end of the fan on: seen from node 1, element 0 comes before 3.
    assert lists[1:] == [[0, 3], [1, 0], [2, 1], [3, 2], []]


def test_elements_around_nodes_of_a_mixed_mesh_are_those_that_hold_them():
    offsets, elements = t2.get_connected_elements(
        MIXED, interop.neighbors(MIXED), interop.node_element(MIXED, 6)
    )
    for node in range(6):
        around = elements[offsets[node] : offsets[node + 1]]
        assert sorted(around) == np.flatnonzero((MIXED == node).any(axis=1)).tolist()
