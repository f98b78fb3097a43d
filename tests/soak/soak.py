#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""Lets one logbook record again and again with a host and a content server that misbehave, and
judges whether its memory, open files and wake-ups stay flat.

In turns of sixteen recordings the host answers, is slow, is killed with the job in hand, is away,
is there but deaf to the cell, and leaves damaged snapshots, while others write garbage into the
cell; the shared folder of the content server goes and comes back, and the agent is killed. Each
recording is uploaded, and so is each deletion of the sixteen logs that ends a turn. Every upload
has to arrive once and whole, no message may come, and nothing may be left over.

Prints a table of the run, and ends with 1 if anything of that is not so.
"""

import argparse
import collections
import itertools
import sys
import tempfile
import time

from judge import flat
from workstation import Failure, Figures, Workstation, wait

TURN = 16
# What a cell may hold that is neither a job nor idle, and what reads as idle.
NONSENSE = ["7", "-3", "1e999", "4" * 400, "&H7F", "8 bells", "3.5", "9999999999"]
IDLE = ["", "abc", "0.0", "x" * 60000, "\\u00e9\\u4e2d", "&H0", " 0", "-0"]
DAMAGES = ["short", "truncated", "empty", "binary", "missing", "binary:sys.txt", "empty:auser.txt",
           "truncated:SENSEVAR.MAC"]


class Soak:
    def __init__(self, place):
        self.place = place
        self.count = 0
        self.sent = collections.Counter()
        self.arrived = collections.Counter()
        self.nonsense, self.idle, self.damages = (
            itertools.cycle(texts) for texts in (NONSENSE, IDLE, DAMAGES))
        self.refusals = 0
        self.heap = 0

    def record(self, meanwhile=None, has_snapshot=True):
        """One recording. While it runs, `meanwhile` does something to it."""
        comment = "Recording %d" % self.count
        self.sent[comment] += 1
        self.count += 1
        self.place.logbook.say("record " + comment)
        self.place.logbook.line("^pressed$")
        if meanwhile:
            meanwhile()
        self.finish()
        log = max(entry for entry in self.place.root.iterdir() if entry.is_dir())
        if (b"[OPTION]" in (log / "logfile.ini").read_bytes()) != has_snapshot:
            raise Failure("the host has %sdone its job" % ("not " if has_snapshot else ""))

    def finish(self):
        found = self.place.logbook.line("^(done|message) (.*)")
        if found.group(1) == "message":
            raise Failure("a message came: " + found.group(2))
        self.heap = int(found.group(2))

    def usual(self):
        self.record()

    def slow(self):
        self.place.start_host("--slow", "60", "--busy", "30")
        # It holds the cell at first, whatever is in it: a job, too.
        self.place.monitor.line("'Text': <'5'>")
        self.place.rest(self.count)
        self.record()

    def garbage_before_the_job(self):
        self.place.rest(self.count)
        if not self.place.set_cell("s", next(self.nonsense)):
            raise Failure("the cell did not take a text")

        def meanwhile():
            self.place.set_cell("s", next(self.nonsense))
            self.place.set_cell("s", "0")
        self.record(meanwhile)

    def garbage_in_the_job(self):
        self.place.rest(self.count)
        self.place.start_host("--slow", "600000")

        def meanwhile():
            self.place.wait_for_job()
            for kind, value in (("i", ["0"]), ("as", ["1", "0"]), ("b", ["true"])):
                if self.place.set_cell(kind, *value):
                    raise Failure("the cell took a value of type " + kind)
                self.refusals += 1
            self.place.set_cell("s", next(self.idle))
        # The wait is over, but not by the host.
        self.record(meanwhile, has_snapshot=False)
        self.place.set_cell("s", "0")

    def killed_with_the_job_in_hand(self):
        self.place.rest(self.count)

        def meanwhile():
            self.place.wait_for_job()
            self.place.start_host("--broken", next(self.damages))
        self.record(meanwhile)

    def away(self):
        self.place.rest(self.count)
        self.place.end_host()

        def meanwhile():
            self.place.wait_for_job()
            self.place.start_host()
        self.record(meanwhile)

    def dead(self):
        self.place.rest(self.count)
        self.place.start_host("--dead")

        def meanwhile():
            self.place.wait_for_job()
            self.place.start_host()
        self.record(meanwhile)

    def delete_all(self):
        names = [entry.name for entry in self.place.root.iterdir() if entry.is_dir()]
        if len(names) != TURN:
            raise Failure("%d logs instead of %d" % (len(names), TURN))
        self.sent[None] += 1
        self.place.logbook.say("delete")
        self.place.logbook.line("^pressed$")
        self.finish()
        if any(entry.is_dir() for entry in self.place.root.iterdir()):
            raise Failure("logs are left after they were deleted")

    def roads(self):
        """The recordings of a turn; hosts stay from one to the next unless a road says otherwise."""
        return [self.usual, self.usual, self.slow, self.usual, self.garbage_before_the_job,
                self.garbage_in_the_job, self.killed_with_the_job_in_hand, self.usual, self.usual,
                self.away, self.usual, self.usual, self.dead, self.usual, self.usual, self.usual]

    def turn(self, number):
        server_is_away = number % 5 == 1
        if server_is_away:
            wait("the outbox to be empty", lambda: not self.place.agents())
            self.place.take_server_away()
        for road in self.roads():
            try:
                road()
            except Failure as failure:
                raise Failure("%s, %d recordings before, the cell holds %s: %s" % (
                    road.__name__, self.count, self.place.cell(), failure)) from failure
        if number % 3 == 2:
            self.place.kill_agents()
        self.delete_all()
        if server_is_away:
            self.place.bring_server_back()
        self.arrived.update(self.place.arrivals() if not self.place.agents() else [])

    def end(self):
        """The logbook ends, and all that was sent arrives."""
        self.place.logbook.say("exit")
        wait("the logbook to end", lambda: self.place.logbook.process.poll() is not None)
        if self.place.logbook.process.returncode != 0:
            raise Failure("the logbook ended with %d" % self.place.logbook.process.returncode)

        def all_arrived():
            if not self.place.agents():
                self.arrived.update(self.place.arrivals())
            return self.arrived.total() >= self.sent.total()
        wait("every upload", all_arrived)
        wait("the agent to end", lambda: not self.place.agents())
        self.arrived.update(self.place.arrivals())
        if self.arrived != self.sent:
            raise Failure("not once each: %s" % [
                (what, self.sent[what], self.arrived[what]) for what in self.sent | self.arrived
                if self.sent[what] != self.arrived[what]][:9])
        left = self.place.left_over()
        if left:
            raise Failure("left over: %s" % left[:9])


class Samples:
    """What was measured after each turn, when the list is empty; a row in ten is printed."""

    def __init__(self, turns):
        self.rows = []
        self.step = max(1, turns // 10)
        self.printed = None
        print("recordings  heap kB  anonymous kB  files  threads  wake-ups each  CPU ms each  "
              "bus kB  bus files")

    def take(self, soak, logbook, bus):
        before = self.rows[-1]["wakes_in_all"] if self.rows else None
        self.rows.append({
            "recordings": soak.count, "heap": soak.heap / 1024, "memory": logbook.kilobytes,
            "files": logbook.files, "threads": logbook.threads, "wakes_in_all": logbook.wakes,
            "wakes": (logbook.wakes - before) / TURN if before is not None else None,
            "seconds": logbook.seconds, "bus_memory": bus.kilobytes, "bus_files": bus.files})
        if len(self.rows) % self.step == 1 % self.step:
            self.print(self.rows[-1], self.printed or self.rows[-1])

    def print(self, row, last):
        each = max(1, row["recordings"] - last["recordings"])
        wakes = (row["wakes_in_all"] - last["wakes_in_all"]) / each
        seconds = (row["seconds"] - last["seconds"]) / each
        print("%10d %8.1f %13d %6d %8d %14.1f %12.1f %7d %10d" % (
            row["recordings"], row["heap"], row["memory"], row["files"], row["threads"],
            wakes, 1000 * seconds, row["bus_memory"], row["bus_files"]), flush=True)
        self.printed = row


MANY = 100  # points, which tell what three or four cannot

# What may be added over a whole run, and what a short one cannot tell.
LIMITS = (
    # figure, name, allowed by a recording, allowed in all
    ("heap", "bytes of the heap in use", 8 / 1024, 64),
    ("memory", "anonymous memory", 64 / 1024, 1024),
    ("files", "open files", 0, 0.5),
    ("threads", "threads", 0, 0.5),
    ("wakes", "wake-ups of a recording", 0, 4),
    ("bus_memory", "memory of the bus", 64 / 1024, 1024),
    ("bus_files", "open files of the bus", 0, 1.5),
)


def judge(samples):
    is_flat = True
    for figure, name, each, in_all in LIMITS:
        points = [(row["recordings"], row[figure]) for row in samples.rows
                  if row[figure] is not None]
        points = points[len(points) // 10:]
        many = len(points) >= MANY
        # A wait that a busy machine makes longer has some more: two or three points do not show that.
        if figure == "wakes" and not many:
            in_all *= 10
        verdict = flat(points, each, in_all, surely=many)
        print("%-26s %s" % (name, verdict.text))
        is_flat = is_flat and verdict.is_flat
    return is_flat


def run(build, recordings, plant, folder):
    place = Workstation(build, folder, plant)
    try:
        place.start_host()
        place.start_logbook()
        turns = -(-recordings // TURN)
        soak, samples = Soak(place), Samples(turns)
        begin = time.monotonic()
        for number in range(turns):
            soak.turn(number)
            samples.take(soak, Figures(place.logbook.id()), Figures(place.bus.pid))
        soak.end()
        print("%d recordings in %.0f s, %d uploads arrived once and whole, %d values refused" % (
            soak.count, time.monotonic() - begin, soak.arrived.total(), soak.refusals))
        return judge(samples)
    finally:
        place.close()


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", help="folder of a build")
    parser.add_argument("--recordings", type=int, default=5000,
                        help="how many, rounded up to turns of sixteen (%(default)s)")
    parser.add_argument("--plant", action="store_true",
                        help="let the logbook use things up, to see the judge at work")
    options = parser.parse_args()
    if options.recordings <= 2 * TURN:
        parser.error("too few recordings for a judgement")
    with tempfile.TemporaryDirectory(prefix="soak-") as folder:
        try:
            if run(options.build, options.recordings, options.plant, folder):
                return 0
            print("NOT FLAT")
        except Failure as failure:
            print("FAILED:", failure)
    return 1


if __name__ == "__main__":
    sys.exit(main())
