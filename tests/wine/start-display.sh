#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# Starts an X server without a screen, with a window manager, and writes its name (":7") to the file
# $KESTRELPACK_TEST_DISPLAY. Without a window manager, Wine waits two seconds for each window that
# disappears.
set -eu
"$(dirname "$0")/stop-display.sh"
rm -f "$KESTRELPACK_TEST_DISPLAY" "$KESTRELPACK_TEST_DISPLAY.number"

mkfifo "$KESTRELPACK_TEST_DISPLAY.number"
setsid Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp \
    3<>"$KESTRELPACK_TEST_DISPLAY.number" >/dev/null 2>&1 </dev/null &
echo $! >"$KESTRELPACK_TEST_DISPLAY.pid"
read -r number <"$KESTRELPACK_TEST_DISPLAY.number"
rm "$KESTRELPACK_TEST_DISPLAY.number"

DISPLAY=:$number setsid openbox --sm-disable >/dev/null 2>&1 </dev/null &
echo ":$number" >"$KESTRELPACK_TEST_DISPLAY"
