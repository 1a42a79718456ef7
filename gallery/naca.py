"""Wing sections of the NACA four-digit series, and grids in and around them.

The formulas are those of E. N. Jacobs, K. E. Ward and R. M. Pinkerton, The characteristics of 78
related airfoil sections, NACA Report 460, 1933; the last coefficient of the thickness is the one
that closes the trailing edge.
"""

import numpy as np

import tessalo2d as t2


def surface_points(digits, x, side):
    """Points of the upper (side 1) or the lower (side -1) surface at positions x along the camber."""
    m, p, t = int(digits[0]) / 100, int(digits[1]) / 10, int(digits[2:]) / 100
    thickness = 5 * t * (
        0.2969 * np.sqrt(x) - 0.1260 * x - 0.3516 * x**2 + 0.2843 * x**3 - 0.1036 * x**4
    )
    if m == 0:
        return np.column_stack([x, side * thickness])
    fore = x < p
    camber = np.where(
        fore, m / p**2 * (2 * p * x - x**2), m / (1 - p) ** 2 * (1 - 2 * p + 2 * p * x - x**2)
    )
    slope = np.where(fore, 2 * m / p**2 * (p - x), 2 * m / (1 - p) ** 2 * (p - x))
    angle = np.arctan(slope)
    return np.column_stack(
        [x - side * thickness * np.sin(angle), camber + side * thickness * np.cos(angle)]
    )


def section_point(digits, s):
    """Points of the section at parameters s from 0 to 2: from the trailing edge over the upper
    surface to the nose at 1, and back below. Equal steps of s are dense at both ends."""
    s = np.asarray(s, dtype=float)
    x = 0.5 * (1 + np.cos(np.pi * s))
    upper = surface_points(digits, x, 1.0)
    lower = surface_points(digits, x, -1.0)
    return np.where((s <= 1)[:, None], upper, lower)


def section(digits, n):
    """2 n points around a section, anticlockwise from the trailing edge, which is there once."""
    return section_point(digits, np.arange(2 * n) / n)


def closed(ids):
    """A loop of IDs with its first one again at its end."""
    return np.concatenate([ids, ids[:1]]).astype(np.uint32)


def loop_edges(n):
    """The edges of a closed loop of the nodes 0 to n - 1."""
    ids = np.arange(n, dtype=np.uint32)
    return np.column_stack([ids, np.roll(ids, -1)])


def polygon_area(points):
    """Area of a polygon by the shoelace formula."""
    x, y = points.T
    return 0.5 * float(np.sum(x * np.roll(y, -1) - np.roll(x, -1) * y))


def fill_loop(ids, across):
    """The list that fills a section with a structured grid: the nose is a side of `across` cells,
    and so is the trailing edge, where all of that side is one node.

    `ids` are the nodes around the section from the trailing edge, an even number.
    """
    # Anticlockwise: upper side, nose and lower side are the section; the trailing edge follows.
    return np.concatenate([ids, np.repeat(ids[:1], across + 1)]).astype(np.uint32)


def around_section(digits, half=48, layers=24, radius=1.4, growth=1.12, blocks=8, call=None):
    """A grid of quadrilaterals between a section and a circle: blocks side by side, each filled by
    `mesh_struct_Q4`, with layers that grow away from the section.

    Returns coordinates, elements, and the polygons inside and outside.
    """
    call = call or (lambda function, *args: function(*args))
    if 2 * half % blocks:
        raise ValueError("blocks must divide the number of nodes around the section")
    inner = section(digits, half)
    turn = 2 * np.pi * np.arange(2 * half) / (2 * half)
    outer = np.array([0.5, 0.0]) + radius * np.column_stack([np.cos(turn), np.sin(turn)])
    n = 2 * half
    steps = np.cumsum(growth ** np.arange(layers))
    fractions = steps[:-1] / steps[-1]

    # Nodes: the section, the circle, then the rays between the blocks.
    per_block = n // blocks
    starts = per_block * np.arange(blocks)
    rays = inner[starts, None] + fractions[None, :, None] * (outer - inner)[starts, None]
    coords = np.concatenate([inner, outer, rays.reshape(-1, 2)])
    ray_ids = 2 * n + np.arange(blocks * (layers - 1)).reshape(blocks, layers - 1)
    connect = np.empty((0, 4), dtype=np.uint32)
    for block in range(blocks):
        following = (block + 1) % blocks
        along = (starts[block] + np.arange(per_block + 1)) % n
        loop = np.concatenate([
            along[:1], ray_ids[block], n + along, ray_ids[following][::-1], along[::-1]
        ])
        coords, connect = call(
            t2.mesh_struct_Q4, coords, loop.astype(np.uint32), per_block, connect
        )
    return coords, connect, inner, outer
