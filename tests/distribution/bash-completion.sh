#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# bash-completion.sh FILE: tries the completions of kestrelpack-cli in FILE, as bash calls them.
set -u
. "$1" || exit 1
complete -p kestrelpack-cli | grep -q -- "-F _kestrelpack_cli" || exit 1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
mkdir 'my application' other
touch 'my icon.ico' setup.ini
failures=0

# expect ANSWERS WORD...: the last word is completed. The answers are sorted, one in a line.
expect() {
    local expected=$1 answers
    shift
    COMP_WORDS=(kestrelpack-cli "$@")
    COMP_CWORD=$#
    COMPREPLY=()
    _kestrelpack_cli
    answers=$(printf '%s\n' "${COMPREPLY[@]}" | LC_ALL=C sort)
    [ "$answers" = "$expected" ] || {
        printf '%s\n' "after: ${COMP_WORDS[*]}" "expected: $expected" "answered: $answers" >&2
        failures=$((failures + 1))
    }
}
expect --level --lev
expect $'--keep\n--keep-verify' --kee
expect $'fast\nfastest' --level fas
expect $'LZMA\nLZMA2' -c ''
expect $'fast\nfastest' --level = fas # bash takes --level=fas for three words
expect $'auto\nno\nyes' --console =
expect '' --title ''
expect inspect in
expect 'my application' --output my
expect 'my icon.ico' --icon 'my i'
expect $'my application\nmy icon.ico' my
expect 'setup.ini' verify set
exit $((failures > 0))
