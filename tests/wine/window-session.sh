#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# window-session.sh PROGRAM HELLO-FOLDER PICTURES: operates the real window under Wine by mouse and
# keyboard, as a person would. Moves it by its header, looks at its pages, chooses folders in the
# system's dialogs, packs, starts the product, changes options, ends, starts again, resets. Leaves
# pictures in the folder PICTURES.
set -euo pipefail
program=$1
hello=$2
pictures=$3
. "$(dirname "$0")/support.sh"
work=$(mktemp -d /tmp/session.XXXXXX)
trap 'rm -rf "$work"' EXIT
mkdir -p "$pictures" "$work/source" "$work/out" "$work/temp"
key='HKCU\Software\Vexo\Kestrelpack'

fail() {
    import -window root "$pictures/failure.png"
    echo "FAIL: $* (see $pictures/failure.png)"
    exit 1
}

# wait_for WHAT COMMAND...: repeats COMMAND until it succeeds, five minutes at most.
wait_for() {
    local what=$1 end=$((SECONDS + 300))
    shift
    while [ "$SECONDS" -lt "$end" ]; do
        if "$@" >/dev/null 2>&1; then return; fi
        sleep 0.1
    done
    fail "waited in vain for $what"
}

window_named() { xdotool search --onlyvisible --name "$1" | head -n 1; }
is_there() { [ -n "$(window_named "$1")" ]; }
is_gone() { [ -z "$(window_named "$1")" ]; }
position() { xdotool getwindowgeometry --shell "$window" | sed -n 's/^[XY]=//p' | tr '\n' ' '; }
click() { xdotool mousemove --window "$window" "$1" "$2" click 1; }
picture() { sleep 0.4 && import -window root "$pictures/$1.png"; } # after the window is drawn
registry() { wine reg query "$key" 2>/dev/null | iconv -c -f GBK -t UTF-8 | tr -d '\r' | sed -n 's/^    //p'; }

start_program() {
    wine_with_temp "$work/temp" "$(as_windows "$program")" </dev/null >"$work/program.log" 2>&1 &
    process=$!
    wait_for "the window" is_there '^Kestrel Pack$'
    window=$(window_named '^Kestrel Pack$')
    sleep 0.5 # until its first picture is drawn
}

# Clicks Close and answers the question.
end_program() {
    click 406 30
    wait_for "the question" is_there '确认退出'
    picture "$1"
    xdotool key Return # Yes is the default
    wait "$process" || fail "the program ended with $?"
}

# choose_folder X Y FOLDER: clicks the button at X Y and uses the system's dialog.
choose_folder() {
    click "$1" "$2"
    wait_for "the folder dialog" is_there '选择'
    sleep 1
    xdotool type --delay 15 "$(as_windows "$3")"
    xdotool key Return
    wait_for "the end of the folder dialog" is_gone '选择'
}

cp "$hello"/* "$work/source"
mv "$work/source/hello.exe" "$work/source/主程序.exe"
wine reg delete "$key" /f >/dev/null 2>&1 || true

start_program
before=($(position))
xdotool mousemove --window "$window" 200 30 mousedown 1
for _ in 1 2 3 4 5; do xdotool mousemove_relative -- -20 10; done
xdotool mouseup 1
is_dragged() {
    after=($(position))
    [ "$((before[0] - after[0])) $((after[1] - before[1]))" = "100 50" ]
}
wait_for "the window to be 100 to the left and 50 below ${before[*]}" is_dragged
picture basic

click 316 30
sleep 0.6
picture menu
xdotool key Down Return
wait_for "the About dialog" is_there '关于 Kestrel Pack'
picture about
xdotool key Escape
wait_for "the end of the About dialog" is_gone '关于 Kestrel Pack'

choose_folder 390 80 "$work/source"
choose_folder 390 132 "$work/out"
click 246 233
wait_for "the message" is_there '^完成$'
picture done
xdotool key Return
wait_for "the end of the message" is_gone '^完成$'
picture finished

code=0
said=$(wine_with_temp "$work/temp" "$(as_windows "$work/out/主程序.exe")" one "two three" --exit 42 2>/dev/null | tr -d '\r') || code=$?
[ "$code" = 42 ] || fail "the product ended with $code"
grep -qx 'Argument 2: two three' <<<"$said" || fail "the product said: $said"

click 38 132
sleep 0.5
picture advanced
click 280 133 # the list of levels
sleep 0.6
xdotool key Down Return
click 82 341 # run as administrator
sleep 0.3
end_program quit

expected="adminRequired    REG_SZ    true
cleanupEnabled    REG_SZ    true
compressionLevel    REG_DWORD    0x4
compressionMethod    REG_DWORD    0x0
dictionarySize    REG_DWORD    0x2
encryptContent    REG_SZ    false
folderPath    REG_SZ    Z:$work/source
iconPath    REG_SZ    
lastExe    REG_SZ    主程序.exe
outputPath    REG_SZ    Z:$work/out
tempExtraction    REG_SZ    true"
diff <(echo "$expected") <(registry | sort) || fail "the settings are not as expected"
[ -z "$(ls -d "$work"/temp/Kestrelpack_* 2>/dev/null)" ] || fail "the temporary directory stays"

# A second start shows the settings again. If it ends at once, it stores the settings that it shows.
# The list of programs is filled only after a folder is chosen.
start_program
click 38 132
sleep 0.5
picture again
end_program quit
diff <(sed '/^lastExe/s/主.*//' <<<"$expected") <(registry | sort) ||
    fail "the settings have changed by a start"

start_program
click 38 132
click 357 408 # reset
wait_for "the question" is_there '重置确认'
picture reset
xdotool key Return
wait_for "the message" is_there '重置成功'
[ -z "$(registry)" ] || fail "the reset leaves $(registry)"
picture reset-done
xdotool key Return
wait_for "the end of the message" is_gone '重置成功'
end_program quit
echo "All done; pictures in $pictures"
