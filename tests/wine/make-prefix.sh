#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# Makes the tests' Wine prefix ($WINEPREFIX), unless it is there already. Where $LOCPATH is set, it gets
# the locale $LC_ALL first, so that Wine is a Windows of that language.
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
