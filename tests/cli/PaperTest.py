#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""The papers of logbookctl tell all that the program knows.

    PaperTest.py PROGRAMS TOP RULE    PROGRAMS is the folder of the built programs, TOP the project
"""
import json
import os
import re
import subprocess
import sys
import tempfile

LIMITS = "[tune:63]\nReference = 1.1\nTolerance = 20 %\nAction = 0.5\n"
INTERVALS = "[Intervals]\nClean Cones = 1 week\n"

VERBS = (["find", "cones", "--columns", "tune:63"], ["show", "LAST"],
         ["trend", "tune:63", "--limits", "limits.ini", "--rules", "1-9"],
         ["due", "--intervals", "intervals.ini"], ["diff", "FIRST", "LAST"],
         ["check", "--today", "2026-11-21"])


def keys_of(value):
    """All keys of a JSON document but those of an instrument's options."""
    if isinstance(value, list):
        return set().union(*map(keys_of, value))
    if not isinstance(value, dict):
        return set()
    below = [keys_of(each) for key, each in value.items()
             if key != "options" or isinstance(each, list)]
    return set(value).union(*below)


def every_key_of_the_json_is_in_the_paper(programs, top):
    with open(os.path.join(top, "docs", "insight.md"), encoding="utf-8") as file:
        reference = file.read().split("## Reference: finding and showing")[1]
    missing = {}
    with tempfile.TemporaryDirectory() as folder:
        home = os.path.join(folder, "home")
        for words in (["init"], ["fill", "--logs", "20", "--seed", "7", "--until", "2026-11-20"]):
            subprocess.run([os.path.join(programs, "quorex-host"), *words, "--home", home],
                           check=True, stdout=subprocess.DEVNULL)
        root = os.path.join(home, "drives/c/QUOREX/inst1/maintain")
        logs = sorted(os.listdir(root))
        os.remove(os.path.join(root, logs[0], "sys.txt"))
        for name, text in (("limits.ini", LIMITS), ("intervals.ini", INTERVALS)):
            with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                file.write(text)
        variables = {**os.environ, "HOME": folder, "LOGBOOK_HOME": home, "LOGBOOK_ROOT": root,
                     "XDG_CACHE_HOME": folder + "/cache", "XDG_CONFIG_HOME": folder + "/config"}
        for words in VERBS:
            words = [{"FIRST": logs[0], "LAST": logs[-1]}.get(word, word) for word in words]
            run = subprocess.run([os.path.join(programs, "logbookctl"), *words, "--json"],
                                 env=variables, cwd=folder, check=False, stdout=subprocess.PIPE)
            keys = keys_of(json.loads(run.stdout))
            assert len(keys) > 3, words
            untold = sorted(key for key in keys if "`%s`" % key not in reference)
            if untold:
                missing[words[0]] = untold
    return missing


def every_verb_and_option_is_in_the_man_page(programs, top):
    with open(os.path.join(top, "packaging/man/logbookctl.1.md"), encoding="utf-8") as file:
        page = file.read()
    script = subprocess.run([os.path.join(programs, "logbookctl"), "--completion", "bash"],
                            check=True, stdout=subprocess.PIPE, text=True).stdout
    table = re.findall(r"^    '(\w*)'\) echo '(--[^']*)' ;;$", script, re.M)
    assert len(table) > 10, script
    return {verb: untold for verb, options in table
            if (untold := [word for word in ([verb] if verb else []) + options.replace("+", "").split()
                           if "**%s**" % word not in page])}


RULES = {
    "EveryKeyOfTheJsonIsInThePaper": every_key_of_the_json_is_in_the_paper,
    "EveryVerbAndOptionIsInTheManPage": every_verb_and_option_is_in_the_man_page,
}


def main():
    programs, top, rule = sys.argv[1:4]
    missing = RULES[rule](os.path.abspath(programs), os.path.abspath(top))
    if missing:
        print("not told: %s" % missing)
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main())
