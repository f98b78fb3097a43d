#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""The table of docs/performance.md and the figures that are measured.

    bench/paper.py --check    names each figure without a row, each row without a figure, and each
                              title or target that is not the figure's; ends with 1 if there is one

A row begins with the figure's name; "now" and the verdict beside it come from a run
(bench/run --write-paper), title and target from the figure, the rest is written by hand.
"""
import os
import re
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)
sys.dont_write_bytecode = True

from verdict import with_unit  # noqa: E402

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


def run_text(run):
    return ("Measured in one run on %d processors, in %.1f minutes, the load %.1f at its begin and "
            "%.1f at its end." % (run["processors"], run["minutes"], run["load_before"],
                                  run["load_after"]))


def write(rows, run):
    """Puts the values of a run into the paper; of a run of all figures its circumstances, too."""
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
    if len(rows) >= len(ROW.findall(text)) // 2:
        text = RUN.sub(run_text(run), text, count=1)
    with open(PAPER, "w", encoding="utf-8") as file:
        file.write(text)


def findings():
    from figures import FIGURES
    with open(PAPER, encoding="utf-8") as file:
        text = file.read()
    names = ROW.findall(text)
    figures = {figure.name: figure for figure in FIGURES}
    found = ["%s has no row" % name for name in figures if name not in names]
    found += ["%s is no figure" % name for name in names if name not in figures]
    found += ["%s has two rows" % name for name in set(names) if names.count(name) > 1]
    for line in text.split("\n"):
        name = ROW.match(line)
        if name and name.group(1) in figures:
            cells = cells_of(line)
            if len(cells) != 6 or line_of(figures[name.group(1)], cells) != line.strip():
                found.append("%s: title or target is another" % name.group(1))
    return found


if __name__ == "__main__":
    if sys.argv[1:] != ["--check"]:
        sys.exit(__doc__)
    problems = findings()
    print("\n".join(problems), end="\n" if problems else "")
    sys.exit(1 if problems else 0)
