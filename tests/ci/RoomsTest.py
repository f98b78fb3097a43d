#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""The check of the rooms finds each kind of breach and nothing in a tree without one.

    RoomsTest.py TOP    TOP is the project's folder; the check runs on a copy of its sources
"""
import pathlib
import shutil
import subprocess
import sys
import tempfile

# A file, a line that is added to it, and what the check has to say of it.
BREACHES = [
    ("src/base/Files.h", '#include "shell/StartUp.h"', "shell lies above base"),
    ("src/reports/TuneReport.cpp", '#include "state/AppState.h"', "state lies above reports"),
    ("src/shell/StartUp.cpp", '#include "qt/frmMain.h"', "qt lies above shell"),
    ("host/main.cpp", '#include "text/CSVMan.h"', "text lies above base"),
    ("agent/main.cpp", '#include "viewer/LogView.h"', "viewer lies above upload"),
    ("cli/main.cpp", '#include "shell/StartUp.h"', "shell lies above viewer"),
    ("src/records/Recording.cpp", "#include <QString>", "a header of the toolkit"),
    ("src/viewer/LogView.h", "#include <QtGlobal>", "a header of the toolkit"),
    ("src/text/CSVMan.cpp", "#include <unistd.h>", "a header of the system"),
    ("src/qt/Display.cpp", "#include <sys/stat.h>", "a header of the system"),
    ("src/archive/ArcHandler.cpp", "#include <windows.h>", "a header of the system"),
    ("src/records/LogFolder.cpp", '#include "base/posix/Descriptor.h"',
     "a header of a system folder"),
    ("src/printing/ListPrinting.cpp", "#include <zip.h>", "a header that belongs to src/archive"),
    ("src/loglist/LogList.cpp", "#ifdef _WIN32", "a macro of the platform"),
    ("src/base/Files.h", '#include "base/../viewer/LogView.h"', "a way up the folders"),
    ("src/base/Files.h", '#include "../viewer/LogView.h"', "a way up the folders"),
    ("src/base/Files.h", '#include "src/viewer/LogView.h"', "no header of the project"),
    ("src/base/Files.h", '/**/ # include/**/"viewer/LogView.h"', "viewer lies above base"),
    ("src/base/Files.h", "#include <viewer/LogView.h>", "a header of the system"),
    ("src/base/Files.h", "#include VIEWER_HEADER", "not an include by name"),
    ("src/base/Files.h", "#include_next <unistd.h>", "not an include by name"),
    ("src/base/Files.h", '%:include "viewer/LogView.h"', "not an include by name"),
    ("src/base/Files.h", '#if __has_include("viewer/LogView.h")', "not an include by name"),
    ("src/base/UpperCase.inc", '#include "text/CSVMan.h"', "text lies above base"),
    ("src/viewer/LogView.h", '#include "insight/Axis.h"', "insight is not for viewer"),
    ("insight/Axis.cpp", '#include "cli/Frame.h"', "cli is not for insight"),
    ("insight/Axis.cpp", '#include "state/AppState.h"', "state lies above reports"),
    ("insight/Axis.cpp", "#include <sys/stat.h>", "a header of the system"),
    ("cli/main.cpp", "#include <unistd.h>", "a header of the system"),
    ("cli/main.cpp", "#include <QtCore/QString>", "a header of the toolkit"),
    ("src/text/CSVMan.cpp", '#include "QString"', "no header of the project"),
    ("src/text/CSVMan.cpp", '#include "QtCore/QString"', "no header of the project"),
    ("src/text/CSVMan.cpp", '#include "unistd.h"', "no header of the project"),
    ("src/text/CSVMan.cpp", '#include "sys/stat.h"', "no header of the project"),
    ("src/text/CSVMan.cpp", '#include "zip.h"', "no header of the project"),
    ("src/loglist/LogList.cpp", "#ifdef WIN32", "a macro of the platform"),
    ("src/loglist/LogList.cpp", "#ifdef __WIN32__", "a macro of the platform"),
    ("src/loglist/LogList.cpp", "#if defined(unix)", "a macro of the platform"),
    ("src/loglist/LogList.cpp", "#ifdef _MSC_VER", "a macro of the platform"),
    ("src/loglist/LogList.cpp", "#ifdef Q_OS_WIN", "a macro of the platform"),
    ("src/printing/win32/PrintQueue.cpp", "#ifdef _WIN64", "a macro of the platform"),
    ("tests/support/TestMachine.cpp", "#ifdef _WIN32", "a macro of the platform"),
    ("fuzz/Fuzzing.h", "#ifdef __linux__", "a macro of the platform"),
    ("CONTRIBUTING.md", "| `src/attic/` | what nobody needs |", "its table of rooms"),
    ("README.md", "| `src/attic/` | what nobody needs |", "its table of rooms"),
    ("docs/architecture.md", "| `src/attic/` | what nobody needs | `Box.h` |", "its table of rooms"),
]


def run(top):
    result = subprocess.run([str(top / ".ci/rooms"), str(top)], capture_output=True, text=True)
    return result.returncode, result.stdout + result.stderr


def main():
    project = pathlib.Path(sys.argv[1])
    failed = False
    with tempfile.TemporaryDirectory() as name:
        top = pathlib.Path(name)
        for entry in ("src", "host", "cli", "agent", "insight", "tests", "fuzz", "bench",
                      "cmake", "docs", ".ci", "CONTRIBUTING.md", "README.md"):
            if (project / entry).is_dir():
                shutil.copytree(project / entry, top / entry)
            elif (project / entry).exists():
                shutil.copy2(project / entry, top / entry)
        status, said = run(top)
        if (status, said) != (0, ""):
            print(f"FAIL  the tree as it is: status {status}\n{said}")
            failed = True
        for file, line, expected in BREACHES:
            old = (top / file).read_text()
            (top / file).write_text(old + line + "\n")
            status, said = run(top)
            (top / file).write_text(old)
            found = status == 1 and expected in said and (file in said) and said.count("\n") == 1
            print(f"{'OK  ' if found else 'FAIL'}  {file}: {line}")
            if not found:
                print(f"      status {status}, said: {said}")
                failed = True
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
