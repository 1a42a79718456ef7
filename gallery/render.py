"""Pictures of surfaces in space: an orthographic view with a depth buffer, in NumPy alone.

matplotlib sorts whole polygons by depth, which goes wrong where they overlap; here each pixel knows
the triangle in front, so that lines and arrows can be hidden as well.
"""

import numpy as np

FRAGMENTS = 1 << 20  # tested at a time: keeps the arrays in the cache


class View:
    """A view of a triangulated surface that any number of pictures can be drawn of.

    direction   from the surface to the eye
    up          upwards in the picture
    size        of the picture in pixels, width and height
    window      (x0, x1, y0, y1) part of the whole picture, 0 to 1 each, that fills this one
    edges       (m, 3) bool: which sides, opposite the corners, are drawn as lines
    """

    oversampling = 2

    def __init__(self, coords, triangles, direction, up, size=(1200, 800), window=(0, 1, 0, 1),
                 edges=None, margin=0.03):
        back = np.asarray(direction, float) / np.linalg.norm(direction)
        right = np.cross(up, back)
        right /= np.linalg.norm(right)
        self.axes = np.stack([right, np.cross(back, right), back])
        self.coords, self.triangles = coords, triangles
        self.edges = np.ones(triangles.shape, bool) if edges is None else edges
        self.size = size

        flat = coords[np.unique(triangles)] @ self.axes.T
        low, high = flat.min(axis=0), flat.max(axis=0)
        extent = np.maximum(high - low, 1e-300)[:2]
        scale = (1 - 2 * margin) * min(size[0] / extent[0], size[1] / extent[1])
        middle = 0.5 * (low + high)[:2]
        zoom = 1.0 / max(window[1] - window[0], window[3] - window[2])
        self.scale = scale * zoom
        centre = np.array([0.5 * (window[0] + window[1]), 0.5 * (window[2] + window[3])]) - 0.5
        self.middle = middle + centre * np.array(size) / scale
        self.pixel = 1.0 / self.scale
        self._rasterise()

    def project(self, points):
        """Pixel coordinates (x to the right, y downwards) and depths, larger in front."""
        flat = np.atleast_2d(points) @ self.axes.T
        x = (flat[:, 0] - self.middle[0]) * self.scale + 0.5 * self.size[0]
        y = 0.5 * self.size[1] - (flat[:, 1] - self.middle[1]) * self.scale
        return np.column_stack([x, y]), flat[:, 2]

    def flatten(self, tensors):
        """Symmetric matrices in space, squared lengths, as matrices in the picture."""
        map = self.axes[:2].copy() * self.scale
        map[1] *= -1
        return map @ tensors @ map.T

    def _rasterise(self):
        k = self.oversampling
        width, height = self.size[0] * k, self.size[1] * k
        pixels, depths = self.project(self.coords)
        x, y = (pixels * k).T
        a, b, c = self.triangles.T
        doubled = (x[b] - x[a]) * (y[c] - y[a]) - (x[c] - x[a]) * (y[b] - y[a])
        corner_x, corner_y = x[self.triangles], y[self.triangles]
        x0 = np.clip(np.floor(corner_x.min(axis=1)), 0, width).astype(np.int64)
        x1 = np.clip(np.ceil(corner_x.max(axis=1)), 0, width).astype(np.int64)
        y0 = np.clip(np.floor(corner_y.min(axis=1)), 0, height).astype(np.int64)
        y1 = np.clip(np.ceil(corner_y.max(axis=1)), 0, height).astype(np.int64)
        amount = np.where(np.abs(doubled) > 1e-12, (x1 - x0) * (y1 - y0), 0)

        self.depth = np.full(width * height, -np.inf)
        self.triangle = np.full(width * height, -1, dtype=np.int64)
        self.weights = np.zeros((width * height, 3), dtype=np.float32)
        seen = np.flatnonzero(amount)
        chunk_of = np.cumsum(amount[seen]) // FRAGMENTS
        for ids in np.split(seen, np.flatnonzero(np.diff(chunk_of)) + 1) if len(seen) else []:
            t = np.repeat(ids, amount[ids])
            first = np.cumsum(amount[ids]) - amount[ids]
            place = np.arange(len(t)) - np.repeat(first, amount[ids])
            row, column = np.divmod(place, (x1 - x0)[t])
            row, column = row + y0[t], column + x0[t]
            px, py = column + 0.5 - x[a[t]], row + 0.5 - y[a[t]]
            wb = (px * (y[c] - y[a])[t] - py * (x[c] - x[a])[t]) / doubled[t]
            wc = (py * (x[b] - x[a])[t] - px * (y[b] - y[a])[t]) / doubled[t]
            wa = 1.0 - wb - wc
            inside = np.flatnonzero((wa >= -1e-9) & (wb >= -1e-9) & (wc >= -1e-9))
            t, wa, wb, wc = t[inside], wa[inside], wb[inside], wc[inside]
            depth = wa * depths[a[t]] + wb * depths[b[t]] + wc * depths[c[t]]
            place = row[inside] * width + column[inside]
            nearer = np.flatnonzero(depth > self.depth[place])
            # Of several for a pixel the last one stays: the nearest.
            nearer = nearer[np.argsort(depth[nearer], kind="stable")]
            place = place[nearer]
            self.depth[place] = depth[nearer]
            self.triangle[place] = t[nearer]
            self.weights[place] = np.column_stack([wa, wb, wc])[nearer]
        # Pixels from an edge, for each pixel weight 1 of the corner opposite.
        length = np.hypot(corner_x[:, [2, 0, 1]] - corner_x[:, [1, 2, 0]],
                          corner_y[:, [2, 0, 1]] - corner_y[:, [1, 2, 0]])
        self.altitudes = np.abs(doubled)[:, None] / np.maximum(length, 1e-12)

    def image(self, face_colours=None, node_colours=None, normals=None, line=(0.1, 0.14, 0.19),
              line_width=0.8, line_strength=0.45, light=0.6):
        """The surface, (height, width, 3) from 0 to 1: one colour a triangle or a node, lit from
        near the eye. With `normals` at the nodes the light changes smoothly."""
        shown = np.flatnonzero(self.triangle >= 0)
        t, w = self.triangle[shown], self.weights[shown].astype(float)
        if node_colours is not None:
            colours = np.einsum("ij,ijk->ik", w, np.asarray(node_colours)[self.triangles[t]])
        else:
            colours = np.broadcast_to(face_colours, (len(self.triangles), 3))[t]
        p = self.coords[self.triangles]
        flat = np.cross(p[:, 1] - p[:, 0], p[:, 2] - p[:, 0])
        flat /= np.maximum(np.linalg.norm(flat, axis=1), 1e-300)[:, None]
        n = flat[t]
        if normals is not None:
            n = np.einsum("ij,ijk->ik", w, normals[self.triangles[t]])
            n /= np.maximum(np.linalg.norm(n, axis=1), 1e-300)[:, None]
        lamp = np.array([-0.35, 0.5, 0.8]) @ self.axes
        lit = np.abs(n @ lamp) / np.linalg.norm(lamp)
        colours = colours * (1.0 - light + light * (0.15 + 0.95 * lit))[:, None]
        if line_width > 0:
            distance = np.where(self.edges[t], w * self.altitudes[t], np.inf).min(axis=1)
            cover = np.clip(0.5 * line_width * self.oversampling + 0.5 - distance, 0, 1)
            cover = (cover * line_strength)[:, None]
            colours = (1 - cover) * colours + cover * np.asarray(line)
        result = np.ones((len(self.triangle), 3))
        result[shown] = np.clip(colours, 0, 1)
        k = self.oversampling
        width, height = self.size
        return result.reshape(height, k, width, k, 3).mean(axis=(1, 3))

    def visible(self, points, slack=1.5):
        """Which points are not behind the surface, by more than `slack` pixels in depth, and in the
        picture."""
        pixels, depths = self.project(points)
        k = self.oversampling
        x, y = np.floor(pixels * k).astype(int).T
        inside = (x >= 0) & (y >= 0) & (x < self.size[0] * k) & (y < self.size[1] * k)
        at = np.where(inside, y * self.size[0] * k + x, 0)
        return inside & (depths >= self.depth[at] - slack * self.pixel)

    def facing(self, vectors):
        """Which vectors point towards the eye."""
        return vectors @ self.axes[2] > 0

    def show(self, axes, image, title=""):
        """Puts an image on matplotlib axes whose units are pixels."""
        axes.imshow(image, extent=(0, self.size[0], self.size[1], 0), interpolation="antialiased")
        axes.set_xlim(0, self.size[0])
        axes.set_ylim(self.size[1], 0)
        axes.set_aspect("equal")
        axes.set_axis_off()
        axes.set_title(title)


def triangulated(connect):
    """Triangles to draw of triangles or of a mixed mesh: (triangles, their elements, edges)."""
    if connect.shape[1] == 3:
        rows = np.arange(len(connect))
        return connect, rows, np.ones(connect.shape, bool)
    quads = np.flatnonzero(connect[:, 3] != np.uint32(0xFFFFFFFF))
    others = np.flatnonzero(connect[:, 3] == np.uint32(0xFFFFFFFF))
    triangles = np.concatenate([
        connect[others, :3], connect[quads][:, [0, 1, 2]], connect[quads][:, [0, 2, 3]]
    ])
    # The diagonal from corner 0 to corner 2 is no line.
    edges = np.ones(triangles.shape, bool)
    edges[len(others) : len(others) + len(quads), 1] = False
    edges[len(others) + len(quads) :, 2] = False
    return triangles, np.concatenate([others, quads, quads]), edges
