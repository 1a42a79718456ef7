"""Surfaces from a wing section: straight, around an axis, and twisted."""

import numpy as np

import tessalo2d as t2
from tessalo2d import interop

from . import draw, naca
from .record import Exhibit, count
from .render import View, triangulated

TITLE = "Extrusion"
SIDE = np.array([0.72, 0.80, 0.88])
CAP = np.array([0.93, 0.68, 0.42])


def weld(coords, connect, tolerance=1e-12):
    """Makes one node of nodes in the same place, and gives up those that are left over."""
    _, first, where = np.unique(np.round(coords / tolerance), axis=0, return_index=True,
                                return_inverse=True)
    valid = connect != t2.UNSET_ID
    welded = connect.copy()
    welded[valid] = where.ravel()[connect[valid]]
    return np.ascontiguousarray(coords[first]), welded


def volume(coords, connect):
    """The volume that triangles enclose, from the library's normals (the divergence theorem)."""
    doubled = t2.normals(coords, connect, unit_length=False)
    return float((coords[connect[:, 0]] * doubled).sum() / 6)


def is_closed(connect):
    sides = interop.neighbors(connect)
    used = np.ones(connect.shape, bool)
    if connect.shape[1] == 4:
        used[connect[:, 3] == t2.UNSET_ID, 3] = False
    return bool((sides[used] != t2.UNSET_ID).all())


def draw_surface(axes, coords, connect, colours, direction, up, size, light=0.6, title=""):
    triangles, rows, edges = triangulated(connect)
    view = View(coords, triangles, direction, up, size, edges=edges)
    faces = np.broadcast_to(colours, (len(connect), 3))[rows]
    view.show(axes, view.image(faces, light=light), title)


def straight_and_round(record, half=24, layers=14, turns=72):
    """Along a vector, and around an axis."""
    exhibit = Exhibit("translate_rotate", "A straight wing and a ring")
    section = naca.section("2415", half)
    edges = naca.loop_edges(2 * half)
    span = 2.2
    wing, quads = exhibit.call(t2.extrude_translate_Q4, section, edges, (0.0, 0.0, span), None,
                               h0=0.25, h1=0.04)
    length = np.linalg.norm(section[edges[:, 1]] - section[edges[:, 0]], axis=1).sum()
    exhibit.check_equal("area of the wing = length of the section by span", t2.area(wing, quads),
                        length * span)

    around = section + [0.0, 0.75]
    ring, rounds = exhibit.call(t2.extrude_rotate_Q4, around, edges, (0.0, 0.0, 0.0),
                                (2 * np.pi, 0.0, 0.0), turns)
    ring, rounds = weld(ring, rounds, 1e-9)
    exhibit.check("the ring is closed", is_closed(rounds))
    a, b = around[edges[:, 0]], around[edges[:, 1]]
    step = np.pi / turns
    height = np.hypot(b[:, 0] - a[:, 0], (b[:, 1] - a[:, 1]) * np.cos(step))
    exhibit.check_equal("area of the ring = that of its trapezia", t2.area(ring, rounds),
                        turns * float((height * (a[:, 1] + b[:, 1]) * np.sin(step)).sum()), 1e-9)

    figure, axes = draw.panels(1, 2, (13, 5.2), width_ratios=[1.25, 1])
    draw_surface(axes[0], wing, quads, SIDE, (-0.6, 0.75, 0.75), (0, 1, 0), (1000, 640),
                 title=f"{count(len(quads), 'quadrilateral')}, layers from wide to thin")
    draw_surface(axes[1], ring, rounds, SIDE, (-1.0, 0.35, 0.8), (0, 1, 0), (800, 640),
                 title=f"{count(len(rounds), 'quadrilateral')}, a full turn")
    record.add(exhibit, figure, f"""A NACA 2415 section of {count(len(edges), "edge")}.
        <b>extrude_translate_Q4</b> makes a wing of it, in layers from 0.25 at one end to 0.04 at
        the other, and <b>extrude_rotate_Q4</b> a ring in {turns} layers, whose last one is then
        welded to the first.""",
        [("wing_straight", wing, quads, None), ("ring", ring, rounds, None)])


def twisted(record, half=36, across=10, twist=-0.6):
    """A twisted wing with both ends closed."""
    exhibit = Exhibit("twisted_wing", "A twisted wing")
    section = naca.section("4415", half)
    n, span = 2 * half, 3.0
    coords, quads = exhibit.call(
        t2.extrude_spiral_Q4, section, naca.loop_edges(n), (0.3, 0.0, 0.0), (0.0, 0.0, twist),
        (0.0, 0.0, span), h0=0.12, h1=0.03
    )
    layers = len(quads) // n
    cos, sin = np.cos(twist), np.sin(twist)
    turned = (section - [0.3, 0.0]) @ np.array([[cos, sin], [-sin, cos]]) + [0.3, 0.0]
    exhibit.check("the last layer is the section, turned and moved",
                  np.allclose(coords[-n:], np.column_stack([turned, np.full(n, span)]), 0, 1e-12))

    # The ends: the same grid in the first and in the last layer, the first one seen from below.
    coords, root = exhibit.call(t2.mesh_struct_Q4, coords, naca.fill_loop(np.arange(n), across),
                                across)
    tip_ids = naca.fill_loop(layers * n + np.arange(n), across)
    coords, tip = exhibit.call(t2.mesh_struct_Q4, coords, tip_ids, across)
    root, _ = exhibit.call(t2.convert_degenerated_Q4, root)
    tip, _ = exhibit.call(t2.convert_degenerated_Q4, tip)
    triangles = root[:, 3] == t2.UNSET_ID
    root[~triangles] = exhibit.call(t2.flip, np.ascontiguousarray(root[~triangles]),
                                    t2.ELEMENT_Q4)
    root[triangles, :3] = exhibit.call(t2.flip, np.ascontiguousarray(root[triangles, :3]),
                                       t2.ELEMENT_T3)
    wing = np.concatenate([quads, root, tip])
    exhibit.check("the wing is closed", is_closed(wing))
    split = exhibit.call(t2.split_Q4_into_T3_by_quality, coords, wing)
    exhibit.check("all triangles face outwards alike: nothing to reorient",
                  exhibit.call(t2.mesh_reorient, split, interop.neighbors(split))[2] == 0)
    inside = volume(coords, split)
    expected = naca.polygon_area(section) * span
    exhibit.check(f"the volume is that of a straight wing to 1 %: {inside:.6f}",
                  abs(inside - expected) < 0.01 * expected)

    figure, (axes,) = draw.panels(1, 1, (13, 5.8))
    colours = np.concatenate([np.tile(SIDE, (len(quads), 1)),
                              np.tile(CAP, (len(root) + len(tip), 1))])
    draw_surface(axes, coords, wing, colours, (-0.62, 0.7, 0.42), (0, 1, 0), (1400, 620), 0.45)
    record.add(exhibit, figure, f"""<b>extrude_spiral_Q4</b> turns a NACA 4415 section by
        {abs(np.degrees(twist)):.0f} degrees along its way into {count(len(quads), "quadrilateral")}
        in {layers} layers, thinner towards the tip. <b>mesh_struct_Q4</b> closes both ends
        (orange), <b>convert_degenerated_Q4</b> makes triangles at their sharp edge, and
        <b>flip</b> turns the root outwards.""",
        [("wing_twisted", coords, wing, None), ("wing_triangles", coords, split, None)])


def make(record):
    straight_and_round(record)
    twisted(record)
