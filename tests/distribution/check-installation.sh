#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# check-installation.sh CMAKE BUILD: installs a build into an empty folder, and compares the names with
# installed-files.txt. Then the installed terminal program must start, without a display.
set -eu
list=$(cd "$(dirname "$0")" && pwd)/installed-files.txt
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'exit 130' HUP INT TERM
for component in terminal window development; do
    "$1" --install "$2" --prefix "$work/usr" --component $component >"$work/log" 2>&1 || {
        cat "$work/log" >&2
        exit 1
    }
done
(cd "$work/usr" && find . ! -type d | sed 's|^\./||' | LC_ALL=C sort) >"$work/names"
diff -u "$list" "$work/names"
unset DISPLAY WAYLAND_DISPLAY
"$work/usr/bin/kestrelpack-cli" --version
