#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""The table of docs/performance.md and the figures that are measured.

    bench/paper.py --check    names each figure without a row, each row without a figure, each title
                              or target that is not the figure's, and each value that was not measured
                              or has the verdict of another beside it; ends with 1 if there is one

A row begins with the figure's name; "now" and the verdict beside it come from a run
(bench/run --write-paper), title and target from the figure, the rest is written by hand.
"""
import math
import os
import re
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)
sys.dont_write_bytecode = True

from verdict import Measured, Row, with_unit  # noqa: E402

PAPER = os.path.join(os.path.dirname(HERE), "docs", "performance.md")
ROW = re.compile(r"^\| `([\w.]+)` \|", re.M)
RUN = re.compile(r"^Measured .*$", re.M)
VERDICTS = {"met": "", "told": "", "missed": ", **missed**",
            "missed by less than a tenth": ", missed by less than a tenth"}


def cells_of(line):
    return [cell.strip() for cell in line.strip().strip("|").split("|")]


def line_of(figure, cells):
    """The row with the figure's title and target; name, title, before, now, target, made of."""
    new = ["`%s`" % figure.name, figure.title, *cells[2:4],
           with_unit(figure.target, figure.unit), *cells[5:]]
    return "| " + " | ".join(new) + " |"


def verdict_fits(figure, cell):
    """Whether the verdict beside a value is that of a value which is written so."""
    value, _, beside = cell.partition(" " + figure.unit)
    try:
        shown = float(value)
    except ValueError:
        return False
    # Of the three digits that are written, the last one may be rounded.
    half = 0.5 if shown >= 100 else 5e-7 if shown < 0.001 else 0.5 * 10 ** (
        math.floor(math.log10(shown)) - 2)
    return any(VERDICTS.get(Row(figure, Measured(max(0, possible))).verdict()) == beside
               for possible in (shown - half, shown, shown + half))


def run_text(rows, run, figures):
    """What the paper tells of a run: whether all values beside it are of that one."""
    measured = {row.figure.name for row in rows}
    left = [figure for figure in figures if figure.name not in measured]
    if any(not figure.is_long for figure in left):
        return ("Measured in several runs, the last of which was of some rows alone; how long one of "
                "all takes is not told here.")
    text = ("Measured in one run on %d processors, the load %.1f at its begin and %.1f at its end. "
            "It took %.1f minutes without the build and the removal of its data" % (
                run["processors"], run["load_before"], run["load_after"], run["minutes"]))
    if not left:
        return text + ", the long rows among them."
    return text + (", of the five that it is meant to take at most. Of another run are the long "
                   "rows: %s." % ", ".join("`%s`" % figure.name for figure in left))


def write(rows, run):
    """Puts the values of a run into the paper, and its circumstances."""
    from figures import FIGURES
    with open(PAPER, encoding="utf-8") as file:
        text = file.read()
    known = {row.figure.name: row for row in rows}
    lines = text.split("\n")
    for number, line in enumerate(lines):
        found = ROW.match(line)
        row = known.pop(found.group(1), None) if found else None
        if row is None:
            continue
        cells = cells_of(line)
        if row.measured is None:
            cells[3] = "not measured"
        else:
            cells[3] = with_unit(row.measured.value, row.figure.unit) + VERDICTS[row.verdict()]
        lines[number] = line_of(row.figure, cells)
    if known:
        sys.exit("bench/run: no row in the paper for " + ", ".join(known))
    text = "\n".join(lines)
    text = RUN.sub(run_text(rows, run, FIGURES), text, count=1)
    with open(PAPER, "w", encoding="utf-8") as file:
        file.write(text)


def findings(text, all_figures):
    names = ROW.findall(text)
    figures = {figure.name: figure for figure in all_figures}
    found = ["%s has no row" % name for name in figures if name not in names]
    found += ["%s is no figure" % name for name in names if name not in figures]
    found += ["%s has two rows" % name for name in set(names) if names.count(name) > 1]
    for line in text.split("\n"):
        name = ROW.match(line)
        if name and name.group(1) in figures:
            cells = cells_of(line)
            if len(cells) != 6 or line_of(figures[name.group(1)], cells) != line.strip():
                found.append("%s: title or target is another" % name.group(1))
            elif not verdict_fits(figures[name.group(1)], cells[3]):
                found.append("%s: the verdict is not that of %s" % (name.group(1), cells[3]))
    return found


if __name__ == "__main__":
    if sys.argv[1:] != ["--check"]:
        sys.exit(__doc__)
    from figures import FIGURES
    with open(PAPER, encoding="utf-8") as paper:
        problems = findings(paper.read(), FIGURES)
    print("\n".join(problems), end="\n" if problems else "")
    sys.exit(1 if problems else 0)
