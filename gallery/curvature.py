"""Curvatures of a surface, and a metric field from it."""

import numpy as np

import tessalo2d as t2
from tessalo2d import interop

from . import draw, naca
from .record import Exhibit, count
from .render import View
from .surface import GREY, detail, view_of

TITLE = "Curvatures and metrics of surfaces"


def coloured(figure, axes, view, values, limit, label, map="RdBu", **keywords):
    """A surface with a value at each node, between -limit and limit."""
    norm, map = draw.plt.Normalize(-limit, limit), draw.plt.get_cmap(map)
    view.show(axes, view.image(node_colours=map(norm(values))[:, :3], **keywords))
    draw.colour_bar(figure, draw.plt.cm.ScalarMappable(norm, map), [axes], label)


def principal(record, model):
    """Principal curvatures and directions of the model."""
    exhibit = Exhibit("principal_curvatures", "Principal curvatures")
    radius = 2.0 * model.edge
    result = exhibit.call(t2.principal_curvatures, model.coords, model.connect, model.neighbors,
                          radius)
    first, second, values = result[:, :3], result[:, 3:6], result[:, 6:]
    found = np.linalg.norm(first, axis=1) > 0
    exhibit.check("the two directions are 1 long and at right angles",
                  np.abs((first * second).sum(axis=1)[found]).max(initial=0) < 1e-9
                  and np.abs(np.linalg.norm(result[found, :3], axis=1) - 1).max(initial=0) < 1e-9)
    exhibit.check("the first value is the larger one",
                  (np.abs(values[:, 0]) >= np.abs(values[:, 1])).all())

    mean = 0.5 * values.sum(axis=1)
    limit = max(float(np.quantile(np.abs(mean), 0.93)), 1e-12)
    figure, axes = draw.panels(1, 2, (15, 5.2), width_ratios=[1.11, 1])
    normals = t2.node_normals(model.coords, model.connect)
    view = view_of(model)
    coloured(figure, axes[0], view, mean, limit, "mean curvature, 1 / unit of length",
             normals=normals, line_width=0, light=0.45)
    axes[0].set_title("red: convex, blue: hollow")

    near = view_of(model, detail(view))
    near.show(axes[1], near.image(GREY, normals=normals, line_strength=0.12, light=0.45),
              "directions, on a part of it")
    shown = near.visible(model.coords) & found & near.facing(normals)
    for direction, colour, width in ((second, draw.ORANGE, 0.9), (first, draw.BLUE, 1.3)):
        start, end = (near.project(model.coords[shown] + s * 0.42 * model.edge * direction[shown])[0]
                      for s in (-1, 1))
        draw.segments(axes[1], start, end, colour, width)
    record.add(exhibit, figure, f"""<b>principal_curvatures</b> at {count(len(model.coords), "node")}
        of {model.name}, from the angles between triangles within {radius:.3g} of a node. Blue lines
        run along ridges and valleys, the way of least bending; orange ones across.""",
        [("model_curvatures", model.coords, model.connect,
          {"mean_curvature": mean, "first_direction": first, "second_direction": second})])


def torus(record, around=96, across=48):
    """A surface whose curvature is known."""
    exhibit = Exhibit("parametric_curvatures", "Curvature of a parametric surface")
    u = np.linspace(0, 2 * np.pi, around + 1)
    v = np.linspace(0, 2 * np.pi, across + 1)
    loop = np.concatenate([
        np.column_stack([u[:-1], 0 * u[:-1]]), np.column_stack([0 * v[:-1] + u[-1], v[:-1]]),
        np.column_stack([u[:0:-1], 0 * u[1:] + v[-1]]), np.column_stack([0 * v[1:], v[:0:-1]]),
    ])
    uvs, connect = exhibit.call(t2.mesh_struct_T3, loop, naca.closed(np.arange(len(loop))), across,
                                2)
    U, V = uvs.T
    big, small = 1.0, 0.42
    w = big + small * np.cos(V)
    coords = np.column_stack([w * np.cos(U), w * np.sin(U), small * np.sin(V)])
    Su = np.column_stack([-w * np.sin(U), w * np.cos(U), 0 * U])
    Sv = small * np.column_stack([-np.sin(V) * np.cos(U), -np.sin(V) * np.sin(U), np.cos(V)])
    L, M, N = exhibit.call(t2.parametric_curvatures, uvs, connect, np.column_stack([Su, Sv])).T
    E, F, G = (Su * Su).sum(axis=1), (Su * Sv).sum(axis=1), (Sv * Sv).sum(axis=1)
    gauss = (L * N - M * M) / (E * G - F * F)
    exact = np.cos(V) / (small * w)
    inner = np.arange(len(uvs)) >= len(loop)
    error = np.abs(gauss - exact)[inner].max() / np.abs(exact).max()
    exhibit.check(f"Gaussian curvature right to {100 * error:.2f} % of the largest, inside",
                  error < 0.02)

    figure, axes = draw.panels(1, 2, (14, 5), width_ratios=[1.5, 1])
    view = View(coords, connect, (0.3, -1.0, 0.85), (0, 0, 1), (1050, 620))
    limit = float(np.abs(exact).max())
    coloured(figure, axes[0], view, gauss, limit, "Gaussian curvature", "RdBu_r", light=0.4,
             line_strength=0.3)
    order = np.argsort(V[inner])
    axes[1].plot(np.degrees(V[inner][order]), exact[inner][order], color=draw.INK, linewidth=1.2,
                 label="formula")
    axes[1].plot(np.degrees(V[inner]), gauss[inner], ".", color=draw.ORANGE, markersize=5,
                 label="parametric_curvatures", zorder=1)
    axes[1].set_xlabel("angle v around the tube, degrees")
    axes[1].set_ylabel("Gaussian curvature")
    axes[1].set_xticks([0, 90, 180, 270, 360])
    axes[1].legend(loc="upper center")
    record.add(exhibit, figure, f"""A torus over {count(len(connect), "triangle")} of its parameter
        plane. <b>parametric_curvatures</b> needs only first derivatives; the Gaussian curvature
        from its forms differs from the formula by at most {100 * error:.2f} % of the largest value
        inside the plane.""",
        [("torus", coords, connect, {"gaussian_curvature": gauss})])


def metrics(record, model):
    """Metrics in the tangent plane, thin along the normal."""
    exhibit = Exhibit("surface_metrics", "A metric field from a surface")
    field = exhibit.call(t2.metrics_gen_aniso3d, model.coords, model.connect, -0.3)
    full = interop.full_metrics(field)
    values, vectors = np.linalg.eigh(full)
    good = values[:, 0] > 0
    exhibit.check(f"positive definite at {int(good.sum())} of {len(field)} nodes",
                  good.mean() > 0.99)
    normals = t2.node_normals(model.coords, model.connect)
    aligned = np.abs((vectors[:, :, 2] * normals).sum(axis=1))[good]
    exhibit.check("the thin axis lies along the normal: within 30 degrees at most nodes",
                  (aligned > np.cos(np.pi / 6)).mean() > 0.5)

    figure, axes = draw.panels(1, 2, (15, 5.2))
    covariance = np.zeros_like(full)
    covariance[good] = np.linalg.inv(full[good])
    whole = view_of(model)
    near = view_of(model, detail(whole))
    for place, view, step, scale, name in ((axes[0], whole, 4, 0.5, "every fourth node"),
                                           (axes[1], near, 1, 0.3, "a part of it, all nodes")):
        view.show(place, view.image(GREY, normals=normals, line_strength=0.15, light=0.4), name)
        shown = np.flatnonzero(view.visible(model.coords) & good & view.facing(normals))
        shown = shown[::step]
        draw.ellipses(place, view.project(model.coords[shown])[0],
                      view.flatten(covariance[shown]) * scale**2, draw.ORANGE, 0.7, "#d9822b38")
    record.add(exhibit, figure, f"""<b>metrics_gen_aniso3d</b> at {count(len(model.coords), "node")}:
        ellipsoids of the mean edge length in the plane of each triangle around the node and of 0.3
        times that along its normal, intersected. Flat discs where the surface is smooth, small
        ones at ridges.""",
        [("model_metrics", model.coords, model.connect, {"metric": field})])


def make(record, model):
    principal(record, model)
    metrics(record, model)
    torus(record)
