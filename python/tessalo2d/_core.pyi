from typing import Any, Optional, Sequence, SupportsFloat, SupportsIndex, Tuple, Union

import numpy as np
from numpy.typing import NDArray

_Doubles = NDArray[np.float64]
_IDs = NDArray[np.uint32]
_Vector = Union[Sequence[float], NDArray[np.floating[Any]]]

UNSET_ID: int

def angles(
    coords: _Doubles, connect: _IDs, normalized: bool = False
) -> Tuple[_Doubles, _Doubles]: ...
def area(coords: _Doubles, connect: _IDs) -> float: ...
def circumcenters(coords: _Doubles, connect: _IDs) -> _Doubles: ...
def convert_degenerated_Q(connect: _IDs) -> Tuple[_IDs, _IDs]: ...
def convert_degenerated_Q4(connect: _IDs) -> Tuple[_IDs, int]: ...
def convert_into_high_order(
    coords: _Doubles,
    connect: _IDs,
    edge_nodes: SupportsIndex,
    quad_nodes: SupportsIndex,
    triangle_nodes: SupportsIndex,
    edges: Optional[_IDs] = None,
    *,
    replace_connect: bool = False
) -> Tuple[_Doubles, _IDs]: ...
def convert_into_linear(connect: _IDs) -> _IDs: ...
def convert_into_quadratic(
    coords: _Doubles, connect: _IDs, edges: Optional[_IDs] = None
) -> Tuple[_Doubles, _IDs]: ...
def extrude_rotate_Q4(
    coords: _Doubles,
    connect: _IDs,
    center: _Vector,
    rotation: Union[SupportsFloat, _Vector],
    N: Optional[SupportsIndex] = None,
    *,
    h0: Optional[SupportsFloat] = None,
    h1: Optional[SupportsFloat] = None,
    force_even: bool = False,
    connectQ: Optional[_IDs] = None
) -> Tuple[_Doubles, _IDs]: ...
def extrude_rotate_T3(
    coords: _Doubles,
    connect: _IDs,
    center: _Vector,
    rotation: Union[SupportsFloat, _Vector],
    N: Optional[SupportsIndex] = None,
    *,
    h0: Optional[SupportsFloat] = None,
    h1: Optional[SupportsFloat] = None,
    force_even: bool = False,
    pattern: SupportsIndex = 0,
    connectT: Optional[_IDs] = None
) -> Tuple[_Doubles, _IDs]: ...
def extrude_spiral_Q4(
    coords: _Doubles,
    connect: _IDs,
    center: _Vector,
    rotation: _Vector,
    translation: _Vector,
    N: Optional[SupportsIndex] = None,
    *,
    h0: Optional[SupportsFloat] = None,
    h1: Optional[SupportsFloat] = None,
    force_even: bool = False,
    connectQ: Optional[_IDs] = None
) -> Tuple[_Doubles, _IDs]: ...
def extrude_spiral_T3(
    coords: _Doubles,
    connect: _IDs,
    center: _Vector,
    rotation: _Vector,
    translation: _Vector,
    N: Optional[SupportsIndex] = None,
    *,
    h0: Optional[SupportsFloat] = None,
    h1: Optional[SupportsFloat] = None,
    force_even: bool = False,
    pattern: SupportsIndex = 0,
    connectT: Optional[_IDs] = None
) -> Tuple[_Doubles, _IDs]: ...
def extrude_translate_Q4(
    coords: _Doubles,
    connect: _IDs,
    V: _Vector,
    N: Optional[SupportsIndex] = None,
    *,
    h0: Optional[SupportsFloat] = None,
    h1: Optional[SupportsFloat] = None,
    force_even: bool = False,
    connectQ: Optional[_IDs] = None
) -> Tuple[_Doubles, _IDs]: ...
def extrude_translate_T3(
    coords: _Doubles,
    connect: _IDs,
    V: _Vector,
    N: Optional[SupportsIndex] = None,
    *,
    h0: Optional[SupportsFloat] = None,
    h1: Optional[SupportsFloat] = None,
    force_even: bool = False,
    pattern: SupportsIndex = 0,
    connectT: Optional[_IDs] = None
) -> Tuple[_Doubles, _IDs]: ...
def flip(connect: _IDs, type: Optional[SupportsIndex] = None) -> _IDs: ...
def get_connected_elements(
    connect: _IDs, neighbors: _IDs, node_element: _IDs
) -> Tuple[_IDs, _IDs]: ...
def interpolate(
    coords: _Doubles,
    connect: _IDs,
    neighbors: _IDs,
    node_element: _IDs,
    field: _Doubles,
    nodes: _IDs,
    type: Optional[SupportsIndex] = None,
) -> _Doubles: ...
def interpolate_metrics(
    coords: _Doubles,
    connect: _IDs,
    neighbors: _IDs,
    node_element: _IDs,
    field: _Doubles,
    nodes: Optional[_IDs] = None,
    keep_valid: bool = False,
    type: Optional[SupportsIndex] = None,
) -> _Doubles: ...
def mesh_reorient(
    connect: _IDs, neighbors: _IDs, seed: SupportsIndex = 0, all_regions: bool = False
) -> Tuple[_IDs, _IDs, int]: ...
def mesh_struct_Q4(
    coords: _Doubles, boundary: _IDs, N: SupportsIndex, connectQ: Optional[_IDs] = None
) -> Tuple[_Doubles, _IDs]: ...
def mesh_struct_T3(
    coords: _Doubles,
    boundary: _IDs,
    N: SupportsIndex,
    pattern: SupportsIndex = 0,
    connectT: Optional[_IDs] = None,
) -> Tuple[_Doubles, _IDs]: ...
def metrics_gen_aniso3d(
    coords: _Doubles, connect: _IDs, normal_size: SupportsFloat, metrics: Optional[_Doubles] = None
) -> _Doubles: ...
def metrics_struct(ids: _IDs, count: SupportsIndex, field: _Doubles) -> _Doubles: ...
def node_normals(
    coords: _Doubles,
    connect: _IDs,
    weight_exponent: SupportsFloat = 1.0,
    unit_length: bool = True,
) -> _Doubles: ...
def normals(coords: _Doubles, connect: _IDs, unit_length: bool = True) -> _Doubles: ...
def parametric_curvatures(uvs: _Doubles, connect: _IDs, derivatives: _Doubles) -> _Doubles: ...
def principal_curvatures(
    coords: _Doubles,
    connect: _IDs,
    neighbors: _IDs,
    radius: SupportsFloat,
    max_angle: SupportsFloat = 3.141592653589793,
    max_triangles: SupportsIndex = 4294967295,
    ridges: Optional[_IDs] = None,
) -> _Doubles: ...
def split_Q4_into_T3(connect: _IDs, result: Optional[_IDs] = None) -> _IDs: ...
def split_Q4_into_T3_by_quality(
    coords: _Doubles, connect: _IDs, result: Optional[_IDs] = None
) -> _IDs: ...
def split_Q4_into_T3_gated(
    coords: _Doubles,
    connect: _IDs,
    min_shape_quality: SupportsFloat,
    min_angle_quality: SupportsFloat,
    min_warp: SupportsFloat,
    diagonal_criterion: SupportsIndex = 1,
    kept_IDs: Optional[_IDs] = None,
    split_IDs: Optional[_IDs] = None,
    result: Optional[_IDs] = None,
) -> Tuple[_IDs, _IDs, _IDs]: ...
def split_into_Q4(
    coords: _Doubles, connect: _IDs, result: Optional[_IDs] = None, edges: Optional[_IDs] = None
) -> Tuple[_Doubles, _IDs]: ...
def split_into_linear(connect: _IDs, result: Optional[_IDs] = None) -> _IDs: ...
def version() -> str: ...
