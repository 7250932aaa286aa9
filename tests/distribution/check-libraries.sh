#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# check-libraries.sh PROGRAM: fails if the program loads, directly or through another library, a library that shows
# something on a display.
set -eu
libraries=$(ldd "$1")
echo "$libraries" | grep -q libQt6Core || {
    echo "ldd does not show Qt at all: $libraries" >&2
    exit 1
}
unwanted=$(echo "$libraries" | grep -E 'Qt6Gui|Qt6Widgets|libX11|libxcb|libEGL|libGL|libfontconfig|libfreetype|wayland' || true)
[ -z "$unwanted" ] || {
    printf '%s needs libraries of a display:\n%s\n' "$1" "$unwanted" >&2
    exit 1
}
