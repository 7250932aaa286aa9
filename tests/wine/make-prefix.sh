#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# Makes the tests' Wine prefix ($WINEPREFIX), if it does not exist. If $LOCPATH is set, it first
# makes the locale $LC_ALL there, so that Wine acts as a Windows in that language.
set -eu
if [ -n "${LOCPATH-}" ] && [ ! -d "$LOCPATH/$LC_ALL" ]; then
    mkdir -p "$LOCPATH"
    localedef -i "${LC_ALL%.*}" -f "${LC_ALL#*.}" "$LOCPATH/$LC_ALL"
fi
[ -e "$WINEPREFIX/.made" ] && exit 0
rm -rf "$WINEPREFIX"
mkdir -p "$WINEPREFIX"
unset DISPLAY
wine wineboot -i
wineserver=$(command -v wineserver || echo /usr/lib/wine/wineserver)
"$wineserver" -w
: >"$WINEPREFIX/.made"
