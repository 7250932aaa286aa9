#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# awkward-paths.sh WINDOWS-PROGRAM HELLO-FOLDER: the terminal program for Windows packs from and to
# paths that often cause problems on Windows. Then the product runs.
set -euo pipefail
windows=$1
hello=$2
work=$(mktemp -d /tmp/awkward.XXXXXX)
drive=$WINEPREFIX/dosdevices/k:
trap 'rm -rf "$work" "$drive"' EXIT
. "$(dirname "$0")/support.sh"

# try WHAT SOURCE OUTPUT OUTPUT-AS-WINDOWS TEMPORARY
try() {
    local code=0 said
    mkdir -p "$2" "$3" "$5"
    cp "$hello"/* "$2"
    wine_with_temp "$5" "$(as_windows "$windows")" --language en -o "$4" "$(as_windows "$2")" \
        </dev/null >"$work/log" 2>&1 || { cat "$work/log" && echo "FAIL: $1: packing" && exit 1; }
    grep -qF "Running: $(as_windows "$5")" <(tr '/' '\\' <"$work/log") ||
        { cat "$work/log" && echo "FAIL: $1: the temporary directory was not used" && exit 1; }
    [ -z "$(ls -A "$5")" ] || { ls -A "$5" && echo "FAIL: $1: packing left files" && exit 1; }
    said=$(wine_with_temp "$5" "$(as_windows "$3/hello.exe")" "two words" --exit 42 </dev/null 2>&1) ||
        code=$?
    if [ "$code" != 42 ] || ! grep -q 'Argument 1: two words' <<<"$said" ||
        ! grep -aq 'Folder: Z:' <<<"$said"; then # the product was unpacked there, not on C:
        echo "FAIL: $1: the product ended with $code: $said"
        exit 1
    fi
    [ -z "$(ls -d "$5"/kp-* 2>/dev/null)" ] || { echo "FAIL: $1: the product left its folder" && exit 1; }
    echo "ok: $1"
}

part=很长的文件夹名字用来超过系统的路径长度限制
deep=$work/$part/$part/$part/$part/$part/$part/$part/$part/$part/$part/$part/$part
[ ${#deep} -gt 260 ]
ln -s "$work/drive" "$drive"

try "blanks, Chinese and emoji" "$work/我的 应用 🦅" "$work/输出 目录 🦅" \
    "$(as_windows "$work/输出 目录 🦅")" "$work/t1"
try "a source path of ${#deep} characters" "$deep" "$work/o2" "$(as_windows "$work/o2")" "$work/t2"
try "an output directory on another drive" "$work/s3" "$work/drive/新 文件夹" 'K:\新 文件夹' "$work/t3"
try "a temporary directory in Chinese and emoji" "$work/s4" "$work/o4" "$(as_windows "$work/o4")" \
    "$work/临时 文件 🦅"
