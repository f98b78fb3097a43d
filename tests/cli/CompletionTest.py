#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""Completes command lines of logbookctl in real shells, as somebody types them on a terminal.

    CompletionTest.py LOGBOOKCTL SHELL

Each case is typed into the shell with a key that completes it, then turned into arguments of
printf, so that what is read is what the shell would have run with. 77 is the status if the shell is not
on this machine.
"""
import fcntl
import os
import pty
import re
import select
import shutil
import struct
import sys
import tempfile
import termios

# A key for the one completion that there is, and one for all that there are.
ONE, ALL = "\t", "\x1b*"

# What is typed, the key, and the words of the line then; or some that must be among those that were
# offered, and some that must not.
CASES = [
    ("logbookctl cat", ONE, ["logbookctl", "catalogue"]),
    ("logbookctl --vers", ONE, ["logbookctl", "--version"]),
    ("logbookctl ex", ONE, ["logbookctl", "export"]),
    ("logbookctl find --col", ONE, ["logbookctl", "find", "--columns"]),
    ("logbookctl find --code", ONE, ["logbookctl", "find", "--code-page"]),
    ("logbookctl --code-page 1252 tre", ONE, ["logbookctl", "--code-page", "1252", "trend"]),
    ("logbookctl export --format js", ONE, ["logbookctl", "export", "--format", "jsonl"]),
    ("logbookctl export --format=xl", ONE, ["logbookctl", "export", "--format=xlsx"]),
    ("logbookctl catalogue ana", ONE, ["logbookctl", "catalogue", "analog"]),
    ("logbookctl report --ce tuneb", ONE, ["logbookctl", "report", "--ce", "tunebin"]),
    ("logbookctl trend anal", ONE, ["logbookctl", "trend", "analog:"]),
    ("logbookctl trend tune:Oxi", ONE, ["logbookctl", "trend", "tune:Oxide"]),
    ("logbookctl trend tune:Oxide analog:Analog\\ H", ONE,
     ["logbookctl", "trend", "tune:Oxide", "analog:Analog HV"]),
    ("logbookctl trend tune:63 --mark Clean\\ C", ONE,
     ["logbookctl", "trend", "tune:63", "--mark", "Clean Cones"]),
    ("logbookctl trend tune:63 --mark 'Clean C", ONE,
     ["logbookctl", "trend", "tune:63", "--mark", "Clean Cones"]),
    ("logbookctl find --columns date,log,tune:Oxi", ONE,
     ["logbookctl", "find", "--columns", "date,log,tune:Oxide"]),
    ("logbookctl find --columns date,comm", ONE,
     ["logbookctl", "find", "--columns", "date,comment"]),
    ("logbookctl find option:COLO", ONE, ["logbookctl", "find", "option:COLOPGS"]),
    (r'logbookctl find tick:\"Clean\ C', ONE, ["logbookctl", "find", 'tick:"Clean Cones"']),
    (r'logbookctl find tune:\"Analog\ H', ONE, ["logbookctl", "find", 'tune:"Analog HV"']),
    ("logbookctl find auto:n", ONE, ["logbookctl", "find", "auto:no"]),
    ("logbookctl show --log-root logs 26110", ONE,
     ["logbookctl", "show", "--log-root", "logs", "26110500"]),
    ("logbookctl diff --log-root=logs 26110500 26111", ONE,
     ["logbookctl", "diff", "--log-root=logs", "26110500", "26111500"]),
    ("logbookctl trend tune:63 --limits lim", ONE,
     ["logbookctl", "trend", "tune:63", "--limits", "limits file.ini"]),
    ("logbookctl check --log-root lo", ONE, ["logbookctl", "check", "--log-root", "logs"]),
    ("logbookctl ", ALL, ({"catalogue", "strings", "list", "report", "find", "show", "due", "trend",
                           "diff", "export", "check"}, set())),
    ("logbookctl due --", ALL, ({"--ics", "--intervals", "--log-root", "--json", "--claimed"},
                                {"--columns", "--format"})),
    ("logbookctl due --json --", ALL, ({"--claimed"}, {"--json"})),
    ("logbookctl show 26110500 ", ALL,
     ({"meter", "analog", "tune", "sys", "bout", "bin", "tune:"}, {"items"})),
    ("logbookctl catalogue ", ALL,
     ({"items", "meter", "analog", "tune", "sys", "bout", "bin"}, {"logs"})),
]

START = {
    "bash": (["bash", "--norc", "--noprofile", "-i"],
             "bind 'set enable-bracketed-paste off'; bind 'set bell-style none'\n"
             "bind '\"\\e*\": insert-completions'\n"
             "logbookctl --completion bash >complete; source ./complete\n"),
    "zsh": (["zsh", "-f", "-i"],
            "unset zle_bracketed_paste; unsetopt beep; bindkey -e\n"
            "mkdir functions; logbookctl --completion zsh >functions/_logbookctl\n"
            "fpath=($PWD/functions $fpath); autoload -Uz compinit; compinit -u -d $PWD/dump\n"
            "zle -C all-matches complete-word _generic; bindkey '\\e*' all-matches\n"
            "zstyle ':completion:all-matches:*' insert yes\n"
            "zstyle ':completion:all-matches::::' completer _all_matches _complete\n"),
}


class Terminal:
    """A shell on a terminal of its own."""

    def __init__(self, command, folder, variables):
        self.child, self.end = pty.fork()
        if self.child == 0:
            os.chdir(folder)
            os.execvpe(command[0], command, variables)
        fcntl.ioctl(self.end, termios.TIOCSWINSZ, struct.pack("HHHH", 50, 2000, 0, 0))
        self.seen = ""

    def write(self, text):
        os.write(self.end, text.encode())

    def read_until(self, pattern):
        """The match of a pattern in what the shell writes from now on."""
        self.seen = ""
        while True:
            found = re.search(pattern, self.seen, re.S)
            if found:
                return found
            if not select.select([self.end], [], [], 60)[0]:
                raise RuntimeError("the shell is silent after: " + self.seen[-2000:])
            self.seen += os.read(self.end, 65536).decode(errors="replace")

    def close(self):
        os.close(self.end)
        os.waitpid(self.child, 0)


def prepare(folder, program):
    os.mkdir(os.path.join(folder, "bin"))
    os.symlink(os.path.abspath(program), os.path.join(folder, "bin", "logbookctl"))
    for log in ("26110500", "26111500"):
        os.makedirs(os.path.join(folder, "logs", log))
    with open(os.path.join(folder, "limits file.ini"), "w", encoding="utf-8"):
        pass
    return {"PATH": os.path.join(folder, "bin") + ":" + os.environ["PATH"], "HOME": folder,
            "TERM": "dumb", "PS1": "$ ", "LC_ALL": "C.UTF-8", "COLUMNS": "400"}


def completed(terminal, number, typed, key):
    """The words of the line that the shell has completed."""
    # The line becomes arguments: to its beginning, a command in front; to its end, and run it.
    terminal.write("%s%s\x01printf '<%%s>' begin%d \x05 end%d\n" % (typed, key, number, number))
    found = terminal.read_until("<begin%d>(.*?)<end%d>" % (number, number)).group(1)
    return re.findall("<([^<>]*)>", found)


def wrong(expected, typed, words):
    if isinstance(expected, list):
        return [word.rstrip("/") for word in words] != expected
    among, not_among = expected
    offered = set(words[len(typed.split()) - 1:])
    return not among <= offered or bool(not_among & offered)


def main():
    program, shell = sys.argv[1:3]
    if shutil.which(shell) is None:
        print("skipped: there is no %s on this machine" % shell)
        return 77
    command, start = START[shell]
    with tempfile.TemporaryDirectory() as folder:
        variables = prepare(folder, program)
        terminal = Terminal(command, folder, variables)
        terminal.write(start + "printf '<%s>' started\n")
        terminal.read_until("<started>")
        failures = 0
        for number, (typed, key, expected) in enumerate(CASES):
            words = completed(terminal, number, typed, key)
            if wrong(expected, typed, words):
                failures += 1
                print("%r: expected %s, got %s" % (typed, expected, words))
        terminal.close()
    print("%d of %d lines completed as expected" % (len(CASES) - failures, len(CASES)))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
