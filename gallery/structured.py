"""Structured grids around and in a wing section."""

import numpy as np

import tessalo2d as t2

from . import draw, naca
from .record import Exhibit, count

TITLE = "Structured grids"
DIGITS = "4412"


def around(record, half=64, layers=28):
    """A grid between a section and a circle."""
    exhibit = Exhibit("grid_around", f"A grid around a NACA {DIGITS} section")
    coords, connect, inner, outer = naca.around_section(DIGITS, half, layers, call=exhibit.call)
    smallest, largest = exhibit.call(t2.angles, coords, connect, normalized=True)
    exhibit.check("every angle of every element is between 0 and 180 degrees",
                  smallest.min() > 0 and largest.max() < 2)
    exhibit.check_equal("area of the elements = circle less section",
                        exhibit.call(t2.area, coords, connect),
                        naca.polygon_area(outer) - naca.polygon_area(inner))

    figure, (whole, part) = draw.panels(1, 2, (13, 5.6))
    for axes, width in ((whole, 0.25), (part, 0.5)):
        faces = draw.mesh(axes, coords, connect, smallest * 90, map="YlGnBu", limits=(0, 90),
                          width=width)
    draw.frame(whole, "the whole grid")
    draw.frame(part, "from nose to trailing edge", (-0.12, 1.12, -0.5, 0.58))
    draw.colour_bar(figure, faces, [whole, part], "smallest angle of the element, degrees")
    record.add(exhibit, figure, f"""<b>mesh_struct_Q4</b> fills eight blocks between the section and
        a circle with {count(len(connect), "quadrilateral")}, each block one call that appends to
        the mesh so far. The layers grow by 12 % from one to the next, as the nodes on the sides of
        the blocks have it.""",
        [("grid_around", coords, connect, {"smallest_angle": smallest * 90})])


def inside(record, half=30, across=10):
    """The inside of a section, with quadrilaterals and with triangles."""
    exhibit = Exhibit("grid_inside", "The section filled")
    loop = naca.section(DIGITS, half)
    area = naca.polygon_area(loop)
    ids = naca.fill_loop(np.arange(2 * half), across)
    quads, wedges = exhibit.call(t2.mesh_struct_Q4, loop, ids, across)
    mixed, converted = exhibit.call(t2.convert_degenerated_Q4, wedges)
    exhibit.check(f"the {across} cells at the trailing edge are triangles now", converted == across)
    exhibit.check_equal("area of the mixed mesh = area of the polygon",
                        exhibit.call(t2.area, quads, mixed), area)

    figure, axes = draw.panels(2, 2, (13, 4.6))
    is_triangle = mixed[:, 3] == t2.UNSET_ID
    colours = [draw.ORANGE if triangle else draw.PALE for triangle in is_triangle]
    draw.mesh(axes[0], quads, mixed, colour=colours)
    draw.frame(axes[0], f"quadrilaterals, and {count(converted, 'triangle')} at the trailing edge")
    names = ["one diagonal", "the other diagonal", "alternating diagonals"]
    meshes = [("section_mixed", quads, mixed, None)]
    for pattern, (name, place) in enumerate(zip(names, axes[1:])):
        coords, connect = exhibit.call(t2.mesh_struct_T3, loop, ids, across, pattern)
        # At the trailing edge one of two triangles of a cell is flat.
        solid = [len(set(row)) == 3 for row in connect]
        connect = np.ascontiguousarray(connect[solid])
        draw.mesh(place, coords, connect, colour=draw.PALE)
        draw.frame(place, f"{count(len(connect), 'triangle')}, {name}")
        exhibit.check_equal(f"area of the triangles of pattern {pattern}",
                            exhibit.call(t2.area, coords, connect), area)
        meshes.append((f"section_pattern_{pattern}", coords, connect, None))
    record.add(exhibit, figure, f"""<b>mesh_struct_Q4</b> and <b>mesh_struct_T3</b> with its three
        patterns of diagonals, on a loop whose fourth side is a single node, the sharp trailing
        edge. <b>convert_degenerated_Q4</b> makes triangles of the quadrilaterals that have that
        node twice.""", meshes)


def circles(record, half=14, across=6):
    """Circumcentres and circles of triangles."""
    exhibit = Exhibit("circumcenters", "Circumscribed circles")
    loop = naca.section("0021", half)
    ids = naca.fill_loop(np.arange(2 * half), across)
    coords, connect = t2.mesh_struct_T3(loop, ids, across, 2)
    connect = np.ascontiguousarray(connect[[len(set(row)) == 3 for row in connect]])
    centres = exhibit.call(t2.circumcenters, coords, connect)
    arms = np.linalg.norm(coords[connect] - centres[:, None], axis=2)
    exhibit.check("each centre is equally far from its three corners, to 1 part in 10⁹",
                  np.ptp(arms, axis=1).max() < 1e-9 * arms.max())

    figure, (axes,) = draw.panels(1, 1, (13, 4.4))
    draw.mesh(axes, coords, connect, colour=draw.PALE, width=0.7)
    nose = np.flatnonzero(coords[connect][:, :, 0].max(axis=1) < 0.62)
    for e in nose[:: max(1, len(nose) // 40)]:
        axes.add_patch(draw.plt.Circle(centres[e], arms[e, 0], fill=False, color=draw.BLUE,
                                       linewidth=0.7, alpha=0.8))
    draw.dots(axes, centres[nose], draw.ORANGE, 12)
    draw.frame(axes, "", (-0.08, 0.75, -0.14, 0.14))
    record.add(exhibit, figure, f"""<b>circumcenters</b> finds the centres of the circles through
        the corners of {count(len(connect), "triangle")} of a NACA 0021 section. Shown are the
        centres (orange) of the triangles in the front part, and some of the circles.""",
        [("circles", coords, connect, None)])


def make(record):
    around(record)
    inside(record)
    circles(record)
