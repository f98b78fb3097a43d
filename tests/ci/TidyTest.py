#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""The check by clang-tidy tells what clang-tidy finds, and what clang-tidy could not look at.

    TidyTest.py TOP    TOP is the project's folder; the check runs in a repository of a few sources
"""
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

# The header has a finding, which counts for nothing: the build has made it.
CLEAN = {
    "src/base_autogen/Made.h": "int __made();\n",
    "src/base/Twice.cpp": '#include "../base_autogen/Made.h"\n'
                          "int Twice(int number) { return number + number; }\n",
}
# Each has one finding, of the check beside it.
FAULTY = {
    "src/base/Copy.cpp": ("#include <string>\nint Size(std::string t) { return t.empty(); }\n",
                          "performance-unnecessary-value-param"),
    "src/base/make_table.cpp": ("int Sum(int a) { if (a > 0); return a; }\n",
                                "bugprone-suspicious-semicolon"),
    "host/Gone.cpp": ('#include "NotThere.h"\n', "clang-diagnostic-error"),
}


def run(tree, *arguments, **variables):
    return subprocess.run([tree / ".ci/tidy", *arguments], capture_output=True, text=True,
                          check=False, env=os.environ | variables).stdout


def git(tree, *arguments):
    subprocess.run(["git", "-C", tree, "-c", "user.name=a", "-c", "user.email=a@example.org",
                    *arguments], check=True, capture_output=True)


def plant(tree, files):
    for name, text in files.items():
        path = tree / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
    commands = [{"directory": str(tree), "file": str(source), "command": f"c++ -I. -c {source}"}
                for source in sorted(tree.glob("**/*.cpp"))]
    (tree / "build/dev").mkdir(parents=True, exist_ok=True)
    (tree / "build/dev/compile_commands.json").write_text(json.dumps(commands))
    git(tree, "add", *files)
    git(tree, "commit", "-m", "Sources")


def main():
    top = pathlib.Path(sys.argv[1])
    if not shutil.which("clang-tidy") or not shutil.which("git"):
        print("SKIP  clang-tidy or git is not here")
        sys.exit(77)
    failed = []
    with tempfile.TemporaryDirectory() as folder:
        tree = pathlib.Path(folder)
        git(tree, "init", "-q")
        (tree / ".ci").mkdir()
        shutil.copy(top / ".ci/tidy", tree / ".ci")
        shutil.copy(top / ".clang-tidy", tree)
        plant(tree, CLEAN)
        if words := run(tree, "--all"):
            failed.append(f"a clean tree has findings:\n{words}")
        plant(tree, CLEAN | {file: text for file, (text, _) in FAULTY.items()})
        for arguments in ([], ["--all"], ["src", "host/Gone.cpp"]):
            lines = run(tree, *arguments).splitlines()
            for file, (_, check) in FAULTY.items():
                if sum(line.startswith(file + ":") and check in line for line in lines) != 1:
                    failed.append(f"{arguments}: {check} of {file} is not told once:\n{lines}")
        if "host/" in run(tree, "src"):
            failed.append("a folder that was not named is examined")
        if "nosuch" not in run(tree, BASE="nosuch"):
            failed.append("a base that is none is not told")
        plant(tree, {"host/Wear.h": "int Worn();\n", "host/Wear.cpp": '#include "host/Wear.h"\n'})
        plant(tree, {"host/Wear.h": "int Worn(std::strin);\n"})
        if "host/Wear.h:1" not in run(tree):
            failed.append("a header that differs is not examined")
        (tree / ".clang-tidy").write_text("Checks: [\n")
        if "src/base/Twice.cpp" not in run(tree, "src/base/Twice.cpp"):
            failed.append("that clang-tidy could do nothing is not told")
    sys.exit("\n".join(failed) or None)


main()
