#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""The check of the words finds visible words in the code and nothing in a tree without any.

    WordsTest.py TOP    TOP is the project's folder; the check runs on a copy of its sources
"""
import pathlib
import shutil
import subprocess
import sys
import tempfile

# A file and a line with visible words that is added to it.
BREACHES = [
    ("src/qt/HelpWindow.cpp", 'auto a = tr("Page");'),
    ("src/qt/frmMain.cpp", 'list->setAccessibleName(QStringLiteral("Logs"));'),
    ("src/qt/frmMain.cpp", 'list->setToolTip("Rows");'),
    ("src/qt/QtSaveDialog.cpp", 'auto a = "Path does not exist.";'),
    ("src/shell/StartUp.cpp", 'auto a = "Run-time error \'" + number;'),
    ("src/viewer/LogView.cpp", 'view.Window.Caption = "Viewer";'),
    ("src/records/LogEditor.cpp", 'services.messages.Show({.Text = "Failed"});'),
    ("src/printing/SheetSettings.cpp", 'auto a = "Page of pages";'),
    ("src/base/RunTimeError.cpp", 'return "Disk full";'),
    ("src/upload/ContentServerClient.cpp", 'throw RunTimeError(ErrorNumber::kX, "Broken");'),
    ("src/app/main.cpp", 'application.setObjectName("The logbook");'),
]
# Lines that only look like it.
HARMLESS = [
    ("src/qt/frmMain.cpp", "// Says \"Delete the log\" to nobody."),
    ("src/qt/frmMain.cpp", 'button->setObjectName(QStringLiteral("cmdRecord"));'),
    ("src/records/LogEditor.cpp", 'Key(state, "LogBook", "LastFile");'),
    ("src/app/main.cpp", 'std::cerr << "there is no display\\n";'),
]


def run(top):
    return subprocess.run([top / ".ci/words", top], capture_output=True, text=True, check=False)


def with_line(tree, file, line):
    """What the check says of the tree with this line at the end of a file."""
    path = tree / file
    text = path.read_text()
    path.write_text(text + line + "\n")
    result = run(tree)
    path.write_text(text)
    return result


def main():
    top = pathlib.Path(sys.argv[1])
    failed = []
    with tempfile.TemporaryDirectory() as folder:
        tree = pathlib.Path(folder) / "tree"
        shutil.copytree(top / "src", tree / "src")
        shutil.copytree(top / ".ci", tree / ".ci")
        clean = run(tree)
        if clean.returncode != 0:
            failed.append(clean.stdout)
        for file, line in HARMLESS:
            if with_line(tree, file, line).returncode != 0:
                failed.append(f"found in {file}: {line}")
        for file, line in BREACHES:
            result = with_line(tree, file, line)
            if result.returncode != 1 or result.stdout.count("\n") != 1:
                failed.append(f"not found in {file}: {line}")
    print("\n".join(failed))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
