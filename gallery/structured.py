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

    figure, (whole, part) = draw.panels(1, 2, (13, 5.3), width_ratios=[0.87, 1])
    for axes, width in ((whole, 0.25), (part, 0.5)):
        faces = draw.mesh(axes, coords, connect, smallest * 90, map="YlGnBu_r", limits=(0, 90),
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

    figure, axes = draw.mosaic(["AAB", "CDE"], (14, 4.5))
    is_triangle = mixed[:, 3] == t2.UNSET_ID
    colours = [draw.ORANGE if triangle else draw.PALE for triangle in is_triangle]
    for place in axes[:2]:
        draw.mesh(place, quads, mixed, colour=colours)
    draw.frame(axes[0], f"{len(mixed) - converted} quadrilaterals, {count(converted, 'triangle')}")
    draw.frame(axes[1], "its trailing edge", (0.983, 1.0005, -0.0008, 0.0052))
    names = ["one diagonal", "the other diagonal", "alternating diagonals"]
    meshes = [("section_mixed", quads, mixed, None)]
    for pattern, (name, place) in enumerate(zip(names, axes[2:])):
        coords, connect = exhibit.call(t2.mesh_struct_T3, loop, ids, across, pattern)
        # At the trailing edge one of two triangles of a cell is flat.
        solid = [len(set(row)) == 3 for row in connect]
        connect = np.ascontiguousarray(connect[solid])
        draw.mesh(place, coords, connect, colour=draw.PALE)
        draw.frame(place, f"{count(len(connect), 'triangle')}, {name}", (-0.01, 0.42, -0.05, 0.115))
        exhibit.check_equal(f"area of the triangles of pattern {pattern}",
                            exhibit.call(t2.area, coords, connect), area)
        meshes.append((f"section_pattern_{pattern}", coords, connect, None))
    record.add(exhibit, figure, f"""<b>mesh_struct_Q4</b> and <b>mesh_struct_T3</b> with its three
        patterns of diagonals (the front part is shown), on a loop whose fourth side is a single
        node, the sharp trailing edge. <b>convert_degenerated_Q4</b> makes triangles of the
        quadrilaterals that have that node twice (orange).""", meshes)


def make(record):
    around(record)
    inside(record)
