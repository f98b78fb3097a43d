# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""Figures, what was measured of them, and the verdict: which targets are met."""

import json
import os
import statistics
import time

# A figure may be above its target by this share before the run fails: machines differ, and a
# figure that sits at its target must not fail on every second run.
TOLERANCE = 0.1


class Figure:
    """One row of the table. The smaller the value, the better."""

    def __init__(self, name, title, unit, target, measure, is_long=False):
        self.name = name
        self.title = title
        self.unit = unit        # "x" for a ratio to a base, else what the value counts
        self.target = target    # met at this value or below; None: told and not judged
        self.measure = measure  # called with the workplace; returns a Measured
        self.is_long = is_long  # measured in a full run alone


class Measured:
    """What a figure came to, and what it was made of."""

    def __init__(self, value, **parts):
        self.value = value
        self.parts = parts


def ratio(subject, base, **parts):
    """A Measured from the samples of a subject and of its base: the ratio of their medians."""
    if not subject or not base:
        raise ValueError("no samples")
    mine, theirs = statistics.median(subject), statistics.median(base)
    return Measured(mine / theirs, subject=mine, base=theirs, **parts)


def median(samples, **parts):
    if not samples:
        raise ValueError("no samples")
    return Measured(statistics.median(samples), **parts)


class Row:
    """The verdict on one figure. `error` tells why there is no value."""

    def __init__(self, figure, measured=None, error=None, seconds=0):
        self.figure = figure
        self.measured = measured
        self.error = error
        self.seconds = seconds  # that the measuring took

    def verdict(self):
        if self.measured is None:
            return "not measured"
        value, target = self.measured.value, self.figure.target
        if not value >= 0:  # also for what is no number
            return "not measured"
        if target is None:
            return "told"
        if value <= target:
            return "met"
        return "missed" if value > target * (1 + TOLERANCE) else "missed by less than a tenth"

    def fails(self):
        return self.verdict() in ("missed", "not measured")

    def as_json(self):
        row = {"name": self.figure.name, "title": self.figure.title, "unit": self.figure.unit,
               "target": self.figure.target, "verdict": self.verdict(),
               "seconds": round(self.seconds, 1)}
        if self.measured is not None:
            row["value"] = self.measured.value
            row.update(self.measured.parts)
        if self.error is not None:
            row["error"] = self.error
        return row


def number(value):
    """Three significant digits without an exponent."""
    if value >= 100:
        return "%.0f" % value
    return "%.6f" % value if 0 < value < 0.001 else "%.3g" % value


def with_unit(value, unit):
    """A value or a target as text; "-" for none."""
    return "-" if value is None else number(value) + " " + unit


def table(rows):
    """The rows as text: figure, value, target, verdict."""
    lines = [("figure", "value", "target", "verdict")]
    for row in rows:
        value = row.measured.value if row.measured else None
        lines.append((row.figure.title, with_unit(value, row.figure.unit),
                      with_unit(row.figure.target, row.figure.unit),
                      row.verdict() + (": " + row.error if row.error else "")))
    widths = [max(len(line[column]) for line in lines) for column in range(3)]
    return "\n".join("%-*s  %*s  %*s  %s" % (widths[0], a, widths[1], b, widths[2], c, d)
                     for a, b, c, d in lines) + "\n"


def measure_all(figures, workplace, tell):
    """Measures each figure in turn; one that raises does not keep the others from their turn."""
    rows = []
    for figure in figures:
        tell(figure)
        start = time.monotonic()
        try:
            rows.append(Row(figure, figure.measure(workplace)))
        except Exception as error:  # whatever a row stumbles over is told in the table
            rows.append(Row(figure, error="%s: %s" % (type(error).__name__, error)))
        rows[-1].seconds = time.monotonic() - start
    return rows


def exit_status(rows):
    """1 if a figure is missed by more than the tolerance or could not be measured."""
    return 1 if not rows or any(row.fails() for row in rows) else 0


def write_json(rows, path, **run):
    """`run` tells how it was measured."""
    os.makedirs(os.path.dirname(os.path.abspath(path)), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        json.dump({"figures": [row.as_json() for row in rows],
                   "run": run, "status": exit_status(rows)}, file, indent=1)
        file.write("\n")
