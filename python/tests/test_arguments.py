"""What is refused, and what the refusal says."""

import inspect
import math
import re
from fractions import Fraction

import numpy as np
import pytest
from calls import CALLS, Q9, SPACE, UNSET, ids

import tessalo2d as t2

ALL = pytest.mark.parametrize("call", CALLS, ids=lambda call: call.name)
BY_NAME = {call.name: call for call in CALLS}


def remedy(name, dtype):
    return re.escape(f"use np.ascontiguousarray({name}, dtype=np.{dtype})")


@ALL
def test_another_dtype_is_refused_with_the_remedy(call):
    for name in call.arrays():
        array = call.arguments[name]
        others = {np.float64: ("f4", "i8", ">f8"), np.uint32: ("i8", "i4", "u8", ">u4")}
        for other in others[array.dtype.type]:
            wrong = array.astype(other)
            text = f"{name} must be {array.dtype.name} in C order, not .*: "
            with pytest.raises(TypeError, match=text + remedy(name, array.dtype.name)):
                call(**{name: wrong})
        with pytest.raises(TypeError, match=f"not a list: {remedy(name, array.dtype.name)}"):
            call(**{name: array.tolist()})


@ALL
def test_another_order_is_refused_with_the_remedy(call):
    for name in call.arrays():
        array = call.arguments[name]
        text = f"{name} must be .*, not transposed or strided: {remedy(name, array.dtype.name)}"
        gaps = np.repeat(array, 2, axis=-1)[..., ::2]
        wrong = [gaps] if array.shape[-1] > 1 else []
        if array.ndim == 2 and len(array) > 1:
            # Transposed, from the back, one row again and again, overlapping rows.
            wrong += [np.asfortranarray(array), array[::-1], np.broadcast_to(array[0], array.shape)]
            wrong.append(np.lib.stride_tricks.as_strided(array, strides=(8, array.itemsize)))
            if array.shape[1] * array.itemsize <= 8:
                wrong.pop()
        for other in wrong:
            with pytest.raises(TypeError, match=text):
                call(**{name: other})
        # The remedy is one.
        call(**{name: np.ascontiguousarray(gaps)})


@ALL
def test_unaligned_memory_is_refused(call):
    for name in call.arrays():
        array = call.arguments[name]
        shifted = np.zeros(array.nbytes + 1, dtype=np.uint8)[1:].view(array.dtype)
        if shifted.flags.aligned:
            continue
        shifted = shifted.reshape(array.shape)
        shifted[...] = array
        with pytest.raises(TypeError, match=f"{name} must be .*, not unaligned: use ") as error:
            call(**{name: shifted})
        # The remedy is one.
        line = str(error.value).split(": use ")[1]
        mended = eval(line, {"np": np, name: shifted})
        assert mended.flags.aligned and (mended == array).all()
        call(**{name: mended})


@ALL
def test_another_number_of_dimensions_is_refused(call):
    for name in call.arrays():
        array = call.arguments[name]
        with pytest.raises(ValueError, match=f"{name} must have . dimensions?, not 3"):
            call(**{name: array.reshape(-1, 1, array.shape[-1])})


# One row a code: the call, what changes, the argument that the message names, the status.
HUGE = np.full((3, 4), 99, dtype=np.uint32)
WIDE = np.zeros((6, 5))
OPEN = np.arange(11, dtype=np.uint32) % 10
OPEN[-1] = 5
REFUSALS = [
    ("area", {"coords": WIDE}, "coords", -1),
    ("area", {"connect": HUGE}, "connect", -2),
    ("angles", {"coords": WIDE}, "coords", -1),
    ("angles", {"connect": HUGE}, "connect", -2),
    ("normals of elements", {"coords": WIDE}, "coords", -1),
    ("normals of elements", {"connect": HUGE}, "connect", -2),
    ("normals of nodes", {"coords": WIDE}, "coords", -1),
    ("normals of nodes", {"connect": HUGE}, "connect", -2),
    ("circumcenters", {"coords": WIDE}, "coords", -1),
    ("circumcenters", {"connect": HUGE}, "connect", -2),
    ("convert_into_linear", {"connect": HUGE}, "connect", -1),
    ("split_into_linear", {"connect": HUGE}, "connect", -1),
    ("split_into_linear", {"result": Q9}, "result", -2),
    *[
        row
        for name in ("convert_into_high_order", "convert_into_high_order in place")
        for row in (
            (name, {"coords": WIDE}, "coords", -1),
            (name, {"connect": HUGE}, "connect", -2),
            (name, {"quad_nodes": 2}, "quad_nodes", -4),
            (name, {"triangle_nodes": 2}, "triangle_nodes", -5),
            (name, {"edges": ids([1, 3])}, "edges", -6),
        )
    ],
    ("convert_into_quadratic", {"coords": WIDE}, "coords", -1),
    ("convert_into_quadratic", {"connect": HUGE}, "connect", -2),
    ("convert_into_quadratic with edges", {"coords": WIDE}, "coords", -1),
    ("convert_into_quadratic with edges", {"connect": HUGE}, "connect", -2),
    ("convert_into_quadratic with edges", {"edges": ids([1, 3])}, "edges", -6),
    ("split_into_Q4", {"coords": WIDE}, "coords", -1),
    ("split_into_Q4", {"connect": HUGE}, "connect", -2),
    ("split_into_Q4", {"result": ids([0, 1, 2])}, "result", -3),
    ("split_into_Q4", {"edges": ids([1, 3])}, "edges", -4),
    ("split_Q4_into_T3", {"connect": Q9}, "connect", -1),
    ("split_Q4_into_T3", {"result": HUGE}, "result", -2),
    ("split_Q4_into_T3 by quality", {"coords": WIDE}, "coords", -1),
    ("split_Q4_into_T3 by quality", {"connect": HUGE}, "connect", -2),
    ("split_Q4_into_T3 by quality", {"result": HUGE}, "result", -3),
    ("split_Q4_into_T3 gated", {"coords": WIDE}, "coords", -1),
    ("split_Q4_into_T3 gated", {"connect": HUGE}, "connect", -2),
    ("split_Q4_into_T3 gated", {"result": ids([0, 1, 2])}, "result", -8),
    *[
        (f"{path} {elements} {spacing}", {"coords": WIDE}, "coords", -1)
        for path in ("translate plane", "translate space", "rotate plane", "rotate space", "spiral")
        for elements in ("Q4", "T3")
        for spacing in ("N", "sizes")
    ],
    *[
        (
            f"{path} {elements} {spacing}",
            {"connect": ids([0, 99])},
            "connect",
            -1 if (path, elements, spacing) == ("rotate space", "T3", "sizes") else -2,
        )
        for path in ("translate plane", "translate space", "rotate plane", "rotate space", "spiral")
        for elements in ("Q4", "T3")
        for spacing in ("N", "sizes")
    ],
    ("translate plane Q4 N", {"coords": SPACE}, "coords", -1),
    ("translate plane T3 sizes", {"coords": SPACE}, "coords", -1),
    *[
        row
        for where in ("plane", "space")
        for row in (
            (f"translate {where} Q4 N", {"connectQ": Q9}, "connectQ", -5),
            (f"translate {where} Q4 sizes", {"connectQ": Q9}, "connectQ", -7),
            (f"translate {where} Q4 sizes", {"h0": 0.0}, "h0", -4),
            (f"translate {where} Q4 sizes", {"h1": -1.0}, "h1", -5),
            (f"translate {where} T3 N", {"pattern": 3}, "pattern", -5),
            (f"translate {where} T3 N", {"connectT": Q9}, "connectT", -6),
            (f"translate {where} T3 sizes", {"h0": math.nan}, "h0", -4),
            (f"translate {where} T3 sizes", {"h1": 0.0}, "h1", -5),
            (f"translate {where} T3 sizes", {"pattern": -1}, "pattern", -6),
            (f"translate {where} T3 sizes", {"connectT": Q9}, "connectT", -8),
            (f"rotate {where} Q4 sizes", {"h0": 0.0}, "h0", -5),
            (f"rotate {where} Q4 sizes", {"h1": 0.0}, "h1", -6),
            (f"rotate {where} Q4 sizes", {"connectQ": Q9}, "connectQ", -8),
            (f"rotate {where} T3 N", {"connectT": Q9}, "connectT", -7),
            (f"rotate {where} T3 sizes", {"h0": 0.0}, "h0", -5),
            (f"rotate {where} T3 sizes", {"h1": 0.0}, "h1", -6),
            (f"rotate {where} T3 sizes", {"connectT": Q9}, "connectT", -9),
        )
    ],
    ("rotate plane Q4 N", {"connectQ": Q9}, "connectQ", -6),
    ("rotate space Q4 N", {"connectQ": ids([0, 1, 3, 4])}, "connectQ", -3),
    ("rotate plane T3 sizes", {"pattern": 3}, "pattern", -7),
    ("spiral Q4 N", {"translation": (0, 0, 0)}, "translation", -6),
    ("spiral Q4 N", {"connectQ": Q9}, "connectQ", -9),
    ("spiral Q4 sizes", {"h0": 0.0}, "h0", -6),
    ("spiral Q4 sizes", {"h1": 0.0}, "h1", -7),
    ("spiral Q4 sizes", {"connectQ": Q9}, "connectQ", -9),
    ("spiral T3 N", {"translation": (0, 0, 0)}, "translation", -6),
    ("spiral T3 N", {"connectT": Q9}, "connectT", -10),
    ("spiral T3 sizes", {"h0": 0.0}, "h0", -6),
    ("spiral T3 sizes", {"h1": 0.0}, "h1", -4),
    ("spiral T3 sizes", {"connectT": Q9}, "connectT", -10),
    ("mesh_struct_Q4", {"coords": WIDE}, "coords", -1),
    ("mesh_struct_Q4", {"boundary": OPEN}, "boundary", -2),
    ("mesh_struct_Q4", {"N": 6}, "N", -3),
    ("mesh_struct_Q4", {"connectQ": Q9}, "connectQ", -4),
    ("mesh_struct_T3", {"coords": WIDE}, "coords", -1),
    ("mesh_struct_T3", {"boundary": OPEN}, "boundary", -2),
    ("mesh_struct_T3", {"N": 6}, "N", -3),
    ("mesh_struct_T3", {"pattern": 3}, "pattern", -4),
    ("mesh_struct_T3", {"connectT": Q9}, "connectT", -5),
    ("metrics_struct of sizes", {"ids": OPEN}, "ids", -1),
    ("metrics_struct of sizes", {"count": 6}, "count", -2),
    ("metrics_struct of metrics", {"ids": OPEN}, "ids", -1),
    ("metrics_struct of metrics", {"count": 6}, "count", -2),
    ("metrics_struct of metrics", {"field": np.zeros((10, 4))}, "field", -3),
    ("flip", {"connect": ids([0, 1])}, "connect", -1),
    ("flip of a type", {"connect": ids([0, 1])}, "connect", -2),
    ("flip of a type", {"type": 23}, "connect", -2),
    ("convert_degenerated_Q4", {"connect": Q9}, "connect", -1),
    ("convert_degenerated_Q", {"connect": ids([0, 1, 2])}, "connect", -1),
    ("mesh_reorient", {"connect": Q9}, "connect", -1),
    ("mesh_reorient", {"neighbors": HUGE}, "neighbors", -2),
    ("mesh_reorient", {"seed": 2}, "seed", -3),
    ("get_connected_elements", {"connect": Q9}, "connect", -1),
    ("get_connected_elements", {"neighbors": Q9}, "neighbors", -2),
    ("get_connected_elements", {"node_element": np.full(6, 9, "u4")}, "node_element", -3),
    *[
        row
        for name in (
            "interpolate",
            "interpolate of rows",
            "interpolate_metrics",
            "interpolate_metrics at all",
            "interpolate_metrics of sizes",
            "interpolate_metrics of sizes at all",
        )
        for row in (
            (name, {"coords": WIDE}, "coords", -1),
            (name, {"connect": ids([0, 1, 99], [0, 2, 3])}, "connect", -2),
            (name, {"neighbors": HUGE}, "neighbors", -3),
            (name, {"node_element": np.full(5, UNSET, dtype=np.uint32)}, "node_element", -4),
            (name, {"field": np.zeros((5, 3)[: BY_NAME[name].arguments["field"].ndim])}, "field", -5),
            (name, {"nodes": np.array([99], dtype=np.uint32)}, "nodes", -6),
        )
    ],
    ("parametric_curvatures", {"uvs": SPACE}, "uvs", -1),
    ("parametric_curvatures", {"connect": HUGE}, "connect", -2),
    ("parametric_curvatures", {"derivatives": WIDE}, "derivatives", -3),
    ("principal_curvatures", {"coords": WIDE}, "coords", -1),
    ("principal_curvatures", {"connect": HUGE}, "connect", -2),
    ("principal_curvatures", {"neighbors": ids([0, 0, 0])}, "neighbors", -3),
    ("principal_curvatures", {"ridges": ids([0, 99])}, "ridges", -7),
    ("metrics_gen_aniso3d", {"coords": np.zeros((6, 2))}, "coords", -1),
    ("metrics_gen_aniso3d", {"connect": HUGE}, "connect", -2),
    ("metrics_gen_aniso3d", {"metrics": WIDE}, "metrics", -4),
]


@pytest.mark.parametrize(
    "name, changes, argument, status", REFUSALS, ids=lambda part: part if type(part) is str else ""
)
def test_a_refusal_names_its_argument(name, changes, argument, status):
    call = BY_NAME[name]
    function = call.function.__name__
    with pytest.raises(ValueError) as error:
        call(**changes)
    text = str(error.value)
    assert text.startswith(f"{function}: ") and text.endswith(f" (status {status})")
    assert "was refused" not in text
    if (name, argument) == ("rotate space T3 sizes", "connect"):
        # This code stands for either of the two.
        assert re.search(r"coords must .* and connect ", text)
    elif argument == "neighbors" or argument != "connect" or "kind type" not in text:
        assert text.startswith(f"{function}: {argument} "), text


def test_every_function_has_refusals_but_the_one_without_arguments():
    assert {row[0] for row in REFUSALS} == {call.name for call in CALLS} - {"version"}


def test_counts_are_checked():
    call = BY_NAME["convert_into_high_order"]
    for name in ("edge_nodes", "quad_nodes", "triangle_nodes"):
        for wrong in (-1, 2**32, 10**30):
            with pytest.raises(ValueError, match=f"{name} must be from 0 to 4294967295"):
                call(**{name: wrong})
        for wrong in (1.0, "1", None):
            with pytest.raises(TypeError, match=f"{name} must be an integer"):
                call(**{name: wrong})
    assert call(edge_nodes=np.int8(1))[1].shape == call()[1].shape


def test_vectors_are_numbers():
    call = BY_NAME["spiral Q4 N"]
    half = Fraction(1, 2)
    for name in ("center", "rotation", "translation"):
        for wrong in (["1", "0", "0"], [b"1", b"0", b"0"], [1j, 0, 0], [None, 0, 0], "1", [[1], 0]):
            with pytest.raises(TypeError, match=f"{name} must be a sequence of numbers"):
                call(**{name: wrong})
    floats = call(translation=[1.0, 0.0, 0.0])[0]
    for same in ([1, 0, 0], (True, False, False), np.array([1, 0, 0], dtype=np.uint8)):
        assert (call(translation=same)[0] == floats).all()
    # A single number may be any that becomes a float.
    turn = BY_NAME["rotate plane Q4 N"]
    assert (turn(rotation=half)[0] == turn(rotation=0.5)[0]).all()
    with pytest.raises(TypeError, match="rotation must be a "):
        turn(rotation="1")
    with pytest.raises(TypeError, match="rotation must be a "):
        turn(rotation=None)


CODES = [
    (call, name) for call in CALLS for name in ("pattern", "diagonal_criterion")
    if name in inspect.signature(call.function).parameters
]


@pytest.mark.parametrize("call, name", CODES, ids=lambda part: getattr(part, "name", part))
def test_codes_of_any_size_are_integers(call, name):
    def outcome(value):
        try:
            return [np.asarray(part).tolist() for part in call(**{name: value})]
        except ValueError as error:
            return str(error)

    # Beyond 32 bits they mean what the last ones within do, and do not wrap around to 0.
    for sign in (1, -1):
        far = outcome(sign * (2**31 - 1))
        for value in (2**31, 2**32, 2**63, 2**64, 10**30):
            assert outcome(sign * value) == far
    assert outcome(np.int8(0)) == outcome(0)
    for wrong in (0.0, "0", None):
        with pytest.raises(TypeError, match=f"{name} must be an integer"):
            call(**{name: wrong})


def test_more_nodes_than_IDs_are_a_lack_of_memory():
    with pytest.raises(MemoryError, match="convert_into_high_order: out of memory or of node IDs"):
        BY_NAME["convert_into_high_order"](edge_nodes=0, quad_nodes=65535**2, edges=None)


@ALL
def test_help_tells_the_signature_and_the_shapes(call):
    signature = inspect.signature(call.function)
    assert set(call.arguments) <= set(signature.parameters)
    text = inspect.getdoc(call.function)
    if call.name == "version":
        return
    for name in signature.parameters:
        assert re.search(rf"\b{name}\b", text), name
    assert "Returns\n-------" in text and re.search(r"float64|uint32|float\b", text)


def test_everything_that_is_exported_is_there():
    assert t2.__version__ == t2.version() == "5.1.0.0"
    assert t2.UNSET_ID == 0xFFFFFFFF
    assert all(hasattr(t2, name) for name in t2.__all__)
    assert {call.function.__name__ for call in CALLS} <= set(t2.__all__)
    for kind in (t2.ElementType, t2.DiagonalChoice):
        for member in kind:
            assert getattr(t2, member.name) is member and member.name in t2.__all__
