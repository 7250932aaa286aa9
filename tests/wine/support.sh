# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# Included by the scripts that start the programs as a Windows user would.

DISPLAY=$(cat "$KESTRELPACK_TEST_DISPLAY")
export DISPLAY

as_windows() { printf 'Z:%s' "${1//\//\\}"; }

# wine_with_temp FOLDER PROGRAM [ARGUMENT...]: runs PROGRAM with FOLDER as its temporary directory.
# Wine does not pass TMP on from outside.
wine_with_temp() {
    local folder
    folder=$(as_windows "$1")
    shift
    wine cmd /c set "TMP=$folder" '&&' set "TEMP=$folder" '&&' "$@"
}
