"""All twenty extrusions against node positions and numbers by their formulas."""

import math

import numpy as np
import pytest
from calls import LINE, UNSET, extrusions, ids

import tessalo2d as t2

CALLS = list(extrusions())


def rotation_matrix(vector):
    """By Rodrigues' formula."""
    angle = np.linalg.norm(vector)
    x, y, z = np.asarray(vector) / angle
    K = np.array([[0, -z, y], [z, 0, -x], [-y, x, 0]])
    return np.eye(3) + math.sin(angle) * K + (1 - math.cos(angle)) * (K @ K)


def moved(call, points, t):
    """The points at the position t of the path."""
    a = call.arguments
    if "V" in a:
        return points + t * np.asarray(a["V"])
    if np.ndim(a["rotation"]) == 0:
        angle = t * a["rotation"]
        R = np.array([[math.cos(angle), -math.sin(angle)], [math.sin(angle), math.cos(angle)]])
        return (points - a["center"]) @ R.T + a["center"]
    R = rotation_matrix(t * np.asarray(a["rotation"]))
    shift = t * np.asarray(a.get("translation", (0, 0, 0)))
    return (points - a["center"]) @ R.T + a["center"] + shift


def path_length(call, first_node):
    """What sizes are spread on."""
    a = call.arguments
    if "V" in a:
        return np.linalg.norm(a["V"])
    if "translation" in a:
        return np.linalg.norm(a["translation"])
    axis_distance = np.linalg.norm((first_node - np.asarray(a["center"]))[:2])
    return axis_distance * np.linalg.norm(a["rotation"])


def widened(points, columns):
    return np.column_stack([points, np.zeros((len(points), columns - points.shape[1]))])


@pytest.mark.parametrize("call", CALLS, ids=lambda call: call.name)
def test_nodes_and_elements_follow_their_formulas(call):
    a = call.arguments
    (output,) = [v for name, v in a.items() if name.startswith("connect") and name != "connect"]
    coords, connect = call()
    n, used = len(a["coords"]), [0, 1, 5, 2]
    m = len(used)
    old = widened(a["coords"], coords.shape[1])
    assert (coords[:n] == old).all()

    # Layers.
    N, rest = divmod(len(coords) - n, m)
    assert rest == 0
    if "N" in a:
        assert N == a["N"]
        positions = [(layer + 1) / N for layer in range(N)]
    else:
        mean = (a["h1"] - a["h0"]) / math.log(a["h1"] / a["h0"])
        length = path_length(call, old[0])
        # Rounded in ratio: up from the geometric mean of two counts.
        x = length / mean
        expected = math.floor(x) + (x > math.sqrt(math.floor(x) * (math.floor(x) + 1)))
        assert N == expected
        ratio = (a["h1"] / a["h0"]) ** (1 / N)
        heights = ratio ** np.arange(N)
        positions = np.cumsum(heights) / heights.sum()
    for layer, t in enumerate(positions):
        block = coords[n + layer * m : n + (layer + 1) * m]
        assert block == pytest.approx(moved(call, old[used], t), abs=1e-12)

    # Elements, behind those that were there.
    per_cell = 1 if connect.shape[1] == 4 else 2
    assert (connect[: len(output), : output.shape[1]] == output).all()
    assert (connect[: len(output), output.shape[1] :] == UNSET).all()
    cells = connect[len(output) :].reshape(len(LINE), N, per_cell, -1)
    for e, (a_, b) in enumerate(LINE.tolist()):
        for layer in range(N):

            def copy(node, up):
                rank = used.index(node)
                return node if layer + up == 0 else n + (layer + up - 1) * m + rank

            ring = [copy(a_, 0), copy(b, 0), copy(b, 1), copy(a_, 1)]
            cell = cells[e, layer].tolist()
            if per_cell == 1:
                assert cell == [ring]
            elif (e + layer) % 2 == 1:
                assert [set(t) for t in cell] == [{ring[0], ring[1], ring[3]}, set(ring[1:])]
            else:
                assert [set(t) for t in cell] == [set(ring[:3]), {ring[0], ring[2], ring[3]}]


@pytest.mark.parametrize("pattern, diagonal", [(0, {1, 3}), (1, {0, 2})])
def test_pattern_chooses_the_diagonal(pattern, diagonal):
    coords = np.array([[0, 0], [1, 0]], dtype=np.float64)
    _, connect = t2.extrude_translate_T3(coords, ids([0, 1]), (0, 1), 1, pattern=pattern)
    ring = [0, 1, 3, 2]
    assert set(connect[0]) & set(connect[1]) == {ring[k] for k in diagonal}


def test_even_numbers_of_layers_can_be_asked_for():
    coords = np.array([[0, 0], [1, 0]], dtype=np.float64)
    plain = t2.extrude_translate_Q4(coords, ids([0, 1]), (0, 3), h0=1, h1=1)[1]
    even = t2.extrude_translate_Q4(coords, ids([0, 1]), (0, 3), h0=1, h1=1, force_even=True)[1]
    # 3 lies above the geometric mean of 2 and 4.
    assert len(plain) == 3 and len(even) == 4


def test_no_layers_leave_new_arrays_of_the_old_contents():
    coords = np.array([[0, 0], [1, 0]], dtype=np.float64)
    grown, connect = t2.extrude_translate_Q4(coords, ids([0, 1]), (0, 3), 0)
    assert (grown == coords).all() and not np.shares_memory(grown, coords)
    assert connect.shape == (0, 4)
    before = ids([0, 1, 2])
    grown, connect = t2.extrude_rotate_T3(
        coords, np.empty((0, 2), dtype=np.uint32), (0, 0), 1.0, 5, connectT=before
    )
    assert (connect == before).all() and not np.shares_memory(connect, before)


def test_either_a_number_of_layers_or_both_sizes():
    coords = np.array([[0, 0], [1, 0]], dtype=np.float64)
    for given in ({}, {"h0": 1}, {"N": 1, "h0": 1}, {"N": 1, "h0": 1, "h1": 1}):
        with pytest.raises(TypeError, match="either N"):
            t2.extrude_translate_Q4(coords, ids([0, 1]), (0, 1), **given)
    with pytest.raises(TypeError, match="force_even"):
        t2.extrude_translate_Q4(coords, ids([0, 1]), (0, 1), 2, force_even=True)
    with pytest.raises(TypeError, match="h0 must be a number"):
        t2.extrude_translate_Q4(coords, ids([0, 1]), (0, 1), h0="a", h1=1)


def test_center_and_rotation_must_go_together():
    coords = np.array([[0, 0], [1, 0]], dtype=np.float64)
    for center, rotation, text in (
        ((0, 0), (0, 0, 1), "rotation must be an angle"),
        ((0, 0, 0), 1.0, "rotation must have 3 numbers"),
        ((0,), 1.0, "center must have 2 or 3 numbers"),
    ):
        for function in (t2.extrude_rotate_Q4, t2.extrude_rotate_T3):
            with pytest.raises(ValueError, match=text):
                function(coords, ids([0, 1]), center, rotation, 1)
    with pytest.raises(ValueError, match="translation must have 3 numbers"):
        t2.extrude_spiral_Q4(coords, ids([0, 1]), (0, 0, 0), (0, 0, 1), (0, 1), 1)
    with pytest.raises(ValueError, match="V must have 2 or 3 numbers"):
        t2.extrude_translate_T3(coords, ids([0, 1]), 1.0, 1)
    with pytest.raises(TypeError, match="V must be a sequence of numbers"):
        t2.extrude_translate_T3(coords, ids([0, 1]), ("a", "b"), 1)
