#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# with-tool.sh COMMAND ARGUMENT...: runs the command. If the program is not installed, the test counts as skipped.
if ! command -v "$1" >/dev/null; then
    echo "skipped: $1 is not installed"
    exit 77
fi
exec "$@"
