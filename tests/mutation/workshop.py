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
LIBRARY_OBJECTS = "CMakeFiles/tessalo2d_objects.dir/"
SANITIZERS = ("-fsanitize=address,undefined,float-cast-overflow", "-fno-sanitize-recover=all",
              "-D_GLIBCXX_ASSERTIONS")
SANITIZER_OPTIONS = {"ASAN_OPTIONS": "allocator_may_return_null=1:hard_rss_limit_mb=8192"}
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
                   "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON",
                   "-DCMAKE_CXX_COMPILER_LAUNCHER=" + launcher]
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
        # A program that has the library otherwise than as the archive is left out.
        for folder, made in self.programs.items():
            self.programs[folder] = [p for p in made if LIBRARY in self.link[p]]

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
    def run_tests(program, cpu_seconds, sanitized=False):
        """How the tests notice a change, a hang or hunger for memory too; empty if all pass."""
        def limits():
            resource.setrlimit(resource.RLIMIT_CPU, (cpu_seconds, cpu_seconds + 1))
            if not sanitized:  # The address sanitizer takes address space for its own memory.
                resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        command = [program, "--gtest_fail_fast", "--gtest_brief=1"]
        with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              stdin=subprocess.DEVNULL, cwd=program.parent, preexec_fn=limits,
                              env={**os.environ, **SANITIZER_OPTIONS},
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
        self.linked = set()
        copy_tree(workshop.source, self.source)

    def try_change(self, change, text, expected):
        """(`noticed`, how), (`survived`, "") or (`same`, why) for a change that makes no program or
        no other one. What survives unexpectedly is tried once more with the touched units under
        sanitizers, in the tests of one folder."""
        try:
            self.write(change.path, change.applied(text))
            result, why = self.judge(change, ())
            if result == "survived" and not expected:
                result, why = self.judge(change, SANITIZERS)
                self.write(change.path, text)
                if result != "noticed" or self.judge(change, SANITIZERS)[0] == "noticed":
                    result, why = "survived", ""
        finally:
            self.write(change.path, text)
        return result, why

    def write(self, path, text):
        (self.source / path).write_text(text)

    def judge(self, change, sanitizers):
        shutil.rmtree(self.out, ignore_errors=True)
        compiled, other, tested = [], bool(sanitizers), None
        for user, objects in self.steps(change):
            if sanitizers and tested not in (None, user):
                break
            for made in objects:
                if not self.compile(made, sanitizers):
                    return "same", "does not compile"
                compiled.append(made)
                other = other or not self.is_same(made)
            if not other or not compiled:
                continue
            tested = user
            for program in self.shop.programs.get(user, []):
                here = self.link(program, compiled, sanitizers)
                if not here:
                    return "same", "does not link"
                seconds = int((20 if sanitizers else 3) * self.shop.seconds[program]) + 10
                why = self.shop.run_tests(here, seconds, bool(sanitizers))
                if why:
                    under = " under sanitizers" if sanitizers else ""
                    return "noticed", f"{program.split('/')[-1]}{under}: {why}"
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

    def compile(self, made, sanitizers):
        target = self.out / made
        target.parent.mkdir(parents=True, exist_ok=True)
        there, here = str(self.shop.source), str(self.source)
        command = [word.replace(there, here) for word in self.shop.compile[made]]
        command[command.index("-o") + 1] = str(target)
        for option in ("-MD", "-MT", "-MF"):
            if option in command:
                at = command.index(option)
                del command[at:at + (1 if option == "-MD" else 2)]
        try:
            return self.succeeds([*command, *sanitizers, "-w"], COMPILE_SECONDS)
        except subprocess.TimeoutExpired:
            return False

    def is_same(self, made):
        return (self.out / made).read_bytes() == (self.shop.build / made).read_bytes()

    def link(self, program, compiled, sanitizers):
        """The program with the changed objects in front; where it defines one of their symbols
        itself, without. The archive holds no unchanged version of them, so that a function that got
        lost is missed."""
        target, archive = self.out / "program", self.out / "changed.a"
        mine = {made: str(self.out / made) for made in compiled}
        library = [made for made in self.shop.compile if made.startswith(LIBRARY_OBJECTS)]
        if not archive.exists() or not self.linked.issuperset(compiled):
            archive.unlink(missing_ok=True)
            members = [mine.get(made, str(self.shop.build / made)) for made in library]
            if not self.succeeds(["ar", "qcsT", str(archive), *members]):
                return None
            self.linked = set(compiled)
        command = [mine.get(w, w) for w in self.shop.link[program]]
        command[command.index("-o") + 1] = str(target)
        command[command.index(LIBRARY)] = str(archive)
        command[1:1] = sanitizers
        front = [path for made, path in mine.items() if made in library]
        if self.succeeds(command[:1] + front + command[1:]) or self.succeeds(command):
            return target
        return None

    def succeeds(self, command, seconds=None):
        return subprocess.run(command, cwd=self.shop.build, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, timeout=seconds,
                              check=False).returncode == 0
