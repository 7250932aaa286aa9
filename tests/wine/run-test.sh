#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# run-test.sh FILE.exe: runs a test program under Wine and shows its report. Without a console, Qt
# would send the report to the debugger. A variable QT_... could prevent that, but Wine does not
# pass such variables on. So the report goes to a file. The skipped rows must be exactly those that
# skipped.txt lists for the test.
set -u
program=$1
name=$(basename "$program" .exe)
report=$name.report
skipped=$(dirname "$0")/skipped.txt
DISPLAY=$(cat "$KESTRELPACK_TEST_DISPLAY")
export DISPLAY

rm -f "$report"
# The output goes to a file: Wine's own services, which the first test starts, would keep this
# script's output open.
wine "$program" -o "$report,txt" </dev/null >"$name.output" 2>&1
status=$?
cat "$name.output"
tr -d '\r' <"$report"
[ $status -eq 0 ] || exit $status

tr -d '\r' <"$report" | sed -n "s/^SKIP *: [A-Za-z0-9]*::/$name: /p" | sort >"$report.skipped"
grep "^$name: " "$skipped" | sort | diff - "$report.skipped" ||
    { echo "Not as in $skipped" && exit 1; }
