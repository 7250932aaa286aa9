#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# Ends the X server that start-display.sh has started. The window manager ends with it.
set -eu
pidfile=$KESTRELPACK_TEST_DISPLAY.pid
[ -e "$pidfile" ] || exit 0
pid=$(cat "$pidfile")
if [ "$(cat "/proc/$pid/comm" 2>/dev/null)" = Xvfb ]; then
    kill "$pid"
fi
rm -f "$pidfile" "$KESTRELPACK_TEST_DISPLAY"
