"""A surface from a file, as triangles with one node in a place."""

import contextlib
import html
import io
from pathlib import Path

import numpy as np

import tessalo2d as t2
from tessalo2d import interop

DEFAULT = "/usr/share/assimp/models/OBJ/WusonOBJ.obj"
MOST = 400_000


class Unusable(Exception):
    """A file that no surface can be read from; the message says why."""


class Model:
    """coords (n, 3), connect (m, 3), and what its pictures need: edge length, view, neighbors."""

    def __init__(self, name, coords, connect, up):
        self.name, self.coords, self.connect, self.up = name, coords, connect, up
        self.neighbors = interop.neighbors(connect)
        ends = np.concatenate([connect[:, [1, 2]], connect[:, [2, 0]], connect[:, [0, 1]]])
        self.edge = float(np.linalg.norm(coords[ends[:, 0]] - coords[ends[:, 1]], axis=1).mean())
        # From the side of the longest horizontal extent, a little from the front and from above.
        extent = np.ptp(coords, axis=0)
        axes = [axis for axis in range(3) if axis != int(np.argmax(up))]
        long, short = sorted(axes, key=lambda axis: -extent[axis])
        self.direction = np.zeros(3)
        self.direction[short], self.direction[long] = 1.0, 0.62
        self.direction += 0.32 * np.asarray(up)


def read(path):
    """The model in a file: OBJ, or whatever meshio reads. Raises Unusable."""
    path = Path(path)
    if not path.is_file():
        raise Unusable(f"{path}: no such file")
    points, faces = read_obj(path) if path.suffix.lower() == ".obj" else read_any(path)
    if not len(faces):
        raise Unusable(f"{path}: no triangles or quadrilaterals in it")
    if len(faces) > MOST:
        raise Unusable(f"{path}: {len(faces)} faces are too many for pictures, {MOST} at most")
    try:
        coords, connect = interop.as_coords(points, 3), interop.as_IDs(faces[:, :3], len(points))
        quads = faces[:, 3] >= 0
        connect = np.column_stack([connect, np.full(len(faces), t2.UNSET_ID, np.uint32)])
        connect[quads, 3] = interop.as_IDs(faces[quads, 3], len(points))
    except (TypeError, ValueError) as problem:
        raise Unusable(f"{path}: {problem}") from None
    used = np.unique(connect[connect != t2.UNSET_ID])
    if not np.isfinite(coords[used]).all():
        raise Unusable(f"{path}: some coordinates are not finite")
    coords, connect = weld(coords, connect)
    if not len(connect) or not t2.area(coords, connect) > 0:
        raise Unusable(f"{path}: all faces are flat: no surface")
    # OBJ files have y upwards by custom, others z.
    up = (0.0, 1.0, 0.0) if path.suffix.lower() == ".obj" else (0.0, 0.0, 1.0)
    return Model(html.escape(path.name), coords, outwards(coords, connect), np.array(up))


def read_obj(path):
    """Vertices and faces of a Wavefront file, other lines passed over."""
    points, faces = [], []
    text = path.read_text(encoding="utf-8", errors="replace")
    for number, line in enumerate(text.splitlines(), 1):
        words = line.split()
        if not words or words[0] not in ("v", "f"):
            continue
        try:
            if words[0] == "v":
                points.append([float(word) for word in words[1:4]] + [0.0] * (4 - len(words)))
            else:
                ids = [int(word.split("/")[0]) for word in words[1:]]
                # From 1, or backwards from the latest vertex.
                faces += fan([i - 1 if i > 0 else len(points) + i for i in ids])
        except ValueError:
            raise Unusable(f"{path}: line {number} is not in the format: {line[:60]}") from None
    return np.reshape(points, (-1, 3)), np.reshape(faces, (-1, 4)).astype(np.int64)


def read_any(path):
    import meshio

    said = io.StringIO()
    try:
        with contextlib.redirect_stdout(said), contextlib.redirect_stderr(said):
            mesh = meshio.read(path)
    except (Exception, SystemExit) as problem:  # readers raise whatever occurs to them
        reason = str(problem) if isinstance(problem, Exception) and str(problem) else "not readable"
        raise Unusable(f"{path}: meshio can't read it: {reason.splitlines()[0]}") from None
    corners = {"triangle": 3, "triangle6": 3, "triangle7": 3, "quad": 4, "quad8": 4, "quad9": 4}
    faces = []
    for block in mesh.cells:
        if block.type.startswith("polygon"):
            faces += [face for polygon in block.data for face in fan([int(i) for i in polygon])]
        elif block.type in corners:
            faces += [face for cell in block.data[:, : corners[block.type]]
                      for face in fan(cell.tolist())]
    return np.asarray(mesh.points, float), np.reshape(faces, (-1, 4)).astype(np.int64)


def fan(ids):
    """A face as rows of 4: itself with -1 if it is a triangle, or triangles around its corner 0."""
    if len(ids) == 4:
        return [ids]
    return [[ids[0], ids[k], ids[k + 1], -1] for k in range(1, len(ids) - 1)]


def weld(coords, connect):
    """One node in a place, no node without a face; then triangles, without those that have a node
    twice or stand there twice."""
    size = np.ptp(coords[connect[:, :3].ravel()], axis=0).max()
    if not size > 0:
        return coords, connect[:0, :3]
    _, first, where = np.unique(np.round(coords / (1e-7 * size)), axis=0, return_index=True,
                                return_inverse=True)
    valid = connect != t2.UNSET_ID
    welded = connect.copy()
    welded[valid] = where.ravel()[connect[valid]]
    coords = np.ascontiguousarray(coords[first])
    triangles = t2.split_Q4_into_T3_by_quality(coords, welded)
    a, b, c = triangles.T
    triangles = triangles[(a != b) & (b != c) & (c != a)]
    _, kept = np.unique(np.sort(triangles, axis=1), axis=0, return_index=True)
    triangles = triangles[np.sort(kept)]
    used, compact = np.unique(triangles, return_inverse=True)
    return (np.ascontiguousarray(coords[used]),
            np.ascontiguousarray(compact.reshape(-1, 3).astype(np.uint32)))


def outwards(coords, connect):
    """Oriented alike, and so that more of the surface faces away from the middle."""
    connect, _, _ = t2.mesh_reorient(connect, interop.neighbors(connect), 0, True)
    doubled = t2.normals(coords, connect, unit_length=False)
    middles = coords[connect].mean(axis=1)
    if ((middles - middles.mean(axis=0)) * doubled).sum() < 0:
        connect = t2.flip(connect, t2.ELEMENT_T3)
    return connect
