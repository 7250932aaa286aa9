#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# make-kit.sh FOLDER: fills FOLDER with the kit for Windows machines: README.txt, run-tests.cmd, 7zr.exe and kit.7z,
# which holds everything else. The presets release, windows and windows-release must have been built. The same
# programs give the same kit: no times of this build are in it.
set -euo pipefail
cd "$(dirname "$0")/../.."
out=$1
tests=build/windows/tests
programs=build/windows-release
native=build/release
time=202601010000.00
export TZ=UTC
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
kit=$work/kit
mkdir -p "$out" "$kit/files/data" "$kit/tests" "$kit/products"

# Everything with a fixed time and fixed permissions, because archives contain both.
settle() {
    find "$1" -type d -exec chmod 755 {} +
    find "$1" -type f -exec chmod 644 {} +
    find "$1" -exec touch -t $time {} +
}

# The programs of the rows. The scripts have Windows' line ends: cmd needs them.
cp "$tests/windows-kit/kit/windows-kit.exe" "$tests/windows-kit/kit"/callers.* "$kit"
cp "$programs/bin/Kestrelpack.exe" "$programs/bin/kestrelpack-cli.exe" "$kit/files"
cp "$programs/resources/resources/7zr.exe" "$programs/resources/resources/7zS2.sfx" \
    "$programs/helpers/self-extractor/7zS2-full.sfx" "$kit/files"

# The test programs and what they need, each file by its own name (tests/support/builtfile.h).
find $tests -name 'tst_*.exe' -exec cp {} "$kit/tests" \;
cp $tests/fakes/faketool.exe $tests/faults/killedjob.exe $tests/cli/fakedcli.exe $tests/app/drivenapp.exe $tests/app/emptysheet.rcc \
    $tests/e2e/checker.exe $tests/e2e/readversion.exe $tests/helpers/pe/identified.exe \
    $tests/helpers/resource-editor/loadicons.exe "$tests/windows-kit/kit/files/kit-probe.exe" \
    build/windows/helpers/resource-editor/resource-editor.exe \
    build/windows/helpers/fast-archiver/fast-archiver.exe \
    build/windows/examples/hello/app/hello.exe examples/hello/hello.ico "$kit/files"
cp -r build/windows/examples/hello/app "$kit/files/app"
cp -r tests/data/. "$kit/files/data"
tests/platform/make-icon-references.sh "$kit/files/icon-references" "$kit/files/hello.exe"

# A test program with this folder's path would be another one in each folder (tests/support/builtfile.h).
with_path=$(LC_ALL=C grep -rlaP "(?<![\\w.+-])\\Q$PWD\\E" "$kit" || true)
[ -z "$with_path" ] || {
    printf 'The path of this folder is in:\n%s\n' "$with_path" >&2
    exit 1
}

# The products, of the kind that the window makes. In `large`, one file has 400 MB.
pack() { # FOLDER MAIN [OPTION...]
    folder=$1
    main=$2
    shift 2
    [ $# -gt 0 ] || set -- -l fastest
    settle "$folder"
    TMPDIR=$work/temp $native/bin/kestrelpack-cli -q "$@" --console no --cwd app -m "$main" -o "$kit/products" "$folder"
}
mkdir -p "$work/temp" "$work/hello" "$work/probe/folder" "$work/large"
cp build/windows/examples/hello/app/* "$work/hello"
cp "$kit/files/kit-probe.exe" "$work/probe"
printf 'the data of the probe\r\n' >"$work/probe/data.txt"
printf 'a file in a folder\r\n' >"$work/probe/folder/inner.txt"
cp "$kit/files/kit-probe.exe" "$work/large/large.exe"
cp "$work/probe/data.txt" "$work/large"
(set +o pipefail && yes 'A line of the large file, which is there 10,000,000 times.' | head -c 400000000) \
    >"$work/large/large.bin"
pack "$work/hello" hello.exe
pack "$work/probe" kit-probe.exe
pack "$work/large" large.exe

# Products that start fast, and that keep what they have unpacked: the usual files, and 5,000 small ones.
for name in fast kept many manykept; do
    cp -r "$work/probe" "$work/$name"
    mv "$work/$name/kit-probe.exe" "$work/$name/$name.exe"
done
for name in many manykept; do
    for folder in $(seq 100); do
        mkdir "$work/$name/package $folder"
        for file in $(seq 50); do
            printf 'The text of file %d of package %d.\n' "$file" "$folder" >"$work/$name/package $folder/$file.js"
        done
    done
done
pack "$work/fast" fast.exe --profile fast-start
pack "$work/many" many.exe --profile fast-start
pack "$work/kept" kept.exe --profile fast-start --keep 30
pack "$work/manykept" manykept.exe --profile fast-start --keep 30

# The test programs have most of their code in common: one solid block with a large dictionary, and no filter,
# which would change equal code at different addresses differently.
settle "$kit"
(cd "$kit" && find . -type f | sed 's|^\./||' | LC_ALL=C sort >"$work/list")
rm -f "$out/kit.7z"
(cd "$kit" && "$OLDPWD/$native/resources/resources/7zr.exe" a -bso0 -bsp0 -m0=LZMA -mx=1 -md=256m -mf=off -ms=on \
    "$out/kit.7z" "@$work/list")
cp "$programs/resources/resources/7zr.exe" "$tests/windows-kit/kit/run-tests.cmd" "$out"
sed 's/$/\r/' tests/windows-kit/README.txt >"$out/README.txt"
mkdir -p "$out/licences"
cp LICENSE "$out/licences/Kestrelpack.txt"
cp /usr/share/doc/wine/copyright "$out/licences/Wine (notepad and regedit in icon-references).txt"
cp /usr/share/doc/nsis/copyright "$out/licences/NSIS (stubs in icon-references).txt"
settle "$out"
