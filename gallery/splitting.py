"""Quadrilaterals cut into triangles, and everything cut into quadrilaterals."""

import numpy as np

import tessalo2d as t2

from . import draw, naca
from .record import Exhibit, count

TITLE = "Splitting"
WINDOW = (-0.45, 1.45, -0.7, 0.75)


def skewed_grid(half, layers):
    """The grid around a section with its rays swept to and fro: the quadrilaterals lean one way here
    and the other way there."""
    coords, connect, inner, _ = naca.around_section("4412", half, layers, growth=1.1)
    away = np.sqrt(((coords[:, None] - inner) ** 2).sum(axis=2).min(axis=1))
    x, y = (coords - [0.5, 0.0]).T
    turn = 0.3 * away / (away + 0.2) * np.sin(2 * np.arctan2(y, x))
    cos, sin = np.cos(turn), np.sin(turn)
    return np.column_stack([0.5 + cos * x - sin * y, sin * x + cos * y]), connect


def by_quality(record, half=32, layers=12):
    """The diagonal from the first corner against the one of better triangles."""
    exhibit = Exhibit("split_by_quality", "Quadrilaterals split by quality")
    coords, connect = skewed_grid(half, layers)
    plain = exhibit.call(t2.split_Q4_into_T3, connect)
    better = exhibit.call(t2.split_Q4_into_T3_by_quality, coords, connect)
    whole = t2.area(coords, connect)
    exhibit.check("two triangles for each quadrilateral, either way",
                  len(plain) == len(better) == 2 * len(connect))
    exhibit.check_equal("area after the first split = before", t2.area(coords, plain), whole)
    exhibit.check_equal("area after the second split = before", t2.area(coords, better), whole)
    worst = [t2.angles(coords, triangles)[0] * 180 / np.pi for triangles in (plain, better)]
    exhibit.check("the mean of the smallest angles is larger by quality",
                  worst[1].mean() > worst[0].mean())

    figure, (left, right, chart) = draw.panels(1, 3, (14, 4.2), width_ratios=[1, 1, 0.9])
    for axes, triangles, values, name in ((left, plain, worst[0], "from the first corner"),
                                          (right, better, worst[1], "by quality")):
        faces = draw.mesh(axes, coords, triangles, values, map="YlGnBu_r", limits=(0, 60))
        draw.frame(axes, name, WINDOW)
    draw.colour_bar(figure, faces, [left, right], "smallest angle, degrees")
    draw.histogram(chart, [(worst[0], "first corner", draw.ORANGE), (worst[1], "quality", draw.BLUE)],
                   np.arange(0, 62.5, 2.5), "smallest angle of a triangle, degrees", "triangles")
    record.add(exhibit, figure, f"""{count(len(connect), "quadrilateral")} around a section, cut by
        <b>split_Q4_into_T3</b> along the diagonal from the first corner, and by
        <b>split_Q4_into_T3_by_quality</b> along the one that gives the better worst triangle. The
        smallest angles are {worst[0].mean():.1f} degrees on average with the first and
        {worst[1].mean():.1f} with the second.""",
        [("split_plain", coords, plain, {"smallest_angle": worst[0]}),
         ("split_by_quality", coords, better, {"smallest_angle": worst[1]})])


def gated(record, half=32, layers=12):
    """Only bad quadrilaterals are cut."""
    exhibit = Exhibit("split_gated", "Only the bad ones split, and all refined")
    coords, connect = skewed_grid(half, layers)
    whole = t2.area(coords, connect)
    mixed, kept, split = exhibit.call(t2.split_Q4_into_T3_gated, coords, connect, 0.0, 0.72, 0.0)
    exhibit.check_equal("area of the mixed mesh = before", t2.area(coords, mixed), whole)
    exhibit.check("each quadrilateral is either kept or split",
                  sorted([*kept, *split]) == list(range(len(connect))))
    refined, pieces = exhibit.call(t2.split_into_Q4, coords, mixed)
    exhibit.check_equal("area of the refined mesh = before", t2.area(refined, pieces), whole)
    exhibit.check("four for a quadrilateral, three for a triangle",
                  len(pieces) == 4 * len(kept) + 3 * 2 * len(split))

    figure, axes = draw.panels(1, 2, (13, 4.8))
    cut = mixed[:, 3] == t2.UNSET_ID
    draw.mesh(axes[0], coords, mixed,
              colour=[draw.ORANGE if triangle else draw.PALE for triangle in cut])
    draw.frame(axes[0], f"{count(len(kept), 'quadrilateral')} kept, {len(split)} split", WINDOW)
    ancestors = np.concatenate([np.repeat(cut[~cut], 4), np.repeat(cut[cut], 3)])
    draw.mesh(axes[1], refined, pieces, width=0.3,
              colour=["#f0c08f" if triangle else draw.PALE for triangle in ancestors])
    draw.frame(axes[1], f"{count(len(pieces), 'quadrilateral')}", WINDOW)
    record.add(exhibit, figure, f"""<b>split_Q4_into_T3_gated</b> cuts only the quadrilaterals whose
        angles are too far from right ones, {len(split)} of {len(connect)} (orange). Then
        <b>split_into_Q4</b> makes a mesh of quadrilaterals alone of the mixed one, at new nodes on
        its edges and inside its elements.""",
        [("split_gated", coords, mixed, None), ("split_into_Q4", refined, pieces, None)])


def make(record):
    by_quality(record)
    gated(record)
