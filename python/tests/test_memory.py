"""Arrays cross without a copy, and nobody's memory goes away too early."""

import gc
import mmap
import subprocess
import sys
import tempfile
import threading
import time
import weakref

import numpy as np
import pytest
from calls import CALLS, OCTAHEDRON, SIDES

import tessalo2d as t2
from tessalo2d import interop

ALL = pytest.mark.parametrize("call", CALLS, ids=lambda call: call.name)


def assert_same(found, expected):
    """The same bits, whatever they stand for."""
    assert len(found) == len(expected)
    for a, b in zip(found, expected):
        assert type(a) is type(b)
        if isinstance(b, np.ndarray):
            assert a.dtype == b.dtype and a.shape == b.shape and a.tobytes() == b.tobytes()
        else:
            assert a == b


def in_protected_memory(array):
    """A copy on pages that the processor lets nobody write to: who tries ends the program."""
    with tempfile.TemporaryFile() as file:
        file.write(array.tobytes() or b"\0")
        file.flush()
        pages = mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)
    return np.frombuffer(pages, dtype=array.dtype, count=array.size).reshape(array.shape)


@ALL
def test_inputs_may_lie_in_protected_memory(call):
    protected = {name: in_protected_memory(call.arguments[name]) for name in call.arrays()}
    assert_same(call.results(**protected), call.results())


@ALL
def test_rows_of_inputs_may_lie_apart(call):
    apart = {}
    for name in call.arrays():
        array = call.arguments[name]
        if array.ndim == 2:
            wide = np.full((len(array), array.shape[1] + 3), 77, dtype=array.dtype)
            wide[:, 1:-2] = array
            apart[name] = wide[:, 1:-2]
    before = {name: view.base.copy() for name, view in apart.items()}
    assert_same(call.results(**apart), call.results())
    for name, view in apart.items():
        assert (view.base == before[name]).all()


@ALL
def test_results_are_new_arrays_on_the_memory_of_the_library(call):
    expected = call.results()
    results = call.results()
    inputs = [call.arguments[name] for name in call.arrays()]
    arrays = [result for result in results if isinstance(result, np.ndarray)]
    for k, result in enumerate(arrays):
        assert result.flags.c_contiguous and result.flags.writeable and result.flags.aligned
        assert not any(np.shares_memory(result, other) for other in inputs + arrays[:k])
        if result.size:
            assert type(result.base).__name__ == "PyCapsule"
        result.fill(0)
    assert_same(call.results(), expected)


@ALL
def test_results_outlive_inputs_and_inputs_results(call):
    expected = call.results()
    copies = {name: call.arguments[name].copy() for name in call.arrays()}
    watched = [weakref.ref(array) for array in copies.values()]
    kept = call.results(**copies)
    dropped = call.results(**copies)
    del dropped
    gc.collect()
    assert_same(call.results(**copies), expected)
    copies.clear()
    gc.collect()
    assert [ref() for ref in watched] == [None] * len(watched)
    # What is freed is used again, by arrays full of something else.
    litter = [np.full(size, 0xA5, dtype=np.uint8) for size in range(16, 2048, 16)]
    assert_same(kept, expected)
    del litter


def test_results_are_freed_with_their_last_view():
    coords, connect = t2.convert_into_quadratic(OCTAHEDRON, SIDES)
    owner = connect.base
    references = sys.getrefcount(owner)
    view = connect[2:, 1:]
    row = view[0].copy()
    del connect
    gc.collect()
    assert view.base is not None and sys.getrefcount(owner) >= references - 1
    assert (view[0] == row).all()
    del view
    gc.collect()
    assert sys.getrefcount(owner) == 2


def test_calls_leave_no_memory_behind():
    """Ten calls with results of 24 MB each do not need ten times that."""
    code = """
import resource
import numpy as np
import tessalo2d as t2
coords = np.zeros((1000000, 3)); coords[:, 0] = np.arange(1000000) % 1000
connect = np.zeros((1000000, 3), dtype=np.uint32)
t2.normals(coords, connect)
before = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
for _ in range(10):
    t2.normals(coords, connect)
    t2.flip(connect)
    try:
        t2.normals(coords, connect + 1000000)
    except ValueError:
        pass
print(resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - before)
"""
    grown = subprocess.run([sys.executable, "-c", code], check=True, capture_output=True)
    assert int(grown.stdout) < 100_000, "kB"


def test_large_inputs_are_not_copied():
    """Coordinates in a file of 8 GB without contents, with no address space for a second copy."""
    code = """
import resource, tempfile
import numpy as np
import tessalo2d as t2
n = 500_000_000
with tempfile.TemporaryFile() as file:
    file.truncate(16 * n)
    coords = np.memmap(file, dtype=np.float64, mode='r', shape=(n, 2))
    in_use = int(open('/proc/self/statm').read().split()[0]) * 4096
    resource.setrlimit(resource.RLIMIT_AS, (in_use + 2**30,) * 2)
    try:
        np.array(coords)
    except MemoryError:
        print('no room for a copy')
    print(t2.area(coords, np.array([[0, n - 1, n // 2]], dtype=np.uint32)))
"""
    found = subprocess.run([sys.executable, "-c", code], check=True, capture_output=True)
    assert found.stdout.decode().split("\n")[:2] == ["no room for a copy", "0.0"]


def test_other_threads_run_python_during_a_call():
    # Patches that span a whole plate: far more work than arrays.
    side = 45
    boundary = np.array(
        [[i, 0] for i in range(side)]
        + [[side, i] for i in range(side)]
        + [[side - i, side] for i in range(side)]
        + [[0, side - i] for i in range(side)],
        dtype=np.float64,
    )
    around = np.append(np.arange(4 * side), 0).astype(np.uint32)
    plate, connect = t2.mesh_struct_T3(boundary, around, side)
    plate = interop.as_coords(plate, 3)
    sides = interop.neighbors(connect)

    def moments_of_this_thread():
        """When this thread ran while another one was in a call, as fractions of the call."""
        times = {}

        def work():
            times["begin"] = time.perf_counter()
            t2.principal_curvatures(plate, connect, sides, 2.0 * side)
            times["end"] = time.perf_counter()

        thread = threading.Thread(target=work)
        thread.start()
        moments = []
        while thread.is_alive():
            moments.append(time.perf_counter())
            time.sleep(0.001)
        thread.join()
        length = times["end"] - times["begin"]
        return [(moment - times["begin"]) / length for moment in moments]

    # A call that keeps the lock never shows a moment in its middle; a busy machine may hide them.
    assert any(
        0.25 < moment < 0.75 for _ in range(5) for moment in moments_of_this_thread()
    )


def test_calls_run_beside_each_other():
    expected = {call.name: call.results() for call in CALLS}
    failures = []

    def work():
        try:
            for _ in range(5):
                for call in CALLS:
                    assert_same(call.results(), expected[call.name])
        except BaseException as error:
            failures.append(error)

    threads = [threading.Thread(target=work) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert failures == []
