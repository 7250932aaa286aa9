#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# Builds Kestrelpack and runs its tests, from nothing on a fresh Debian machine: the native ones, the same
# ones under sanitizers, the fuzzers for a minute or less each, then those that are Windows programs themselves,
# under Wine. The first run builds Qt for Windows, which takes a quarter of an hour.
#
#   ./test.sh            every test
#   ./test.sh --native   only native programs, and without the tests that start Windows programs
set -eu
cd "$(dirname "$0")"
. scripts/setup.sh

selection=
case "${1-}" in
'') ;;
--native) selection='--label-exclude wine' ;;
*) fail "no such option: $1 (there is: --native)" ;;
esac

mkdir -p build
log=$PWD/build/test.log
: >"$log"
require_packages $build_packages $test_packages
share_objects
configure_and_build dev
# The presets make a run without tests an error.
status=0
ctest --preset dev $selection || status=1
# With clang-format-14 and clang-tidy-14 installed; it says what it leaves out.
scripts/check || status=1
require_packages $clang_packages
for checks in asan tsan fuzz; do
    configure_and_build $checks
    ctest --preset $checks || status=1
done
[ -z "$selection" ] || exit $status

require_packages $display_packages $windows_test_packages
provide_qt_for_windows
configure_and_build windows -DKESTRELPACK_BUILD_TESTS=ON
ctest --preset windows || status=1
scripts/check --windows || status=1
exit $status
