#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# check-program.sh FILE LIMIT: checks a Windows program. It needs only Windows' own libraries (those
# in windows-dlls.txt), and delays no imports. It has no symbols. Its address in memory is random.
# It has at most LIMIT bytes.
set -eu
program=$1
limit=$2
failed=0
complain() {
    echo "$program: $*"
    failed=1
}

headers=$(x86_64-w64-mingw32-objdump -p "$program")
imports=$(echo "$headers" | sed -n 's/^[[:space:]]*DLL Name: //p' | tr '[:upper:]' '[:lower:]')
[ -n "$imports" ] || complain "no imports at all?"
for name in $imports; do
    grep -qx "$name" "$(dirname "$0")/windows-dlls.txt" || complain "imports $name"
done
# Entry d is the directory of delayed imports: its address and its size.
echo "$headers" | grep -Eq '^Entry d 0+ 0+ ' || complain "delays imports"
for flag in DYNAMIC_BASE NX_COMPAT HIGH_ENTROPY_VA; do
    echo "$headers" | grep -q "$flag" || complain "is without $flag"
done
x86_64-w64-mingw32-nm "$program" 2>&1 | grep -q 'no symbols' || complain "has symbols"

size=$(wc -c <"$program")
[ "$size" -le "$limit" ] || complain "has $size bytes, more than $limit"
echo "$program: $size bytes, $(echo "$imports" | wc -l) libraries"
exit $failed
