#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""logbookctl on a real terminal, in a pipe, on a full disk and beside a cache that is read-only.

    TerminalTest.py PROGRAMS RULE    PROGRAMS is the folder of the built programs

77 is the status if this machine does not permit what the rule needs.
"""
import fcntl
import os
import pathlib
import pty
import re
import select
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import time

SKIPPED = 77
CHANGES = re.compile(r"\x1b\[[0-9;]*m")
# On a busy machine the index takes long enough to show its progress, which it wipes out.
PROGRESS = re.compile(r"\r[^\r\n]*\x1b\[K")


class Place:
    """A made-up log root with a home, a cache and a configuration of its own."""

    def __init__(self, programs, folder, logs):
        self.program = os.path.join(programs, "logbookctl")
        self.folder = folder
        home = os.path.join(folder, "home")
        host = os.path.join(programs, "quorex-host")
        for words in (["init"], ["fill", "--logs", str(logs), "--seed", "7", "--until",
                                 "2026-11-20"]):
            subprocess.run([host, *words, "--home", home], check=True, stdout=subprocess.DEVNULL)
        self.root = os.path.join(home, "drives/c/QUOREX/inst1/maintain")
        self.cache = os.path.join(folder, "cache")
        self.variables = {"PATH": os.environ["PATH"], "HOME": folder, "LOGBOOK_HOME": home,
                          "LOGBOOK_ROOT": self.root, "XDG_CACHE_HOME": self.cache,
                          "XDG_CONFIG_HOME": os.path.join(folder, "config"), "LC_ALL": "C.UTF-8",
                          "TERM": "xterm-256color"}

    def in_pipe(self, *words, meanwhile=lambda child: None, **variables):
        with subprocess.Popen([self.program, *words], env={**self.variables, **variables},
                              text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE) as program:
            meanwhile(program.pid)
            out, err = program.communicate()
        return subprocess.CompletedProcess(words, program.returncode, out, err)

    def on_terminal(self, *words, columns=100, meanwhile=lambda child: None, **variables):
        """Exit status and all that a terminal of so many columns shows."""
        child, end = pty.fork()
        if child == 0:
            # The parent sets the size before the program is started.
            os.read(0, 1)
            os.execve(self.program, [self.program, *words], {**self.variables, **variables})
        fcntl.ioctl(end, termios.TIOCSWINSZ, struct.pack("HHHH", 40, columns, 0, 0))
        os.write(end, b"\n")
        meanwhile(child)
        shown = b""  # a piece can end within a character
        while True:
            if not select.select([end], [], [], 120)[0]:
                raise RuntimeError("silent after: %r" % shown)
            try:
                piece = os.read(end, 65536)
            except OSError:  # the terminal's other end is closed
                break
            if not piece:
                break
            shown += piece
        os.close(end)
        status = os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
        return status, shown.decode(errors="replace")


def expect(condition, what):
    if not condition:
        raise AssertionError(what)


def chart_is_as_wide_as_the_terminal_and_in_colour(place):
    for columns in (60, 100, 140):
        status, shown = place.on_terminal("trend", "tune:Oxide", "--rules", "1", columns=columns)
        expect(status == 0, shown)
        chart = CHANGES.sub("", PROGRESS.sub("", shown)).replace("\r", "").split("\nvalues ")[0].splitlines()
        longest = max(len(line) for line in chart)
        expect(columns - 3 <= longest <= columns, "%d columns: %d" % (columns, longest))
        expect("\x1b[1;31m" in shown, "no colour")
        expect("\\x1B" not in shown, "colour as text")
        expect("┤" in shown and "●" in shown, "no chart")


def colour_only_on_a_terminal_and_never_with_no_color(place):
    _, shown = place.on_terminal("trend", "tune:Oxide", NO_COLOR="1")
    shown = PROGRESS.sub("", shown)
    expect("┤" in shown and "\x1b" not in shown, "colour with NO_COLOR")
    _, shown = place.on_terminal("trend", "tune:Oxide", TERM="dumb")
    shown = PROGRESS.sub("", shown)
    expect("┤" in shown and "\x1b" not in shown, "colour on a dumb terminal")
    piped = place.in_pipe("trend", "tune:Oxide")
    expect(piped.returncode == 0 and "┤" in piped.stdout, piped.stderr)
    expect("\x1b" not in piped.stdout + piped.stderr, "colour in a pipe")


def text_is_folded_to_the_terminal(place):
    for words in (("due",), ("trend", "tune:Oxide", "--rules", "1,2,3,4")):
        for columns in (80, 100):
            status, shown = place.on_terminal(*words, columns=columns)
            expect(status == 0, shown)
            lines = CHANGES.sub("", PROGRESS.sub("", shown)).replace("\r", "").splitlines()
            expect(all(len(line) <= columns for line in lines),
                   "%d columns: %s" % (columns, max(lines, key=len)))
    expect("last certain " in place.on_terminal("due", columns=80)[1], "no dates")
    piped = place.in_pipe("due").stdout.splitlines()
    expect(len(piped) == 19 and len(piped[0]) > 80, "a pipe has the whole table: " + piped[0])


def halt_while_it_reads(place, stopped):
    """Halts the program for longer than it is quiet, as soon as it has read some of the logs."""
    def halt(child):
        while os.waitid(os.P_PID, child, os.WEXITED | os.WNOHANG | os.WNOWAIT) is None:
            if any(path.stat().st_size for path in pathlib.Path(place.cache).rglob("*.db-wal")):
                os.kill(child, signal.SIGSTOP)
                begin = time.monotonic()
                while time.monotonic() < begin + 1.2:
                    select.select([], [], [], 0.1)
                os.kill(child, signal.SIGCONT)
                stopped.append(child)
                return
    return halt


def grow(place, logs):
    for log in logs:
        for _ in range(40):
            os.symlink(log, os.path.join(place.root, "X%07d" % len(os.listdir(place.root))))


# A halt can come when the last log is being read already, or not at all: then the root is let grow.
ROUNDS = 8


def progress_is_shown_on_a_terminal_only_and_wiped_out(place):
    logs = sorted(os.listdir(place.root))
    lines = []
    for _ in range(ROUNDS):
        grow(place, logs)
        status, shown = place.on_terminal("find", "cones", "--columns", "log",
                                          meanwhile=halt_while_it_reads(place, []))
        expect(status == 0, shown)
        lines = re.findall(r"\rreading logs: (\d+) of (\d+), \d+/s, \d+ s left\x1b\[K", shown)
        if lines:
            break
    expect(lines, "no progress: " + shown[:300])
    expect(all(int(done) < int(total) or done == total for done, total in lines), str(lines))
    expect(re.search(r"\r\x1b\[K(?!.*logs: )", shown, re.S), "it stays on the terminal")
    stopped = []
    for _ in range(ROUNDS):
        shutil.rmtree(place.cache)
        piped = place.in_pipe("find", "cones", "--columns", "log",
                              meanwhile=halt_while_it_reads(place, stopped))
        expect(piped.stderr == "" and "logs: " not in piped.stdout, piped.stderr)
        if stopped:
            break
        grow(place, logs)
    expect(stopped, "it was not halted in the pipe")


def in_namespace(place, script):
    """Runs a shell script as the only user of mounts of its own; nothing if that is refused."""
    run = subprocess.run(["unshare", "-rm", "sh", "-ec", script], env=place.variables, text=True,
                         check=False, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    if "unshare" in run.stderr or "mount:" in run.stderr:
        print("skipped: " + run.stderr.strip())
        sys.exit(SKIPPED)
    return run


def full_disk_is_told_and_the_answer_is_right(place):
    expected = place.in_pipe("find", "cones", "--json").stdout
    expect('"count": 0' not in expected, expected[:100])
    small = os.path.join(place.folder, "small")
    os.mkdir(small)
    for kilobytes in (16, 48, 256):
        run = in_namespace(place, "mount -t tmpfs -o size=%dk small '%s'\n"
                                  "XDG_CACHE_HOME='%s' '%s' find cones --json"
                           % (kilobytes, small, small, place.program))
        expect(run.returncode == 0, run.stderr)
        expect(run.stdout == expected, "another answer with %d KB" % kilobytes)
        told = "; an index in memory is used instead" in run.stderr
        expect(told or kilobytes == 256, "not told with %d KB: %s" % (kilobytes, run.stderr))
    for words in ("export --format xlsx", "export --format sqlite", "export --format csv"):
        run = in_namespace(place, "mount -t tmpfs -o size=16k small '%s'\n"
                                  "status=0; '%s' %s '%s/out' || status=$?\n"
                                  "ls -A '%s'; exit $status"
                           % (small, place.program, words, small, small))
        expect(run.returncode == 1, "%s: %d" % (words, run.returncode))
        expect(run.stdout == "", words + " leaves " + run.stdout)
        expect("/out: " in run.stderr, run.stderr)


def read_only_cache_is_told_and_the_answer_is_right(place):
    expected = place.in_pipe("find", "cones", "--json").stdout
    for prepared in ("", "rm -rf '%s'/*\n" % place.cache):
        run = in_namespace(place, "%smount --bind '%s' '%s'\n"
                                  "mount -o remount,bind,ro '%s'\n'%s' find cones --json"
                           % (prepared, place.cache, place.cache, place.cache, place.program))
        expect(run.returncode == 0, run.stderr)
        expect(run.stdout == expected, "another answer")
        expect("an index in memory is used instead" in run.stderr, "not told: " + run.stderr)


RULES = {
    "AChartIsAsWideAsTheTerminalAndInColour": chart_is_as_wide_as_the_terminal_and_in_colour,
    "ColourOnlyOnATerminalAndNeverWithNoColor": colour_only_on_a_terminal_and_never_with_no_color,
    "TextIsFoldedToTheTerminal": text_is_folded_to_the_terminal,
    "ProgressIsShownOnATerminalOnlyAndWipedOut": progress_is_shown_on_a_terminal_only_and_wiped_out,
    "AFullDiskIsToldAndTheAnswerIsRight": full_disk_is_told_and_the_answer_is_right,
    "AReadOnlyCacheIsToldAndTheAnswerIsRight": read_only_cache_is_told_and_the_answer_is_right,
}


def main():
    programs, rule = sys.argv[1:3]
    with tempfile.TemporaryDirectory() as folder:
        RULES[rule](Place(os.path.abspath(programs), folder, 40))
    return 0


if __name__ == "__main__":
    sys.exit(main())
