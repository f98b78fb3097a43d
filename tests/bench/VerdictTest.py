#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""bench/run fails where it should: its verdict, its status, its table and its JSON, over figures
that measure nothing; and so does the check of the paper beside it.

    VerdictTest.py TOP CASE    TOP is the project's folder; CASE is the name of a rule below
"""
import json
import pathlib
import re
import subprocess
import sys
import tempfile

FIGURES = """
from verdict import Figure, Measured, median, ratio
def broken(place):
    raise RuntimeError("no such program")
FIGURES = [Figure("f%d" % i, "figure %d" % i, "x", 2.0, measure)
           for i, measure in enumerate([{}])]
"""


def run(*measures, options=(), more=""):
    """Status, rows of the JSON and the table of a run over figures with the target 2. `more` is
    further text of the file of figures."""
    top = pathlib.Path(sys.argv[1])
    with tempfile.TemporaryDirectory() as folder:
        figures, out = pathlib.Path(folder, "figures.py"), pathlib.Path(folder, "new", "out.json")
        figures.write_text(FIGURES.replace("{}", ", ".join(measures)) + more,
                           encoding="utf-8")
        result = subprocess.run(
            [sys.executable, str(top / "bench/run"), "--programs", folder, "--figures",
             str(figures), "--json", str(out), *options], capture_output=True, text=True, check=False)
        return result.returncode, json.loads(out.read_text())["figures"], result.stdout


def paper():
    """The module of the paper, and that of the figures' verdicts."""
    sys.path.insert(0, str(pathlib.Path(sys.argv[1], "bench")))
    sys.dont_write_bytecode = True
    import paper as module
    import verdict
    return module, verdict


def value(number):
    return "lambda place: Measured(%s)" % number


def expect(real, wanted):
    if real != wanted:
        sys.exit("is %r, not %r" % (real, wanted))


class Verdict:
    @staticmethod
    def AFigureAtItsTargetIsMet():
        status, rows, _ = run(value(2.0), value(1.2))
        expect((status, [row["verdict"] for row in rows]), (0, ["met", "met"]))

    @staticmethod
    def AFigureMissedByLessThanATenthIsToldAndDoesNotFail():
        status, rows, table = run(value(2.19))
        expect((status, rows[0]["verdict"]), (0, "missed by less than a tenth"))
        expect("missed by less than a tenth" in table, True)

    @staticmethod
    def AFigureMissedByMoreThanATenthEndsWithOne():
        status, rows, table = run(value(1), value(2.21), value(1))
        expect((status, [row["verdict"] for row in rows]), (1, ["met", "missed", "met"]))
        expect([line.split()[-1] for line in table.splitlines()[1:]], ["met", "missed", "met"])

    @staticmethod
    def AFigureThatCannotBeMeasuredEndsWithOneAndKeepsNoOtherFromItsTurn():
        status, rows, table = run("broken", value(1), value("float('nan')"))
        expect((status, [row["verdict"] for row in rows]),
               (1, ["not measured", "met", "not measured"]))
        expect("no such program" in table, True)

    @staticmethod
    def ARatioIsThatOfTheMedians():
        status, rows, _ = run("lambda place: ratio([9, 3, 2], [2, 1, 70])")
        expect((status, rows[0]["value"], rows[0]["subject"], rows[0]["base"]), (0, 1.5, 3, 2))

    @staticmethod
    def APaperWithAVerdictThatIsNotThatOfTheValueIsRefused():
        module, verdict = paper()
        figures = [verdict.Figure("a", "title", "x", 4, None),
                   verdict.Figure("t", "told", "ms", None, None)]
        for cell, is_right in (
                ("4 x", True), ("3.24 x", True), ("0 x", True), ("4.25 x", False),
                ("4.25 x, missed by less than a tenth", True), ("4.25 x, **missed**", False),
                ("4.5 x, **missed**", True), ("4.5 x, missed by less than a tenth", False),
                ("4.5 x", False), ("3.9 x, **missed**", False), ("not measured", False), ("", False),
                # 4.001, as it is written
                ("4 x, missed by less than a tenth", True)):
            text = "| `a` | title | | %s | 4 x | |\n| `t` | told | | 99 ms | - | |\n" % cell
            found = module.findings(re.sub(r"\| +\|", "|  |", text), figures)
            expect((cell, not found), (cell, is_right))

    @staticmethod
    def ARunIsToldAsOneIfAllButTheLongFiguresAreOfIt():
        module, verdict = paper()
        figures = [verdict.Figure(name, name, "x", 4, None, is_long=name == "long")
                   for name in ("a", "b", "long")]
        run = {"processors": 2, "minutes": 3.5, "load_before": 0.1, "load_after": 1}
        rows = [verdict.Row(figure, verdict.Measured(1)) for figure in figures]
        told = {count: module.run_text(rows[:count], run, figures) for count in (1, 2, 3)}
        expect([told[count].startswith("Measured in one run") for count in told],
               [False, True, True])
        expect(["`long`" in told[count] for count in told], [False, True, False])
        expect(["3.5 minutes" in told[count] for count in told], [False, True, True])

    @staticmethod
    def AFigureWithoutATargetIsToldAndNotJudged():
        more = 'FIGURES.append(Figure("t", "told", "x", None, lambda place: Measured(99)))'
        status, rows, table = run(value(1), more=more)
        expect((status, [row["verdict"] for row in rows]), (0, ["met", "told"]))
        expect(table.splitlines()[-1].split(), ["told", "99", "x", "-", "told"])

    @staticmethod
    def ALongFigureIsLeftToAFullRun():
        more = 'FIGURES.append(Figure("l", "long", "x", 2, lambda place: Measured(1), is_long=True))'
        for options, names in (((), ["f0"]), (("--full",), ["f0", "l"])):
            status, rows, _ = run(value(1), options=options, more=more)
            expect((status, [row["name"] for row in rows]), (0, names))

    @staticmethod
    def AStartWithoutAPaintedWindowIsNoFigure():
        paper()  # so that its neighbours are found, too
        from workplace import Workplace
        for pixels, wanted in ((0, "some has painted 0 pixels"), (299999, "299999"), (300000, "")):
            with tempfile.TemporaryDirectory() as programs:
                measure = pathlib.Path(programs, "bench_measure")
                measure.write_text("#!/bin/sh\necho cpu 1\necho painted %d\n" % pixels)
                measure.chmod(0o755)
                with Workplace(programs) as place:
                    try:
                        place.started("/bin/some", "words")
                        told = ""
                    except RuntimeError as error:
                        told = str(error)
            expect(wanted in told and bool(told) == bool(wanted), True)

    @staticmethod
    def NoSamplesAreNoFigure():
        status, rows, _ = run("lambda place: ratio([], [1])", "lambda place: median([])")
        expect((status, [row["verdict"] for row in rows]), (1, ["not measured"] * 2))


if __name__ == "__main__":
    getattr(Verdict, sys.argv[2])()
