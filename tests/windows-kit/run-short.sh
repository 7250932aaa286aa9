#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# run-short.sh WINDOWS-KIT.EXE: runs the short rows of the kit under Wine and shows the report. No row may fail,
# and most must have been judged.
set -eu
program=$1
report=$(dirname "$program")/report.txt
DISPLAY=$(cat "$KESTRELPACK_TEST_DISPLAY")
export DISPLAY

rm -f "$report"
status=0
wine "$program" --quick --report "Z:$(echo "$report" | tr / '\\')" </dev/null >"$report.output" 2>&1 || status=$?
tr -d '\r' <"$report"
[ $status -eq 0 ] || exit $status
passed=$(tr -d '\r' <"$report" | grep -c '^PASS ')
[ "$passed" -ge 15 ] || {
    echo "Only $passed rows passed"
    exit 1
}
