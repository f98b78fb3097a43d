# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""Where figures are measured: programs, data and surroundings, made when first asked for."""

import collections
import contextlib
import os
import re
import shutil
import signal
import subprocess
import tempfile

# No command of a figure takes as long; one that does is told as not measured.
LONGEST_RUN = 100
LONGEST_RUN_OF_A_FULL_ONE = 1500

FONTS = """<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <dir>/usr/share/fonts/truetype/liberation</dir>
  <dir>/usr/share/fonts/truetype/dejavu</dir>
  <cachedir>%s</cachedir>
</fontconfig>
"""


# Of the lists that are measured, at least.
ROWS_THAT_FIT = 15
# Of the smallest window that is measured, nearly.
PIXELS_OF_A_WINDOW = 300000


def calls_of(function, profile):
    """How often a function of this name was called, by a profile of callgrind."""
    numbers = set(re.findall(r"fn=\((\d+)\) " + re.escape(function) + r"\(", profile))
    calls = re.findall(r"^cfn=\((\d+)\).*\n(?:c(?:fi|fl|ob)=.*\n)*calls=(\d+)", profile, re.M)
    return sum(int(count) for number, count in calls if number in numbers)


class Workplace:
    """A temporary folder with everything that figures need; gone when the `with` block ends."""

    def __init__(self, programs, full=False):
        self.programs = programs  # folder of the built programs
        self.full = full          # the largest data that a figure is meant for, whatever it takes
        self.folder = None
        self.samples = {}
        self.closing = contextlib.ExitStack()

    def __enter__(self):
        self.folder = tempfile.mkdtemp(prefix="logbook-bench-")
        self.closing.callback(shutil.rmtree, self.folder, ignore_errors=True)
        for name in ("home", "run", "fonts"):
            os.mkdir(os.path.join(self.folder, name), 0o700)
        fonts = os.path.join(self.folder, "fonts.conf")
        with open(fonts, "w", encoding="utf-8") as file:
            file.write(FONTS % os.path.join(self.folder, "fonts"))
        # What a person has set up on this machine must not be measured.
        self.variables = {
            "PATH": os.environ["PATH"], "HOME": os.path.join(self.folder, "home"),
            "XDG_RUNTIME_DIR": os.path.join(self.folder, "run"), "LC_ALL": "C.UTF-8",
            "FONTCONFIG_FILE": fonts, "QT_QPA_PLATFORM": "offscreen", "DISPLAY": ":none"}
        return self

    def __exit__(self, *_):
        self.closing.close()

    def program(self, name):
        return os.path.join(self.programs, name)

    def path(self, *names):
        return os.path.join(self.folder, *names)

    def once(self, key, make):
        """The result of make(), made at the first call with this key."""
        if key not in self.samples:
            self.samples[key] = make()
        return self.samples[key]

    # Running programs

    def run(self, *command, **variables):
        """Standard output of a command; raises if it fails."""
        result = subprocess.run([str(part) for part in command], check=False, text=True,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                env={**self.variables, **variables}, cwd=self.folder,
                                timeout=LONGEST_RUN_OF_A_FULL_ONE if self.full else LONGEST_RUN)
        if result.returncode != 0:
            raise RuntimeError("%s: status %d: %s" % (os.path.basename(str(command[0])),
                                                      result.returncode,
                                                      " ".join(result.stderr[-300:].split())))
        return result.stdout

    def collect(self, *command, **variables):
        """The samples that a benchmark program prints: lists by their names."""
        samples = collections.defaultdict(list)
        program = self.program(command[0])
        for line in self.run(program, *command[1:], **variables).splitlines():
            name, value = line.split()
            samples[name].append(float(value))
        return samples

    def measure(self, *command, until_idle=False, **variables):
        """What a command takes: cpu and wall (seconds) and rss (bytes)."""
        mode = ["--until-idle"] if until_idle else []
        samples = self.collect("bench_measure", *mode, *command, **variables)
        return {name: values[0] for name, values in samples.items()}

    def started(self, *command, **variables):
        """The same of a start, to the painted window. Raises unless it has painted that."""
        samples = self.collect("bench_measure", "--painted", *command, **variables)
        taken = {name: values[0] for name, values in samples.items()}
        if taken["painted"] < PIXELS_OF_A_WINDOW:
            raise RuntimeError("%s has painted %d pixels" % (os.path.basename(str(command[0])),
                                                             taken["painted"]))
        return taken

    def in_turn(self, rounds, *jobs):
        """Calls the jobs one after the other, so many times; a list of results for each."""
        results = [[] for _ in jobs]
        for _ in range(rounds):
            for job, taken in zip(jobs, results):
                taken.append(job())
        return results

    def instructions(self, *command, **variables):
        """Instructions that a command runs in its own address space."""
        out = self.path("callgrind.out")
        self.run("valgrind", "--tool=callgrind", "--callgrind-out-file=" + out, "--quiet",
                 *command, **variables)
        with open(out, encoding="utf-8", errors="replace") as file:
            return int(re.search(r"^(?:totals|summary): (\d+)", file.read(), re.M).group(1))

    def painted(self, *command, rows, **variables):
        """Instructions of a program that opens a window, until it is idle. Raises unless it has
        painted the window and, of so many rows, as many as fit."""
        out = self.path("callgrind.out")
        self.measure("valgrind", "--tool=callgrind", "--callgrind-out-file=" + out, "--quiet",
                     *command, until_idle=True, **variables)
        with open(out, encoding="utf-8", errors="replace") as file:
            profile = file.read()
        if calls_of("QBackingStore::flush", profile) == 0:
            raise RuntimeError("%s has painted no window" % os.path.basename(str(command[0])))
        if calls_of("QTreeView::drawRow", profile) < min(rows, ROWS_THAT_FIT):
            raise RuntimeError("%s has painted no list" % os.path.basename(str(command[0])))
        return int(re.search(r"^(?:totals|summary): (\d+)", profile, re.M).group(1))

    def system_calls(self, calls, *command, **variables):
        """Number of these system calls (strace's names, with commas) of a command. A look at a file
        that is open already is none by path, though the system has it under that name."""
        out = self.path("strace.out")
        self.run("strace", "-f", "-qq", "-o", out, "-e", "signal=none", "-e", "trace=" + calls,
                 *command, **variables)
        with open(out, encoding="utf-8", errors="replace") as file:
            return sum("(" in line and "resumed>" not in line and "AT_EMPTY_PATH" not in line
                       for line in file)

    # Data and surroundings

    def store(self, logs):
        """A home with so many full logs (bench/LogStore.h), made once."""
        home = self.path("store-%d" % logs)
        return self.once(home, lambda: (self.run(self.program("bench_list"), home, "make", logs),
                                        home)[1])

    @staticmethod
    def remove_list(home):
        """Takes listlog.csv away, so that the next rebuild of the list writes it."""
        path = os.path.join(home, "drives/c/QUOREX/inst1/maintain/listlog.csv")
        with contextlib.suppress(FileNotFoundError):
            os.remove(path)

    def expect_list(self, logs):
        """Raises unless the list beside the logs of the store has a line for each."""
        path = os.path.join(self.store(logs), "drives/c/QUOREX/inst1/maintain/listlog.csv")
        with open(path, encoding="cp1252") as file:
            lines = [line for line in file if re.search(r"\b261\d{5}\b", line)]
        if len(lines) != logs:
            raise RuntimeError("%d of %d logs are in listlog.csv" % (len(lines), logs))

    def fresh_store(self, logs):
        """The same, but of the caller's own: what it changes nobody else sees."""
        home = tempfile.mkdtemp(dir=self.folder)
        self.run(self.program("bench_list"), home, "make", logs)
        return home

    def start(self, *command, sign=None, **variables):
        """A program that runs beside the others to the end of the run. Waits until it prints a
        line with the sign."""
        process = subprocess.Popen([str(part) for part in command], text=True, cwd=self.folder,
                                   stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                   env={**self.variables, **variables})
        self.closing.callback(process.wait)
        self.closing.callback(process.send_signal, signal.SIGTERM)
        while sign is not None:
            line = process.stdout.readline()
            if not line:
                raise RuntimeError("%s ended" % command[0])
            if sign in line:
                return line.strip()
        return None

    def bus(self):
        """Variables that name a session bus of our own."""
        return self.once("bus", lambda: {"DBUS_SESSION_BUS_ADDRESS": self.start(
            "dbus-daemon", "--session", "--nofork", "--print-address=1",
            "--address=unix:path=" + self.path("run", "bus"), sign="unix:")})

    def host(self):
        """Variables of a bus on which a host control panel answers."""
        return self.once("host", lambda: (
            self.start(self.program("bench_host"), sign="ready", **self.bus()), self.bus())[1])
