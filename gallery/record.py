"""What a family leaves behind: pictures, meshes, and captions whose numbers were checked."""

import json
import time
from pathlib import Path

import numpy as np

from tessalo2d import interop


class CheckFailed(Exception):
    """A number in a caption is wrong."""


class Exhibit:
    """One picture in the making: the calls behind it with their times, and what was checked."""

    short, repetitions = 0.05, 3

    def __init__(self, name, title):
        self.name = name
        self.title = title
        self.calls = []
        self.checks = []

    def call(self, function, *args, **keywords):
        """Calls a function of the library and notes how long it took, a short one by the best of
        three calls: no function changes what it is given."""
        seconds = []
        while not seconds or len(seconds) < self.repetitions and min(seconds) < self.short:
            start = time.perf_counter()
            result = function(*args, **keywords)
            seconds.append(time.perf_counter() - start)
        self.calls.append((function.__name__, min(seconds)))
        return result

    def check(self, text, holds):
        """Notes a fact that the program has made sure of, or ends the program."""
        if not holds:
            raise CheckFailed(f"{self.title}: this should hold and does not: {text}")
        self.checks.append(text)

    def check_equal(self, text, value, expected, tolerance=1e-12):
        """As `check`, for a number: the text says which, the numbers are added to it."""
        error = abs(value - expected) / max(abs(expected), 1e-300)
        if not error <= tolerance:
            raise CheckFailed(f"{self.title}: {text}: {value!r} should be {expected!r}")
        self.checks.append(f"{text}: {value:.12g}")


class Record:
    """All exhibits of a family, in a folder."""

    def __init__(self, family, title, folder):
        self.family = family
        self.title = title
        self.folder = Path(folder)
        self.folder.mkdir(parents=True, exist_ok=True)
        self.exhibits = []

    def add(self, exhibit, figure, caption, meshes=()):
        """Saves the picture of an exhibit, and its meshes: (name, coords, connect, fields)."""
        import matplotlib.pyplot as plt

        picture = f"{exhibit.name}.png"
        figure.savefig(self.folder / picture)
        plt.close(figure)
        files = []
        for name, coords, connect, fields in meshes:
            files.append(f"{name}.vtu")
            write_mesh(self.folder / files[-1], coords, connect, fields)
        self.exhibits.append(
            {
                "title": exhibit.title,
                "picture": picture,
                "caption": " ".join(caption.split()),
                "calls": merge(exhibit.calls),
                "checks": exhibit.checks,
                "meshes": files,
            }
        )
        print(f"{exhibit.title}: {picture}", flush=True)

    def write(self):
        content = {"family": self.family, "title": self.title, "exhibits": self.exhibits}
        path = self.folder / f"{self.family}.json"
        path.write_text(json.dumps(content, indent=1), encoding="utf-8")


def merge(calls):
    """One entry for each function, in the order of the first calls: name, seconds, times called."""
    merged = {}
    for name, seconds in calls:
        before, times = merged.get(name, (0.0, 0))
        merged[name] = (before + seconds, times + 1)
    return [(name, seconds, times) for name, (seconds, times) in merged.items()]


def write_mesh(path, coords, connect, fields=None):
    """A VTU file of a mesh; fields have an entry for each node or for each element."""
    points, cells = {}, {}
    for name, values in (fields or {}).items():
        values = np.asarray(values)
        (points if len(values) == len(coords) else cells)[name] = values
    interop.to_meshio(coords, connect, point_data=points, cell_data=cells).write(path)


def count(number, noun):
    """"1 triangle", "12 345 triangles"."""
    return f"{number:,}".replace(",", "\u202f") + f" {noun}" + ("" if number == 1 else "s")
