"""From straight linear elements to curved quadratic ones, and back."""

import numpy as np

import tessalo2d as t2

from . import draw, naca
from .record import Exhibit, count

TITLE = "Element order"
DIGITS = "2418"
WINDOW = (-0.01, 0.43, -0.085, 0.125)


def curved_outlines(coords, connect, steps=8):
    """The sides of T6 elements as they really run: parabolas through ends and middle."""
    t = np.linspace(0, 1, steps)[:, None, None]
    outlines = []
    for start, end, middle in ((0, 1, 5), (1, 2, 3), (2, 0, 4)):
        a, b, m = (coords[connect[:, k]][None] for k in (start, end, middle))
        outlines.append(a * (1 - t) * (1 - 2 * t) + b * t * (2 * t - 1) + m * 4 * t * (1 - t))
    return np.concatenate(outlines).transpose(1, 0, 2)


def draw_outlines(axes, outlines):
    axes.add_collection(draw.PolyCollection(outlines, facecolors=draw.PALE, edgecolors=draw.LINE,
                                            linewidths=0.7))


def raised(record, half=8, across=4):
    """T3 to T6, with straight sides and with sides on the section."""
    exhibit = Exhibit("quadratic", "T3 become T6, on the curve")
    n = 2 * half
    loop = naca.section(DIGITS, half)
    coords, linear = t2.mesh_struct_T3(loop, naca.fill_loop(np.arange(n), across), across, 2)
    linear = np.ascontiguousarray(linear[[len(set(row)) == 3 for row in linear]])

    straight, quadratic = exhibit.call(t2.convert_into_quadratic, coords, linear)
    middles = 0.5 * (straight[quadratic[:, [1, 2, 0]]] + straight[quadratic[:, [2, 0, 1]]])
    exhibit.check("nodes 3, 4, 5 are the midpoints of the sides 1-2, 2-0, 0-1",
                  np.abs(straight[quadratic[:, 3:]] - middles).max() < 1e-15)

    # On the section the middles are known already: points of the formula, half a step on.
    known = np.concatenate([coords, naca.section_point(DIGITS, (np.arange(n) + 0.5) / half)])
    edges = np.column_stack([naca.loop_edges(n), len(coords) + np.arange(n)]).astype(np.uint32)
    curved, on_curve = exhibit.call(t2.convert_into_quadratic, known, linear, edges)
    exhibit.check("every prepared node is in the mesh", np.isin(edges[:, 2], on_curve).all())

    exact = naca.polygon_area(naca.section(DIGITS, 20000))
    pieces = exhibit.call(t2.split_into_linear, on_curve)
    errors = [abs(t2.area(curved, t) - exact) / exact for t in (linear, pieces)]
    exhibit.check("the curved mesh is at least twice as near to the area of the section",
                  errors[1] < 0.5 * errors[0])
    exhibit.check("convert_into_linear gives the triangles back",
                  np.array_equal(exhibit.call(t2.convert_into_linear, on_curve), linear))

    figure, axes = draw.panels(1, 3, (15, 2.75))
    true = naca.section(DIGITS, 400)
    draw.mesh(axes[0], coords, linear, width=0.7)
    draw.dots(axes[0], coords, draw.INK, 16)
    draw.frame(axes[0], f"{len(linear)} T3, {count(len(coords), 'node')}", WINDOW)
    draw_outlines(axes[1], curved_outlines(straight, quadratic))
    draw.dots(axes[1], straight[len(coords):], draw.ORANGE, 16)
    draw.frame(axes[1], "T6 with straight sides", WINDOW)
    draw_outlines(axes[2], curved_outlines(curved, on_curve))
    draw.dots(axes[2], curved[len(coords):], draw.ORANGE, 16)
    draw.frame(axes[2], "T6 with middles on the section", WINDOW)
    for place in axes:
        draw.polyline(place, true, draw.RED, 1.0, zorder=4)
    record.add(exhibit, figure, f"""<b>convert_into_quadratic</b> puts a node (orange) on each side
        of {count(len(linear), "triangle")}; those on the section (red) are handed to it as edges
        that have their node already. The area is wrong by {100 * errors[0]:.2f} % with straight
        sides and by {100 * errors[1]:.2f} % when <b>split_into_linear</b> cuts the curved T6 into
        four.""", [("order_t3", coords, linear, None), ("order_t6", curved, on_curve, None)])


def high(record, half=8, across=4):
    """Many nodes a side."""
    exhibit = Exhibit("high_order", "Higher orders")
    n = 2 * half
    loop = naca.section(DIGITS, half)
    coords, wedges = t2.mesh_struct_Q4(loop, naca.fill_loop(np.arange(n), across), across)
    linear, _ = t2.convert_degenerated_Q4(wedges)
    quads = int((linear[:, 3] != t2.UNSET_ID).sum())
    triangles = len(linear) - quads
    sides = {tuple(sorted((row[k], row[(k + 1) % len(row)])))
             for row in ([i for i in r if i != t2.UNSET_ID] for r in linear.tolist())
             for k in range(len(row))}

    figure, axes = draw.panels(1, 3, (15, 2.75))
    for place, (a, b, c) in zip(axes, ((1, 1, 0), (2, 4, 1), (3, 9, 3))):
        nodes, connect = exhibit.call(t2.convert_into_high_order, coords, linear, a, b, c)
        exhibit.check(f"order {a + 1}: {len(nodes) - len(coords)} new nodes, "
                      f"{a} a side, {b} a quadrilateral, {c} a triangle",
                      len(nodes) - len(coords) == a * len(sides) + b * quads + c * triangles)
        draw.mesh(place, coords, linear, width=0.7)
        edge_nodes = len(coords) + a * len(sides)
        draw.dots(place, coords, draw.INK, 16)
        draw.dots(place, nodes[len(coords):edge_nodes], draw.ORANGE, 12)
        draw.dots(place, nodes[edge_nodes:], draw.BLUE, 12)
        draw.frame(place, f"{a} a side, {b} a quadrilateral, {c} a triangle", WINDOW)
    record.add(exhibit, figure, f"""<b>convert_into_high_order</b> on {count(len(linear), "element")},
        quadrilaterals and triangles: nodes on the sides (orange), which neighbours share, and inside
        (blue).""", [("high_order_linear", coords, linear, None)])


def make(record):
    raised(record)
    high(record)
