# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# Functions for the bench scripts, which source this file.

now() { date +%s%N; }
seconds_since() {
    awk -v end="$(now)" -v start="$1" 'BEGIN { printf "%.3f", (end - start) / 1e9 }'
}

# median < FILE: prints the median of lines that contain one number each
median() {
    sort -n | awk '{ value[NR] = $1 }
        END { printf "%.10g\n", (value[int((NR + 1) / 2)] + value[int((NR + 2) / 2)]) / 2 }'
}

# median_of FILE [COLUMN]: prints the median of a column
median_of() { cut -d' ' -f"${2:-1}" "$1" | median; }

# divide A B [DIGITS]: prints the quotient
divide() { awk -v a="$1" -v b="$2" -v digits="${3:-2}" 'BEGIN { printf "%.*f", digits, a / b }'; }

# make_work: creates the folder $work, which is removed when the script ends in any way. Commands in $at_end are
# run then, too.
make_work() {
    work=$(mktemp -d "${TMPDIR:-/tmp}/kestrelpack-bench.XXXXXX")
    at_end=
    trap 'set +e; eval "$at_end"; rm -rf "$work"' EXIT
    trap 'exit 130' INT TERM
}

# require_space MEGABYTES: fails if the folder for temporary files has less free space
require_space() {
    free=$(df -Pm "$work" | awk 'NR == 2 { print $4 }')
    [ "$free" -ge "$1" ] ||
        fail "${TMPDIR:-/tmp} has only $free MB of free space; this needs $1 MB (set TMPDIR to use another folder)"
}

# These two also write to the folder $KESTRELPACK_BENCH for scripts/bench, if that variable is set.

# table NAME: shows standard input, and adds it to the table
table() {
    if [ -n "${KESTRELPACK_BENCH-}" ]; then tee -a "$KESTRELPACK_BENCH/$1"; else cat; fi
}

# result WHAT BESIDE OURS THEIRS RATIO: adds a line to the summary
result() {
    [ -z "${KESTRELPACK_BENCH-}" ] ||
        printf '| %s | %s | %s | %s | %s |\n' "$@" >>"$KESTRELPACK_BENCH/summary"
}

# make_folder FOLDER MEGABYTES PROGRAM: makes a folder with the program and with files of this machine
make_folder() {
    mkdir "$1"
    cp "$3" "$1/"
    find /usr/lib /usr/share -xdev -type f -size -20M -printf '%k %p\n' 2>/dev/null |
        LC_ALL=C sort -k 2 | awk -v wanted="$2" '
            { if (sum < wanted * 1024) print substr($0, index($0, " ") + 1); sum += $1 }' |
        tr '\n' '\0' | xargs -0 cp --parents -t "$1" 2>/dev/null || true
}

# make_nsis FOLDER PROGRAM FILE DICTIONARY-MEGABYTES [ICON]: makes an installer that unpacks the folder to a private
# place, runs the program and removes everything
make_nsis() {
    cat >"$work/script.nsi" <<END
Target amd64-unicode
SetCompressor /SOLID lzma
SetCompressorDictSize $4
Name bench
OutFile "$3"
${5:+Icon "$5"}
RequestExecutionLevel user
SilentInstall silent
Section
    InitPluginsDir
    SetOutPath "\$PLUGINSDIR\\app"
    File /r "$1/*"
    ExecWait '"\$PLUGINSDIR\\app\\$2"' \$0
    SetOutPath "\$TEMP"
    RMDir /r "\$PLUGINSDIR\\app"
    SetErrorLevel \$0
SectionEnd
END
    makensis -V2 "$work/script.nsi" >>"$log" 2>&1 || fail "makensis failed; see $log"
}
