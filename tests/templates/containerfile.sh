#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# containerfile.sh CONTAINERFILE: its instructions are known ones, its shell lines are right, and its layers keep no
# lists of packages. scripts/try-container runs the lines; that needs root.
set -euo pipefail
fail() {
    echo "FAIL: $*"
    exit 1
}
count=0
while read -r instruction rest; do
    count=$((count + 1))
    case $instruction in
        FROM) [ $count = 1 ] || fail 'FROM is not the first instruction' ;;
        COPY | WORKDIR) ;;
        RUN)
            sh -n -c "$rest" || fail "the shell cannot read: $rest"
            if [[ $rest == *'apt-get install'* ]]; then
                [[ $rest == *'apt-get update'*'install -y --no-install-recommends'*'rm -rf'*/var/lib/apt/lists/* ]] ||
                    fail "the lists of packages are not new, or stay: $rest"
            fi
            ;;
        *) fail "unknown instruction $instruction" ;;
    esac
    echo "ok: $instruction $rest"
done < <(sed -e '/^#/d' -e '/^$/d' "$1" | sed -e ':a' -e '/\\$/N; s/\\\n */ /; ta')
[ $count -gt 3 ] || fail "only $count instructions"
