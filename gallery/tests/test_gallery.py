"""The gallery in small: every picture and mesh is made, and what it stands on is right."""

import json
import re

import meshio
import numpy as np
import pytest

import tessalo2d as t2
from gallery import (curvature, draw, extrusion, model, naca, order, page, render, repair,
                     splitting, structured, surface, transfer)
from gallery.record import CheckFailed, Exhibit, Record, count, write_mesh
from tessalo2d import interop

OCTAHEDRON = """# corners, then each face with corners of its own
v 1 0 0
v -1 0 0
v 0 1 0
v 0 -1 0
v 0 0 1
v 0 0 -1
f 1 3 5
f 3 2 5
f 2 4 5
f 4 1 5
f 3 1 6
f 2 3 6
f 4 2 6
f 1 4 6
"""


@pytest.fixture(autouse=True)
def small(monkeypatch):
    """Pictures of few pixels, each call once: all else is as in the real gallery."""
    monkeypatch.setitem(draw.matplotlib.rcParams, "savefig.dpi", 20)
    monkeypatch.setattr(render.View, "oversampling", 1)
    monkeypatch.setattr(Exhibit, "repetitions", 1)
    surface.view_of.cache_clear()


@pytest.fixture
def ball(tmp_path):
    """An octahedron, refined twice and blown up to a ball."""
    path = tmp_path / "ball.obj"
    path.write_text(OCTAHEDRON)
    found = model.read(path)
    coords, connect = found.coords, found.connect
    for _ in range(2):
        coords, connect = t2.convert_into_quadratic(coords, connect)
        connect = t2.split_into_linear(connect)
    coords = coords / np.linalg.norm(coords, axis=1)[:, None]
    return model.Model("ball", coords, connect, np.array([0.0, 1.0, 0.0]))


def families(ball):
    return {
        "structured": lambda r: (structured.around(r, 16, 4), structured.inside(r, 10, 4)),
        "splitting": lambda r: (splitting.by_quality(r, 16, 6), splitting.gated(r, 16, 6)),
        "order": lambda r: (order.raised(r), order.high(r)),
        "transfer": lambda r: (transfer.sizes(r, 16, 4, 8, 8), transfer.metrics(r, 8, 8, 16, 4),
                               transfer.patch(r, 4, 3)),
        "extrusion": lambda r: (extrusion.straight_and_round(r, 8, turns=24),
                                extrusion.twisted(r, 12, 4)),
        "surface": lambda r: (surface.angles(r, ball), surface.normals(r, ball),
                              surface.refined(r, ball), surface.circles(r, 5, 3)),
        "curvature": lambda r: (curvature.principal(r, ball), curvature.metrics(r, ball),
                                curvature.torus(r, 48, 40)),
        "repair": lambda r: (repair.reoriented(r, ball), repair.connected(r, ball, 5)),
    }


def test_every_family_leaves_pictures_meshes_and_a_page_that_links_them(ball, tmp_path):
    made = families(ball)
    for name, make in made.items():
        record = Record(name, name.title(), tmp_path / "out")
        make(record)
        record.write()
    path, pictures, checks = page.write(tmp_path / "out", list(made), t2.version(), "ball")
    text = path.read_text(encoding="utf-8")
    assert pictures == text.count("<figure>") == 20
    assert checks == text.count("<li>") > 40
    links = set(re.findall(r'(?:src|href)="([^"#]+)"', text))
    assert all((tmp_path / "out" / link).stat().st_size > 0 for link in links)
    for link in links:
        if link.endswith(".vtu"):
            assert len(meshio.read(tmp_path / "out" / link).points)
    for part in made:
        exhibits = json.loads((tmp_path / "out" / f"{part}.json").read_text())["exhibits"]
        assert all(exhibit["calls"] and exhibit["checks"] for exhibit in exhibits)


def test_a_wrong_number_ends_the_program():
    exhibit = Exhibit("name", "Title")
    exhibit.check_equal("sum", 1.0 + 1e-14, 1.0)
    with pytest.raises(CheckFailed, match="Title: sum: 1.1 should be 1.0"):
        exhibit.check_equal("sum", 1.1, 1.0)
    with pytest.raises(CheckFailed):
        exhibit.check_equal("sum", float("nan"), 1.0)
    with pytest.raises(CheckFailed, match="does not: truth"):
        exhibit.check("truth", False)


def test_a_mesh_file_holds_the_mesh_and_its_fields(tmp_path):
    coords = np.array([[0, 0], [1, 0], [1, 1], [0, 1], [2, 0]], float)
    connect = np.array([[0, 1, 2, 3], [1, 4, 2, t2.UNSET_ID]], np.uint32)
    write_mesh(tmp_path / "m.vtu", coords, connect, {"x": coords[:, 0], "e": np.array([7, 8])})
    back = meshio.read(tmp_path / "m.vtu")
    again, faces = interop.from_meshio(back, 2)
    assert t2.area(again, faces) == 1.5
    assert back.point_data["x"].tolist() == [0, 1, 1, 0, 2]
    assert {b.type: d.tolist() for b, d in zip(back.cells, back.cell_data["e"])} == {
        "quad": [7], "triangle": [8]}


# ------------------------------------------------------------------------------------- sections


def test_a_symmetric_section_has_the_published_thickness():
    # Ordinates of NACA 0012 in percent of the chord, as published with an open trailing edge, which
    # is 0.126 thick there.
    x = np.array([0.0125, 0.05, 0.10, 0.30, 0.60, 0.90])
    published = np.array([1.894, 3.555, 4.683, 6.002, 4.563, 1.448]) / 100
    upper = naca.surface_points("0012", x, 1.0)
    assert np.abs(upper[:, 1] - (published - 0.00126 * x**4)).max() < 2e-5
    assert np.array_equal(naca.surface_points("0012", x, -1.0)[:, 1], -upper[:, 1])


def test_a_cambered_section_runs_around_anticlockwise_from_a_closed_trailing_edge():
    points = naca.section("4412", 40)
    assert np.allclose(points[0], [1, 0], atol=1e-15)
    assert np.allclose(points[40], [0, 0], atol=1e-15)
    assert naca.polygon_area(points) > 0
    # The middle of upper and lower surface is the camber line, 4 % high at 40 % of the chord.
    high = 0.5 * (naca.surface_points("4412", np.array([0.4]), 1.0)
                  + naca.surface_points("4412", np.array([0.4]), -1.0))
    assert np.allclose(high, [[0.4, 0.04]], atol=1e-15)


def test_blocks_around_a_section_must_fit():
    with pytest.raises(ValueError, match="blocks"):
        naca.around_section("0012", 15, 4)


# --------------------------------------------------------------------------------------- models


def test_a_model_is_welded_oriented_and_made_of_triangles(tmp_path):
    # A cube of six faces with corners of their own, one of them inside out, counted backwards.
    corners = np.array([[x, y, z] for x in (0, 1) for y in (0, 1) for z in (0, 1)], float)
    faces = [[0, 1, 3, 2], [4, 6, 7, 5], [0, 4, 5, 1], [2, 3, 7, 6], [0, 2, 6, 4], [5, 7, 3, 1]]
    lines = []
    for face in faces:
        lines += [f"v {x} {y} {z}" for x, y, z in corners[face]] + ["f -4/1/1 -3/2/1 -2//1 -1"]
    path = tmp_path / "cube.obj"
    path.write_text("mtllib none\n" + "\n".join(lines))
    cube = model.read(path)
    assert cube.coords.shape == (8, 3)
    assert cube.connect.shape == (12, 3)
    assert (cube.neighbors != t2.UNSET_ID).all()
    assert extrusion.volume(cube.coords, cube.connect) == pytest.approx(1.0)


@pytest.mark.parametrize("name, text, reason", [
    ("none.obj", None, "no such file"),
    ("empty.obj", "", "no triangles"),
    ("points.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\n", "no triangles"),
    ("words.obj", "v 0 0 zero\n", "line 1 is not in the format"),
    ("high.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 4\n", "ID 3 is not"),
    ("low.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 -4\n", "ID -1 is not"),
    ("nan.obj", "v 0 0 nan\nv 1 0 0\nv 0 1 0\nf 1 2 3\n", "not finite"),
    ("flat.obj", "v 0 0 0\nv 1 0 0\nv 2 0 0\nf 1 2 3\n", "no surface"),
    ("dot.obj", "v 1 1 1\nv 1 1 1\nv 1 1 1\nf 1 2 3\n", "no surface"),
    ("binary.stl", "\0\1\2", ""),
    ("odd.xyz", "hello", ""),
])
def test_a_file_without_a_surface_is_refused_in_one_line(tmp_path, capsys, name, text, reason):
    path = tmp_path / name
    if text is not None:
        path.write_text(text)
    with pytest.raises(model.Unusable) as refusal:
        model.read(path)
    said = str(refusal.value)
    assert said.startswith(f"{path}: ") and reason in said and "\n" not in said
    assert capsys.readouterr().err == ""


def test_other_formats_are_read_by_meshio(tmp_path, ball):
    for name in ("ball.stl", "ball.ply", "ball.vtu", "ball.off"):
        meshio.Mesh(ball.coords, [("triangle", ball.connect.astype(np.int32))]).write(
            tmp_path / name)
        again = model.read(tmp_path / name)
        assert len(again.coords) == len(ball.coords)
        assert t2.area(again.coords, again.connect) == pytest.approx(
            t2.area(ball.coords, ball.connect), rel=1e-6)


# --------------------------------------------------------------------------------------- drawing


def test_the_picture_of_a_square_covers_its_area_and_hides_what_is_behind():
    coords = np.array([[0, 0, 0], [1, 0, 0], [1, 1, 0], [0, 1, 0]], float)
    triangles = np.array([[0, 1, 2], [2, 3, 0]], np.uint32)
    view = render.View(coords, triangles, (0, 0, 1), (0, 1, 0), (100, 80), margin=0.1)
    assert (view.triangle >= 0).sum() == 64 * 64
    points = np.array([[0.5, 0.5, 0.1], [0.5, 0.5, -0.1], [0.2, 0.7, 0.0], [1.05, 0.5, -5.0]])
    assert view.visible(points).tolist() == [True, False, True, True]
    pixels, _ = view.project(coords)
    assert np.allclose(pixels, [[18, 72], [82, 72], [82, 8], [18, 8]])
    image = view.image(np.array([[1.0, 0, 0], [0, 0, 1.0]]), line_width=0, light=0)
    assert np.allclose(image[60, 70], [1, 0, 0]) and np.allclose(image[20, 30], [0, 0, 1])
    assert np.allclose(image[0, 0], 1)


def test_a_window_enlarges_that_part_of_the_picture():
    coords = np.array([[0, 0, 0], [1, 0, 0], [1, 1, 0], [0, 1, 0]], float)
    triangles = np.array([[0, 1, 2], [2, 3, 0]], np.uint32)
    whole = render.View(coords, triangles, (0, 0, 1), (0, 1, 0), (80, 80), margin=0.0)
    part = render.View(coords, triangles, (0, 0, 1), (0, 1, 0), (80, 80), (0.5, 1, 0, 0.5),
                       margin=0.0)
    assert np.allclose(whole.project(coords[2])[0], [[80, 0]])
    assert np.allclose(part.project(np.array([[0.5, 0.5, 0], [1, 0, 0]]))[0], [[0, 0], [80, 80]])


def test_quadrilaterals_are_drawn_without_their_diagonal():
    connect = np.array([[0, 1, 2, 3], [1, 4, 2, t2.UNSET_ID]], np.uint32)
    triangles, rows, edges = render.triangulated(connect)
    assert rows.tolist() == [1, 0, 0]
    hidden = {frozenset((t[(k + 1) % 3], t[(k + 2) % 3]))
              for t, e in zip(triangles.tolist(), edges) for k in range(3) if not e[k]}
    assert hidden == {frozenset((0, 2))}
    assert edges.sum() == 7


def test_counts_read_as_english():
    assert count(1, "node") == "1 node"
    assert count(12345, "node") == "12\u202f345 nodes"
