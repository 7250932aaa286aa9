# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# Sourced by the bench scripts.

now() { date +%s%N; }
seconds_since() {
    awk -v end="$(now)" -v start="$1" 'BEGIN { printf "%.3f", (end - start) / 1e9 }'
}

# median < FILE: of lines, each a number
median() {
    sort -n | awk '{ value[NR] = $1 }
        END { printf "%.10g\n", (value[int((NR + 1) / 2)] + value[int((NR + 2) / 2)]) / 2 }'
}

# The middle of a column of a file: median_of FILE [COLUMN]
median_of() { cut -d' ' -f"${2:-1}" "$1" | median; }

# divide A B [DIGITS]
divide() { awk -v a="$1" -v b="$2" -v digits="${3:-2}" 'BEGIN { printf "%.*f", digits, a / b }'; }

# make_work: $work becomes a folder that goes when the script ends, however it does. What else is to
# be done then goes into $at_end.
make_work() {
    work=$(mktemp -d "${TMPDIR:-/tmp}/kestrelpack-bench.XXXXXX")
    at_end=
    trap 'set +e; eval "$at_end"; rm -rf "$work"' EXIT
    trap 'exit 130' INT TERM
}

# require_space MEGABYTES: where temporary files go
require_space() {
    free=$(df -Pm "$work" | awk 'NR == 2 { print $4 }')
    [ "$free" -ge "$1" ] ||
        fail "${TMPDIR:-/tmp} has $free MB free; this takes $1 MB (TMPDIR names another)"
}

# What scripts/bench collects, in the folder $KESTRELPACK_BENCH, if there is one.

# table NAME: standard input, which is shown as well
table() {
    if [ -n "${KESTRELPACK_BENCH-}" ]; then tee -a "$KESTRELPACK_BENCH/$1"; else cat; fi
}

# result WHAT BESIDE OURS THEIRS RATIO: a line of the table of all
result() {
    [ -z "${KESTRELPACK_BENCH-}" ] ||
        printf '| %s | %s | %s | %s | %s |\n' "$@" >>"$KESTRELPACK_BENCH/summary"
}

# make_folder FOLDER MEGABYTES PROGRAM: the program, and files that this machine has anyway.
make_folder() {
    mkdir "$1"
    cp "$3" "$1/"
    find /usr/lib /usr/share -xdev -type f -size -20M -printf '%k %p\n' 2>/dev/null |
        LC_ALL=C sort -k 2 | awk -v wanted="$2" '
            { if (sum < wanted * 1024) print substr($0, index($0, " ") + 1); sum += $1 }' |
        tr '\n' '\0' | xargs -0 cp --parents -t "$1" 2>/dev/null || true
}
