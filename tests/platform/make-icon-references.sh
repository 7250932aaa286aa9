#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# make-icon-references.sh FOLDER HELLO: copies real programs with icons to FOLDER, as NAME.exe. For
# each it extracts images of the first icon with another reader: the deepest images that are 16 and
# 32 pixels wide, as NAME-16.png and NAME-32.png, if they exist. HELLO is the example's program.
set -eu
folder=$1
wine=/usr/lib/x86_64-linux-gnu/wine/x86_64-windows
rm -rf "$folder"
mkdir -p "$folder"

reference() { # NAME PROGRAM
    cp "$2" "$folder/$1.exe"
    group=$(wrestool -l -t14 "$2" | sed -n '1s/.*--name=\([^ ]*\).*/\1/p')
    mkdir "$folder/$1"
    wrestool -x -t14 --name="$group" -o "$folder/$1/group.ico" "$2"
    icotool -x -o "$folder/$1" "$folder/$1/group.ico"
    rm "$folder/$1/group.ico"
    for size in 16 32; do
        for depth in 32 8 4; do
            if cp "$folder/$1"/*_${size}x${size}x$depth.png "$folder/$1-$size.png" 2>/dev/null; then
                break
            fi
        done
    done
}

reference notepad $wine/notepad.exe
reference regedit $wine/regedit.exe
reference hello "$2"
reference nsis-64 /usr/share/nsis/Stubs/lzma-amd64-unicode
reference nsis-32 /usr/share/nsis/Stubs/zlib-x86-unicode
