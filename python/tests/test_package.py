"""The package beside its functions: type stubs, codes, the table of the README."""

import re
import subprocess
import sys
from collections import Counter
from pathlib import Path

import pytest
from calls import CALLS

import tessalo2d as t2

SOURCE = Path(__file__).resolve().parents[2]
PACKAGE = Path(t2.__file__).parent


def run(*command, **options):
    found = subprocess.run(command, capture_output=True, text=True, **options)
    assert found.returncode == 0, found.stdout + found.stderr


def test_stubs_agree_with_the_module(tmp_path):
    pytest.importorskip("mypy")
    env = {"PYTHONPATH": str(PACKAGE.parent), "MYPYPATH": str(PACKAGE.parent)}
    run(sys.executable, "-m", "mypy.stubtest", "tessalo2d._core", cwd=tmp_path, env=env)


def test_the_package_and_its_use_are_typed(tmp_path):
    pytest.importorskip("mypy")
    use = tmp_path / "use.py"
    use.write_text(
        """
import numpy as np
import tessalo2d as t2
from tessalo2d import interop

coords = np.zeros((3, 2))
connect = interop.as_IDs([[0, 1, 2]])
area: float = t2.area(coords, connect)
new_coords, new_connect = t2.extrude_translate_Q4(coords, connect[:, :2].copy(), (0, 1), N=2)
t2.flip(new_connect, t2.ELEMENT_Q4)
signed = np.zeros((1, 3), dtype=np.int64)
t2.flip(signed)  # type: ignore[arg-type]
t2.area(new_coords)  # type: ignore[call-arg]
"""
    )
    env = {"MYPYPATH": str(PACKAGE.parent)}
    options = ["--strict", "--cache-dir", str(tmp_path / "cache")]
    run(sys.executable, "-m", "mypy", *options, "-p", "tessalo2d", cwd=PACKAGE.parent)
    run(sys.executable, "-m", "mypy", *options, str(use), cwd=tmp_path, env=env)


@pytest.mark.parametrize(
    "header, prefix, codes",
    [
        ("foundation/public/vorel/element_type.h", "ELEMENT", t2.ElementType),
        ("include/vorel/tessalo2d.h", "DIAGONAL", t2.DiagonalChoice),
    ],
    ids=["ElementType", "DiagonalChoice"],
)
def test_codes_are_those_of_the_header(header, prefix, codes):
    text = (SOURCE / header).read_text()
    declared = re.findall(rf"^    ({prefix}_\w+) = (\d+)", text, re.MULTILINE)
    assert len(declared) == len(codes) > 5
    assert {name: int(code) for name, code in declared} == {c.name: c.value for c in codes}


def test_every_declared_function_has_a_call_in_these_tests_and_a_row_in_the_readme():
    header = (SOURCE / "include/vorel/tessalo2d.h").read_text()
    declared = Counter(re.findall(r"^VOREL_API [\w ]+[ *&]+(\w+)\(", header, re.MULTILINE))
    assert sum(declared.values()) == len(CALLS) == 55
    # Three names of Python share one of C++.
    shared = {
        "node_normals": "normals",
        "split_Q4_into_T3_by_quality": "split_Q4_into_T3",
        "split_Q4_into_T3_gated": "split_Q4_into_T3",
    }
    called = Counter(
        shared.get(call.function.__name__, call.function.__name__) for call in CALLS
    )
    assert called == declared

    table = (SOURCE / "python/README.md").read_text()
    rows = re.findall(r"^\| `(\w+)` \((\d+)\) \| (.*) \|$", table, re.MULTILINE)
    assert {name: int(count) for name, count, _ in rows} == declared
    named = {name for _, _, text in rows for name in re.findall(r"`(\w+)\(", text)}
    assert named == {call.function.__name__ for call in CALLS}
