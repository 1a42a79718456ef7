"""A surface from a file: angles, normals, refinement, and circles of plane triangles."""

from functools import lru_cache

import numpy as np

import tessalo2d as t2
from tessalo2d import interop

from . import draw, transfer
from .record import Exhibit, count
from .render import View, triangulated

TITLE = "Measures"
GREY = np.array([0.80, 0.83, 0.86])


@lru_cache(maxsize=2)
def view_of(model, window=(0, 1, 0, 1), size=(1100, 720)):
    """The model from the side that shows most; kept, since several pictures share it."""
    return View(model.coords, model.connect, model.direction, model.up, size, window)


def detail(view, width=0.42, steps=12):
    """The window of that width with the most visible nodes in it."""
    pixels, _ = view.project(view.coords[view.visible(view.coords)])
    x, y = pixels[:, 0] / view.size[0], 1 - pixels[:, 1] / view.size[1]
    best, most = None, -1
    for x0 in np.linspace(0, 1 - width, steps):
        for y0 in np.linspace(0, 1 - width, steps):
            inside = ((x > x0) & (x < x0 + width) & (y > y0) & (y < y0 + width)).sum()
            if inside > most:
                best, most = (x0, x0 + width, y0, y0 + width), inside
    return best


def angles(record, model):
    """Smallest and largest angles."""
    exhibit = Exhibit("angles", "Angles of the triangles")
    smallest, largest = exhibit.call(t2.angles, model.coords, model.connect)
    p = model.coords[model.connect]
    sides = np.linalg.norm(p[:, [1, 2, 0]] - p[:, [2, 0, 1]], axis=2)
    a, b, c = np.sort(sides, axis=1).T
    solid = a > 0
    cosine = np.clip((a**2 + b**2 - c**2)[solid] / (2 * a * b)[solid], -1, 1)
    exhibit.check("the largest angles are those of the law of cosines, to 1e-5 of a radian",
                  np.abs(np.arccos(cosine) - largest[solid]).max() < 1e-5)
    low, high = np.degrees(smallest), np.degrees(largest)

    figure, (place, chart) = draw.panels(1, 2, (14, 5.2), width_ratios=[1.7, 1])
    view = view_of(model)
    map = draw.plt.get_cmap("YlGnBu_r")
    view.show(place, view.image(map(low / 60)[:, :3], light=0.35))
    bar = draw.plt.cm.ScalarMappable(draw.plt.Normalize(0, 60), map)
    draw.colour_bar(figure, bar, [place], "smallest angle, degrees")
    draw.histogram(chart, [(low, "smallest angle", draw.BLUE), (high, "largest angle", draw.ORANGE)],
                   np.arange(0, 182, 4), "degrees", "triangles")
    record.add(exhibit, figure, f"""<b>angles</b> of {count(len(model.connect), "triangle")} of
        {model.name}: half of the smallest angles are above {np.median(low):.0f} degrees, and half
        of the largest are below {np.median(high):.0f}.""",
        [("model_angles", model.coords, model.connect,
          {"smallest_angle": low, "largest_angle": high})])


def normals(record, model):
    """Normals of triangles and of nodes."""
    exhibit = Exhibit("normals", "Normals")
    flat = exhibit.call(t2.normals, model.coords, model.connect, True)
    smooth = exhibit.call(t2.node_normals, model.coords, model.connect, 1.0, True)
    lengths = np.linalg.norm(smooth, axis=1)
    exhibit.check("each is 1 long, or 0", (np.minimum(lengths, np.abs(lengths - 1)) < 1e-12).all())
    p = model.coords[model.connect]
    cross = np.cross(p[:, 1] - p[:, 0], p[:, 2] - p[:, 0])
    exhibit.check("those of the triangles lie along the cross products of the sides",
                  ((flat * cross).sum(axis=1) >= (1 - 1e-9) * np.linalg.norm(cross, axis=1)).all())

    figure, axes = draw.panels(1, 2, (15, 5))
    view = view_of(model)
    view.show(axes[0], view.image(0.5 + 0.5 * flat, light=0.25), "of the triangles, as colours")
    view.show(axes[1], view.image(GREY, normals=smooth, line_strength=0.2),
              "of the nodes, smooth light and lines")
    shown = np.flatnonzero(view.visible(model.coords) & view.facing(smooth + 0.3 * view.axes[2]))
    tips = model.coords + 0.85 * model.edge * smooth
    draw.segments(axes[1], view.project(model.coords[shown])[0], view.project(tips[shown])[0],
                  draw.BLUE, 0.7)
    record.add(exhibit, figure, f"""<b>normals</b> of {count(len(model.connect), "triangle")}, red,
        green and blue for their x, y and z, and <b>node_normals</b> at
        {count(len(model.coords), "node")}, the means of those around, weighted by area.""",
        [("model_normals", model.coords, model.connect, {"normal": flat, "node_normal": smooth})])


def refined(record, model):
    """The model in quadrilaterals."""
    exhibit = Exhibit("refined", "A surface of quadrilaterals")
    coords, quads = exhibit.call(t2.split_into_Q4, model.coords, model.connect)
    exhibit.check("three quadrilaterals for each triangle", len(quads) == 3 * len(model.connect))
    exhibit.check_equal("area after = area before", t2.area(coords, quads),
                        t2.area(model.coords, model.connect), 1e-9)
    triangles, _, edges = triangulated(quads)
    figure, axes = draw.panels(1, 2, (15, 5))
    window = detail(view_of(model))
    before = view_of(model, window)
    before.show(axes[0], before.image(GREY), count(len(model.connect), "triangle"))
    # The same view of the same extent.
    after = View(coords, triangles, model.direction, model.up, (1100, 720), window, edges)
    after.show(axes[1], after.image(GREY), count(len(quads), "quadrilateral"))
    record.add(exhibit, figure, f"""<b>split_into_Q4</b> cuts each triangle into three quadrilaterals
        at a new node on each side, which neighbours share, and one inside:
        {count(len(coords) - len(model.coords), "new node")}. A part of the model is shown.""",
        [("model_quadrilaterals", coords, quads, None)])


def circles(record, columns=11, rows=5):
    """Circumcentres and circles of triangles."""
    exhibit = Exhibit("circumcenters", "Circumscribed circles")
    # A sheared box, so that its triangles are nearly equilateral.
    coords, connect = transfer.box_mesh(columns, rows, (0, columns, 0, rows), 0, 0.12)
    coords = coords @ np.array([[1.0, 0.0], [0.5, np.sqrt(0.75)]])
    centres = exhibit.call(t2.circumcenters, coords, connect)
    arms = np.linalg.norm(coords[connect] - centres[:, None], axis=2)
    exhibit.check("each centre is equally far from its three corners, to 1 part in 10⁹",
                  np.ptp(arms, axis=1).max() < 1e-9 * arms.min())
    figure, (axes,) = draw.panels(1, 1, (13, 4.6))
    draw.mesh(axes, coords, connect, colour=draw.PALE, width=0.9)
    for centre, arm in zip(centres, arms[:, 0]):
        axes.add_patch(draw.plt.Circle(centre, arm, fill=False, color=draw.BLUE, linewidth=0.5,
                                       alpha=0.5))
    sides = interop.neighbors(connect)
    e, k = np.nonzero(sides != t2.UNSET_ID)
    draw.segments(axes, centres[e], centres[sides[e, k]], draw.ORANGE, 1.5)
    draw.dots(axes, centres, draw.ORANGE, 18)
    draw.frame(axes)
    record.add(exhibit, figure, f"""<b>circumcenters</b> finds the centres (orange dots) of the
        circles (blue) through the corners of {count(len(connect), "triangle")}. Orange lines join
        the centres of neighbours: they cross the common sides at right angles.""",
        [("circles", coords, connect, None)])


def make(record, model):
    angles(record, model)
    normals(record, model)
    refined(record, model)
    circles(record)
