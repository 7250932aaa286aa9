#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# Builds Kestrelpack and runs its tests, from nothing on a fresh Debian machine.
set -eu
cd "$(dirname "$0")"
. scripts/setup.sh

usage() {
    cat <<'END'
Usage: ./test.sh [--native | --all]
Installs what is missing, builds, and runs the tests. It stops at the first stage that fails.

  (no option)   the native tests, then the Windows programs under Wine
  --native      the native tests that start no Windows program; the command for every day
  --all         also the sanitizers, the fuzzers, formatting and clang-tidy

Logs of the builds are in build/test.log.
END
}

case "${1-}" in
    '') stages='native windows' ;;
    --native) stages=quick ;;
    --all) stages='form native windows asan tsan fuzz tidy' ;;
    -h | --help)
        usage
        exit
        ;;
    *) fail "no such option: $1 (see ./test.sh --help)" ;;
esac
[ $# -le 1 ] || fail "one option at most (see ./test.sh --help)"

# What a stage is, its usual minutes on two cores, and those from nothing.
describe() {
    case $1 in
        quick) echo '2|7|native programs: build, tests that start no Windows program' ;;
        form) echo '1|1|formatting, and which folder includes which' ;;
        native) echo '3|8|native programs: build, all their tests' ;;
        windows) echo '5|24|Windows programs: Qt for Windows (once), build, tests under Wine' ;;
        asan) echo '3|9|AddressSanitizer and UndefinedBehaviorSanitizer: build, native tests' ;;
        tsan) echo '2|5|ThreadSanitizer: build, tests with threads' ;;
        fuzz) echo '1|2|fuzzers: build, a few seconds each' ;;
        tidy) echo '1|14|clang-tidy over every source' ;;
    esac
}

stage_form() {
    scripts/check-form
    scripts/check-arrows
}
stage_quick() {
    configure_and_build dev
    ctest --preset native
}
stage_native() {
    configure_and_build dev
    ctest --preset dev
}
stage_windows() {
    require_packages $display_packages $windows_test_packages
    provide_qt_for_windows
    configure_and_build windows
    ctest --preset windows
}
stage_asan() {
    configure_and_build asan
    ctest --preset asan
}
stage_tsan() {
    require_packages $clang_packages
    configure_and_build tsan
    ctest --preset tsan
}
stage_fuzz() {
    require_packages $clang_packages
    configure_and_build fuzz
    ctest --preset fuzz
}
stage_tidy() {
    scripts/tidy
}

duration_since() {
    seconds=$(($(date +%s) - $1))
    echo "$((seconds / 60)) min $((seconds % 60)) s"
}

echo "Stages, with their usual minutes (in brackets: from nothing):"
for stage in $stages; do
    describe "$stage" | {
        IFS='|' read -r usual cold text
        printf '  %-8s %2s (%2s)  %s\n' "$stage" "$usual" "$cold" "$text"
    }
done

mkdir -p build
log=$PWD/build/test.log
: >"$log"
require_packages $build_packages $test_packages $page_packages
share_objects
begin=$(date +%s)
summary=
for stage in $stages; do
    echo
    echo "== $stage"
    start=$(date +%s)
    # In a subshell, "set -e" ends the stage at the first command that fails; where a status is asked for
    # (if, ||), it would not.
    set +e
    (
        set -e
        stage_"$stage"
    )
    status=$?
    set -e
    line=$(printf '%-8s %s' "$stage" "$(duration_since "$start")")
    echo "== $line"
    [ $status -eq 0 ] || fail "the stage $stage failed after $(duration_since "$start")"
    summary="$summary  $line
"
done
echo
printf 'All stages passed in %s:\n%s' "$(duration_since "$begin")" "$summary"
