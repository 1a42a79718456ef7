#!/usr/bin/python3
"""Do the tests notice when the library is wrong? Makes one small change at a time in its sources,
builds what the change touches and runs the tests: those of its own folder, and if they pass those
of the folders that stand on it.

The changes are drawn by a seed, evenly from every folder and kind of change; a change elsewhere
leaves the drawn ones as they are. One that does not compile, or leaves the object code as it was,
does not count. Changes that no test can notice stand in survivors.txt, each with its reason.
"""
import argparse
import hashlib
import json
import os
import re
import sys
import threading
import time
from pathlib import Path

from changes import KINDS, changes
from workshop import Worker, Workshop

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent.parent
PLACE = ROOT / "build" / "mutation"
LOG = PLACE / "log.jsonl"
NEEDED_PERCENT = 90


def library_folders(root):
    text = (root / "CMakeLists.txt").read_text()
    return re.search(r"set\(tessalo2d_folders([^)]*)\)", text).group(1).split()


def read_survivors():
    """The reasons by change. An entry is four lines: the file, the line, the changed line, why."""
    reasons, path, before, after = {}, None, None, None
    for line in (HERE / "survivors.txt").read_text().splitlines():
        if line.startswith("- "):
            before = line[2:]
        elif line.startswith("+ "):
            after = line[2:]
        elif line.startswith("= "):
            reasons[path, before, after] = line[2:]
        elif line and not line.startswith("#"):
            path = line
    return reasons


class Draw:
    """All changes in the order in which they are drawn."""

    def __init__(self, source, folders, seed):
        self.texts, cells = {}, {(f, k): [] for k in KINDS for f in folders}
        for folder in folders:
            for path in sorted((source / folder).rglob("*")):
                if path.suffix in (".h", ".cpp"):
                    name = str(path.relative_to(source))
                    self.texts[name] = path.read_text()
                    self.collect(name, folder, seed, cells)
        for cell in cells.values():
            cell.sort(key=lambda drawn: drawn[0])
        self.order = []
        for turn in range(max(map(len, cells.values()))):
            self.order += [cell[turn][1] for cell in cells.values() if turn < len(cell)]

    def collect(self, name, folder, seed, cells):
        text, seen = self.texts[name], {}
        for alternatives in changes(name, text):
            ranked = []
            for change in alternatives:
                what = (seed, name, *change.lines(text))
                seen[what] = seen.get(what, 0) + 1
                rank = hashlib.sha256(repr((what, seen[what])).encode()).hexdigest()
                ranked.append((rank, change))
            first = min(ranked, key=lambda drawn: drawn[0])
            cells[folder, first[1].kind].append(first)


class Run:
    def __init__(self, draw, options, known):
        self.draw, self.count, self.known = draw, options.count, known
        self.reasons = read_survivors()
        self.next, self.counted, self.in_work = 0, [], 0
        self.broken = None
        self.lock = threading.Lock()
        self.begin = time.monotonic()

    def take(self):
        """The next change; None when enough are done, or will be unless one in work does not
        count."""
        while True:
            with self.lock:
                missing = self.count - len(self.counted)
                if self.broken or missing <= 0 or self.next == len(self.draw.order):
                    return None
                if missing > self.in_work:
                    self.in_work += 1
                    self.next += 1
                    return self.draw.order[self.next - 1]
            time.sleep(0.2)

    def entry(self, change, result, why, seconds):
        text = self.draw.texts[change.path]
        before, after = change.lines(text)
        return {"path": change.path, "line": change.line_number(text), "before": before,
                "after": after, "kind": change.kind, "place": change.begin, "result": result,
                "why": why, "seconds": round(seconds, 1),
                "text": hashlib.sha256(text.encode()).hexdigest()[:16]}

    @staticmethod
    def key(entry):
        return entry["path"], entry["text"], entry["place"], entry["after"]

    def work(self, worker):
        while (change := self.take()) is not None:
            try:
                entry = self.result_of(worker, change)
            except BaseException as error:
                self.broken = error  # nobody waits for this change
                raise
            with self.lock:
                self.in_work -= 1
                if entry["result"] != "same":
                    self.counted.append(entry)
                    self.show(entry)

    def result_of(self, worker, change):
        text = self.draw.texts[change.path]
        entry = self.entry(change, "", "", 0.0)
        if self.key(entry) in self.known:
            return self.known[self.key(entry)]
        begin = time.monotonic()
        expected = (change.path, *change.lines(text)) in self.reasons
        result, why = worker.try_change(change, text, expected)
        entry = self.entry(change, result, why, time.monotonic() - begin)
        with self.lock, LOG.open("a") as log:
            log.write(json.dumps(entry) + "\n")
        return entry

    def show(self, entry):
        print(f"[{len(self.counted)}/{self.count}] {entry['result']}: {entry['path']}:"
              f"{entry['line']} {entry['kind']} {entry['why']}", flush=True)


def known_results(options):
    """What the log of an earlier run tells of the same sources. `--again` forgets the survivors,
    to try them with new tests."""
    known = {}
    if LOG.exists() and (options.resume or options.again):
        for line in LOG.read_text().splitlines():
            entry = json.loads(line)
            known[Run.key(entry)] = entry
    if options.again:
        known = {k: e for k, e in known.items() if e["result"] != "survived"}
    LOG.write_text("".join(json.dumps(e) + "\n" for e in known.values()))
    return known


def table(counted, folders):
    def cell(entries):
        noticed = sum(e["result"] == "noticed" for e in entries)
        return f"{noticed}/{len(entries)}".rjust(11)
    print("\nnoticed".ljust(16) + "".join(k.rjust(11) for k in KINDS) + "all".rjust(11))
    for folder in [*folders, None]:
        mine = [e for e in counted if folder in (None, e["path"].split("/")[0])]
        row = [[e for e in mine if e["kind"] == k] for k in KINDS] + [mine]
        print((folder or "all").ljust(15) + "".join(map(cell, row)))


def report(run, folders):
    reasons = read_survivors()
    survived = [e for e in run.counted if e["result"] == "survived"]
    open_ones = []
    print("\nSurvivors:")
    for e in sorted(survived, key=lambda e: (e["path"], e["line"])):
        reason = reasons.get((e["path"], e["before"], e["after"]))
        if not reason:
            open_ones.append(e)
        print(f"\n{e['path']}:{e['line']}\n- {e['before']}\n+ {e['after']}\n= {reason or '?'}")
    for e in run.counted:
        if e["result"] == "noticed" and (e["path"], e["before"], e["after"]) in reasons:
            print(f"\n{e['path']}:{e['line']} is listed as a survivor, but noticed by {e['why']}")
    table(run.counted, folders)
    total, noticed = len(run.counted), len(run.counted) - len(survived)
    percent = 100.0 * noticed / total if total else 0.0
    print(f"\n{time.monotonic() - run.begin:.0f} s")
    whole = not run.broken and (total == run.count or run.next == len(run.draw.order))
    if not whole:
        print(f"interrupted: {run.broken}")
    passed = whole and percent >= NEEDED_PERCENT and not open_ones
    print(f"{'' if passed else 'FAILED, '}{noticed} of {total} changes are noticed "
          f"({percent:.1f} %), {len(survived) - len(open_ones)} can not be for the reasons listed, "
          f"{len(open_ones)} wait for a test")
    return 0 if passed else 1


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("count", nargs="?", type=int, default=240, help="changes to try")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=min(2, os.cpu_count() or 1))
    parser.add_argument("--folder", help="changes in this folder only")
    parser.add_argument("--launcher", default="", help="a compiler cache")
    parser.add_argument("--resume", action="store_true", help="go on where a run was interrupted")
    parser.add_argument("--again", action="store_true",
                        help="as --resume, but try the survivors once more")
    parser.add_argument("--list", action="store_true", help="only print the drawn changes")
    options = parser.parse_args()
    folders = library_folders(ROOT)
    drawn_from = [options.folder] if options.folder else folders
    if options.list:
        draw = Draw(ROOT, drawn_from, options.seed)
        for change in draw.order[:options.count]:
            print(change.path, change.kind, *change.lines(draw.texts[change.path]), sep="\n    ")
        return 0
    os.nice(10)
    PLACE.mkdir(parents=True, exist_ok=True)
    print("building the unchanged tests", flush=True)
    workshop = Workshop(ROOT, PLACE, folders, options.launcher, options.jobs)
    print("running the unchanged tests", flush=True)
    workshop.measure()
    run = Run(Draw(workshop.source, drawn_from, options.seed), options, known_results(options))
    workers = [threading.Thread(target=run.work, args=(Worker(workshop, i),), daemon=True)
               for i in range(options.jobs)]
    for worker in workers:
        worker.start()
    for worker in workers:
        worker.join()
    return report(run, folders)


if __name__ == "__main__":
    sys.exit(main())
