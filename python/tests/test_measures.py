"""Areas, angles, normals and circumcenters against values worked out by hand."""

import math

import numpy as np
import pytest

import tessalo2d as t2

SQUARE = np.array([[0, 0], [2, 0], [2, 2], [0, 2]], dtype=np.float64)
QUAD = np.array([[0, 1, 2, 3]], dtype=np.uint32)
HALVES = np.array([[0, 1, 2], [2, 3, 0]], dtype=np.uint32)


def in_space(coords, z=0.0):
    return np.column_stack([coords, np.full(len(coords), z)])


def test_area_is_signed_in_the_plane_and_not_in_space():
    assert t2.area(SQUARE, QUAD) == 4.0
    assert t2.area(SQUARE, np.ascontiguousarray(QUAD[:, ::-1])) == -4.0
    assert t2.area(in_space(SQUARE), np.ascontiguousarray(QUAD[:, ::-1])) == 4.0


def test_area_counts_a_triangle_among_quadrilaterals():
    mixed = np.array([[0, 1, 2, 3], [0, 1, 2, t2.UNSET_ID]], dtype=np.uint32)
    assert t2.area(SQUARE, mixed) == 6.0


def test_angles_of_a_right_triangle():
    smallest, largest = t2.angles(SQUARE, HALVES[:1])
    assert smallest == pytest.approx([math.pi / 4])
    assert largest == pytest.approx([math.pi / 2])
    smallest, largest = t2.angles(SQUARE, QUAD, normalized=True)
    assert smallest == pytest.approx([1.0])
    assert largest == pytest.approx([1.0])


def test_normals_of_elements():
    up = t2.normals(in_space(SQUARE), HALVES)
    assert up.tolist() == [[0, 0, 1], [0, 0, 1]]
    raw = t2.normals(in_space(SQUARE), HALVES, unit_length=False)
    assert raw.tolist() == [[0, 0, 4], [0, 0, 4]]


def test_normals_of_nodes_are_weighted():
    # A triangle of twice the area 1 in the plane z = 0 and one of twice the area 3 in x = 0.
    coords = np.array([[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 3]], dtype=np.float64)
    connect = np.array([[0, 1, 2], [0, 2, 3]], dtype=np.uint32)
    alike = t2.node_normals(coords, connect, 0.0)
    assert alike[0] == pytest.approx([math.sqrt(0.5), 0, math.sqrt(0.5)])
    by_size = t2.node_normals(coords, connect, 1.0)
    assert by_size[0] == pytest.approx(np.array([3, 0, 1]) / math.sqrt(10))
    assert by_size[3] == pytest.approx([1, 0, 0])
    mean = t2.node_normals(coords, connect, 1.0, unit_length=False)
    assert mean[0] == pytest.approx([0.75, 0, 0.25])


def test_circumcenters_are_equally_far_from_the_corners():
    for coords in (SQUARE + [[0, 0], [0.5, 0], [0, 0], [0, 0.25]], in_space(SQUARE, 3.0)):
        centers = t2.circumcenters(coords, HALVES)
        assert centers.shape == (2, coords.shape[1])
        radii = np.linalg.norm(coords[HALVES] - centers[:, None, :], axis=2)
        assert radii == pytest.approx(np.repeat(radii[:, :1], 3, axis=1))
