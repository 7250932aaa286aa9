#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# planted-helper.sh WINDOWS-PROGRAM ARCHIVER HELLO-FOLDER: the terminal program for Windows finds an archiver in the
# temporary directory. It must not use it if it belongs to somebody else and others can write to the directory.
# Wine makes owners and access lists from the Unix ones: a file of another Unix user has an owner that is not the
# user, and a directory that all may write has an entry for everybody. Exits with 77 if it cannot give files away.
set -euo pipefail
windows=$1
archiver=$2
hello=$3
[ "$(id -u)" = 0 ] || { echo "only root can give files away" && exit 77; }
work=$(mktemp -d /tmp/planted.XXXXXX)
trap 'rm -rf "$work"' EXIT
. "$(dirname "$0")/support.sh"

# try WHAT DIRECTORY-MODE OWNER EXPECTED-STATUS
try() {
    local code=0
    rm -rf "$work/temp" "$work/out"
    mkdir "$work/temp" "$work/out"
    cp "$archiver" "$work/temp/7zr.exe"
    chmod 755 "$work/temp/7zr.exe"
    chown "$3" "$work/temp/7zr.exe"
    chmod "$2" "$work/temp"
    wine_with_temp "$work/temp" "$(as_windows "$windows")" -o "$(as_windows "$work/out")" \
        "$(as_windows "$hello")" </dev/null >"$work/log" 2>&1 || code=$?
    if [ "$code" != "$4" ] || { [ "$4" != 0 ] && [ -n "$(ls -A "$work/out")" ]; }; then
        cat "$work/log"
        echo "FAIL: $1: ended with $code, and the output directory has: $(ls -A "$work/out")"
        exit 1
    fi
    echo "ok: $1"
}

try "the user's own, where others may write" 1777 root 0
try "another user's, where only the user may write" 755 nobody 0
try "another user's, where others may write" 1777 nobody 1
grep -q '7zr.exe' "$work/log"
