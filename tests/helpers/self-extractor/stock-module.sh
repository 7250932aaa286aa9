#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# stock-module.sh FOLDER SEVENZIP-SOURCES ARCHIVER RESOURCE-EDITOR: builds 7-Zip's own small module as
# FOLDER/7zS2.sfx, configures this project with it in place of ours, and looks whether it comes into the
# bundle. Our other helpers are named as well, so that nothing is built but the bundle's source.
set -eu
project=$(realpath "$(dirname "$0")/../../..")
module=$1/7zS2.sfx
build=$1/build

[ "$module" -nt "$project/scripts/build-stock-modules" ] ||
    "$project/scripts/build-stock-modules" --small "$1" "$2"
cmake -S "$project" -B "$build" -G Ninja -DKESTRELPACK_BUILD_TESTS=OFF \
    "-DKESTRELPACK_SFX_MODULE=$module" "-DKESTRELPACK_ARCHIVER=$3" \
    "-DKESTRELPACK_RESOURCE_EDITOR=$4" >"$1/log" 2>&1 || { tail -n 20 "$1/log"; exit 1; }
cmake --build "$build" --target resources/qrc_kestrelpack.cpp >>"$1/log" 2>&1 ||
    { tail -n 20 "$1/log"; exit 1; }
cmp "$module" "$build/resources/resources/7zS2.sfx"
if [ -e "$build/helpers/self-extractor/module" ]; then
    echo 'our module was built although another one was named'
    exit 1
fi
