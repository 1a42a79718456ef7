"""Makes one family of the gallery, or its index page when all are there."""

import argparse
import importlib
import sys

from . import model as models
from . import page
from .record import CheckFailed, Record

PLANE = ["structured", "splitting", "order", "transfer", "extrusion"]
WITH_MODEL = ["surface", "curvature", "repair"]
FAMILIES = PLANE + WITH_MODEL


def main():
    parser = argparse.ArgumentParser(prog="python3 -m gallery", description=__doc__)
    parser.add_argument("what", choices=FAMILIES + ["index", "model"])
    parser.add_argument("--out", default="build/gallery", help="folder for pictures and meshes")
    parser.add_argument("--model", default=models.DEFAULT, help="surface for the last families")
    arguments = parser.parse_args()
    try:
        if arguments.what == "model":
            surface = models.read(arguments.model)
            print(f"{surface.name}: {len(surface.connect)} triangles, {len(surface.coords)} nodes")
        elif arguments.what == "index":
            import tessalo2d

            path, pictures, checks = page.write(arguments.out, FAMILIES, tessalo2d.version(),
                                                models.Path(arguments.model).name)
            print(f"{pictures} pictures, {checks} checks passed: {path}")
        else:
            family = importlib.import_module(f".{arguments.what}", __package__)
            record = Record(arguments.what, family.TITLE, arguments.out)
            surface = [models.read(arguments.model)] if arguments.what in WITH_MODEL else []
            family.make(record, *surface)
            record.write()
    except (CheckFailed, models.Unusable) as problem:
        sys.exit(f"error: {problem}")


if __name__ == "__main__":
    main()
