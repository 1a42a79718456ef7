"""Fields, sizes and metrics carried from a background mesh."""

import numpy as np

import tessalo2d as t2
from tessalo2d import interop

from . import draw, naca
from .record import Exhibit, count

TITLE = "Fields from a background mesh"
DIGITS = "4412"
BOX = (-1.1, 2.1, -1.5, 1.5)


def box_mesh(columns, rows, box=BOX, pattern=2, disorder=0.2):
    """Triangles of a box; its inner nodes are moved a little so that none is special."""
    x = np.linspace(box[0], box[1], columns + 1)
    y = np.linspace(box[2], box[3], rows + 1)
    bottom, top = (np.column_stack([x, np.full_like(x, v)]) for v in (box[2], box[3]))
    right, left = (np.column_stack([np.full_like(y, v), y]) for v in (box[1], box[0]))
    loop = np.concatenate([bottom[:-1], right[:-1], top[:0:-1], left[:0:-1]])
    ids = naca.closed(np.arange(len(loop)))
    coords, connect = t2.mesh_struct_T3(loop, ids, rows, pattern)
    inner = np.arange(len(coords)) >= len(loop)
    shift = np.random.default_rng(7).uniform(-disorder, disorder, coords.shape)
    coords[inner] += (shift * [x[1] - x[0], y[1] - y[0]])[inner]
    return coords, connect


def nearest_on_section(points, n=2000):
    """Distance to the section and the direction of its surface there."""
    outline = naca.section(DIGITS, n)
    tangent = np.roll(outline, -1, axis=0) - np.roll(outline, 1, axis=0)
    tangent /= np.linalg.norm(tangent, axis=1)[:, None]
    near = np.array([np.argmin(((outline - p) ** 2).sum(axis=1)) for p in points])
    return np.linalg.norm(points - outline[near], axis=1), tangent[near]


def wanted_metrics(points):
    """Thin across the section and long along it near by, the same in all directions far away."""
    distance, along = nearest_on_section(points)
    across = np.column_stack([-along[:, 1], along[:, 0]])
    thin, long = 0.03 + 0.16 * distance, 0.12 + 0.13 * distance
    full = (along[:, :, None] * along[:, None, :] / long[:, None, None] ** 2
            + across[:, :, None] * across[:, None, :] / thin[:, None, None] ** 2)
    return interop.pack_metrics(full)


class Background:
    """A background mesh and target nodes in one array of nodes, as the library takes them."""

    def __init__(self, coords, connect, targets):
        self.coords = np.concatenate([coords, targets])
        self.connect = connect
        self.neighbors = interop.neighbors(connect)
        self.node_element = interop.node_element(connect, len(self.coords))
        self.targets = np.arange(len(coords), len(self.coords), dtype=np.uint32)

    def arguments(self):
        return self.coords, self.connect, self.neighbors, self.node_element


def sizes(record, half=64, layers=28, columns=28, rows=26):
    """A size field."""
    exhibit = Exhibit("sizes", "Sizes carried from a background mesh")
    coarse, connect = box_mesh(columns, rows)
    fine, quads, _, _ = naca.around_section(DIGITS, half, layers)
    mesh = Background(coarse, connect, fine)

    plane = 2.0 + mesh.coords @ [0.25, -0.5]
    field = np.where(mesh.node_element == t2.UNSET_ID, 0.0, plane)
    field = exhibit.call(t2.interpolate, *mesh.arguments(), field, mesh.targets)
    error = np.abs(field - plane).max()
    exhibit.check(f"a linear field arrives exactly: largest error {error:.1e}", error < 1e-12)

    given = np.zeros(len(mesh.coords))
    given[: len(coarse)] = 0.02 + 0.22 * nearest_on_section(coarse)[0]
    carried = exhibit.call(t2.interpolate_metrics, *mesh.arguments(), given)
    lowest, highest = given[: len(coarse)].min(), given[: len(coarse)].max()
    served = carried[len(coarse):]
    exhibit.check("each target has a size, and none is outside the range of the background",
                  (served >= lowest).all() and (served <= highest).all())

    figure, axes = draw.panels(1, 2, (13, 5.6))
    for place, nodes, elements, values, name, width in (
        (axes[0], coarse, connect, carried[: len(coarse)],
         f"background: {count(len(connect), 'triangle')}", 0.3),
        (axes[1], fine, quads, served, f"served: {count(len(fine), 'node')}", 0.15),
    ):
        valid = np.where(elements == t2.UNSET_ID, 0, elements)
        faces = draw.mesh(place, nodes, elements, values[valid].mean(axis=1), map="viridis",
                          limits=(lowest, highest), width=width, edge="#ffffff60")
        draw.polyline(place, naca.section(DIGITS, 200), "white", 1.3)
        draw.frame(place, name, BOX)
    draw.colour_bar(figure, faces, axes, "wanted size of the elements")
    seconds = dict(exhibit.calls)["interpolate_metrics"]
    record.add(exhibit, figure, f"""<b>interpolate_metrics</b> locates
        {count(len(fine), "node")} of a grid in a coarse background mesh and gives each a size from
        there, {1e6 * seconds / len(fine):.2f} µs a node. <b>interpolate</b> does the same with any
        scalar field.""",
        [("sizes_background", coarse, connect, {"size": carried[: len(coarse)]}),
         ("sizes_served", fine, quads, {"size": served})])


def metrics(record, columns=28, rows=26, half=32, layers=14):
    """A field of metrics, drawn as ellipses."""
    exhibit = Exhibit("metrics", "Metrics carried from a background mesh")
    coarse, connect = box_mesh(columns, rows)
    fine, quads, _, _ = naca.around_section(DIGITS, half, layers, growth=1.2)
    mesh = Background(coarse, connect, fine)
    given = np.zeros((len(mesh.coords), 3))
    given[: len(coarse)] = wanted_metrics(coarse)
    carried = exhibit.call(t2.interpolate_metrics, *mesh.arguments(), given)
    full = interop.full_metrics(carried)
    exhibit.check("each target has a metric, positive definite",
                  np.linalg.eigvalsh(full).min() > 0)

    figure, axes = draw.panels(1, 2, (13, 5.3))
    window = (-0.75, 1.75, -0.85, 0.95)
    scale = 0.2
    covariance = np.linalg.inv(full) * scale**2
    draw.mesh(axes[0], coarse, connect, colour="white", width=0.3, edge="#b8c4d0")
    draw.ellipses(axes[0], coarse, covariance[: len(coarse)], draw.BLUE, 0.7, "#2f6f9f30")
    draw.frame(axes[0], f"background: {count(len(coarse), 'metric')}", window)
    draw.mesh(axes[1], fine, quads, colour="white", width=0.3, edge="#b8c4d0")
    shown = with_room(fine, covariance[len(coarse):])
    draw.ellipses(axes[1], fine[shown], covariance[len(coarse):][shown], draw.ORANGE, 0.7,
                  "#d9822b30")
    draw.frame(axes[1], f"served: {count(len(fine), 'metric')}", window)
    for place in axes:
        draw.polyline(place, naca.section(DIGITS, 200), draw.INK, 1.2)
    record.add(exhibit, figure, f"""<b>interpolate_metrics</b> with metrics: at a node the ellipse is
        the wanted element, drawn at a fifth of its size, thin across the section and long along it;
        on the right only as many are drawn as there is room for. Two metrics are reduced to common
        axes, along which the sizes are linear; so every result is a metric, too.""",
        [("metrics_background", coarse, connect, {"metric": carried[: len(coarse)]}),
         ("metrics_served", fine, quads, {"metric": carried[len(coarse):]})])


def with_room(points, covariances):
    """Points whose ellipses hardly overlap: each is taken unless it is too near to one before."""
    radius = np.sqrt(np.linalg.eigvalsh(covariances)[:, 0])
    inverse = np.linalg.inv(covariances)
    taken = []
    for i in np.argsort(-np.linalg.norm(points - points.mean(axis=0), axis=1)):
        step = points[taken] - points[i]
        norm = np.einsum("ki,kij,kj->k", step, inverse[taken], step)
        if not len(taken) or norm.min() > 3.0 and (step**2).sum(axis=1).min() > radius[i] ** 2:
            taken.append(i)
    return np.array(taken)


def patch(record, columns=14, rows=9):
    """Metrics extended from the sides of a patch to its inside."""
    exhibit = Exhibit("metrics_struct", "Metrics inside a structured patch")
    u, v = np.arange(columns) / columns, np.arange(rows) / rows
    first, last, low, high = np.pi / 3, 2 * np.pi / 3, 0.5, 1.1
    turn = first + (last - first) * u
    ray = low + (high - low) * v

    def arc(angle, radius):
        return np.column_stack([radius * np.cos(angle), radius * np.sin(angle)])

    # Anticlockwise: right ray outwards, outer arc, left ray inwards, inner arc.
    loop = np.concatenate([
        arc(np.full(rows, first), ray), arc(turn, high),
        arc(np.full(rows, last), high + low - ray), arc(first + last - turn, low),
    ])
    # Each side turns its metrics as it goes, and makes them thinner at the inner arc.
    angle = np.arctan2(loop[:, 1], loop[:, 0])
    radius = np.linalg.norm(loop, axis=1)
    around = np.column_stack([-np.sin(angle), np.cos(angle)])
    out = np.column_stack([np.cos(angle), np.sin(angle)])
    thin, long = 0.06 * radius**2, 0.08 * radius
    full = (around[:, :, None] * around[:, None, :] / long[:, None, None] ** 2
            + out[:, :, None] * out[:, None, :] / thin[:, None, None] ** 2)
    ids = naca.closed(np.arange(len(loop)))
    coords, connect = exhibit.call(t2.mesh_struct_Q4, loop, ids, columns)
    field = exhibit.call(t2.metrics_struct, ids, columns, interop.pack_metrics(full))
    exhibit.check("one metric for each node of the grid", len(field) == len(coords))
    matrices = interop.full_metrics(field)
    exhibit.check("all of them positive definite", np.linalg.eigvalsh(matrices).min() > 0)

    figure, (axes,) = draw.panels(1, 1, (9, 5))
    draw.mesh(axes, coords, connect, colour="white", width=0.4, edge="#b8c4d0")
    covariance = np.linalg.inv(matrices) * 0.3**2
    given = len(loop)
    draw.ellipses(axes, coords[:given], covariance[:given], draw.BLUE, 0.8, "#2f6f9f40")
    draw.ellipses(axes, coords[given:], covariance[given:], draw.ORANGE, 0.8, "#d9822b40")
    draw.frame(axes, "")
    axes.margins(0.05)
    record.add(exhibit, figure, f"""<b>metrics_struct</b> extends metrics from the sides of a patch
        (blue, {given} of them) over the {count(len(coords) - given, "node")} that
        <b>mesh_struct_Q4</b> puts inside (orange), in the same order.""",
        [("metrics_struct", coords, connect, {"metric": field})])


def make(record):
    sizes(record)
    metrics(record)
    patch(record)
