#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# progress-window.sh NATIVE-PROGRAM HELLO-FOLDER PICTURES: a produced file without a console that
# unpacks slowly shows a window with its title. Cancel leaves no files and starts no program. A small file
# shows no window.
set -euo pipefail
native=$1
hello=$2
pictures=$3
. "$(dirname "$0")/support.sh"
[ -x "$native" ] || {
    echo "Skipped: there is no $native; the preset dev builds it."
    exit 77
}
work=$(mktemp -d /tmp/progress.XXXXXX)
trap 'rm -rf "$work"' EXIT
mkdir -p "$pictures" "$work/large" "$work/small" "$work/temp"
cp "$hello"/* "$work/large"
cp "$hello"/* "$work/small"
head -c 90000000 /dev/urandom | base64 >"$work/large/much.txt"
for size in large small; do
    "$native" -q --console no -l fastest -o "$work/$size.out" "$work/$size" 2>/dev/null
done

fail() {
    echo "FAIL: $*"
    exit 1
}
is_shown() { [ -n "$(xdotool search --onlyvisible --name '^hello Portable$')" ]; }
leftovers() { ls -d "$work"/temp/kp-* 2>/dev/null || true; }

# start SIZE: runs in the background. Its exit code goes to the file "code", its output to "said".
start() {
    (
        code=0
        wine_with_temp "$work/temp" "$(as_windows "$work/$1.out/hello.exe")" --exit 42 </dev/null \
            >"$work/said" 2>&1 || code=$?
        echo $code >"$work/code"
    ) &
}
# Succeeds if the window appears before the program ends.
appears() {
    while kill -0 $! 2>/dev/null; do
        if is_shown; then return 0; fi
        sleep 0.02
    done
    return 1
}

start large
appears || fail "no window"
sleep 0.3
import -window root "$pictures/progress.png"
convert "$pictures/progress.png" -format %c histogram:info: | grep -q '#00B688' || fail "no green bar"
wait $!
[ "$(cat "$work/code")" = 42 ] || fail "the program ended with $(cat "$work/code")"
! is_shown || fail "the window stays"

start large
appears || fail "no window the second time"
sleep 0.2
xdotool key Escape
wait $!
[ "$(cat "$work/code")" = 211 ] || fail "cancelled, it ended with $(cat "$work/code")"
! grep -q Hello "$work/said" || fail "cancelled, it started the program"

start small
! appears || fail "a window for a small file"
wait $!
[ "$(cat "$work/code")" = 42 ] || fail "the small one ended with $(cat "$work/code")"
[ -z "$(leftovers)" ] || fail "left behind: $(leftovers)"
echo "ok"
