#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# Runs a test program (run-test.sh FILE.exe) under Wine and shows its report: Wine hands no variable named
# QT_... on, and without a console Qt's report would go to the debugger. The rows that are left out
# must be exactly those that skipped.txt lists for the test.
set -u
program=$1
name=$(basename "$program" .exe)
report=$name.report
skipped=$(dirname "$0")/skipped.txt
DISPLAY=$(cat "$KESTRELPACK_TEST_DISPLAY")
export DISPLAY

rm -f "$report"
# Not straight to this script's output: Wine's own services, which the first of the tests starts, would
# hold it open.
wine "$program" -o "$report,txt" </dev/null >"$name.output" 2>&1
status=$?
cat "$name.output"
tr -d '\r' <"$report"
[ $status -eq 0 ] || exit $status

tr -d '\r' <"$report" | sed -n "s/^SKIP *: [A-Za-z0-9]*::/$name: /p" | sort >"$report.skipped"
grep "^$name: " "$skipped" | sort | diff - "$report.skipped" ||
    { echo "Not as in $skipped" && exit 1; }
