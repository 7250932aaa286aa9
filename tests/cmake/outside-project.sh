#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# outside-project.sh BUILD-FOLDER SOURCE-FOLDER: examples/cmake-project is configured from nothing with the
# cross compiler, in folders with blanks and Chinese names. Its portable file runs under Wine, has the identity
# of the target, and is made again only if something has changed.
set -euo pipefail
. "$(dirname "$0")/support.sh"

prefix="$work/an installation ü"
project="$work/我的 project"
install_package "$prefix"
cp -r "$sources/examples/cmake-project" "$project"
[ -n "${DISPLAY-}" ] && unset DISPLAY

# configure BUILD GENERATOR [ARGUMENT...]
configure() {
    local folder=$1 generator=$2
    shift 2
    quietly "configuring with $generator" cmake -S "$project" -B "$folder" -G "$generator" \
        -DCMAKE_TOOLCHAIN_FILE="$project/mingw-w64.cmake" "$@"
}

# runs PRODUCT EXPECTED-LINE: starts it in another folder, with two arguments.
runs() {
    local said code=0
    said=$(cd "$work" && wine "$1" a 'b c' 2>/dev/null </dev/null | tr -d '\r'; exit "${PIPESTATUS[0]}") || code=$?
    [ "$said" = "$2" ] || die "$1 said: $said"
    [ $code = 2 ] || die "$1 ended with $code"
}

# identity FILE: its version information, as an independent reader sees it
identity() {
    /usr/bin/python3 - "$1" <<'END'
import pefile, sys
image = pefile.PE(sys.argv[1])
fixed = image.VS_FIXEDFILEINFO[0]
print(hex(fixed.FileVersionMS), hex(fixed.FileVersionLS), hex(fixed.ProductVersionMS), hex(fixed.ProductVersionLS))
for entry in image.FileInfo[0]:
    for table in getattr(entry, "StringTable", []):
        for name, value in sorted(table.entries.items()):
            print(name.decode(), "=", value.decode())
END
}

# stays WHAT PRODUCT COMMAND... and changes WHAT PRODUCT COMMAND...: whether the command makes the product again.
state() { stat -c '%Y %Z %i' "$1"; }
stays() {
    local before what=$1 product=$2
    before=$(state "$product")
    shift 2
    quietly "$what" "$@"
    [ "$(state "$product")" = "$before" ] || die "$what made the product again"
    echo "ok: $what does nothing"
}
changes() {
    local before what=$1 product=$2
    before=$(state "$product" 2>&1) || true
    shift 2
    quietly "$what" "$@"
    [ "$(state "$product")" != "$before" ] || die "$what did not make the product again"
    echo "ok: $what"
}
packed_files() { "$prefix/bin/kestrelpack-cli" inspect "$1" >"$log" || die "cannot inspect $1"; }

# Ninja, an installed package
b="$work/build [目录]"
configure "$b" Ninja -DCMAKE_PREFIX_PATH="$prefix"
make=(cmake --build "$b" --target tern-portable)
product="$b/portable/tern.exe"
quietly "building" "${make[@]}"
runs "$product" 'Tern: 5 words in the text, 3 in the arguments'
echo "ok: the product runs, in another folder"
identity "$product" >"$work/of-product"
identity "$b/tern.exe" >"$work/of-target"
grep -qx 'CompanyName = Seabird Tools' "$work/of-target" || die "the target has no identity"
diff "$work/of-target" "$work/of-product" || die "the identity is not that of the target"
echo "ok: the identity is that of the target"

stays "a second build" "$product" "${make[@]}"
echo 'six' >>"$project/texts/words.txt"
changes "a changed data file" "$product" "${make[@]}"
runs "$product" 'Tern: 6 words in the text, 3 in the arguments'
echo 'new' >"$project/texts/neu [ü] x;y.txt"
echo 'new' >"$project/texts/neu #1 \$x.txt"
changes "a new data file" "$product" "${make[@]}"
packed_files "$product"
says 'texts/neu [ü] x;y.txt'
stays "a build after that" "$product" "${make[@]}"
rm "$project/texts/neu"*
changes "a removed data file" "$product" "${make[@]}"
! grep -q neu <(packed_files "$product" && cat "$log") || die "the removed file is still packed"
sed -i 's/++count/count += 2/' "$project/wordcount.cpp"
changes "a changed library" "$product" "${make[@]}"
runs "$product" 'Tern: 12 words in the text, 6 in the arguments'
sed -i 's/ STRIP)/ STRIP OPTIONS --title "My; Tern")/' "$project/CMakeLists.txt"
changes "a changed option" "$product" "${make[@]}"
packed_files "$product"
says 'title My; Tern'
rm "$product"
changes "a removed product" "$product" "${make[@]}"
stays "the last build" "$product" "${make[@]}"

# Installation and CPack
quietly "installing the component" cmake --install "$b" --component portable --prefix "$work/installed"
[ "$(cd "$work/installed" && find . -type f)" = ./tern.exe ] || die "the component is not only the product"
cmp "$product" "$work/installed/tern.exe" || die "another file was installed"
echo "ok: the component is the product"
quietly "installing everything" cmake --install "$b" --prefix "$work/all"
! grep -q "$(stat -c %s "$product")" <(find "$work/all" -printf '%s\n') || die "the product is in the whole installation"
echo "ok: the whole installation has no portable file"
(cd "$b" && quietly "cpack" cpack -G External)
runs "$b/Tern-2.5.1-win64.exe" 'Tern: 12 words in the text, 6 in the arguments'
identity "$b/Tern-2.5.1-win64.exe" | sed 's/Tern-2.5.1-win64.exe/tern.exe/' | diff "$work/of-target" - ||
    die "the identity of CPack's file is not that of the target"
packed_files "$b/Tern-2.5.1-win64.exe"
[ "$(grep -c '\.exe$' <(sed -n '/^unpacked/,$p' "$log"))" = 1 ] || die "CPack packed more than one program"
echo "ok: cpack -G External makes a portable file, with the identity of the target"

# A generator with several configurations, and the package of the build folder
b="$work/several"
configure "$b" 'Ninja Multi-Config' -DCMAKE_PREFIX_PATH="$build"
for config in Debug Release; do
    quietly "building $config" cmake --build "$b" --config $config --target tern-portable
    runs "$b/portable/$config/tern.exe" 'Tern: 12 words in the text, 6 in the arguments'
    stays "a second build of $config" "$b/portable/$config/tern.exe" \
        cmake --build "$b" --config $config --target tern-portable
done

# Makefiles
b="$work/make files"
configure "$b" 'Unix Makefiles' -DCMAKE_PREFIX_PATH="$build"
rm -f "$log"
make=(cmake --build "$b" --target tern-portable)
product="$b/portable/tern.exe"
quietly "building with make" "${make[@]}"
stays "a second make" "$product" "${make[@]}"
echo 'seven' >>"$project/texts/words.txt"
changes "make after a data file changed" "$product" "${make[@]}"
runs "$product" 'Tern: 14 words in the text, 6 in the arguments'
