"""Interpolation, curvature and metrics against fields and surfaces that are known."""

import math

import numpy as np
import pytest
from calls import BACKGROUND, MESH, SIZES, TARGETS, ids

import tessalo2d as t2
from tessalo2d import interop


def linear(points):
    """The field that SIZES has at the corners."""
    return 1.0 + points[:, 0] / 4 + points[:, 1] / 2


def test_the_background_of_these_tests_is_linear():
    assert SIZES[:4].tolist() == linear(BACKGROUND[:4]).tolist()


def test_scalar_fields_are_carried_linearly_in_triangles():
    found = t2.interpolate(**MESH, field=SIZES, nodes=TARGETS)
    assert found == pytest.approx(linear(BACKGROUND))
    assert SIZES[4:].tolist() == [0, 0]
    only_one = t2.interpolate(**MESH, field=SIZES, nodes=TARGETS[1:])
    assert only_one[4] == 0.0 and only_one[5] == pytest.approx(linear(BACKGROUND)[5])


@pytest.mark.parametrize("kind", [None, t2.ELEMENT_Q4, t2.ELEMENT_ANY_FACE])
def test_scalar_fields_are_carried_bilinearly_in_quadrilaterals(kind):
    quad = ids([0, 1, 2, 3])
    mesh = dict(
        coords=BACKGROUND,
        connect=quad,
        neighbors=interop.neighbors(quad),
        node_element=interop.node_element(quad, 6),
    )
    product = BACKGROUND[:, 0] * BACKGROUND[:, 1]
    field = np.where(np.arange(6) < 4, product, -1.0)
    given = {} if kind is None else {"type": kind}
    assert t2.interpolate(**mesh, field=field, nodes=TARGETS, **given) == pytest.approx(product)
    # A kind that `connect` is not of is nothing to do, or refused.
    with pytest.raises(ValueError, match="interpolate: connect must be of the kind type"):
        t2.interpolate(**mesh, field=field, nodes=TARGETS, type=t2.ELEMENT_T3)


def test_fields_of_rows_come_back_as_they_are():
    field = np.arange(12.0).reshape(6, 2)
    found = t2.interpolate(**MESH, field=field, nodes=TARGETS)
    assert (found == field).all() and not np.shares_memory(found, field)
    with pytest.raises(ValueError, match="field must have an entry for each node"):
        t2.interpolate(**MESH, field=field[:5].copy(), nodes=TARGETS)


@pytest.mark.parametrize("nodes", [None, TARGETS], ids=["all", "listed"])
def test_sizes_are_carried(nodes):
    found = t2.interpolate_metrics(**MESH, field=SIZES, nodes=nodes)
    assert found == pytest.approx(linear(BACKGROUND))
    valid = SIZES.copy()
    valid[4] = 0.125
    kept = t2.interpolate_metrics(**MESH, field=valid, nodes=nodes, keep_valid=True)
    assert kept[4] == 0.125 and kept[5] == pytest.approx(linear(BACKGROUND)[5])
    replaced = t2.interpolate_metrics(**MESH, field=valid, nodes=nodes)
    assert replaced[4] == pytest.approx(linear(BACKGROUND)[4])


@pytest.mark.parametrize("nodes", [None, TARGETS], ids=["all", "listed"])
@pytest.mark.parametrize("dim", [2, 3])
def test_isotropic_metrics_are_carried_by_their_sizes(nodes, dim):
    wanted = interop.pack_metrics(np.eye(dim) / linear(BACKGROUND)[:, None, None] ** 2)
    given = wanted.copy()
    given[4:] = 0.0
    found = t2.interpolate_metrics(**MESH, field=given, nodes=nodes)
    assert found == pytest.approx(wanted, abs=1e-14)
    own = given.copy()
    own[4] = interop.pack_metrics(np.eye(dim)[None])[0]
    kept = t2.interpolate_metrics(**MESH, field=own, nodes=nodes, keep_valid=True)
    assert (kept[4] == own[4]).all() and kept[5] == pytest.approx(wanted[5], abs=1e-14)


def test_targets_outside_take_the_nearest_or_keep_their_value():
    # Two triangles at the ends of a valley; the target between them is in no element.
    coords = np.array([[0, 0], [1, 0], [0, 1], [9, 9], [9, 8], [8, 9], [1, 1.5], [20, 20]], float)
    connect = ids([0, 1, 2], [3, 5, 4])
    field = np.array([1, 2, 3, 4, 5, 6, 7, 8], dtype=np.float64)
    found = t2.interpolate(
        coords,
        connect,
        interop.neighbors(connect),
        interop.node_element(connect, 8),
        field,
        np.array([6, 7], dtype=np.uint32),
    )
    assert found[6] == 3.0 and found[7] == 8.0


# --------------------------------------------------------------------------------------- curvature


def plate(n, width, height):
    """A triangulated rectangle."""
    side = np.linspace(0, 1, n + 1)
    border = np.concatenate(
        [
            np.column_stack([side[:-1], 0 * side[:-1]]),
            np.column_stack([0 * side[:-1] + 1, side[:-1]]),
            np.column_stack([side[:0:-1], 0 * side[:-1] + 1]),
            np.column_stack([0 * side[:-1], side[:0:-1]]),
        ]
    )
    around = np.append(np.arange(4 * n), 0).astype(np.uint32)
    return t2.mesh_struct_T3(border * [width, height], around, n)


def test_the_form_of_a_cylinder_bends_around_its_axis_only():
    uvs, connect = plate(40, 1.0, 1.0)
    u = uvs[:, 0]
    radius, zero = 2.0, np.zeros(len(uvs))
    Su = radius * np.column_stack([-np.sin(u), np.cos(u), zero])
    Sv = np.column_stack([zero, zero, zero + 1])
    forms = t2.parametric_curvatures(uvs, connect, np.column_stack([Su, Sv]))
    inner = ((uvs > 0) & (uvs < 1)).all(axis=1)
    # -n.Suu with the outward normal n is the radius.
    assert forms[inner] == pytest.approx(np.tile([radius, 0, 0], (inner.sum(), 1)), abs=1e-3)


def test_the_principal_direction_of_a_cylinder_runs_along_it():
    uvs, connect = plate(24, 2.0, 2.0)
    radius = 2.0
    angle = uvs[:, 0] / radius
    surface = np.column_stack([radius * np.sin(angle), uvs[:, 1], radius * np.cos(angle)])
    found = t2.principal_curvatures(surface, connect, interop.neighbors(connect), 0.5)
    inner = ((uvs > 0.5) & (uvs < 1.5)).all(axis=1)
    outward = np.column_stack([np.sin(angle), 0 * angle, np.cos(angle)])[inner]
    assert (t2.normals(surface, connect)[:, 2] > 0).all()
    assert found[inner, 6] == pytest.approx(np.full(inner.sum(), -1 / radius), rel=0.15)
    assert np.abs(found[inner, 7]) == pytest.approx(np.zeros(inner.sum()), abs=0.02)
    # Edges add up along themselves: the first direction is that of the axis.
    assert np.abs(found[inner, 1]) == pytest.approx(np.ones(inner.sum()), abs=0.02)
    assert np.einsum("ij,ij->i", found[inner, :3], outward) == pytest.approx(
        np.zeros(inner.sum()), abs=0.05
    )


def test_a_ridge_and_an_angle_end_a_patch():
    # Two walls of a roof: with either of the two each wall is flat by itself.
    coords = np.array([[0, 0, 0], [0, 1, 0], [1, 0, -1], [-1, 1, -1]], dtype=np.float64)
    connect = ids([0, 2, 1], [0, 1, 3])
    sides = interop.neighbors(connect)
    bent = t2.principal_curvatures(coords, connect, sides, 10.0)
    assert (np.abs(bent[:, 6]) > 0.1).all()
    for limit in ({"ridges": ids([1, 0])}, {"max_angle": math.pi / 3}):
        found = t2.principal_curvatures(coords, connect, sides, 10.0, **limit)
        assert (found[:, 6:] == 0).all()
    assert (t2.principal_curvatures(coords, connect, sides, 0.0)[:, 6:] == 0).all()


def test_a_number_of_triangles_ends_a_patch():
    # A plate that is bent at its far side only, beyond what small patches reach.
    flat, connect = plate(8, 8.0, 8.0)
    coords = np.column_stack([flat, np.maximum(flat[:, 0] - 6.0, 0.0)])
    sides = interop.neighbors(connect)
    near = np.flatnonzero(flat[:, 0] < 2.0)
    assert (np.abs(t2.principal_curvatures(coords, connect, sides, 99.0)[near, 6]) > 0).all()
    small = t2.principal_curvatures(coords, connect, sides, 99.0, max_triangles=4)
    assert (small[near, 6] == 0).all()


def test_metrics_have_the_mean_edge_length_and_the_size_along_the_normal():
    coords = np.array([[0, 0, 0], [2, 0, 0], [0, 2, 0]], dtype=np.float64)
    connect = ids([0, 1, 2])
    for normal_size, expected in ((0.5, 0.5), (0.0, 2.0), (-0.25, 0.5)):
        first = interop.full_metrics(t2.metrics_gen_aniso3d(coords, connect, normal_size))[0]
        assert first == pytest.approx(np.diag([0.25, 0.25, expected**-2]), abs=1e-12)
    # What was there is intersected: the smaller size of each direction stays.
    before = interop.pack_metrics(np.diag([1.0, 0.01, 0.01])[None])
    found = t2.metrics_gen_aniso3d(coords, connect, 0.5, before)
    assert found.shape == (3, 6)
    assert interop.full_metrics(found)[0] == pytest.approx(np.diag([1.0, 0.25, 4.0]), abs=1e-9)


def test_nothing_to_do_gives_the_columns_all_the_same():
    nothing = np.empty((0, 3), dtype=np.uint32)
    flat = np.zeros((4, 3))
    assert t2.parametric_curvatures(np.zeros((4, 2)), nothing, np.zeros((4, 6))).shape == (0, 3)
    assert t2.principal_curvatures(flat, nothing, nothing, 1.0).shape == (0, 8)
    assert t2.normals(flat, nothing).shape == (0, 3)
    assert t2.node_normals(flat, nothing).shape[1] == 3
    assert t2.circumcenters(flat, nothing).shape == (0, 3)
    assert [a.shape for a in t2.angles(flat, nothing)] == [(0,), (0,)]
    assert t2.area(flat, nothing) == 0.0
