# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# Included by the scripts that test the CMake package from outside.
# shellcheck shell=bash

build=$1   # Kestrelpack's build folder
sources=$2 # Kestrelpack's sources
work=$(mktemp -d /tmp/cmake-package.XXXXXX)
trap 'rm -rf "$work"' EXIT
log=$work/log
# The projects are built as on a user's machine, with nothing of this build's settings.
unset CMAKE_C_COMPILER_LAUNCHER CMAKE_CXX_COMPILER_LAUNCHER CFLAGS CXXFLAGS LDFLAGS DESTDIR
unset CMAKE_GENERATOR CMAKE_PREFIX_PATH SOURCE_DATE_EPOCH

die() {
    echo "FAIL: $*"
    [ ! -e "$log" ] || { echo "--- the last command said:" && cat "$log"; }
    exit 1
}

# quietly WHAT COMMAND...: runs the command, which must succeed.
quietly() {
    local what=$1
    shift
    "$@" >"$log" 2>&1 </dev/null || die "$what ended with $?"
}

# says TEXT: what the last command wrote has the text. CMake breaks lines, so line ends count as blanks.
says() {
    tr -s '\r\n\t ' ' ' <"$log" | grep -qF -- "$1" || die "the message is missing: $1"
}

# install_package FOLDER: what an installation of the package looks like, at a place that the build does not know.
install_package() {
    quietly "installing the package" \
        cmake -D "CMAKE_INSTALL_PREFIX=$1" -P "$build/cmake/package/cmake_install.cmake"
    mkdir -p "$1/bin"
    cp "$build/bin/kestrelpack-cli" "$1/bin/"
}
