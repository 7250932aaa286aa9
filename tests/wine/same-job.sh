#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# same-job.sh NATIVE-PROGRAM WINDOWS-PROGRAM HELLO-FOLDER ICON: the terminal programs for Linux and
# for Windows do the same job. Both results have the same module with the same icon, the same block,
# and archives with the same content. NATIVE-PROGRAM lies in a build folder; the archiver of that
# build reads the archives.
set -euo pipefail
native=$1
windows=$2
hello=$3
icon=$4
[ -x "$native" ] || {
    echo "Skipped: there is no $native; the preset dev builds it."
    exit 77
}
archiver=$(dirname "$native")/../helpers/archiver/native/7zr
work=$(mktemp -d /tmp/samejob.XXXXXX)
trap 'chmod -R u+w "$work"; rm -rf "$work"' EXIT
source="$work/我的 应用 🦅"
mkdir -p "$source/深/a b/empty folder" "$work/linux" "$work/windows" "$work/temp"
. "$(dirname "$0")/support.sh"

cp "$hello"/* "$source"
mv "$source/hello.exe" "$source/主 程序.exe"
printf 'setup' >"$source/setup.bat"
: >"$source/深/empty"
head -c 3000000 "$windows" >"$source/深/a b/emoji 🎉.bin"
printf 'read only' >"$source/read only.txt"
chmod a-w "$source/read only.txt"

options=(-q -l maximum -c lzma2)
TMPDIR=$work/temp "$native" "${options[@]}" -i "$icon" -o "$work/linux" "$source"
mkdir "$work/wintemp"
wine_with_temp "$work/wintemp" "$(as_windows "$windows")" "${options[@]}" -i "$(as_windows "$icon")" \
    -o "$(as_windows "$work/windows")" "$(as_windows "$source")" </dev/null >"$work/log" 2>&1 ||
    { cat "$work/log" && exit 1; }

# The archive's signature follows the block.
archive_offset() {
    local block
    block=$(grep -abo ';!@InstallEnd@!' "$1" | tail -n 1)
    echo $((${block%%:*} + 16))
}
for system in linux windows; do
    product="$work/$system/主 程序.exe"
    offset=$(archive_offset "$product")
    [ "$(tail -c +$((offset + 1)) "$product" | head -c 2)" = 7z ]
    head -c "$offset" "$product" >"$work/$system.front"
    tail -c +$((offset + 1)) "$product" >"$work/$system.7z"
    "$archiver" x -bso0 -bsp0 -o"$work/$system.tree" "$work/$system.7z"
    (cd "$work/$system.tree" && find . -printf '%P %y %s %T+\n' | sed 's/ \(d\) .*/ \1/' | sort) >"$work/$system.list"
done
cmp "$work/linux.front" "$work/windows.front"
diff -r "$work/linux.tree" "$work/windows.tree"
diff -r "$source" "$work/windows.tree"
diff "$work/linux.list" "$work/windows.list"
echo "Module, icon and block: $(wc -c <"$work/windows.front") bytes, the same; archives of" \
    "$(wc -c <"$work/linux.7z") and $(wc -c <"$work/windows.7z") bytes with the same content"
