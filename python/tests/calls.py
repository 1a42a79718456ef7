"""One call of each of the library's 55 functions, on small meshes, for tests that go over all."""

import math
from typing import Any, Callable, Dict, NamedTuple

import numpy as np

import tessalo2d as t2
from tessalo2d import interop

UNSET = t2.UNSET_ID


def ids(*rows):
    return np.array(rows, dtype=np.uint32)


def reals(*rows):
    return np.array(rows, dtype=np.float64)


# A quadrilateral and two triangles, all anticlockwise.
PLANE = reals([0, 0], [3, 0], [5, 2], [4, 4], [0, 3.5], [7, 1])
SPACE = np.column_stack([PLANE, 0.1 * PLANE[:, 0] * PLANE[:, 1]])
T3 = ids([0, 1, 3], [0, 3, 4], [1, 2, 3])
MIXED = ids([0, 1, 3, 4], [1, 2, 3, UNSET], [1, 5, 2, UNSET])
LINE = ids([0, 1], [1, 5], [5, 2])
PREPARED = ids([1, 3, 4])
T6 = t2.convert_into_quadratic(PLANE, T3)[1]
Q9 = t2.convert_into_quadratic(PLANE, MIXED)[1]

# The boundary of a patch of 3 x 2 cells.
LOOP = reals(*[[x, 0] for x in range(4)], [3, 1], *[[x, 2] for x in (3, 2, 1, 0)], [0, 1])
AROUND = np.array([*range(10), 0], dtype=np.uint32)

# Two triangles of a square as the background of two targets.
BACKGROUND = reals([0, 0], [4, 0], [4, 4], [0, 4], [1, 1], [3, 2])
HALVES = ids([0, 1, 2], [0, 2, 3])
TARGETS = np.array([4, 5], dtype=np.uint32)
SIZES = np.array([1.0, 2.0, 4.0, 3.0, 0.0, 0.0])
METRICS = np.column_stack([SIZES, np.zeros(6), SIZES])
MESH: Dict[str, Any] = dict(
    coords=BACKGROUND,
    connect=HALVES,
    neighbors=interop.neighbors(HALVES),
    node_element=interop.node_element(HALVES, 6),
)

# An octahedron.
OCTAHEDRON = reals([1, 0, 0], [0, 1, 0], [-1, 0, 0], [0, -1, 0], [0, 0, 1], [0, 0, -1])
SIDES = ids(
    [0, 1, 4], [1, 2, 4], [2, 3, 4], [3, 0, 4], [1, 0, 5], [2, 1, 5], [3, 2, 5], [0, 3, 5]
)


class Call(NamedTuple):
    name: str
    function: Callable[..., Any]
    arguments: Dict[str, Any]

    def __call__(self, **changes):
        return self.function(**{**self.arguments, **changes})

    def results(self, **changes):
        """The results as a tuple, whatever the function returns."""
        found = self(**changes)
        return found if isinstance(found, tuple) else (found,)

    def arrays(self):
        """The names of the arguments that are arrays of the mesh."""
        return [k for k, v in self.arguments.items() if isinstance(v, np.ndarray)]


def call(name, function, **arguments):
    return Call(name, function, arguments)


def extrusions():
    """The twenty of them: path, dimension, elements, equal layers or sizes."""
    for elements in ("Q4", "T3"):
        more = {"pattern": 2} if elements == "T3" else {}
        for spacing, given in (("N", {"N": 3}), ("sizes", {"h0": 0.5, "h1": 1.0})):
            # Elements to append to, the triangles that a rotation in space asks for among them.
            before = {"connect" + elements[0]: ids([0, 1, 2]) if more else ids([0, 1, 3, 4])}
            paths = [
                ("translate plane", "translate", PLANE, {"V": (0, 2)}, before),
                ("translate space", "translate", PLANE, {"V": (0, 0, 2)}, before),
                ("rotate plane", "rotate", PLANE, {"center": (0, 9), "rotation": 0.5}, before),
                (
                    "rotate space",
                    "rotate",
                    SPACE,
                    {"center": (0, 9, 0), "rotation": (0, 0, 0.5)},
                    {name: ids([0, 1, 2]) for name in before},
                ),
                (
                    "spiral",
                    "spiral",
                    SPACE,
                    {"center": (0, 9, 0), "rotation": (0, 0, 0.5), "translation": (0, 0, 2)},
                    before,
                ),
            ]
            for name, path, coords, motion, output in paths:
                function = getattr(t2, f"extrude_{path}_{elements}")
                yield call(
                    f"{name} {elements} {spacing}",
                    function,
                    coords=coords,
                    connect=LINE,
                    **motion,
                    **given,
                    **more,
                    **output,
                )


CALLS = [
    call("version", t2.version),
    call("area", t2.area, coords=PLANE, connect=MIXED),
    call("angles", t2.angles, coords=PLANE, connect=MIXED),
    call("normals of elements", t2.normals, coords=SPACE, connect=MIXED),
    call("normals of nodes", t2.node_normals, coords=SPACE, connect=MIXED),
    call("circumcenters", t2.circumcenters, coords=SPACE, connect=T3),
    call("convert_into_linear", t2.convert_into_linear, connect=Q9),
    call("split_into_linear", t2.split_into_linear, connect=T6, result=T3),
    call(
        "convert_into_high_order",
        t2.convert_into_high_order,
        coords=PLANE,
        connect=MIXED,
        edge_nodes=1,
        quad_nodes=4,
        triangle_nodes=1,
        edges=PREPARED,
    ),
    call(
        "convert_into_high_order in place",
        t2.convert_into_high_order,
        coords=PLANE,
        connect=MIXED,
        edge_nodes=1,
        quad_nodes=4,
        triangle_nodes=1,
        edges=PREPARED,
        replace_connect=True,
    ),
    call("convert_into_quadratic", t2.convert_into_quadratic, coords=SPACE, connect=MIXED),
    call(
        "convert_into_quadratic with edges",
        t2.convert_into_quadratic,
        coords=SPACE,
        connect=MIXED,
        edges=PREPARED,
    ),
    call(
        "split_into_Q4",
        t2.split_into_Q4,
        coords=PLANE,
        connect=MIXED,
        result=ids([0, 1, 3, 4]),
        edges=PREPARED,
    ),
    call("split_Q4_into_T3", t2.split_Q4_into_T3, connect=MIXED, result=T3),
    call(
        "split_Q4_into_T3 by quality",
        t2.split_Q4_into_T3_by_quality,
        coords=PLANE,
        connect=MIXED,
        result=T3,
    ),
    call(
        "split_Q4_into_T3 gated",
        t2.split_Q4_into_T3_gated,
        coords=PLANE,
        connect=MIXED,
        min_shape_quality=2.0,
        min_angle_quality=0.0,
        min_warp=0.0,
        diagonal_criterion=t2.DIAGONAL_BEST_ANGLE,
        kept_IDs=np.array([2], dtype=np.uint32),
        split_IDs=np.array([0], dtype=np.uint32),
        result=MIXED[:1].copy(),
    ),
    *extrusions(),
    call(
        "mesh_struct_Q4",
        t2.mesh_struct_Q4,
        coords=LOOP,
        boundary=AROUND,
        N=2,
        connectQ=ids([0, 1, 2, 3]),
    ),
    call(
        "mesh_struct_T3",
        t2.mesh_struct_T3,
        coords=LOOP,
        boundary=AROUND,
        N=2,
        pattern=2,
        connectT=ids([0, 1, 2]),
    ),
    call(
        "metrics_struct of sizes", t2.metrics_struct, ids=AROUND, count=2, field=np.full(10, 2.0)
    ),
    call(
        "metrics_struct of metrics",
        t2.metrics_struct,
        ids=AROUND,
        count=2,
        field=np.tile([2.0, 0.5, 1.0], (10, 1)),
    ),
    call("flip", t2.flip, connect=MIXED),
    call("flip of a type", t2.flip, connect=Q9, type=t2.ELEMENT_ANY_FACE),
    call(
        "convert_degenerated_Q4", t2.convert_degenerated_Q4, connect=ids([0, 1, 1, 2], [0, 1, 2, 3])
    ),
    call(
        "convert_degenerated_Q",
        t2.convert_degenerated_Q,
        connect=ids([0, 1, 2, 3, 4, 5, 6, 7], [0, 1, 1, 2, 4, 5, 6, 7]),
    ),
    call(
        "mesh_reorient",
        t2.mesh_reorient,
        connect=ids([0, 1, 2], [0, 3, 2]),
        neighbors=interop.neighbors(ids([0, 1, 2], [0, 3, 2])),
    ),
    call(
        "get_connected_elements",
        t2.get_connected_elements,
        connect=MIXED,
        neighbors=interop.neighbors(MIXED),
        node_element=interop.node_element(MIXED, 6),
    ),
    call("interpolate", t2.interpolate, **MESH, field=SIZES, nodes=TARGETS),
    call("interpolate of rows", t2.interpolate, **MESH, field=METRICS, nodes=TARGETS),
    call("interpolate_metrics", t2.interpolate_metrics, **MESH, field=METRICS, nodes=TARGETS),
    call("interpolate_metrics at all", t2.interpolate_metrics, **MESH, field=METRICS),
    call("interpolate_metrics of sizes", t2.interpolate_metrics, **MESH, field=SIZES, nodes=TARGETS),
    call("interpolate_metrics of sizes at all", t2.interpolate_metrics, **MESH, field=SIZES),
    call(
        "parametric_curvatures",
        t2.parametric_curvatures,
        uvs=PLANE,
        connect=T3,
        derivatives=np.column_stack([SPACE, SPACE[:, ::-1] + 1.0]),
    ),
    call(
        "principal_curvatures",
        t2.principal_curvatures,
        coords=OCTAHEDRON,
        connect=SIDES,
        neighbors=interop.neighbors(SIDES),
        radius=math.sqrt(2.0),
        ridges=ids([0, 1]),
    ),
    call(
        "metrics_gen_aniso3d",
        t2.metrics_gen_aniso3d,
        coords=SPACE,
        connect=T3,
        normal_size=0.5,
        metrics=np.zeros((6, 6)),
    ),
]
