# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# Sourced by run.sh and test.sh, from the top folder: installs what is missing, configures and builds.

build_packages='ca-certificates cmake ninja-build make g++ qt6-base-dev libqt6svg6 fonts-noto-cjk dpkg-dev
    util-linux gcc-mingw-w64-x86-64-posix g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 llvm-19'
# A display without a screen, for programs that need more than Qt's offscreen platform.
display_packages='xvfb'
test_packages='wine wine64 icoutils python3-pefile python3-yaml nsis openssl osslsigncode
    zsh man-db groff-base desktop-file-utils appstream zip unzip'
# For the tests that are Windows programs: a window manager, real mouse and keyboard events, a Chinese locale.
windows_test_packages='openbox xdotool locales imagemagick'
# For the Debian packages and their checks.
distribution_packages='lintian desktop-file-utils appstream man-db groff-base zsh'
# For formatting and static checks. Other versions give other results.
check_packages='clang-format-14 clang-tidy-14'
# For the fuzzers and ThreadSanitizer.
clang_packages='clang-19 libclang-rt-19-dev'
# For the documents' pages.
page_packages='cmark-gfm'

fail() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

is_installed() {
    dpkg-query -W -f '${Status}' "$1" 2>/dev/null | grep -q ' installed$'
}

# require_packages PACKAGE...: installs those that are missing. The log is the file $log.
require_packages() {
    command -v dpkg-query >/dev/null 2>&1 ||
        fail "this is not a Debian system; install the equivalents of these packages, then configure and
build with cmake --preset release: $*"
    missing=
    for package in "$@"; do
        is_installed "$package" || missing="$missing $package"
    done
    [ -n "$missing" ] || return 0

    as_root=
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null 2>&1 || fail "these packages are missing:$missing"
        as_root=sudo
    fi
    echo "Installing:$missing"
    {
        $as_root apt-get update &&
            $as_root env DEBIAN_FRONTEND=noninteractive \
                apt-get install -y --no-install-recommends $missing
    } >>"$log" 2>&1 || fail "cannot install the packages; see $log"
}

# fix_addresses SCRIPT [ARGUMENT]...: starts the script once more, without address space randomization, which Wine
# cannot always stand (tests/wine/bin/wine). Does nothing in the second start, or if the system does not allow it.
fix_addresses() {
    if [ -z "${KESTRELPACK_FIXED_ADDRESSES-}" ] && setarch -R true 2>/dev/null; then
        export KESTRELPACK_FIXED_ADDRESSES=1
        exec setarch -R "$@"
    fi
}

# Uses ccache, so that object files of earlier builds in any checkout are used again. Its folder is in the cache.
share_objects() {
    require_packages ccache
    . scripts/cache.sh
    CCACHE_DIR=$cache/objects
    CCACHE_BASEDIR=$PWD
    CCACHE_NOHASHDIR=1
    CCACHE_MAXSIZE=2G
    CMAKE_C_COMPILER_LAUNCHER=ccache
    CMAKE_CXX_COMPILER_LAUNCHER=ccache
    export CCACHE_DIR CCACHE_BASEDIR CCACHE_NOHASHDIR CCACHE_MAXSIZE
    export CMAKE_C_COMPILER_LAUNCHER CMAKE_CXX_COMPILER_LAUNCHER
}

# Builds Qt for Windows into the cache, unless it is already there.
provide_qt_for_windows() {
    echo "Qt for Windows (a quarter of an hour, the first time; log: $log)"
    scripts/build-qt-windows "$log" >>"$log" || fail "cannot build Qt for Windows; see $log"
}

# configure_and_build PRESET
configure_and_build() {
    preset=$1
    echo "Building (log: $log)"
    cmake --preset "$preset" >>"$log" 2>&1 || fail "configuring failed; the end of $log:
$(tail -n 15 "$log")"
    cmake --build --preset "$preset" >>"$log" 2>&1 || fail "building failed; the end of $log:
$(tail -n 30 "$log")"
}
