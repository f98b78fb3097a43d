#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""The fault matrix with whole programs: "logbook" on a failing disk, worked by a hand that the
toolkit loads, with the real host on a bus of their own.

    programs.py BUILD automatic|desktop [POINTS]

"automatic" is a record without a user and without a display; "desktop" is one with OK on a virtual
display. All points are run, or so many of them, evenly spread, each from the same beginning, with an
honest run behind it. Prints a line of the table in docs/reliability.md; ends with 1 if a point is
not survived, and with 77 if this machine has no virtual display.
"""

import errno
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "soak"))
sys.dont_write_bytecode = True

from workstation import ID, Failure, Program, Workstation, wait  # noqa: E402

COUNT, KILL, HALF, POWER, ANSWER = range(5)  # as in Faults.h
CHANGING, READING = range(2)
ACTS = ("count", "kill", "half write", "power loss", "answer")
LOSSES = 5
ERRORS = (errno.ENOSPC, errno.EIO, errno.EACCES, errno.EROFS, errno.EMFILE, errno.EDQUOT)
REPORT_BYTES = 512  # at least those of a report
LONGEST = 60  # seconds for what takes a tenth of one, on a machine however busy
WORKING = re.compile(r"(^|/)(\.logbook-new~[0-9-]*|[^/]*\.part2?)$")


class Point:
    def __init__(self, act=COUNT, calls=CHANGING, at=0, error=0, times=0, loss=0):
        self.act, self.calls, self.at = act, calls, at
        self.error, self.times, self.loss = error, times, loss

    def __str__(self):
        what = ACTS[self.act]
        if self.act == POWER:
            what += " %d" % self.loss
        if self.act == ANSWER:
            what += " %s%s" % (errno.errorcode[self.error], " for ever" * self.times)
        return "%s at %s call %d" % (what, ("changing", "reading")[self.calls], self.at)


def all_points(changing, reading):
    for at in range(1, changing + 1):
        yield Point(KILL, CHANGING, at)
        yield Point(HALF, CHANGING, at)
        for loss in range(LOSSES):
            yield Point(POWER, CHANGING, at, loss=loss)
        for error in ERRORS:
            for times in range(2):
                yield Point(ANSWER, CHANGING, at, error, times)
    for at in range(1, reading + 1):
        for error in (errno.EIO, errno.EMFILE):
            for times in range(2):
                yield Point(ANSWER, READING, at, error, times)


def sample(points, most):
    if not most or len(points) <= most:
        return points
    return [points[i * len(points) // most] for i in range(most)]


def read_disk(folder):
    return {str(path.relative_to(folder)): path.read_bytes()
            for path in folder.rglob("*") if path.is_file()}


class Outcome:
    def __init__(self, status, messages, report):
        self.status, self.messages = status, messages
        self.changing = int.from_bytes(report[0:8], "little")
        self.reading = int.from_bytes(report[8:16], "little")
        self.struck = report[16] != 0
        self.call = report[17:].split(b"\0")[0].decode("utf-8", "replace")


def search_for(root, trace):
    """The calls of an honest run by which the program looks for its paths: from its first call to
    its first look at the folder of the logs, behind which it has them all."""
    lines = trace.splitlines()
    looks = [number for number, line in enumerate(lines, 1) if line.partition(" ")[2] == str(root)]
    if not looks:
        raise Failure("the program does not look at the folder of the logs")
    return lines[:looks[0]]


def loses_its_paths(root, search, point, call):
    """Whether the fault may take the program its paths, without which it ends in silence before it
    does anything: it met a look at the folder of the logs or at one above it, or another call of
    the search and stays until that look."""
    if point.calls != READING or point.at > len(search) or search[point.at - 1] != call:
        return False
    path = pathlib.Path(call.partition(" ")[2])
    return point.times != 0 or path == root or path in root.parents


class Matrix:
    MAIN = "drives/c/QUOREX/inst1/maintain/"
    LIST = MAIN + "listlog.csv"
    PROFILE = "drives/c/QUOREX/qrxexe/logbook.ini"

    def __init__(self, build, folder, is_automatic, display):
        self.place = Workstation(build, folder)
        (self.place.application / "arecm.cfg").unlink()
        self.library = pathlib.Path(build, "tests/faults/liblogbook_faults.so").resolve()
        self.is_automatic = is_automatic
        if display:
            self.place.environment.update(QT_QPA_PLATFORM="xcb", DISPLAY=display)
        self.place.run_host("fill", "--logs", "3", "--until", "2026-06-30")
        self.report = self.place.folder / "report"
        self.trace = self.place.folder / "trace"
        self.store = self.place.folder / "store"
        self.begin = self.place.folder / "begin"
        self.place.start_host()
        # The profile and the list are there from an earlier record, which is deleted again.
        self.run(Point())
        for name in self.new_logs():
            shutil.rmtree(self.place.root / name)
        shutil.copytree(self.place.home, self.begin)
        self.before = read_disk(self.begin)
        self.honest = self.run(Point(), trace=self.trace)
        self.search = search_for(self.place.root, self.trace.read_text())
        self.done = self.normal(read_disk(self.place.home))
        if self.honest.status != 0 or self.honest.messages:
            raise Failure("an honest disk: %d %s" % (self.honest.status, self.honest.messages))
        self.forms = self.known_forms()

    def new_logs(self):
        return sorted(entry.name for entry in self.place.root.iterdir()
                      if entry.is_dir() and not entry.name.startswith("2606"))

    @staticmethod
    def normal(disk):
        """Without what differs from run to run: the new log's name and times."""
        def key(path):
            return re.sub(r"maintain/(?!2606)\d{6}[0-9A-F]{2}/", "maintain/NEW/", path)

        def value(data):
            data = re.sub(rb"maintain\\(?!2606)\d{6}[0-9A-F]{2}\\", rb"maintain\\NEW\\", data)
            return re.sub(rb"Date=\d\d/\d\d/\d{4} [\d:]{8}", b"Date=D", data)
        return {key(path): value(data) if path.endswith(".ini") else data
                for path, data in disk.items()}

    def known_forms(self):
        """The texts that a profile may have on the way."""
        log = self.done[self.MAIN + "NEW/logfile.ini"]
        options, ticks = log.index(b"[OPTION]"), log.index(b"[Maintenance]")
        before = self.normal(self.before)[self.PROFILE]
        return {self.MAIN + "NEW/logfile.ini": {log[:options], log[:ticks], log},
                self.PROFILE: {before, self.done[self.PROFILE], self.named(before)}}

    @staticmethod
    def named(profile):
        """With the new log's name for the host."""
        name = b"LogFileName=C:\\QUOREX\\inst1\\maintain\\NEW\\"
        return re.sub(rb"LogFileName=[^\r]*", lambda _: name, profile)

    def reset(self):
        if not self.begin.exists():
            return
        for entry in self.place.home.iterdir():
            shutil.rmtree(entry) if entry.is_dir() else entry.unlink()
        shutil.copytree(self.begin, self.place.home, dirs_exist_ok=True)
        shutil.rmtree(self.store, ignore_errors=True)

    def run(self, point, from_beginning=True, trace=""):
        if from_beginning:
            self.reset()
        self.store.mkdir(exist_ok=True)
        self.report.write_bytes(bytes(REPORT_BYTES))
        plan = ("\ntree=%s\nact=%d\ncalls=%d\nat=%d\nerror=%d\ntimes=%d\nloss=%d\nstore=%s\n"
                "trace=%s\nreport=%s\n" % (
                    self.place.home, point.act, point.calls, point.at, point.error, point.times,
                    point.loss, self.store, trace, self.report))
        environment = dict(self.place.environment, LD_PRELOAD=str(self.library),
                           LOGBOOK_FAULTS=plan)
        words = ["AutoRec"] if self.is_automatic else []
        program = Program([str(self.place.programs / "logbook"), ID, *words], environment)
        if not self.is_automatic:
            program.try_to_say("record Torch replaced")
        messages = []
        try:
            while (text := program.lines.get(timeout=LONGEST)) is not None:
                if text.startswith("message "):
                    messages.append(text[8:])
                if text.startswith("done") and not self.is_automatic:
                    program.try_to_say("exit")
            status = program.process.wait(LONGEST)
        except Exception:
            program.kill()
            return Outcome(None, messages, self.report.read_bytes())
        # The host has seen the logbook go once it has answered what came behind that.
        self.place.busctl("call", "com.norvane.Quorex.Host." + ID, "/CPWAIT",
                          "com.norvane.Quorex.Host", "Request", "s", "_exepath$")
        return Outcome(status, messages, self.report.read_bytes())

    def is_complete(self, disk):
        """The record is there; ticks that cannot be stored are not told."""
        log = disk.get(self.MAIN + "NEW/logfile.ini", b"")
        names = {path for path in self.done if path.startswith(self.MAIN + "NEW/")}
        return b"[OPTION]" in log and names <= set(disk)

    def judge(self, point, outcome):
        """What is wrong, or nothing."""
        if outcome.status is None:
            return "did not come to an end"
        kills = point.act in (KILL, HALF, POWER)
        if kills != (outcome.status == -9) or outcome.status not in (-9, 0, 1):
            return "ended with %d" % outcome.status
        if outcome.status == 1 and not outcome.messages:
            return "ended with an error without a word"
        disk = read_disk(self.place.home)
        wrong = self.judge_files(point, disk)
        if wrong or outcome.status != 0 or outcome.messages:
            return wrong
        now = self.normal(disk)
        began = any(path.startswith(self.MAIN + "NEW/") for path in now)
        if began and not self.is_complete(now):
            return "nobody is told that the record is not complete"
        has_paths = not loses_its_paths(self.place.root, self.search, point, outcome.call)
        if not began and has_paths:
            return "nobody is told that there is no record"
        return None

    def judge_files(self, point, disk):
        now = self.normal(disk)
        before = self.normal(self.before)
        for path, data in now.items():
            if WORKING.search(path):
                continue
            if path in self.forms:
                # Ticks of the last record that cannot be read are none.
                without_ticks = re.sub(rb"(Item\d+)=1", rb"\1=0", self.done[path])
                is_unread = point.calls == READING and data == without_ticks
                if data not in self.forms[path] and not is_unread:
                    return "%s is neither old nor new: %r" % (path, data[-200:])
            elif path == self.LIST:
                if point.act != POWER and not data.endswith(b"\r\n"):
                    return "the list is torn"
            elif path.startswith(self.MAIN + "NEW/"):
                if path.endswith("/comment.txt") and data != self.done[path]:
                    return "the comment is torn"
            elif data != before.get(path):
                return "%s has come or changed" % path
        for path in before:
            if path not in now and not (path == self.LIST and point.act == POWER):
                return "%s is lost" % path
        return None

    def judge_next_run(self):
        """An honest run behind it records and lists everything, and nothing is left behind."""
        count = len(list(entry for entry in self.place.root.iterdir() if entry.is_dir()))
        outcome = self.run(Point(), from_beginning=False)
        if outcome.status != 0 or outcome.messages:
            return "the next run: %s %s" % (outcome.status, outcome.messages)
        lines = (self.place.root / "listlog.csv").read_bytes().count(b"\r\n")
        if lines != 1 + count + 1:
            return "the next run lists %d logs of %d" % (lines - 1, count + 1)
        newest = self.new_logs()[-1]
        if b"[OPTION]" not in (self.place.root / newest / "logfile.ini").read_bytes():
            return "the next run has no snapshot"
        # What is left in the folder of a log goes with it.
        for name in self.new_logs()[:-1]:
            shutil.rmtree(self.place.root / name)
        left = [path for path in read_disk(self.place.home) if WORKING.search(path)]
        return "left behind: %s" % left if left else None

    def go(self, most):
        points = sample(list(all_points(self.honest.changing, self.honest.reading)), most)
        met = survived = 0
        for point in points:
            outcome = self.run(point)
            # Files that are as young as the clock's grain are looked at again, so that a run has
            # some reading calls more or less.
            if outcome.status is not None and not outcome.struck:
                continue
            met += 1
            wrong = self.judge(point, outcome) or self.judge_next_run()
            if wrong:
                print("%s (%s): %s %s" % (point, outcome.call, wrong, outcome.messages), flush=True)
            else:
                survived += 1
        if met < 0.9 * len(points):
            raise Failure("only %d of %d points were met" % (met, len(points)))
        return met, survived


class Display:
    """A virtual display, if one is wanted."""

    def __init__(self, is_wanted):
        self.name, self.server = None, None
        if not is_wanted:
            return
        ready, wakes = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(wakes), "-screen", "0", "1280x1024x24", "-nolisten", "tcp"],
            pass_fds=[wakes], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(wakes)
        with os.fdopen(ready) as pipe:
            self.name = ":" + pipe.readline().strip()

    def close(self):
        if self.server:
            self.server.kill()
            self.server.wait()


def main():
    if len(sys.argv) not in (3, 4) or sys.argv[2] not in ("automatic", "desktop"):
        sys.exit(__doc__)
    build, kind = sys.argv[1:3]
    most = int(sys.argv[3]) if len(sys.argv) == 4 else 0
    if kind == "desktop" and not shutil.which("Xvfb"):
        print("skipped: there is no Xvfb")
        return 77
    memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
    display = Display(kind == "desktop")
    matrix = None
    with tempfile.TemporaryDirectory(prefix="programs-", dir=memory) as folder:
        try:
            matrix = Matrix(build, folder, kind == "automatic", display.name)
            points, survived = matrix.go(most)
            print("| %s | %d | %d | %d | %d |" % (
                {"automatic": "`logbook` AutoRec with `quorex-host`",
                 "desktop": "`logbook` on a display, one record with OK"}[kind],
                matrix.honest.changing, matrix.honest.reading, points, survived))
            return 0 if points == survived else 1
        finally:
            if matrix:
                matrix.place.close()
            display.close()


if __name__ == "__main__":
    sys.exit(main())
