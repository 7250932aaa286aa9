#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# check-document.sh DOCUMENT ROWS TESTS: checks that the tables of docs/reliability.md match the
# last results of the suites. ROWS is the folder with their rows, TESTS the folder with the sources.
# If a table should change, apply the printed difference:
#
#   tests/faults/check-document.sh docs/reliability.md build/dev/tests/faults/rows tests |
#       patch docs/reliability.md
set -eu
document=$1
rows=$2
tests=$3
made=$rows/reliability.md

# Writes each table again from the rows. If a row could not run here, the document's own line stays.
awk -v rows="$rows" '
    NR == FNR { if ($0 ~ /^\| /) { split($0, cells, " \\| "); own[cells[1]] = $0 } next }
    /^<!-- rows of / {
        print
        file = rows "/" $4 ".rows"
        print "\n| What goes wrong | The job | The log | In the output directory | In the temporary directory |"
        print "| --- | --- | --- | --- | --- |"
        while ((getline line < file) > 0) {
            if (line ~ /^skipped: /) { line = own["| " substr(line, 10)] }
            print line
        }
        skipping = 1
        next
    }
    skipping && !/^$/ && !/^\| / { skipping = 0; print "" }
    !skipping { print }
' "$document" "$document" >"$made"
diff -u "$document" "$made"

# Rows in other suites: `tst_subject`: `function()` or `function(row)`.
status=0
sed -n 's/.*| `\(tst_[a-z_]*\)`: `\(.*\)` |$/\1 \2/p' "$document" >"$rows/elsewhere"
while read -r suite row; do
    source=$(find "$tests" -name "$suite.cpp")
    function=${row%%(*}
    tag=${row#*(}
    tag=${tag%)}
    if ! grep -q "void $function()" "$source" || { [ -n "$tag" ] && ! grep -qF "\"$tag\"" "$source"; }; then
        echo "no such row: $suite: $row"
        status=1
    fi
done <"$rows/elsewhere"
[ -s "$rows/elsewhere" ] || { echo "no rows elsewhere were found" && exit 1; }

# Every suite needs a table.
for suite in "$tests"/faults/tst_faults_*.cpp; do
    name=$(basename "$suite" .cpp)
    grep -q "^<!-- rows of $name -->" "$document" || { echo "no table of $name" && status=1; }
done
exit $status
