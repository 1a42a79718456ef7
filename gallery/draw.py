"""Plane meshes with matplotlib: one style for all pictures."""

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt
import numpy as np
from matplotlib.collections import EllipseCollection, LineCollection, PolyCollection

from tessalo2d import UNSET_ID

INK = "#1d2733"
MUTED = "#66727f"
LINE = "#33475b"
PALE = "#dfe8f1"
BLUE = "#2f6f9f"
ORANGE = "#d9822b"
GREEN = "#3d8b5f"
RED = "#b8403a"

matplotlib.rcParams.update(
    {
        "savefig.dpi": 130,
        "figure.facecolor": "white",
        "font.family": "DejaVu Sans",
        "font.size": 10,
        "axes.titlesize": 11,
        "axes.titlecolor": INK,
        "axes.titlepad": 8,
        "axes.edgecolor": MUTED,
        "axes.labelcolor": INK,
        "axes.spines.top": False,
        "axes.spines.right": False,
        "text.color": INK,
        "xtick.color": MUTED,
        "ytick.color": MUTED,
        "legend.frameon": False,
        "figure.constrained_layout.use": True,
        "figure.constrained_layout.h_pad": 0.1,
        "figure.constrained_layout.w_pad": 0.08,
    }
)


def panels(rows=1, columns=1, size=(12, 5), **keywords):
    """A figure and the list of its axes."""
    figure, axes = plt.subplots(rows, columns, figsize=size, squeeze=False, **keywords)
    return figure, list(axes.ravel())


def mosaic(layout, size):
    """A figure and its axes in the order of their letters in the layout."""
    figure, axes = plt.subplot_mosaic([list(row) for row in layout], figsize=size)
    return figure, [axes[name] for name in sorted(axes)]


def frame(axes, title="", window=None):
    """Equal scales, no ticks; `window` is (x0, x1, y0, y1)."""
    axes.set_aspect("equal")
    axes.set_axis_off()
    axes.set_title(title)
    if window is None:
        axes.autoscale_view()
        axes.margins(0.02)
    else:
        axes.set_xlim(window[0], window[1])
        axes.set_ylim(window[2], window[3])


def corners(coords, connect):
    """The polygon of each element, of 3 or 4 corners."""
    if connect.shape[1] == 3:
        return list(coords[connect])
    triangles = connect[:, 3] == UNSET_ID
    filled = connect.copy()
    filled[triangles, 3] = filled[triangles, 2]
    return list(coords[filled])


def mesh(axes, coords, connect, values=None, colour=PALE, map="viridis", limits=None, width=0.4,
         edge=LINE):
    """Elements, all of one colour (or a list of them), or coloured by a value each."""
    faces = PolyCollection(corners(coords, connect), linewidths=width, edgecolors=edge)
    if values is None:
        faces.set_facecolor(colour)
    else:
        faces.set_array(np.asarray(values))
        faces.set_cmap(map)
        faces.set_clim(limits if limits else (np.min(values), np.max(values)))
    axes.add_collection(faces)
    axes.autoscale_view()
    return faces


def polyline(axes, points, colour=INK, width=1.2, closed=True, **keywords):
    points = np.concatenate([points, points[:1]]) if closed else points
    axes.plot(points[:, 0], points[:, 1], color=colour, linewidth=width, **keywords)


def dots(axes, points, colour=INK, size=8, **keywords):
    axes.scatter(points[:, 0], points[:, 1], s=size, color=colour, linewidths=0, zorder=3,
                 **keywords)


def segments(axes, start, end, colour=INK, width=0.8, **keywords):
    axes.add_collection(
        LineCollection(np.stack([start, end], axis=1), colors=colour, linewidths=width, **keywords)
    )


def ellipses(axes, centres, covariances, colour=BLUE, width=0.6, fill=None):
    """The ellipse { x : x^T C^-1 x = 1 } of each symmetric 2 x 2 matrix C, around its centre."""
    values, vectors = np.linalg.eigh(covariances)
    radii = np.sqrt(np.maximum(values, 0.0))
    degrees = np.degrees(np.arctan2(vectors[:, 1, 1], vectors[:, 0, 1]))
    axes.add_collection(
        EllipseCollection(
            2 * radii[:, 1], 2 * radii[:, 0], degrees, units="xy", offsets=centres,
            transOffset=axes.transData, facecolors=fill or "none", edgecolors=colour,
            linewidths=width, zorder=3,
        )
    )


def colour_bar(figure, drawn, axes, label):
    bar = figure.colorbar(drawn, ax=axes, shrink=0.75, aspect=30, pad=0.015)
    bar.set_label(label)
    bar.outline.set_visible(False)
    return bar


def histogram(axes, series, bins, label, of):
    """Overlaid step histograms: series is a list of (values, name, colour)."""
    for values, name, colour in series:
        axes.hist(values, bins=bins, histtype="stepfilled", alpha=0.35, color=colour)
        axes.hist(values, bins=bins, histtype="step", color=colour, linewidth=1.3, label=name)
    axes.set_xlabel(label)
    axes.set_ylabel(of)
    axes.set_xlim(bins[0], bins[-1])
    if any(name for _, name, _ in series):
        axes.legend()
