"""Builds the tests of the unchanged library once, and for each change only what it touches.

The build has a copy of the tree of its own, so that the work tree may be edited meanwhile. Every
worker compiles from one more copy, in which it makes its changes.
"""
import json
import os
import re
import resource
import shlex
import shutil
import signal
import subprocess
import time
from pathlib import Path

LIBRARY = "libtessalo2d.a"
COMPILE_SECONDS = 300
MEMORY = 8 << 30


def copy_tree(source, target):
    """Copies what differs, so that a second build compiles what has changed only."""
    kept = set()
    for folder, folders, files in os.walk(source):
        relative = Path(folder).relative_to(source)
        folders[:] = [f for f in folders if not f.startswith((".", "build", "__pycache__"))]
        (target / relative).mkdir(parents=True, exist_ok=True)
        for name in files:
            here, there = Path(folder) / name, target / relative / name
            kept.add(there)
            if not there.exists() or there.read_bytes() != here.read_bytes():
                shutil.copyfile(here, there)
    for folder, _, files in os.walk(target):
        for path in (Path(folder) / name for name in files):
            if path not in kept:
                path.unlink()


class Workshop:
    def __init__(self, root, place, folders, launcher, jobs):
        self.place, self.folders = place, folders
        self.source, self.build = place / "source", place / "build"
        copy_tree(root, self.source)
        options = ["-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_CXX_FLAGS_RELEASE=-O1",
                   "-DTESSALO2D_BENCHMARKS=OFF", "-DTESSALO2D_EXAMPLES=OFF",
                   "-DTESSALO2D_INSTALL=OFF", "-DTESSALO2D_WERROR=OFF",
                   "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON", "-DCMAKE_CXX_COMPILER_LAUNCHER=" + launcher]
        self.run(["cmake", "-S", self.source, "-B", self.build, "-G", "Ninja", *options])
        targets = self.run(["ninja", "-t", "targets", "all"], self.build)
        self.programs = {}
        for path in re.findall(r"^(tests/\w+/tests_\w+): CXX_EXE", targets, re.MULTILINE):
            self.programs.setdefault(path.split("/")[1], []).append(path)
        self.programs.pop("support", None)
        everything = [p for programs in self.programs.values() for p in programs]
        self.run(["ninja", f"-j{jobs}", *everything], self.build)
        self.read_commands(everything)
        self.read_includes()
        self.seconds = {}

    @staticmethod
    def run(command, cwd=None):
        done = subprocess.run(command, cwd=cwd, text=True, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, check=False)
        if done.returncode != 0:
            raise SystemExit(f"{done.stdout[-4000:]}\nfailed: {' '.join(map(str, command))}")
        return done.stdout

    def read_commands(self, programs):
        """The command of each unit, by its object; the objects and the link command of programs."""
        self.compile, self.unit = {}, {}
        for entry in json.loads((self.build / "compile_commands.json").read_text()):
            if not entry["file"].startswith(str(self.source)):
                continue
            words = shlex.split(entry["command"])
            here = words.index("-o")
            self.compile[words[here + 1]] = [w for w in words if not w.endswith("ccache")]
            self.unit[words[here + 1]] = str(Path(entry["file"]).relative_to(self.source))
        self.link = {}
        for program in programs:
            last = self.run(["ninja", "-t", "commands", "-s", program], self.build).splitlines()[-1]
            self.link[program] = shlex.split(re.sub(r"^: && | && .*$", "", last.strip()))

    def read_includes(self):
        """The objects that depend on each file, and the folders that each folder's tests need."""
        self.dependents, current = {}, None
        for line in self.run(["ninja", "-t", "deps"], self.build).splitlines():
            if line and not line.startswith(" "):
                current = line.split(":")[0]
            elif current in self.compile:
                path = os.path.relpath(self.build / line.strip(), self.source)
                self.dependents.setdefault(path, []).append(current)
        self.needs = {}
        for path, objects in self.dependents.items():
            for made in objects:
                user, used = self.unit[made].split("/")[0], path.split("/")[0]
                if user in self.folders and used in self.folders:
                    self.needs.setdefault(user, {user}).add(used)

    def users(self, folder):
        """Folders whose tests may notice a change in `folder`: itself, those that stand on it, and
        the tests that belong to no folder."""
        above = [f for f in self.folders if f != folder and folder in self.needs.get(f, ())]
        return [folder, *above, *(p for p in self.programs if p not in self.folders)]

    def measure(self):
        """Runs every test program, which must pass, for the time it takes."""
        for programs in self.programs.values():
            for program in programs:
                begin = time.monotonic()
                why = self.run_tests(self.build / program, 600)
                if why:
                    raise SystemExit(f"{program} fails without any change: {why}")
                self.seconds[program] = time.monotonic() - begin

    @staticmethod
    def run_tests(program, cpu_seconds):
        """How the tests notice a change; empty when all pass. A hang or hunger for memory counts."""
        def limits():
            resource.setrlimit(resource.RLIMIT_CPU, (cpu_seconds, cpu_seconds + 1))
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        command = [program, "--gtest_fail_fast", "--gtest_brief=1"]
        with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              stdin=subprocess.DEVNULL, cwd=program.parent, preexec_fn=limits,
                              start_new_session=True) as job:
            try:
                out = job.communicate(timeout=8 * cpu_seconds)[0].decode(errors="replace")
            except subprocess.TimeoutExpired:
                os.killpg(job.pid, signal.SIGKILL)
                job.communicate()
                return "does not end"
        if job.returncode == 0:
            return ""
        failed = re.findall(r"\[  FAILED  \] ([\w/.]+)", out)
        if failed:
            return failed[0]
        if job.returncode in (-signal.SIGXCPU, -signal.SIGKILL):
            return "does not end"
        return "crashes" if job.returncode < 0 else f"ends with {job.returncode}"


class Worker:
    def __init__(self, workshop, number):
        self.shop = workshop
        self.place = workshop.place / f"worker{number}"
        self.source, self.out = self.place / "source", self.place / "out"
        copy_tree(workshop.source, self.source)

    def try_change(self, change, text):
        """(`noticed`, how), (`survived`, "") or (`same`, why) for a change that makes no program or
        no other one."""
        shutil.rmtree(self.out, ignore_errors=True)
        self.out.mkdir(parents=True)
        (self.source / change.path).write_text(change.applied(text))
        try:
            return self.judge(change)
        finally:
            (self.source / change.path).write_text(text)

    def judge(self, change):
        compiled, other = [], False
        for user, objects in self.steps(change):
            for made in objects:
                if not self.compile(made):
                    return "same", "does not compile"
                compiled.append(made)
                other = other or not self.is_same(made)
            if not other:
                continue
            for program in self.shop.programs.get(user, []):
                here = self.link(program, compiled)
                if not here:
                    return "same", "does not link"
                why = self.shop.run_tests(here, int(3 * self.shop.seconds[program]) + 10)
                if why:
                    return "noticed", f"{program.split('/')[-1]}: {why}"
        if not compiled:
            raise RuntimeError(f"no unit of the library or its tests uses {change.path}")
        return ("survived", "") if other else ("same", "same object code")

    def steps(self, change):
        """Whose tests to run, one after the other until one notices, and what to compile before.

        A header's functions are in the units that call them, so tests have some for themselves. As
        the library's come first when linking, it is mostly enough to compile the tests that include
        the header by its name or are named for it; if those do not notice, the rest of the folder.
        """
        folder, header = change.path.split("/")[0], Path(change.path)
        dependents = self.shop.dependents.get(change.path, [])
        owner = {made: self.shop.unit[made].split("/")[0] for made in dependents}
        tests = [m for m in dependents if self.shop.unit[m].startswith(f"tests/{folder}/")]
        name = f"{header.parent.name}/{header.name}"
        near = [m for m in tests if Path(self.shop.unit[m]).name.startswith(header.stem + "_")
                or name in (self.source / self.shop.unit[m]).read_text()]
        yield folder, [m for m in dependents if owner[m] == folder] + near
        if far := [m for m in tests if m not in near]:
            yield folder, far
        users = self.shop.users(folder)[1:]
        for user in users:
            yield user, [m for m in dependents if owner[m] == user]

    def compile(self, made):
        target = self.out / made
        target.parent.mkdir(parents=True, exist_ok=True)
        command = [w.replace(str(self.shop.source), str(self.source)) for w in self.shop.compile[made]]
        command[command.index("-o") + 1] = str(target)
        for option in ("-MD", "-MT", "-MF"):
            if option in command:
                at = command.index(option)
                del command[at:at + (1 if option == "-MD" else 2)]
        try:
            return subprocess.run([*command, "-w"], cwd=self.shop.build, stdout=subprocess.DEVNULL,
                                  stderr=subprocess.DEVNULL, timeout=COMPILE_SECONDS,
                                  check=False).returncode == 0
        except subprocess.TimeoutExpired:
            return False

    def is_same(self, made):
        return (self.out / made).read_bytes() == (self.shop.build / made).read_bytes()

    def link(self, program, compiled):
        """The program with the changed objects in front, or, where it defines one of their symbols
        itself, in an archive before the library's."""
        target = self.out / "program"
        mine = {made: str(self.out / made) for made in compiled}
        command = [mine.get(w, w) for w in self.shop.link[program]]
        command[command.index("-o") + 1] = str(target)
        extra = [path for made, path in mine.items() if not made.startswith("tests/")]
        front = command[:1] + extra + command[1:]
        if self.succeeds(front):
            return target
        archive = self.out / "changed.a"
        at = command.index(LIBRARY)
        behind = command[:at] + [str(archive)] + command[at:]
        if self.succeeds(["ar", "qcs", str(archive), *extra]) and self.succeeds(behind):
            return target
        return None

    def succeeds(self, command):
        return subprocess.run(command, cwd=self.shop.build, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, check=False).returncode == 0
