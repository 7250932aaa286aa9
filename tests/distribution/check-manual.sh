#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# check-manual.sh PAGE...: fails if man has a warning about a manual page, or shows nothing of it.
set -eu
if ! command -v man >/dev/null || ! command -v groff >/dev/null; then
    echo 'skipped: man-db or groff-base is not installed'
    exit 77
fi
for page in "$@"; do
    warnings=$(MANWIDTH=80 LC_ALL=C.UTF-8 man --warnings -E UTF-8 -l "$page" 2>&1 >/dev/null)
    [ -z "$warnings" ] || {
        echo "$page: $warnings" >&2
        exit 1
    }
    MANWIDTH=80 LC_ALL=C.UTF-8 man -E UTF-8 -l "$page" 2>/dev/null | grep -q '^NAME' || {
        echo "$page: man shows nothing of it" >&2
        exit 1
    }
done
