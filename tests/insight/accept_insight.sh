#!/bin/sh
# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
#
# Copies the texts that the last run of the golden tests of insight made over those that they
# expect. Read their difference first: accept_insight.sh [BUILD_FOLDER], "build/dev" if none is
# given.
set -eu
cd "$(dirname "$0")/../.."
actual=${1:-build/dev}/tests/insight/actual
if [ ! -d "$actual" ]; then
  echo "no texts in $actual: run the tests of the room \"insight\" first" >&2
  exit 1
fi
mkdir -p tests/data/insight
cp -R "$actual"/. tests/data/insight/
git --no-pager diff --stat -- tests/data/insight
