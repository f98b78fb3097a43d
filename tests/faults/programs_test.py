#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""Where the matrix of whole programs takes a record that silently did not begin for right."""

import errno
import pathlib
import sys
import unittest

sys.dont_write_bytecode = True

from programs import ANSWER, CHANGING, READING, Failure, Point  # noqa: E402
from programs import loses_its_paths, search_for  # noqa: E402

ROOT = pathlib.Path("/h/drives/c/logs")
TRACE = ("read /h/machine.reg\n"  # 1
         "opendir /h/drives\n"  # 2
         "stat /h/drives/c/logs\n"  # 3
         "open /h/rights.ist\n"  # 4
         "stat /h/drives/c/logs\n"  # 5
         "flock /h/drives/c/logs\n")  # 6
CALLS = TRACE.splitlines()


def is_silent(at, times, calls=READING, call=None):
    point = Point(ANSWER, calls, at, errno.EIO, times)
    return loses_its_paths(ROOT, search_for(ROOT, TRACE), point, call or CALLS[at - 1])


class ARecordMayFailToBeginInSilence(unittest.TestCase):
    def test_where_a_look_at_the_root_or_above_it_fails(self):
        self.assertTrue(is_silent(2, times=0))
        self.assertTrue(is_silent(3, times=0))

    def test_where_a_fault_stays_from_before_that_look(self):
        self.assertTrue(is_silent(1, times=1))

    def test_but_not_where_an_earlier_fault_has_passed(self):
        self.assertFalse(is_silent(1, times=0))

    def test_but_not_behind_that_look_even_if_the_fault_stays(self):
        self.assertFalse(is_silent(4, times=1))
        self.assertFalse(is_silent(5, times=1))
        self.assertFalse(is_silent(5, times=0))

    def test_but_not_where_a_change_fails(self):
        self.assertFalse(is_silent(3, times=1, calls=CHANGING))

    def test_but_not_where_another_call_than_that_of_the_search_was_met(self):
        self.assertFalse(is_silent(3, times=1, call="read /h/drives/c/logs/comment.txt"))

    def test_and_a_program_that_never_looks_at_the_root_is_no_measure(self):
        with self.assertRaises(Failure):
            search_for(ROOT, "read /h/machine.reg\n")


if __name__ == "__main__":
    unittest.main()
