#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# same-archive.sh BUILD-ARCHIVER ARCHIVER LLVM-ML [SOURCES]: the archives of 7zr with the match finder in assembler
# are equal, byte for byte, to those of a 7zr with the match finder in C, which BUILD-ARCHIVER builds (once: it
# keeps it). Skipped where ARCHIVER has the match finder in C.
set -euo pipefail
build=$1
archiver=$2
assembler=$3
sources=("${@:4}")
work=$(mktemp -d /tmp/samearchive.XXXXXX)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "same-archive.sh: $*" >&2
    exit 1
}

# build_with LLVM-ML FILE WORDS: builds the file, which says the words about its match finder
build_with() {
    LLVM_ML=$1 "$build" native "$2" "${sources[@]}" | tee "$work/said"
    grep -qF "match finder in $3" "$work/said" || fail "not said: match finder in $3"
}
[ "$(uname -m)" = x86_64 ] || {
    echo "Skipped: this is not x86-64."
    exit 77
}
build_with '' "$work/in-c" 'C, because llvm-ml (package llvm-19) is missing'
[ -n "$assembler" ] || {
    echo "Skipped: there is no llvm-ml."
    exit 77
}
build_with "$assembler" "$work/in-assembler" assembler
cmp "$archiver" "$work/in-assembler" || fail "$archiver is built in another way"
! cmp -s "$work/in-c" "$work/in-assembler" || fail "both programs are the same"
build_with /bin/false "$work/with-another" 'C, because /bin/false cannot assemble the other one'
cmp "$work/in-c" "$work/with-another"

# Programs, a text, long runs, short and long periods, a repeated file, and bytes without order.
mkdir "$work/input"
cd "$work/input"
cp "$archiver" program
seq 1 200000 >numbers
head -c 3000000 /dev/zero >zeros
{ yes abc || true; } | head -c 1000000 >period
for _ in 1 2 3 4 5 6; do cat program; done >repeated
gzip -n9 <program >random
{ cat random; head -c 5000000 numbers; cat random zeros random; } >mixture

# Only the match finder with a tree and with threads has the function. A dictionary that is smaller than the data
# shows what it does at the end of its cyclic buffer.
while read -ra options; do
    for name in in-c in-assembler; do
        "$work/$name" a -t7z -bso0 -bsp0 -mmt=2 "${options[@]}" "$work/$name.7z" . </dev/null
    done
    cmp "$work/in-c.7z" "$work/in-assembler.7z" || fail "different archives with: ${options[*]}"
    echo "$(stat -c %s "$work/in-c.7z") bytes are the same: ${options[*]}"
    rm "$work"/*.7z
done <<'END'
-mx=1 -m0=LZMA
-mx=3 -m0=LZMA2
-mx=5 -m0=LZMA
-mx=5 -m0=LZMA2
-mx=7 -m0=LZMA
-mx=9 -m0=LZMA2
-mx=9 -m0=LZMA:d=64k
-mx=5 -m0=LZMA2:d=1m
-mx=9 -m0=LZMA:d=5000000b:fb=273
-mx=9 -m0=LZMA:d=300k:mf=bt2
-mx=9 -m0=LZMA:d=4m:mf=bt3:mc=1
-mx=9 -m0=LZMA:d=700k:mf=bt5:mc=1000
END
"$work/in-assembler" a -t7z -bso0 -bsp0 -mmt=2 -mx=9 "$work/whole.7z" . </dev/null
"$work/in-c" t -bso0 -bsp0 "$work/whole.7z"
