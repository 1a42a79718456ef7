#!/usr/bin/python3
"""One table of the results of all benchmarks: table.py RESULT.json..."""
import json
import os
import re
import sys


def readable(value, units):
    """Three digits and a unit of a thousandth of the next."""
    for factor, unit in units:
        if value < 999.5 * factor or factor == units[-1][0]:
            break
    scaled = value / factor
    digits = 2 if scaled < 9.995 else 1 if scaled < 99.95 else 0
    return f"{scaled:.{digits}f} {unit}"


def row(result):
    """Function, case, size, time, items per second and the multiple of the roof."""
    # convert<form::T3, SHUFFLED>/layers:10/1000000: what is neither the first nor the last part,
    # and template arguments, tell the case.
    name = re.sub(r"\w+::", "", result["name"])
    *parts, size = name.split("/")
    function, arguments = re.match(r"(\w+)(?:<(.*)>)?", parts[0]).groups()
    case = " ".join(([arguments] if arguments else []) + parts[1:])
    if "error_message" in result:
        return [function, case, size, result["error_message"], "", ""]
    unit = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}[result["time_unit"]]
    seconds = result["cpu_time"] * unit
    roof = f"{result['x_roof']:.2f}" if "x_roof" in result else "no roof"
    return [
        function,
        case.replace("_", " ").replace(":", " "),
        size,
        readable(seconds, [(1e-9, "ns"), (1e-6, "us"), (1e-3, "ms"), (1.0, "s")]),
        readable(result["items_per_second"], [(1e3, "k/s"), (1e6, "M/s"), (1e9, "G/s")]),
        roof,
    ]


def main():
    head = ["function", "case", "size", "time", "items", "x roof"]
    families = []
    for path in sys.argv[1:]:
        with open(path, encoding="utf-8") as file:
            results = json.load(file)["benchmarks"]
        families.append((os.path.splitext(os.path.basename(path))[0], [row(r) for r in results]))
    rows = [head] + [r for _, family in families for r in family]
    widths = [max(len(r[i]) for r in rows) for i in range(len(head))]

    def line(cells):
        texts = [c.ljust(w) if i < 2 else c.rjust(w) for i, (c, w) in enumerate(zip(cells, widths))]
        return "  ".join(texts).rstrip()

    print(line(head))
    for family, members in families:
        if members:
            print(f"\n{family}")
        for member in members:
            print(line(member))


if __name__ == "__main__":
    main()
