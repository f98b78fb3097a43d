# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""Builds a room's tests with all faults in it, runs them fault by fault, and counts.

    measure.py TOP BUILD ROOM [FILE...]
"""
import collections
import concurrent.futures
import glob
import json
import os
import pathlib
import re
import resource
import shlex
import subprocess
import sys
import tempfile
import time

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).parent))
from machine import keep_machine, may_keep_machine, place_of_files
try:
    from faults import Planter
except ImportError as missing:
    print(f"skipped: {missing} (package python3-clang-14)")
    sys.exit(77)

GOAL = 95
LEAST_WAIT = 60    # seconds for some tests of one fault; more if they take longer without it
LEAST_TIME = 3     # the same of the processor, which a loaded machine does not stretch
BATCHES = (0, 10, 50, None)  # of the cases of a fault, the fastest first: where each begins
MOST_MEMORY = 4 << 30  # bytes of addresses
HERE = pathlib.Path(__file__).parent


class Room:
    def __init__(self, top, build, room, wanted):
        self.top, self.build, self.room = pathlib.Path(top), pathlib.Path(build), room
        self.place = self.build / "mutation" / room
        self.place.mkdir(parents=True, exist_ok=True)
        commands = json.loads((self.build / "compile_commands.json").read_text())
        self.commands = {}
        for entry in commands:
            file = os.path.relpath(entry["file"], self.top)
            if file.startswith(f"src/{room}/") and "make_" not in file and \
                    (not wanted or any(file.endswith(name) for name in wanted)):
                # A source may belong to a generator, too.
                if "logbook_" in entry["command"]:
                    self.commands[file] = entry["command"]
        self.faults = []

    def compile_one(self, file, first):
        """Plants and compiles; lines that cannot take a switch get none."""
        banned = set()
        words = shlex.split(self.commands[file])
        cache = words[:1] if words[0].endswith("ccache") else []
        words = words[len(cache):]
        arguments = self.parse_arguments(words)
        planted = self.place / (file.replace("/", "_"))
        made = planted.with_suffix(".o")
        for _ in range(12):
            planter = Planter(file, str(self.top / file), arguments, first, banned)
            text = planter.planted()
            planted.write_text(f'#include "{HERE}/Mutant.h"\n#line 1 "{self.top / file}"\n{text}')
            result = self.compile_source(cache, words, self.top / file, planted, made)
            if result.returncode == 0:
                return planter.faults, made
            lines = {int(line) for line in re.findall(
                re.escape(str(self.top / file)) +
                r":(\d+):(?:\d+:)? (?:error|note: in expansion of macro .MUTANT)", result.stderr)}
            if not lines - banned:
                sys.exit(f"{file}: cannot be built with faults\n{result.stderr[:2000]}")
            banned |= lines
        sys.exit(f"{file}: cannot be built with faults")

    def compile_source(self, cache, words, file, source, made):
        command, skip = list(cache), False
        for word in words:
            if skip:
                skip = False
                continue
            if word in ("-o", "-MF", "-MT", "-c"):
                skip = word != "-c"
                continue
            if word != "-MD" and word != str(file) and word != "-Werror":
                command.append(word)
        command += ["-w", "-Wno-narrowing", "-O1", "-I", str(file.parent), "-c", str(source),
                    "-o", str(made)]
        return subprocess.run(command, cwd=self.build, capture_output=True, text=True,
                              env=dict(os.environ, LC_ALL="C"))

    @staticmethod
    def parse_arguments(words):
        own = [w for w in words if w.startswith(("-D", "-I", "-std"))]
        for flag, path in zip(words, words[1:]):
            if flag == "-isystem":
                own += [flag, path]
        builtin = glob.glob("/usr/lib/llvm-14/lib/clang/14*/include")
        return own + ["-w"] + [f"-isystem{path}" for path in builtin]

    def make(self):
        objects = []
        for file in sorted(self.commands):
            faults, made = self.compile_one(file, len(self.faults) + 1)
            self.faults += faults
            objects.append(str(made))
        switch = self.place / "Mutant.o"
        subprocess.run(["c++", "-std=c++20", "-O1", "-c", str(HERE / "Mutant.cpp"), "-o",
                        str(switch)], check=True)
        name = f"bin/tests_{self.room}"
        link = subprocess.run(["ninja", "-C", str(self.build), "-t", "commands", name], text=True,
                              capture_output=True, check=True).stdout.strip().split("\n")[-1]
        self.program = self.place / "tests"
        link = link.replace(f" -o {name} ",
                            f" {' '.join(objects)} {switch} -o {self.program} ")
        subprocess.run(link, shell=True, cwd=self.build, check=True)

    def cases(self):
        listed = subprocess.run([self.program, "--gtest_list_tests"], text=True, check=True,
                                capture_output=True, cwd=self.build).stdout
        suite, names = "", []
        for line in listed.split("\n"):
            line = line.split("#")[0].rstrip()
            if line.endswith(".") and not line.startswith(" "):
                suite = line
            elif line.startswith("  "):
                names.append(suite + line.strip())
        return names

    def run(self, cases, number, wait, work, reached=None):
        """True if all cases pass within so many seconds, and so many of the processor."""
        environment = dict(os.environ, MUTANT=str(number))
        if reached:
            environment["MUTANT_REACHED"] = str(reached)
        with tempfile.TemporaryDirectory(dir=place_of_files()) as place:
            os.chmod(place, 0o755)  # for tests that go on as an ordinary user
            environment["TMPDIR"] = place
            process = subprocess.Popen(
                [self.program, "--gtest_fail_fast", "--gtest_brief=1",
                 "--gtest_filter=" + ":".join(cases)],
                cwd=self.build, env=environment, stdout=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL, start_new_session=True,
                preexec_fn=lambda: self.bound(work))
            try:
                return process.wait(wait) == 0
            except subprocess.TimeoutExpired:
                return False
            finally:
                try:
                    os.killpg(process.pid, 9)  # what it has started and left
                except ProcessLookupError:
                    pass
                process.wait()

    @staticmethod
    def bound(seconds):
        keep_machine()
        resource.setrlimit(resource.RLIMIT_CPU, (int(seconds) + 1,) * 2)
        resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY,) * 2)

    def look(self):
        """Which cases reach which fault, and how long each case takes."""
        self.reach = {fault.number: [] for fault in self.faults}
        self.seconds, self.work = {}, {}
        for case in self.cases():
            with tempfile.NamedTemporaryFile(dir=place_of_files()) as marks:
                begin, worked = time.monotonic(), self.worked()
                if not self.run([case], 0, 300, 300, marks.name):
                    print(f"  left out, it fails without a fault: {case}")
                    continue
                self.seconds[case] = time.monotonic() - begin
                self.work[case] = self.worked() - worked
                bytes_reached = pathlib.Path(marks.name).read_bytes()
            for number in self.reach:
                if number < len(bytes_reached) and bytes_reached[number]:
                    self.reach[number].append(case)

    @staticmethod
    def worked():
        """Seconds of the processor for the children that have ended."""
        usage = resource.getrusage(resource.RUSAGE_CHILDREN)
        return usage.ru_utime + usage.ru_stime

    def survives(self, fault):
        cases = sorted(self.reach[fault.number], key=self.work.get)
        for begin, end in zip(BATCHES, BATCHES[1:]):
            some = cases[begin:end]
            wait = LEAST_WAIT + 3 * sum(self.seconds[case] for case in some)
            work = LEAST_TIME + 3 * sum(self.work[case] for case in some)
            if some and not self.run(some, fault.number, wait, work):
                return False
        return True


class Equivalents:
    """The faults that no test can see. A row stands for one fault: of two equal ones in a line, or
    in two equal lines, each has a row of its own."""

    def __init__(self, top):
        self.rows, self.held = collections.Counter(), collections.Counter()
        sources = {}
        for line in (HERE / "equivalent.tsv").read_text().split("\n"):
            if not line or line.startswith("#"):
                continue
            file, text, was, now, _ = line.split("\t")
            if file not in sources:
                path = top / file
                sources[file] = path.read_text().split("\n") if path.exists() else []
            if text not in [each.strip() for each in sources[file]]:
                sys.exit(f"equivalent.tsv: {file} has no line {text!r}")
            self.rows[(file, text, was, now)] += 1

    def hold(self, fault):
        self.held[self.key(fault)] += 1
        return self.held[self.key(fault)] <= self.rows[self.key(fault)]

    def expect_all(self, planted):
        """Ends the program if a row of the files with these faults stands for none of them."""
        faults = collections.Counter(self.key(fault) for fault in planted)
        files = {fault.file for fault in planted}
        for key, rows in self.rows.items():
            if key[0] in files and rows > faults[key]:
                sys.exit(f"equivalent.tsv: no such fault is planted: {key}")

    @staticmethod
    def key(fault):
        return (fault.file, fault.text, one_line(fault.was), fault.now)


def one_line(text):
    return " ".join(text.split())


def main(top, build, name, *wanted):
    if not may_keep_machine():
        print("skipped: as root, and without mounts of its own, a fault might change this machine")
        return 77
    room = Room(top, build, name, wanted)
    known = Equivalents(room.top)
    room.make()
    known.expect_all(room.faults)
    room.look()
    equivalent, survivors, killed = 0, [], 0
    with concurrent.futures.ThreadPoolExecutor(int(os.environ.get("JOBS", "2"))) as workers:
        for fault, survived in zip(room.faults, workers.map(room.survives, room.faults)):
            if not survived:
                killed += 1
            elif known.hold(fault):
                equivalent += 1
            else:
                survivors.append(fault)
                seen = "" if room.reach[fault.number] else "  (no test comes here)"
                print(f"survived {fault.file}:{fault.line}: {one_line(fault.was)} -> {fault.now}"
                      f"{seen}", flush=True)
    counted = killed + len(survivors)
    score = 100 * killed / counted if counted else 100
    print(f"{name}: {len(room.faults)} faults, {killed} killed, {len(survivors)} survived, "
          f"{equivalent} equivalent: {score:.1f} of 100")
    return 0 if score >= GOAL else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
