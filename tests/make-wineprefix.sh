#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# Makes the tests' Wine prefix ($WINEPREFIX), unless it is there already.
set -eu
[ -e "$WINEPREFIX/.made" ] && exit 0
rm -rf "$WINEPREFIX"
mkdir -p "$WINEPREFIX"
unset DISPLAY
wine wineboot -i
wineserver=$(command -v wineserver || echo /usr/lib/wine/wineserver)
"$wineserver" -w
: >"$WINEPREFIX/.made"
