#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# Ends what start-display.sh has started; the window manager ends with its X server.
set -eu
pidfile=$KESTRELPACK_TEST_DISPLAY.pid
[ -e "$pidfile" ] || exit 0
pid=$(cat "$pidfile")
if [ "$(cat "/proc/$pid/comm" 2>/dev/null)" = Xvfb ]; then
    kill "$pid"
fi
rm -f "$pidfile" "$KESTRELPACK_TEST_DISPLAY"
