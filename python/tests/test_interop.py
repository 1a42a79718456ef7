"""Conversions, tested by geometry where a round trip would hide a wrong permutation."""

import itertools

import numpy as np
import pytest

import tessalo2d as t2
from tessalo2d import interop

UNSET = t2.UNSET_ID
POINTS = np.array([[0, 0], [3, 0], [5, 2], [4, 4], [0, 3.5], [7, 1]], dtype=np.float64)
TRIANGLES = np.array([[0, 1, 3], [0, 3, 4], [1, 2, 3]], dtype=np.uint32)
MIXED = np.array([[0, 1, 3, 4], [1, 2, 3, UNSET], [1, 5, 2, UNSET]], dtype=np.uint32)

# Where the published numberings of VTK and gmsh put the nodes behind the corners.
MIDSIDE = {
    "triangle6": [(0, 1), (1, 2), (2, 0)],
    "triangle7": [(0, 1), (1, 2), (2, 0), (0, 1, 2)],
    "quad8": [(0, 1), (1, 2), (2, 3), (3, 0)],
    "quad9": [(0, 1), (1, 2), (2, 3), (3, 0), (0, 1, 2, 3)],
}


def assert_midsides(kind, points, data):
    corners = 3 if kind.startswith("triangle") else 4
    for k, parents in enumerate(MIDSIDE[kind]):
        middle = points[data[:, list(parents)]].mean(axis=1)
        assert points[data[:, corners + k]] == pytest.approx(middle), (kind, k)


def test_midside_nodes_of_triangles_are_midpoints_in_the_other_order():
    coords, connect = t2.convert_into_quadratic(POINTS, TRIANGLES)
    (kind, data), = interop.to_blocks(connect)[0]
    assert kind == "triangle6"
    assert_midsides(kind, coords, data)


def test_midside_nodes_of_foreign_triangles_are_midpoints_in_our_order():
    # Foreign triangles made by hand: midpoints appended edge by edge in the foreign order.
    corners = TRIANGLES.astype(np.int64)
    points, cells = POINTS, [corners]
    for a, b in MIDSIDE["triangle6"]:
        cells.append(np.arange(len(points), len(points) + len(corners))[:, None])
        points = np.vstack([points, POINTS[corners[:, [a, b]]].mean(axis=1)])
    connect = interop.from_blocks([("triangle6", np.hstack(cells))], len(points))
    for column, (a, b) in zip((3, 4, 5), ((1, 2), (2, 0), (0, 1))):
        middle = points[connect[:, [a, b]]].mean(axis=1)
        assert points[connect[:, column]] == pytest.approx(middle)
    # The library agrees: its four children of each cover their parents.
    assert t2.area(points, t2.split_into_linear(connect)) == pytest.approx(
        t2.area(POINTS, TRIANGLES)
    )


def test_seven_node_triangles_have_midpoints_and_centre():
    coords, connect = t2.convert_into_high_order(POINTS, TRIANGLES, 1, 0, 1)
    (kind, data), = interop.to_blocks(connect)[0]
    assert kind == "triangle7"
    assert_midsides(kind, coords, data)
    assert (interop.from_blocks([(kind, data)]) == connect).all()


@pytest.mark.parametrize("quad_nodes, quad_kind", [(1, "quad9"), (0, "quad8")])
def test_midside_nodes_of_a_mixed_mesh_are_midpoints(quad_nodes, quad_kind):
    coords, connect = t2.convert_into_high_order(POINTS, MIXED, 1, quad_nodes, 0)
    blocks, rows = interop.to_blocks(connect)
    assert [kind for kind, _ in blocks] == ["triangle6", quad_kind]
    assert [r.tolist() for r in rows] == [[1, 2], [0]]
    for kind, data in blocks:
        assert data.dtype == np.int64
        assert_midsides(kind, coords, data)
    back = interop.from_blocks(blocks, len(coords))
    assert (back == connect[[1, 2, 0]]).all()


def test_linear_blocks_are_padded_and_come_back():
    blocks = [("quad", [[0, 1, 3, 4]]), ("triangle", [[1, 2, 3], [1, 5, 2]])]
    connect = interop.from_blocks(blocks, 6)
    assert connect.dtype == np.uint32 and connect.flags.c_contiguous
    assert (connect == MIXED).all()
    back, rows = interop.to_blocks(connect)
    assert [kind for kind, _ in back] == ["triangle", "quad"]
    assert back[0][1].tolist() == [[1, 2, 3], [1, 5, 2]]
    assert rows[1].tolist() == [0]


def test_blocks_that_one_array_cannot_hold_are_refused():
    with pytest.raises(ValueError, match="can't hold triangle, triangle6"):
        interop.from_blocks([("triangle", [[0, 1, 2]]), ("triangle6", [[0, 1, 2, 3, 4, 5]])])
    with pytest.raises(ValueError, match="can't hold quad8, quad9"):
        interop.from_blocks([("quad8", [list(range(8))]), ("quad9", [list(range(9))])])
    with pytest.raises(ValueError, match="'tetra' are not supported"):
        interop.from_blocks([("tetra", [[0, 1, 2, 3]])])
    ragged = [[0, 1, 2, 3, 4], [0, 1, 2]]
    for data in (ragged, [np.array(row) for row in ragged], np.array(ragged, dtype=object)):
        with pytest.raises(ValueError, match="'polygon' are not supported"):
            interop.from_blocks([("triangle", [[0, 1, 2]]), ("polygon", data)])
    assert interop.from_blocks([("tetra", []), ("triangle", [[0, 1, 2]])]).tolist() == [[0, 1, 2]]
    with pytest.raises(ValueError, match="elements of 5 nodes"):
        interop.to_blocks(np.zeros((1, 5), dtype=np.uint32))
    with pytest.raises(ValueError, match="must have 3 columns"):
        interop.from_blocks([("triangle", [[0, 1, 2, 3]])])


def test_no_blocks_are_no_triangles():
    assert interop.from_blocks([]).shape == (0, 3)
    assert interop.to_blocks(np.empty((0, 4), dtype=np.uint32)) == ([], [])


def test_lines_come_and_go():
    connect = interop.from_blocks([("line", [[0, 1], [1, 2]])])
    assert connect.tolist() == [[0, 1], [1, 2]]
    assert interop.to_blocks(connect, lines=True)[0][0][0] == "line"
    middle = interop.from_blocks([("line3", [[0, 1, 2]])])
    assert middle.tolist() == [[0, 1, 2]]
    assert interop.to_blocks(middle, lines=True)[0][0][0] == "line3"


# ------------------------------------------------------------------------------------------ meshio


def test_meshio_mesh_from_a_file_has_midpoints(tmp_path):
    meshio = pytest.importorskip("meshio")
    coords, connect = t2.convert_into_quadratic(POINTS, MIXED)
    path = tmp_path / "mesh.vtu"
    number = np.arange(len(connect), dtype=np.float64)
    interop.to_meshio(
        coords, connect, point_data={"x": coords[:, 0]}, cell_data={"number": number}
    ).write(path)
    mesh = meshio.read(path)
    for block, numbers in zip(mesh.cells, mesh.cell_data["number"]):
        assert_midsides(block.type, mesh.points, block.data)
        for row, k in zip(block.data, numbers):
            assert set(row) == set(connect[int(k)]) - {UNSET}
    read_coords, read_connect = interop.from_meshio(mesh, dim=2)
    assert (read_coords == coords).all()
    assert (read_connect == connect[[1, 2, 0]]).all()
    assert mesh.point_data["x"] == pytest.approx(coords[:, 0])


def test_meshio_lines_stand_beside_faces():
    pytest.importorskip("meshio")
    lines = np.array([[0, 1], [1, 2]], dtype=np.uint32)
    mesh = interop.to_meshio(POINTS, TRIANGLES, lines, cell_data={"c": [1.0, 2.0, 3.0]})
    assert [(b.type, len(b.data)) for b in mesh.cells] == [("triangle", 3), ("line", 2)]
    assert [d.tolist() for d in mesh.cell_data["c"]] == [[1, 2, 3], [0, 0]]
    assert interop.from_meshio(mesh)[0].shape == (6, 3)
    assert (interop.from_meshio(mesh)[1] == TRIANGLES).all()
    assert (interop.from_meshio(mesh, lines=True)[1] == lines).all()


def test_meshio_cells_that_are_no_faces_are_passed_over():
    meshio = pytest.importorskip("meshio")
    mesh = meshio.Mesh(np.zeros((4, 3)), [("vertex", [[0]]), ("tetra", [[0, 1, 2, 3]])])
    assert interop.from_meshio(mesh)[1].shape == (0, 3)
    assert interop.from_meshio(mesh, lines=True)[1].shape == (0, 2)
    mesh = meshio.Mesh(np.zeros((10, 3)), [("triangle10", [list(range(10))])])
    with pytest.raises(ValueError, match="triangle10"):
        interop.from_meshio(mesh)
    # Objects: what lists of different lengths make.
    polygons = np.array([[0, 1, 2, 3, 4], [5, 6, 7]], dtype=object)
    mesh = meshio.Mesh(np.zeros((8, 3)), [("polygon", polygons)])
    with pytest.raises(ValueError, match="'polygon' are not supported"):
        interop.from_meshio(mesh)


def test_meshio_cell_data_must_fit():
    pytest.importorskip("meshio")
    with pytest.raises(ValueError, match="'c' must have an entry for each element"):
        interop.to_meshio(POINTS, TRIANGLES, cell_data={"c": [1.0]})


# --------------------------------------------------------------------------------------------- IDs


def test_IDs_are_checked_for_range():
    assert interop.as_IDs([[0, 2]], 3).dtype == np.uint32
    for ids in ([-1], [3], [2**32], [2**40 + 1]):
        with pytest.raises(ValueError, match=f"ID {ids[0]} is not from 0 to 2"):
            interop.as_IDs(np.array(ids, dtype=np.int64), 3)
    # The number of UNSET_ID is no ID in another type.
    with pytest.raises(ValueError):
        interop.as_IDs(np.array([UNSET], dtype=np.int64))
    # More nodes than there are IDs: what does not fit in 32 bits is none.
    for n in (2**32 - 1, 2**32, 2**33):
        for wrong in (-1, 2**32 - 1, 2**32, 2**32 + 5, 2**33 - 1):
            with pytest.raises(ValueError, match=f"ID {wrong} is not from 0 to 4294967294"):
                interop.as_IDs(np.array([0, wrong], dtype=np.int64), n)
        assert interop.as_IDs(np.array([2**32 - 2]), n).tolist() == [2**32 - 2]
        assert interop.as_IDs(np.array([UNSET], dtype=np.uint32), n).tolist() == [UNSET]
    with pytest.raises(TypeError, match="integers"):
        interop.as_IDs([0.5])


def test_IDs_of_absent_nodes_become_unset():
    ids = interop.as_IDs(np.array([[0, 1, 2, -1]]), 3, unset=-1)
    assert ids.tolist() == [[0, 1, 2, UNSET]]
    assert interop.as_IDs(ids, 3) is ids


def test_coords_gain_and_lose_z():
    assert interop.as_coords(POINTS) is POINTS
    space = interop.as_coords(POINTS, 3)
    assert space.shape == (6, 3) and not space[:, 2].any()
    assert (interop.as_coords(space, 2) == POINTS).all()
    with pytest.raises(ValueError, match="plane z = 0"):
        interop.as_coords(space + 1.0, 2)
    with pytest.raises(ValueError, match="shape"):
        interop.as_coords(np.zeros(3))


# ---------------------------------------------------------------------------------------- topology


def edges_of(row):
    """Local edges by the definition, slot by slot."""
    corners = [v for v in row if v != UNSET]
    if len(corners) == 3:
        return [{corners[(k + 1) % 3], corners[(k + 2) % 3]} for k in range(3)]
    return [{corners[k], corners[(k + 1) % 4]} for k in range(4)]


def assert_neighbors(connect):
    """Against a search over all pairs of elements."""
    found = interop.neighbors(connect)
    assert found.dtype == np.uint32 and found.shape == connect.shape and found.flags.c_contiguous
    expected = np.full(connect.shape, UNSET, dtype=np.uint32)
    rows = connect.tolist()
    for e, f in itertools.permutations(range(len(rows)), 2):
        for k, edge in enumerate(edges_of(rows[e])):
            if edge in edges_of(rows[f]):
                expected[e, k] = f
    assert (found == expected).all()


def random_mesh(seed):
    """A grid of which some cells are cut, all corners turned and some elements reversed."""
    random = np.random.default_rng(seed)
    rows = []
    for i, j in itertools.product(range(5), range(4)):
        cell = [5 * i + j, 5 * (i + 1) + j, 5 * (i + 1) + j + 1, 5 * i + j + 1]
        if random.random() < 0.5:
            rows.append(np.roll(cell, random.integers(4)).tolist())
        else:
            rows.append(np.roll(cell[:3], random.integers(3)).tolist() + [UNSET])
            rows.append([cell[2], cell[3], cell[0], UNSET])
    for row in rows:
        if random.random() < 0.5:
            row[0], row[2] = row[2], row[0]
    order = random.permutation(len(rows))
    return np.array(rows, dtype=np.uint32)[order]


@pytest.mark.parametrize("seed", range(5))
def test_neighbors_are_those_of_a_search(seed):
    mixed = random_mesh(seed)
    assert_neighbors(mixed)
    assert_neighbors(t2.split_Q4_into_T3(mixed))


def test_neighbors_make_a_broken_mesh_consistent():
    mixed = random_mesh(7)
    connect, neighbors, flips = t2.mesh_reorient(mixed, interop.neighbors(mixed))
    assert flips > 0
    assert (neighbors == interop.neighbors(connect)).all()
    directed = [
        tuple(np.roll([v for v in row if v != UNSET], -k)[:2])
        for row in connect.tolist()
        for k in range(4 - (row[3] == UNSET))
    ]
    assert len(set(directed)) == len(directed)


def test_there_is_nothing_across_an_edge_of_three_or_a_collapsed_one():
    fan = np.array([[0, 1, 2], [0, 1, 3], [0, 1, 4]], dtype=np.uint32)
    assert (interop.neighbors(fan) == UNSET).all()
    collapsed = np.array([[0, 0, 1], [0, 0, 2]], dtype=np.uint32)
    assert (interop.neighbors(collapsed) == UNSET).all()
    assert interop.neighbors(np.empty((0, 4), dtype=np.uint32)).shape == (0, 4)


def test_neighbors_want_linear_faces():
    with pytest.raises(ValueError, match="3 columns"):
        interop.neighbors(np.zeros((1, 6), dtype=np.uint32))
    with pytest.raises(TypeError, match="as_IDs"):
        interop.neighbors(np.zeros((1, 3), dtype=np.int64))  # type: ignore[arg-type]


def test_node_element_names_the_first_holder():
    assert interop.node_element(MIXED, 7).tolist() == [0, 0, 1, 0, 0, 2, UNSET]
    with pytest.raises(ValueError, match="not below 5"):
        interop.node_element(MIXED, 5)
    assert interop.node_element(np.empty((0, 3), dtype=np.uint32), 2).tolist() == [UNSET, UNSET]


@pytest.mark.parametrize(
    "function",
    [
        interop.neighbors,
        lambda connect: interop.node_element(connect, 7),
        interop.to_vtk_order,
        interop.from_vtk_order,
        interop.to_blocks,
        lambda connect: interop.to_blocks(connect, lines=True),
    ],
    ids=["neighbors", "node_element", "to_vtk_order", "from_vtk_order", "to_blocks", "lines"],
)
def test_elements_must_be_rows_of_IDs(function):
    for dtype in (np.int64, np.int32, np.uint64, np.float64):
        # -1 for no node is UNSET_ID only after the conversion.
        with pytest.raises(TypeError, match=r"must be uint32: use interop.as_IDs\(connect\)"):
            function(np.array([[0, 1, 2, -1]]).astype(dtype))
    for shape in ((4,), (1, 1, 4)):
        with pytest.raises(ValueError, match="connect must have 2 dimensions"):
            function(np.zeros(shape, dtype=np.uint32))


# ----------------------------------------------------------------------------------------- metrics


@pytest.mark.parametrize("dim", [2, 3])
def test_metrics_measure_the_same_lengths_in_every_order(dim):
    random = np.random.default_rng(dim)
    full = random.normal(size=(5, dim, dim))
    full = full @ full.transpose(0, 2, 1)
    for order in interop.METRIC_ORDERS:
        packed = interop.pack_metrics(full, order)
        assert (interop.full_metrics(packed, order) == full).all()
        assert (interop.reorder_metrics(packed, order) == interop.pack_metrics(full)).all()


def test_the_orders_of_metrics_are_the_published_ones():
    full = np.array([[[11, 12, 13], [12, 22, 23], [13, 23, 33]]], dtype=np.float64)
    assert interop.pack_metrics(full).tolist() == [[11, 12, 22, 13, 23, 33]]
    assert interop.pack_metrics(full, "voigt").tolist() == [[11, 22, 33, 23, 13, 12]]
    assert interop.pack_metrics(full, "vtk").tolist() == [[11, 22, 33, 12, 23, 13]]
    assert interop.pack_metrics(full, "upper").tolist() == [[11, 12, 13, 22, 23, 33]]
    assert interop.pack_metrics(full[:, :2, :2]).tolist() == [[11, 12, 22]]
    assert interop.pack_metrics(full[:, :2, :2], "voigt").tolist() == [[11, 22, 12]]


def test_the_library_reads_metrics_in_the_packed_order():
    # A flat triangle in the plane z = 0: the size along its normal stands in entry zz alone.
    coords = np.array([[0, 0, 0], [1, 0, 0], [0, 1, 0]], dtype=np.float64)
    connect = np.array([[0, 1, 2]], dtype=np.uint32)
    metric = interop.full_metrics(t2.metrics_gen_aniso3d(coords, connect, 0.5))[0]
    assert metric[2, 2] == pytest.approx(4.0)
    assert metric[2, :2] == pytest.approx([0, 0], abs=1e-12)
    assert metric[0, 0] == pytest.approx(1.0)


def test_metrics_must_be_symmetric_and_of_a_known_shape():
    with pytest.raises(ValueError, match="symmetric"):
        interop.pack_metrics([[[1, 2], [3, 4]]])
    with pytest.raises(ValueError, match="shape"):
        interop.pack_metrics([[1, 2], [2, 4]])
    with pytest.raises(ValueError, match=r"\(n, 3\) or \(n, 6\), not \(1, 4\)"):
        interop.full_metrics([[1, 2, 3, 4]])
