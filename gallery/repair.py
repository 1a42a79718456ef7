"""A surface whose triangles are turned at random, mended; and elements around nodes."""

import numpy as np

import tessalo2d as t2
from tessalo2d import interop

from . import draw
from .record import Exhibit, count
from .surface import GREY, view_of

TITLE = "Connectivity"
FRONT, BACK = np.array([0.45, 0.66, 0.84]), np.array([0.90, 0.52, 0.22])


def conflicts(connect):
    """Pairs of neighbours that run their common edge in the same direction."""
    sides = interop.neighbors(connect)
    e, k = np.nonzero(sides != t2.UNSET_ID)
    other = connect[sides[e, k]]
    a, b = connect[e, (k + 1) % 3], connect[e, (k + 2) % 3]
    same = ((other == a[:, None]) & (np.roll(other, -1, axis=1) == b[:, None])).any(axis=1)
    return int(same.sum()) // 2


def regions(neighbors):
    """The number of the connected region of each element."""
    region = np.arange(len(neighbors))
    linked = np.where(neighbors == t2.UNSET_ID, np.arange(len(neighbors))[:, None], neighbors)
    while True:
        lower = np.minimum(region, region[linked].min(axis=1))
        lower = lower[lower]
        if np.array_equal(lower, region):
            return region
        region = lower


def reoriented(record, model, seed=5):
    """Flipped at random, then all alike again."""
    exhibit = Exhibit("reoriented", "Triangles flipped at random, and mended")
    region = regions(model.neighbors)
    first = region == np.arange(len(region))
    turned = (np.random.default_rng(seed).random(len(region)) < 0.5) & ~first
    broken = model.connect.copy()
    broken[turned] = exhibit.call(t2.flip, np.ascontiguousarray(broken[turned]), t2.ELEMENT_T3)
    sides = interop.neighbors(broken)
    mended, followed, flips = exhibit.call(t2.mesh_reorient, broken, sides, 0, True)

    before, after, given = conflicts(broken), conflicts(mended), conflicts(model.connect)
    orientable = given == 0
    if orientable:
        exhibit.check(f"{before} pairs of neighbours at odds before, none after", after == 0)
        exhibit.check("all triangles reoriented: yes, the mesh is what it was before",
                      np.array_equal(mended, model.connect) and flips == turned.sum())
    exhibit.check("neighbors went along with the flips",
                  np.array_equal(followed, interop.neighbors(mended)))
    exhibit.check("the triangles are the same ones",
                  np.array_equal(np.sort(mended, axis=1), np.sort(model.connect, axis=1)))

    figure, axes = draw.panels(1, 2, (15, 5))
    view = view_of(model)
    for place, connect, name in ((axes[0], broken, f"before: {before} pairs at odds"),
                                 (axes[1], mended, f"after: {after}")):
        facing = view.facing(t2.normals(model.coords, connect))
        view.show(place, view.image(np.where(facing[:, None], FRONT, BACK), light=0.45), name)
    outcome = "all are as before" if orientable else \
        "it can't be made alike everywhere, as the surface itself is one-sided"
    record.add(exhibit, figure, f"""Of {count(len(broken), "triangle")} of {model.name}
        {count(int(turned.sum()), "triangle")} were flipped at random: blue shows its front, orange
        its back. <b>mesh_reorient</b> flipped {count(flips, "triangle")}, so that each of the
        {count(int(first.sum()), "connected part")} follows its first one, and {outcome}.""",
        [("model_broken", model.coords, broken, None), ("model_mended", model.coords, mended, None)])


def connected(record, model, sample=28):
    """The elements around each node."""
    exhibit = Exhibit("connected_elements", "Elements around a node")
    holders = interop.node_element(model.connect, len(model.coords))
    offsets, elements = exhibit.call(t2.get_connected_elements, model.connect, model.neighbors,
                                     holders)
    around = np.diff(offsets.astype(np.int64))
    owners = np.repeat(np.arange(len(around)), around)
    exhibit.check("every listed element holds its node",
                  (model.connect[elements] == owners[:, None]).any(axis=1).all())
    in_all = np.bincount(model.connect.ravel(), minlength=len(model.coords))
    complete = int((around == in_all).sum())
    exhibit.check(f"the list is complete at {complete} of {len(around)} nodes, one fan at the others",
                  (around <= in_all).all() and (around > 0).all())

    figure, (place, chart) = draw.panels(1, 2, (14, 5.2), width_ratios=[1.7, 1])
    view = view_of(model)
    # Fans of nodes that are far from each other, one colour each.
    colours = np.tile(GREY, (len(model.connect), 1))
    normals = t2.node_normals(model.coords, model.connect)
    candidates = np.flatnonzero(view.visible(model.coords) & view.facing(normals))
    palette = draw.plt.get_cmap("tab10").colors
    taken = np.zeros(len(model.connect), bool)
    centres = []
    # Large fans first, by and large.
    areas = np.linalg.norm(t2.normals(model.coords, model.connect, unit_length=False), axis=1)
    fans = np.bincount(model.connect.ravel(), np.repeat(areas, 3), len(model.coords))[candidates]
    chance = np.random.default_rng(3).random(len(candidates)) * fans
    for node in candidates[np.argsort(-chance)]:
        fan = elements[offsets[node]:offsets[node + 1]]
        ring = np.unique(model.connect[fan])
        if len(centres) < sample and not taken[fan].any():
            colours[fan] = 0.35 * GREY + 0.65 * np.array(palette[len(centres) % 10])
            near = np.isin(model.connect, ring).any(axis=1)
            taken |= np.isin(model.connect, np.unique(model.connect[near])).any(axis=1)
            centres.append(node)
    view.show(place, view.image(colours, light=0.45), "")
    draw.dots(place, view.project(model.coords[centres])[0], draw.INK, 7)
    bins = np.arange(around.max() + 2) - 0.5
    chart.hist(around, bins=bins, color=draw.BLUE, alpha=0.75, rwidth=0.85)
    chart.set_xlabel("triangles around a node")
    chart.set_ylabel("nodes")
    record.add(exhibit, figure, f"""<b>get_connected_elements</b> lists the triangles around each of
        {count(len(around), "node")}, {len(elements) / len(around):.2f} on average, in the direction
        in which they run. The lists of {len(centres)} nodes are coloured.""",
        [("model_valence", model.coords, model.connect, {"elements_around": around})])


def make(record, model):
    reoriented(record, model)
    connected(record, model)
