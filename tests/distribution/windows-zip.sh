#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# windows-zip.sh CPACK BUILD VERSION HELLO-FOLDER: `cpack -G ZIP` makes the zip file from a build for Windows. The names in
# it must be those of zipped-files.txt. The unpacked terminal program must pack the example under Wine, and the
# product must run.
set -euo pipefail
cpack=$1 build=$2 version=$3 hello=$4
here=$(cd "$(dirname "$0")" && pwd)
. "$here/../wine/support.sh"
command -v unzip >/dev/null || {
    echo 'skipped: unzip is not installed'
    exit 77
}
work=$(mktemp -d /tmp/windowszip.XXXXXX)
trap 'rm -rf "$work"' EXIT
trap 'exit 130' HUP INT TERM
name=Kestrelpack-$version-windows-x64

(cd "$build" && "$cpack" -G ZIP -B "$work/packages") >"$work/log" 2>&1 || {
    cat "$work/log" >&2
    exit 1
}
unzip -Z1 "$work/packages/$name.zip" | grep -v '/$' | LC_ALL=C sort >"$work/names"
sed "s|^|$name/|" "$here/zipped-files.txt" | diff -u - "$work/names"

mkdir "$work/place with blanks" "$work/temp"
unzip -q "$work/packages/$name.zip" -d "$work/place with blanks"
program=$(as_windows "$work/place with blanks/$name/kestrelpack-cli.exe")
wine "$program" --version </dev/null | tr -d '\r' | tee "$work/said"
grep -qF "$version" "$work/said"
wine_with_temp "$work/temp" "$program" --language en -q -o "$(as_windows "$work/out")" "$(as_windows "$hello")" </dev/null
status=0
wine "$(as_windows "$work/out/hello.exe")" --exit 42 one 'two three' </dev/null >"$work/greeting" || status=$?
cat "$work/greeting"
[ $status = 42 ] || {
    echo "The product ended with $status, not with 42" >&2
    exit 1
}
grep -q 'two three' "$work/greeting"
