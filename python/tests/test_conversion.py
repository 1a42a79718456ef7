"""Order conversion and splitting against results worked out by hand."""

import itertools
from collections import Counter

import numpy as np
import pytest
from calls import MIXED, PLANE, PREPARED, Q9, SPACE, T3, T6, UNSET, ids

import tessalo2d as t2


def turned(rows):
    """Elements as they are wherever their list of nodes starts."""
    return [min(row[k:] + row[:k] for k in range(len(row))) for row in map(list, rows)]


def edges_of(connect):
    for row in connect.tolist():
        row = [v for v in row if v != UNSET]
        yield from (frozenset(pair) for pair in zip(row, row[1:] + row[:1]))


# ------------------------------------------------------------------------------------------- order


def test_linear_elements_are_the_corners_of_quadratic_ones():
    assert t2.convert_into_linear(ids([5, 6, 7, 8, 9, 10])).tolist() == [[5, 6, 7]]
    mixed8 = ids(range(8), [0, 1, 8, 9, 10, 11, UNSET, UNSET])
    assert t2.convert_into_linear(mixed8).tolist() == [[0, 1, 2, 3], [0, 1, 8, UNSET]]
    assert (t2.convert_into_linear(Q9) == MIXED).all()
    assert (t2.convert_into_linear(T6) == T3).all()


@pytest.mark.parametrize("columns, corners", [(6, 3), (8, 4), (9, 4)])
def test_no_quadratic_elements_are_no_linear_ones(columns, corners):
    found = t2.convert_into_linear(np.empty((0, columns), dtype=np.uint32))
    assert found.shape == (0, corners) and found.dtype == np.uint32


def test_quadratic_elements_are_split_at_their_midside_nodes():
    before = ids([7, 8, 9])
    # Nodes 3, 4, 5 lie on edges 1-2, 2-0, 0-1.
    found = t2.split_into_linear(ids(range(6)), before)
    assert found[0].tolist() == [7, 8, 9]
    assert turned(found[1:]) == turned([[0, 5, 4], [1, 3, 5], [2, 4, 3], [3, 4, 5]])
    found = t2.split_into_linear(ids(range(9)))
    assert turned(found) == turned([[0, 4, 8, 7], [1, 5, 8, 4], [2, 6, 8, 5], [3, 7, 8, 6]])
    four_columns = t2.split_into_linear(ids(range(6)), ids([6, 7, 8, 9]))
    assert four_columns.shape == (5, 4) and (four_columns[1:, 3] == UNSET).all()


@pytest.mark.parametrize("replace_connect", [False, True])
def test_nodes_of_high_order_divide_edges_and_fill_elements(replace_connect):
    square = np.array([[0, 0], [3, 0], [3, 3], [0, 3]], dtype=np.float64)
    coords, connect = t2.convert_into_high_order(
        square, ids([0, 1, 2, 3]), 2, 4, 0, replace_connect=replace_connect
    )
    assert connect.shape == (1, 16)
    points = coords[connect[0]]
    assert (points[:4] == square).all()
    assert points[4:12] == pytest.approx(
        np.array([[1, 0], [2, 0], [3, 1], [3, 2], [2, 3], [1, 3], [0, 2], [0, 1]])
    )
    inner = sorted(map(tuple, points[12:].round(12).tolist()))
    assert inner == [(1, 1), (1, 2), (2, 1), (2, 2)]


def test_elements_share_the_nodes_of_their_common_edge():
    coords, connect = t2.convert_into_high_order(PLANE, T3, 3, 0, 1)
    edges = len(set(edges_of(T3)))
    assert len(coords) == len(PLANE) + 3 * edges + len(T3)
    assert connect.shape == (3, 3 + 9 + 1)
    assert coords[connect[:, -1]] == pytest.approx(PLANE[T3].mean(axis=1))
    for row in connect:
        for k in range(3):
            a, b = coords[row[(k + 1) % 3]], coords[row[(k + 2) % 3]]
            for i in range(3):
                assert coords[row[3 + 3 * k + i]] == pytest.approx(a + (i + 1) / 4 * (b - a))


def test_no_new_nodes_give_no_elements():
    coords, connect = t2.convert_into_high_order(PLANE, T3, 0, 0, 0)
    assert (coords == PLANE).all() and not np.shares_memory(coords, PLANE)
    assert len(connect) == 0


@pytest.mark.parametrize("coords", [PLANE, SPACE], ids=["plane", "space"])
@pytest.mark.parametrize("edges", [None, PREPARED], ids=["plain", "prepared"])
def test_quadratic_elements_have_midpoints_and_take_prepared_ones(coords, edges):
    given = {} if edges is None else {"edges": edges}
    found, connect = t2.convert_into_quadratic(coords, MIXED, **given)
    names = set(edges_of(MIXED))
    assert len(found) == len(coords) + len(names) - len(given) + 1
    for row in connect.tolist():
        if row[6] == UNSET:
            middles = {(1, 2): row[3], (2, 0): row[4], (0, 1): row[5]}
        else:
            middles = {(k, (k + 1) % 4): row[4 + k] for k in range(4)}
            assert found[row[8]] == pytest.approx(coords[row[:4]].mean(axis=0))
        for (a, b), middle in middles.items():
            if edges is not None and {row[a], row[b]} == {1, 3}:
                assert middle == 4
            else:
                assert found[middle] == pytest.approx((coords[row[a]] + coords[row[b]]) / 2)


# --------------------------------------------------------------------------------------- splitting


def test_quadrilaterals_cover_what_they_were_cut_from():
    before = ids([0, 1, 3, 4])
    coords, connect = t2.split_into_Q4(PLANE, MIXED, before)
    assert connect[0].tolist() == before[0].tolist()
    cells = connect[1:]
    assert len(cells) == 4 + 3 + 3 and (cells != UNSET).all()
    assert t2.area(coords, cells) == pytest.approx(t2.area(PLANE, MIXED))
    # Each begins at a corner of its parent, and inner edges are shared by two.
    assert [row[0] for row in cells.tolist()] == [0, 1, 3, 4, 1, 2, 3, 1, 5, 2]
    assert max(Counter(edges_of(cells)).values()) == 2
    # The middle of edge 1-3 is there already.
    coords, connect = t2.split_into_Q4(PLANE, MIXED, edges=PREPARED)
    assert len(coords) == len(PLANE) + len(set(edges_of(MIXED))) - 1 + 3


def test_plain_cuts_start_at_the_first_node():
    found = t2.split_Q4_into_T3(MIXED, T3[:1])
    assert found.tolist() == [[0, 1, 3], [0, 1, 3], [3, 4, 0], [1, 2, 3], [1, 5, 2]]


def quality(a, b, c):
    """Twice the area over the longest side times the perimeter."""
    sides = [np.linalg.norm(p - q) for p, q in ((a, b), (b, c), (c, a))]
    area = np.linalg.det(np.array([b - a, c - a]))
    return area / (max(sides) * sum(sides))


@pytest.mark.parametrize("seed", range(5))
def test_cuts_by_quality_keep_the_better_worst_triangle(seed):
    random = np.random.default_rng(seed)
    square = np.array([[0, 0], [1, 0], [1, 1], [0, 1]]) + random.uniform(-0.3, 0.3, (4, 2))
    found = turned(t2.split_Q4_into_T3_by_quality(square, ids([0, 1, 2, 3])))
    cuts = [[[0, 1, 2], [2, 3, 0]], [[0, 1, 3], [1, 2, 3]]]
    worst = [min(quality(*square[t]) for t in cut) for cut in cuts]
    assert sorted(found) == sorted(turned(cuts[int(worst[1] > worst[0])]))


def test_gated_cuts_keep_good_elements():
    # A square, a parallelogram and a triangle.
    coords = np.array([[0, 0], [1, 0], [1, 1], [0, 1], [3, 0], [5, 1]], dtype=np.float64)
    connect = ids([0, 1, 2, 3], [1, 4, 5, 2], [0, 1, 2, UNSET])
    kept_before, split_before = ids(2)[:1], ids(1)[:1]
    kept_before, split_before = kept_before.ravel(), split_before.ravel()
    result, kept, split = t2.split_Q4_into_T3_gated(coords, connect, 0.9, 0.9, 0.9)
    assert kept.tolist() == [0, 2] and split.tolist() == [1]
    assert result[:2].tolist() == [[0, 1, 2, 3], [0, 1, 2, UNSET]]
    assert (result[2:, 3] == UNSET).all()
    assert sorted(turned(result[2:, :3].tolist())) in (
        sorted(turned([[1, 4, 5], [5, 2, 1]])),
        sorted(turned([[1, 4, 2], [4, 5, 2]])),
    )
    result, kept, split = t2.split_Q4_into_T3_gated(
        coords, connect, 0.9, 0.9, 0.9, kept_IDs=kept_before, split_IDs=split_before, result=connect
    )
    assert kept.tolist() == [2, 0, 2] and split.tolist() == [1, 1]
    assert len(result) == 3 + 3 + 4 and (result[:3] == connect).all()


@pytest.mark.parametrize("choice", list(t2.DiagonalChoice))
def test_gated_cuts_know_each_choice_of_diagonals(choice):
    # A roof: folded along 0-2 by a ridge, or along 1-3 by a valley of less area.
    coords = np.array([[0, 0, 0], [2, 0, 1], [2, 2, 0], [0, 2, 1.5]], dtype=np.float64)
    result, _, split = t2.split_Q4_into_T3_gated(coords, ids([0, 1, 2, 3]), 2, 2, 2, choice)
    assert split.tolist() == [0]
    shared = set(result[0, :3]) & set(result[1, :3])

    def area(a, b, c):
        return np.linalg.norm(np.cross(coords[b] - coords[a], coords[c] - coords[a])) / 2

    cuts = {
        frozenset({0, 2}): ((0, 1, 2), (2, 3, 0)),
        frozenset({1, 3}): ((0, 1, 3), (1, 2, 3)),
    }
    assert frozenset(shared) in cuts
    if choice == t2.DIAGONAL_LEAST_AREA:
        best = min(cuts, key=lambda cut: sum(area(*t) for t in cuts[cut]))
        assert shared == best
    if choice == t2.DIAGONAL_LEAST_LARGER_AREA:
        best = min(cuts, key=lambda cut: max(area(*t) for t in cuts[cut]))
        assert shared == best


def test_the_wanted_columns_of_a_result_come_even_when_there_is_nothing_to_do():
    nothing = {k: np.empty((0, k), dtype=np.uint32) for k in (2, 3, 4, 6, 9)}
    assert t2.split_into_Q4(PLANE, nothing[3])[1].shape == (0, 4)
    assert t2.split_Q4_into_T3(nothing[4]).shape == (0, 3)
    assert t2.split_Q4_into_T3_by_quality(PLANE, nothing[4]).shape == (0, 3)
    assert t2.split_Q4_into_T3_gated(PLANE, nothing[4], 1, 1, 1)[0].shape == (0, 4)
    assert t2.split_into_linear(nothing[6]).shape == (0, 3)
    assert t2.split_into_linear(nothing[9]).shape == (0, 4)
    assert t2.convert_into_quadratic(PLANE, nothing[3])[1].shape == (0, 6)
    for before, function in itertools.product((None, ids([0, 1, 2])), (t2.split_Q4_into_T3,)):
        assert function(nothing[4], before).shape == (0 if before is None else 1, 3)
