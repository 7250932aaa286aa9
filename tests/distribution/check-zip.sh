#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# check-zip.sh SCRIPT: two folders with equal files, made one after the other, must give equal zip files.
set -eu
command -v zip >/dev/null || {
    echo 'skipped: zip is not installed'
    exit 77
}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'exit 130' HUP INT TERM
make_folder() {
    mkdir -p "$1/Name/licences"
    echo text >"$1/Name/$2"
    echo text >"$1/Name/$3"
    echo text >"$1/Name/licences/A part (with blanks).txt"
}
make_folder "$work/1" b.txt a.txt
"$1" "$work/1/Name" "$work/1.zip"
sleep 2 # zip files count in steps of two seconds
umask 077
make_folder "$work/another" a.txt b.txt
"$1" "$work/another/Name" "$work/2.zip"
cmp "$work/1.zip" "$work/2.zip"
unzip -Z1 "$work/1.zip" >"$work/names"
printf '%s\n' Name/a.txt Name/b.txt 'Name/licences/A part (with blanks).txt' | diff - "$work/names"
