#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# planted-helper.sh WINDOWS-PROGRAM HELLO-FOLDER ICON: the terminal program for Windows finds other helpers under
# their names in the temporary directory. It never uses them: neither the owner of a helper nor the rights of the
# directory matter. It makes the same file as without them. Exits with 77 if it cannot give files away.
set -euo pipefail
windows=$1
hello=$2
icon=$3
[ "$(id -u)" = 0 ] || { echo "only root can give files away" && exit 77; }
work=$(mktemp -d /tmp/planted.XXXXXX)
trap 'rm -rf "$work"' EXIT
. "$(dirname "$0")/support.sh"

pack() { # OUTPUT
    wine_with_temp "$work/temp" "$(as_windows "$windows")" -q -i "$(as_windows "$icon")" \
        -o "$(as_windows "$1")" "$(as_windows "$hello")" </dev/null >"$work/log" 2>&1 || {
        cat "$work/log"
        echo "FAIL: packing ended with an error"
        exit 1
    }
}

# try WHAT DIRECTORY-MODE OWNER
try() {
    rm -rf "$work/temp" "$work/out"
    mkdir "$work/temp"
    for helper in 7zr.exe 7zS2.sfx ResourceHacker.exe; do
        head -c 5000 /dev/urandom >"$work/temp/$helper"
        chmod 755 "$work/temp/$helper"
        chown "$3" "$work/temp/$helper"
    done
    chmod "$2" "$work/temp"
    pack "$work/out"
    cmp "$work/clean/hello.exe" "$work/out/hello.exe" || { echo "FAIL: $1: another product" && exit 1; }
    [ "$(ls -A "$work/temp" | wc -l)" = 3 ] || { ls -A "$work/temp" && echo "FAIL: $1: files stayed" && exit 1; }
    echo "ok: $1"
}

mkdir "$work/temp"
pack "$work/clean"
[ -z "$(ls -A "$work/temp")" ] || { ls -A "$work/temp" && echo "FAIL: files stayed" && exit 1; }
try "the user's own, where only the user may write" 755 root
try "the user's own, where others may write" 1777 root
try "another user's, where others may write" 1777 nobody
