#!/bin/sh
# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
#
# Copies the reports that the last run of the golden test made over those that it expects. Read
# their difference first: accept_reports.sh [BUILD_FOLDER], "build/dev" if none is given.
set -eu
cd "$(dirname "$0")/../.."
actual=${1:-build/dev}/tests/reports/actual
if [ ! -d "$actual" ]; then
  echo "no reports in $actual: run the tests of the room \"reports\" first" >&2
  exit 1
fi
mkdir -p tests/data/reports
cp -R "$actual"/. tests/data/reports/
git --no-pager diff --stat -- tests/data/reports
