#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# Builds Kestrelpack and runs its tests, from nothing on a fresh Debian machine.
#
#   ./test.sh            every test
#   ./test.sh --native   without the tests that run Windows programs under Wine
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
configure_and_build dev
# The preset makes a run without tests an error.
ctest --preset dev $selection
