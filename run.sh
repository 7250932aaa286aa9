#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# Builds Kestrelpack and starts it, from nothing on a fresh Debian machine.
#
#   ./run.sh                 with a display: opens the window
#                            without one: packs examples/hello into out/hello.exe
#   ./run.sh --window        opens the window
#   ./run.sh ARGUMENT...     the terminal program with these arguments
set -eu
caller_dir=$PWD
cd "$(dirname "$0")"
. scripts/setup.sh

mkdir -p build
log=$PWD/build/run.log
: >"$log"
require_packages $build_packages >&2
configure_and_build release >&2
top=$PWD
bin=$top/build/release/bin

# Helpers that an older build left in the temporary directory would be used as they are.
TMPDIR=$(mktemp -d)
export TMPDIR
trap 'rm -rf "$TMPDIR"' EXIT
trap 'exit 130' HUP INT TERM # Debian's sh clears up at no other end by a signal

open_window() {
    "$bin/kestrelpack" >>"$log" 2>&1 || fail "$(tail -n 1 "$log")"
}

pack_example() {
    "$bin/kestrelpack-cli" --output "$top/out" "$top/build/release/examples/hello/app" \
        >>"$log" 2>&1 || fail "packing the example failed; the end of $log:
$(tail -n 15 "$log")"
    echo "The example application is packed: out/hello.exe"
    echo "Try it, under Wine or on Windows:  wine out/hello.exe one \"two three\""
}

if [ "$*" = --window ]; then
    open_window
elif [ $# -gt 0 ]; then
    cd "$caller_dir"
    "$bin/kestrelpack-cli" "$@"
elif [ -n "${DISPLAY-}${WAYLAND_DISPLAY-}" ]; then
    open_window
else
    pack_example
fi
