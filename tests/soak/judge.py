# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""Whether a figure stays flat: a straight line through its points, and what it gains on the way."""

import collections
import math

Verdict = collections.namedtuple("Verdict", "is_flat gain doubt text")


def line(points):
    """Slope of the straight line through the points, and the slope's standard error."""
    count = len(points)
    mean_x = sum(x for x, _ in points) / count
    mean_y = sum(y for _, y in points) / count
    width = sum((x - mean_x) ** 2 for x, _ in points)
    slope = sum((x - mean_x) * (y - mean_y) for x, y in points) / width
    rest = sum((y - mean_y - slope * (x - mean_x)) ** 2 for x, y in points)
    return slope, math.sqrt(rest / max(1, count - 2) / width)


def flat(points, each, in_all, surely):
    """Flat is what gains no more from the first point to the last than `in_all`, or `each` for each
    step of x if that is more. What three standard errors leave open counts against the figure if it
    is to be flat surely, and for it otherwise, since few points are far from a line by chance."""
    slope, error = line(points)
    span = points[-1][0] - points[0][0]
    gain, doubt = slope * span, 3 * error * span
    allowed = max(in_all, each * span)
    is_flat = gain + (doubt if surely else -doubt) <= allowed
    text = "%s: gains %+.2f (give or take %.2f) from %.1f, allowed %.1f" % (
        "flat" if is_flat else "GROWS", gain, doubt, points[0][1], allowed)
    return Verdict(is_flat, gain, doubt, text)
