#!/usr/bin/env zsh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# zsh-completion.zsh FOLDER: tries the completions of kestrelpack-cli in FOLDER/_kestrelpack-cli with a zsh that
# runs at a pseudo-terminal. A key of that shell completes the line and writes it into a file.
emulate -R zsh
setopt err_exit
zmodload zsh/zpty
folder=${1:a}
work=$(mktemp -d)
trap 'zpty -d shell 2>/dev/null; rm -rf $work' EXIT
cd $work
mkdir 'my application'
touch setup.ini
cat >start.zsh <<END
fpath=($folder \$fpath)
autoload -Uz compinit
compinit -u -d $work/dump
complete_and_write() {
    zle complete-word
    print -r -- "\$BUFFER" >>$work/lines
    BUFFER=
}
zle -N complete_and_write
bindkey '^T' complete_and_write
: >$work/ready
END
zpty shell zsh -f -i
zpty -w shell ". $work/start.zsh"

# The limit only ends a test that hangs.
wait_for() {
    local i
    for ((i = 0; i < 3000; i++)); do
        eval "$1" && return 0
        zpty -r -t shell ignored || true # so that the shell can write on
        sleep 0.1
    done
    print -u2 "no answer from zsh: $1"
    exit 1
}
wait_for '[[ -e ready ]]'

typeset -i asked=0 failures=0
expect() { # LINE AFTER
    ((asked += 1))
    zpty -w -n shell "$1"$'\x14'
    wait_for '[[ -e lines && $(wc -l <lines) -ge asked ]]'
    local answer=$(sed -n "${asked}p" lines)
    if [[ $answer != $2 ]]; then
        print -u2 "after: $1\nexpected: $2\nanswered: $answer"
        ((failures += 1))
    fi
}
expect 'kestrelpack-cli --lev' 'kestrelpack-cli --level='
expect 'kestrelpack-cli --level=ul' 'kestrelpack-cli --level=ultra '
expect 'kestrelpack-cli -c LZMA2 --profile=fa' 'kestrelpack-cli -c LZMA2 --profile=fast-start '
expect 'kestrelpack-cli insp' 'kestrelpack-cli inspect '
expect 'kestrelpack-cli my' 'kestrelpack-cli my\ application/'
expect 'kestrelpack-cli verify set' 'kestrelpack-cli verify setup.ini '
exit $((failures > 0))
