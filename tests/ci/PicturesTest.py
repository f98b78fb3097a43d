# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT

# "docs/make-pictures --check" finds a picture that shows other words. The argument is the top of the
# tree.

import importlib.machinery
import importlib.util
import pathlib
import shutil
import subprocess
import sys
import tempfile

TOP = pathlib.Path(sys.argv[1])
if not shutil.which("compare"):
    print("SKIP  imagemagick is not here")
    sys.exit(77)
loader = importlib.machinery.SourceFileLoader("pictures", str(TOP / "docs/make-pictures"))
pictures = importlib.util.module_from_spec(importlib.util.spec_from_loader("pictures", loader))
loader.exec_module(pictures)

failures = []
english = sorted((TOP / "docs/manual").glob("*.png"))
for picture in english:
    if pictures.difference(picture, picture):
        failures.append(f"{picture.name} differs from itself")
    for folder in ("de", "ja"):
        if not pictures.difference(picture, picture.parent / folder / picture.name):
            failures.append(f"{picture.name} in {folder} is taken for the English one")
with tempfile.TemporaryDirectory() as folder:
    other = pathlib.Path(folder, "main.png")
    renamed = ["-fill", "black", "-draw", "text 200,275 'Other'"]
    subprocess.run(["convert", str(TOP / "docs/manual/main.png"), *renamed, str(other)], check=True)
    if not pictures.difference(TOP / "docs/manual/main.png", other):
        failures.append("a word more is not found")
if len(english) < 5:
    failures.append("there are hardly any pictures")
sys.exit("\n".join(failures) or None)
