"""A copy of the project in which one fault at a time is made, built and tested."""

import json
import math
import os
import re
import shlex
import shutil
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from fnmatch import fnmatch
from pathlib import Path

from clang.cindex import Index, TranslationUnit

from faults import Finder

LIBRARY = "lib/libdriver_internals.so"
OBJECTS = "CMakeFiles/driver_internals.dir/"
COPIED = ("cmake", "include", "src", "tests", "tools")
# The release as hosts get it: what it compiles to decides whether a fault makes a difference.
RELEASE = ["-O2", "-DNDEBUG", "-DQT_NO_DEBUG"]
LONGEST_TEST = 20  # seconds; a longer one is no unit test


def say(text):
    print(f"mutate: {text}", flush=True, file=sys.stderr)


class Workbench:
    def __init__(self, root, directory, sanitize, jobs, timeout):
        self.root, self.jobs, self.timeout = root, jobs, timeout
        self.tree, self.build = directory / "tree", directory / ("sanitized" if sanitize else "build")
        self.sanitize = sanitize
        self.directory = directory
        self.files = sorted(str(p.relative_to(root)) for p in (root / "src").rglob("*")
                            if p.suffix in (".cpp", ".h"))

    # The copy

    def prepare(self):
        flags = "-O1 -g0" if self.sanitize else "-O0 -g0 -D_GLIBCXX_ASSERTIONS"
        self.run("cmake", "-S", self.tree, "-B", self.build, "-G", "Ninja",
                 "-DCMAKE_BUILD_TYPE=Debug", f"-DCMAKE_CXX_FLAGS_DEBUG={flags}",
                 "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON", f"-DSANITIZE={'ON' if self.sanitize else 'OFF'}")
        entries = json.loads((self.build / "compile_commands.json").read_text())
        self.compile = {}
        for entry in entries:
            command = shlex.split(entry["command"])
            self.compile[command[command.index("-o") + 1]] = command

    def copy(self):
        """Brings the copy up to date; an unchanged file keeps its time, and is not built again."""
        wanted = {"CMakeLists.txt": self.root / "tests/mutation/CMakeLists.txt"}
        for name in COPIED:
            for path in (self.root / name).rglob("*"):
                if path.is_file() and "__pycache__" not in path.parts:
                    wanted[str(path.relative_to(self.root))] = path
        for name, path in wanted.items():
            target = self.tree / name
            if not target.exists() or target.read_bytes() != path.read_bytes():
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copyfile(path, target)
        for path in [p for p in self.tree.rglob("*") if p.is_file()]:
            if str(path.relative_to(self.tree)) not in wanted:
                path.unlink()

    def run(self, *command):
        done = subprocess.run([str(part) for part in command], cwd=self.tree, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        if done.returncode != 0:
            raise SystemExit(f"{done.stdout}\nmutate: {command[0]} failed")
        return done.stdout

    def faults(self, files):
        """Every fault of these files, in the order of the sources."""
        command = self.compile[OBJECTS + "src/shared/bytes.cpp.o"]
        arguments = [part for part in command if part.startswith(("-I", "-D", "-std", "-fPIC"))]
        arguments += [f"-isystem{path}" for option, path in zip(command, command[1:])
                      if option == "-isystem"]
        headers = self.directory / "qt.h"
        headers.write_text("#include <QtCore/QtCore>\n")
        Index.create().parse(str(headers), args=["-xc++-header", *arguments],
                             options=TranslationUnit.PARSE_INCOMPLETE).save(f"{headers}.pch")
        arguments = ["-xc++", *arguments, "-include-pch", f"{headers}.pch"]
        return [fault for file in files for fault in Finder(self.tree, file, arguments).find()]

    # The unchanged driver

    def build_all(self, programs):
        say("building the driver and its tests ...")
        targets = self.run("ninja", "-C", self.build, "-t", "targets", "all")
        self.modules = sorted({name for name in re.findall(r"^(lib/test_\w+\.so): ", targets, re.M)
                               if not programs or any(fnmatch(Path(name).stem, glob)
                                                      for glob in programs)})
        if not self.modules:
            raise SystemExit("mutate: there is no such test program")
        self.run("ninja", "-C", self.build, f"-j{self.jobs}", "bin/mutation_runner", *self.modules)
        self.link = {name: shlex.split(self.run("ninja", "-C", self.build, "-t", "commands", name)
                                       .strip().rsplit("\n", 1)[-1])[2:-2]
                     for name in [LIBRARY, *self.modules]}
        self.read_dependencies()
        self.measure()

    def read_dependencies(self):
        """Which objects a file of src/ goes into."""
        self.users = {}
        for block in self.run("ninja", "-C", self.build, "-t", "deps").split("\n\n"):
            target, *files = block.split("\n")
            target = target.split(":")[0]
            for file in files:
                name = os.path.relpath(file.strip(), self.tree)
                if name.startswith("src/") and target in self.compile:
                    self.users.setdefault(name, set()).add(target)

    def measure(self):
        """The tests must pass as they are; the shortest ones run first."""
        out = self.tests(self.build / LIBRARY, [(name, 4 * LONGEST_TEST) for name in self.modules])
        failed = [line for line in out if line.startswith("killed")]
        if failed:
            raise SystemExit(f"mutate: the tests fail without any fault: {failed[0]}")
        took = {line.split()[1]: int(line.split()[2]) / 1000 for line in out}
        for name in [name for name in took if took[name] > LONGEST_TEST]:
            say(f"{name} takes {took.pop(name):.0f} s and is left out")
        self.limits = {name: max(self.timeout, math.ceil(5 * seconds))
                       for name, seconds in took.items()}
        self.order = sorted(took, key=took.get)
        say(f"{len(took)} test programs, {sum(took.values()):.1f} s together")

    def tests(self, library, modules):
        environment = dict(os.environ, LD_LIBRARY_PATH=str(library.parent),
                           ASAN_OPTIONS="detect_leaks=0:hard_rss_limit_mb=2000")
        done = subprocess.run(
            [self.build / "bin/mutation_runner", *(f"{name}={limit}" for name, limit in modules)],
            cwd=self.build, env=environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        lines = done.stdout.decode(errors="replace").splitlines()
        if done.returncode not in (0, 1):
            raise SystemExit(f"mutate: the test runner failed: {lines[-1:]}")
        return lines

    # The changed driver

    def results(self, faults, known):
        """Yields each fault with its verdict, who killed it and the seconds it took."""
        free = [Worker(self, number) for number in range(self.jobs)]

        def one(fault):
            worker = free.pop()
            try:
                started = time.monotonic()
                verdict, by = worker.judge(fault, fault in known)
                return fault, verdict, by, time.monotonic() - started
            finally:
                free.append(worker)

        with ThreadPoolExecutor(self.jobs) as pool:
            try:
                yield from pool.map(one, faults)
            except BaseException:
                pool.shutdown(cancel_futures=True)
                raise


class Worker:
    """A second src/ and the objects that differ, so that several faults can be tried at once."""

    def __init__(self, bench, number):
        self.bench = bench
        self.place = bench.directory / f"worker-{number}"
        shutil.rmtree(self.place, ignore_errors=True)
        shutil.copytree(bench.tree / "src", self.place / "src")
        (self.place / "lib").mkdir()

    def judge(self, fault, known):
        path = self.place / fault.file
        text = path.read_text()
        try:
            path.write_text(text[:fault.start] + fault.replacement + text[fault.end:])
            verdict, by = self.test(fault)
            if verdict == "survived" and not known and self.is_equivalent(fault, text):
                verdict = "equivalent"
            return verdict, by
        finally:
            path.write_text(text)

    def command(self, target, output):
        """The compile command of an object, with the worker's sources."""
        source = str(self.bench.tree / "src") + "/"
        command = [part.replace(source, f"{self.place}/src/") for part in self.bench.compile[target]]
        command = [f"-I{self.place}/src" if part == f"-I{source[:-1]}" else part for part in command]
        command[command.index("-o") + 1] = str(output)
        return [part for part in command if not part.startswith("-W")] + ["-w"]

    def object(self, target):
        return self.place / (target.replace("/", "_"))

    def compiles(self, targets):
        return all(self.done(self.command(target, self.object(target))) for target in targets)

    def done(self, command):
        return subprocess.run(command, cwd=self.bench.build, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL).returncode == 0

    def linked(self, name, changed):
        """Links a library again with the changed objects; those of an archive come before it."""
        command = [str(self.object(part)) if part in changed else part
                   for part in self.bench.link[name]]
        archives = {Path(part).name[3:-2] for part in command if part.endswith(".a")}
        extra = [str(self.object(t)) for t in changed
                 if any(f"/{archive}.dir/" in t for archive in archives)]
        output = command.index("-o") + 1
        command[output] = str(self.place / name)
        command[output + 1:output + 1] = extra
        return self.done(command)

    def test(self, fault):
        bench = self.bench
        users = bench.users.get(fault.file, set())
        driver = sorted(target for target in users if target.startswith(OBJECTS))
        others = users - set(driver)
        if not self.compiles(driver) or not self.linked(LIBRARY, driver):
            return "stillborn", ""
        named = f"lib/test_{Path(fault.file).stem}.so"
        order = sorted(bench.order, key=lambda name: name != named)
        if not others:
            return self.outcome(bench.tests(self.place / LIBRARY,
                                            [(name, bench.limits[name]) for name in order]))
        # A header's fault is also the tests' own: each is built again just before it runs.
        built = set()
        for name in order:
            stem = Path(name).stem
            mine = {t for t in others if f"/{stem}.dir/" in t or not re.search(r"/test_\w+\.dir/", t)}
            if not self.compiles(mine - built) or not self.linked(name, mine):
                return "stillborn", ""
            built |= mine
            lines = bench.tests(self.place / LIBRARY, [(self.place / name, bench.limits[name])])
            verdict, by = self.outcome(lines)
            if verdict == "killed":
                return verdict, by
        return "survived", ""

    @staticmethod
    def outcome(lines):
        if lines and lines[-1].startswith("killed"):
            _, name, how = lines[-1].split(" ", 2)
            return "killed", f"{Path(name).stem}: {how}"
        return "survived", ""

    def is_equivalent(self, fault, original):
        """Whether an optimising compiler makes the same objects of the changed source."""
        targets = [t for t in self.bench.users.get(fault.file, ()) if t.startswith(OBJECTS)]
        changed = [self.release_object(target) for target in targets]
        (self.place / fault.file).write_text(original)
        return all(changed) and changed == [self.release_object(target) for target in targets]

    def release_object(self, target):
        command = self.command(target, self.place / "release.o")
        header = command.index("-include")
        del command[header:header + 2]
        if not self.done(command + RELEASE):
            return b""
        return (self.place / "release.o").read_bytes()
