#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# wrong-use.sh BUILD-FOLDER SOURCE-FOLDER: what the CMake package says if something is wrong, and how it finds
# libraries. Each row is a small project, cross-built from nothing.
set -euo pipefail
. "$(dirname "$0")/support.sh"

toolchain=$sources/examples/cmake-project/mingw-w64.cmake
cc=x86_64-w64-mingw32-gcc-posix
row=0

# All rows use this program. It needs Thing.dll, which is no target of the project, and imports it under a name
# in mixed case; the file is THING.dll.
mkdir -p "$work/thing" "$work/thing-lib" "$work/qt"
cat >"$work/thing.c" <<'END'
__declspec(dllexport) int thing(void) { return 7; }
END
$cc -shared -s -o "$work/thing/Thing.dll" "$work/thing.c" -Wl,--out-implib,"$work/thing-lib/libthing.dll.a"
mv "$work/thing/Thing.dll" "$work/thing/THING.dll"
$cc -shared -s -o "$work/qt/Qt6Core.dll" "$work/thing.c" -Wl,--out-implib,"$work/thing-lib/libqtcore.dll.a"
echo 'int main(void) { return 0; }' >"$work/plain.c"
echo 'int thing(void); int main(void) { return thing(); }' >"$work/main.c"

# program TEXT NAME SOURCE [LIBRARY]: writes the lines for the target if TEXT uses it.
program() {
    grep -qE "[( ]$2[ )]" <<<"$1" || return 0
    echo "add_executable($2 \"$work/$3\")"
    [ $# -lt 4 ] || echo "target_link_libraries($2 \"$work/thing-lib/$4\")"
}

# project TEXT: a new project with the target `app` and the lines of TEXT. "@WORK@" is the work folder.
project() {
    row=$((row + 1))
    p=$work/p$row
    mkdir -p "$p/data"
    echo x >"$p/data/x.txt"
    {
        echo 'cmake_minimum_required(VERSION 3.21)'
        echo 'project(Row C)'
        echo 'find_package(Kestrelpack REQUIRED CONFIG NO_CMAKE_FIND_ROOT_PATH)'
        program "$1" app plain.c
        program "$1" with-thing main.c libthing.dll.a
        program "$1" with-qt main.c libqtcore.dll.a
        sed "s|@WORK@|$work|g" <<<"$1"
    } >"$p/CMakeLists.txt"
}
configure() {
    cmake -S "$p" -B "$p/b" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_C_COMPILER=$cc \
        -DCMAKE_C_COMPILER_WORKS=1 -DCMAKE_PREFIX_PATH="$build" "$@" >"$log" 2>&1 </dev/null
}

# refuses_to_configure WHAT MESSAGE TEXT [CMAKE-ARGUMENT...]
refuses_to_configure() {
    local what=$1 message=$2
    project "$3"
    shift 3
    ! configure "$@" || die "$what was accepted"
    says "$message"
    echo "ok: $what"
}
# refuses_to_build WHAT MESSAGE TEXT
refuses_to_build() {
    project "$3"
    configure || die "$1: configuring failed"
    ! cmake --build "$p/b" >"$log" 2>&1 </dev/null || die "$1 was accepted"
    says "$2"
    [ -z "$(find "$p/b" -path '*/portable/*' -type f)" ] || die "$1 left a product"
    echo "ok: $1"
}
# packs WHAT NAME... -- TEXT: the product of the project contains the files.
packs() {
    local what=$1 names=()
    shift
    while [ "$1" != -- ]; do
        names+=("$1")
        shift
    done
    project "$2"
    configure || die "$what: configuring failed"
    cmake --build "$p/b" >"$log" 2>&1 </dev/null || die "$what: building failed"
    cp "$log" "$p/build-log"
    "$build/bin/kestrelpack-cli" inspect "$p"/b/portable/*.exe >"$log"
    for name in "${names[@]}"; do
        says "$name"
    done
    echo "ok: $what"
}

# --- finding the package
refuses_to_configure 'a terminal program that is not there' \
    'KESTRELPACK_CLI is /nowhere/kestrelpack-cli, which is no file.' '' \
    -DKESTRELPACK_CLI=/nowhere/kestrelpack-cli
mkdir -p "$work/only-windows/bin"
install_package "$work/only-windows"
mv "$work/only-windows/bin/kestrelpack-cli" "$work/only-windows/bin/kestrelpack-cli.exe"
refuses_to_configure 'an installation for another system' 'Install Kestrelpack for this machine' '' \
    -DCMAKE_PREFIX_PATH="$work/only-windows"
refuses_to_configure 'a version that is too old' 'compatible with requested version "99.0"' \
    'find_package(Kestrelpack 99.0 REQUIRED CONFIG NO_CMAKE_FIND_ROOT_PATH)'

# --- arguments
refuses_to_configure 'a target that does not exist' 'there is no target apps.' \
    'kestrelpack_add_portable(apps)'
refuses_to_configure 'a library' 'only a target from add_executable() can be packed' \
    'add_library(lib SHARED "@WORK@/thing.c")
kestrelpack_add_portable(lib)'
refuses_to_configure 'a misspelled argument' 'unknown, or without a value: MIAN' \
    'kestrelpack_add_portable(app MIAN app.exe)'
refuses_to_configure 'an argument without a value' 'unknown, or without a value: ICON' \
    'kestrelpack_add_portable(app ICON)'
refuses_to_configure 'an option that has an argument of its own' 'OPTIONS cannot have --output' \
    'kestrelpack_add_portable(app OPTIONS --output=x.exe)'
refuses_to_configure 'a program for this machine' 'app is built for Linux, and only Windows programs' \
    'kestrelpack_add_portable(app)' -DCMAKE_TOOLCHAIN_FILE= -DCMAKE_C_COMPILER=cc

# --- building
refuses_to_build 'a main program that is not there' \
    'the main program bin/other.exe is missing. The folder has these programs: app.exe.' \
    'kestrelpack_add_portable(app ALL MAIN bin/other.exe)'
refuses_to_build 'a folder that is not there' 'data2 (argument DIRECTORY)' \
    'kestrelpack_add_portable(app ALL DIRECTORY data2)'
refuses_to_build 'a file that is not there' 'no-such-file.txt' \
    'kestrelpack_add_portable(app ALL FILES no-such-file.txt)'
refuses_to_build 'a product inside the folder that is packed' 'Choose another OUTPUT.' \
    'kestrelpack_add_portable(app ALL DIRECTORY data OUTPUT "${CMAKE_CURRENT_SOURCE_DIR}/data/portable")'
refuses_to_build 'an icon that is not there' 'no-such.ico' \
    'kestrelpack_add_portable(app ALL ICON no-such.ico)'
refuses_to_build 'an option that does not exist' "Unknown option 'no-such-option'" \
    'kestrelpack_add_portable(app ALL OPTIONS --no-such-option)'
refuses_to_build 'a library that is not found' 'thing.dll, needed by with-thing.exe' \
    'kestrelpack_add_portable(with-thing ALL)'
refuses_to_build 'a signing command that fails' 'Cannot sign' \
    'kestrelpack_add_portable(app ALL SIGN false <FILE>)'
refuses_to_build 'Qt without its deployment tool' "Qt's tool windeployqt was not found" \
    'kestrelpack_add_portable(with-qt ALL)'
project 'kestrelpack_add_portable(app)
install(TARGETS app)'
configure || die 'configuring failed'
quietly 'building without the product' cmake --build "$p/b" --target app
! cmake --install "$p/b" --component portable --prefix "$p/i" >"$log" 2>&1 || die 'a missing product was installed'
says 'app.exe is missing: build the target app-portable first.'
echo 'ok: installing a product that was not built'

# --- what goes in
packs 'a library in a folder of SEARCH, with other case' THING.dll -- \
    'kestrelpack_add_portable(with-thing ALL SEARCH "@WORK@/thing")'
packs 'a library that FILES names' THING.dll -- \
    'kestrelpack_add_portable(with-thing ALL FILES "@WORK@/thing/THING.dll")'
packs 'a library that Windows is said to have' with-thing.exe -- \
    'kestrelpack_add_portable(with-thing ALL SYSTEM_LIBRARIES thing.dll)'
packs 'a folder, and what is in a folder' data/x.txt ' x.txt' -- \
    'kestrelpack_add_portable(app ALL DIRECTORY data data/)'
packs 'a main program in a folder' 'starts bin/tool.exe' bin/THING.dll -- \
    'set_target_properties(with-thing PROPERTIES OUTPUT_NAME tool)
kestrelpack_add_portable(with-thing ALL MAIN bin/tool.exe SEARCH "@WORK@/thing")'
packs 'the output name of the target, with a dot' 'my.tool.exe' -- \
    'set_target_properties(app PROPERTIES OUTPUT_NAME my.tool)
kestrelpack_add_portable(app ALL)'
[ -e "$p/b/portable/my.tool.exe" ] || die 'the product is not named after the target'
packs 'a signed product' 'starts app.exe' -- \
    'kestrelpack_add_portable(app ALL SIGN "${CMAKE_COMMAND}" -E copy <FILE> "${CMAKE_BINARY_DIR}/seen.exe")'
cmp "$p/b/seen.exe" "$p/b/portable/app.exe" || die 'the signing command got another file'

# What Visual C++ has in the place of objdump writes the same in another form.
mkdir "$work/tools"
cat >"$work/tools/dumpbin" <<'END'
#!/bin/sh
[ "$1 $2" = '/nologo /dependents' ] || exit 1
printf '\r\nDump of file %s\r\n\r\nFile Type: EXECUTABLE IMAGE\r\n\r\n' "$3"
printf '  Image has the following dependencies:\r\n\r\n'
x86_64-w64-mingw32-objdump -p "$3" | sed -n 's/^\tDLL Name: \(.*\)$/    \1\r/p'
printf '\r\n  Image has the following delay load dependencies:\r\n\r\n    nobody-has-it.dll\r\n'
printf '\r\n  Summary\r\n\r\n        1000 .data\r\n        1000 .text\r\n'
END
chmod +x "$work/tools/dumpbin"
PATH="$work/tools:$PATH" packs 'a library that dumpbin shows' THING.dll -- \
    'set(CMAKE_OBJDUMP "")
kestrelpack_add_portable(with-thing ALL SEARCH "@WORK@/thing")'
echo 'exit 1' >"$work/tools/dumpbin"
PATH="$work/tools:$PATH" packs 'a program whose libraries cannot be read, with a remark' with-thing.exe -- \
    'set(CMAKE_OBJDUMP "")
kestrelpack_add_portable(with-thing ALL SEARCH "@WORK@/thing")'
grep -q 'they are not checked' "$p/build-log" || die 'there is no remark'

# --- Qt
cat >"$work/windeployqt" <<'END'
#!/bin/sh
# A fake: lays a platform plugin where the real tool would, and writes down its arguments.
echo "$@" >>"$(dirname "$0")/calls"
mkdir -p "$2/platforms"
echo plugin >"$2/platforms/qwindows.dll"
END
chmod +x "$work/windeployqt"
qt='add_executable(Qt6::windeployqt IMPORTED)
set_target_properties(Qt6::windeployqt PROPERTIES IMPORTED_LOCATION "@WORK@/windeployqt")'
packs "what Qt's tool lays, and Qt's library" platforms/qwindows.dll Qt6Core.dll -- "$qt
kestrelpack_add_portable(with-qt ALL SEARCH \"@WORK@/qt\")"
grep -q -- "^--dir .*/folder .*/folder/with-qt.exe$" "$work/calls" || die "Qt's tool got other arguments"
: >"$work/calls"
packs "the user's Qt" Qt6Core.dll -- "$qt
kestrelpack_add_portable(with-qt ALL DIRECTORY \"@WORK@/qt/\")"
[ ! -s "$work/calls" ] || die "Qt's tool ran although the folder has Qt"
echo 'set(__QT_DEPLOY_TOOL "@WORK@/windeployqt")
function(qt6_deploy_runtime_dependencies)
    file(WRITE "${QT_DEPLOY_PREFIX}/deployed.txt" "${ARGN}")
endfunction()' | sed "s|@WORK@|$work|" >"$work/QtDeploySupport.cmake"
packs "what qt_deploy_runtime_dependencies lays" deployed.txt Qt6Core.dll -- \
    'set(QT_DEPLOY_SUPPORT "@WORK@/QtDeploySupport.cmake")
kestrelpack_add_portable(with-qt ALL SEARCH "@WORK@/qt")'

# --- CPack
# cpack_refuses WHAT MESSAGE TEXT
cpack_refuses() {
    project "set(CPACK_EXTERNAL_PACKAGE_SCRIPT \"\${Kestrelpack_CPACK_SCRIPT}\")
$3
include(CPack)"
    configure || die "$1: configuring failed"
    quietly "$1: building" cmake --build "$p/b"
    ! (cd "$p/b" && cpack -G External >"$log" 2>&1 </dev/null) || die "$1 was accepted by cpack"
    says "$2"
    echo "ok: cpack: $1"
}
staging='set(CPACK_EXTERNAL_ENABLE_STAGING ON)'
cpack_refuses 'no staging' 'set(CPACK_EXTERNAL_ENABLE_STAGING ON) is missing' 'install(TARGETS app)'
cpack_refuses 'a main program that is not installed' \
    'The main program bin/other.exe is not among the installed files. The project installs these programs: bin/app.exe.' \
    "$staging
set(CPACK_KESTRELPACK_MAIN bin/other.exe)
install(TARGETS app)"
cpack_refuses 'several programs' \
    'Set CPACK_KESTRELPACK_MAIN to the program that the portable file starts. The project installs these: bin/app.exe, bin/with-thing.exe.' \
    "$staging
install(TARGETS app with-thing)"
cpack_refuses 'no program' 'The project installs no Windows program' "$staging
install(FILES data/x.txt DESTINATION .)"
cpack_refuses 'a terminal program that is not there' 'CPACK_KESTRELPACK_CLI is /nowhere, which is no file.' "$staging
set(CPACK_KESTRELPACK_CLI /nowhere)
install(TARGETS app)"
cpack_refuses 'an option that does not exist' "Unknown option 'no-such-option'" "$staging
set(CPACK_KESTRELPACK_OPTIONS --no-such-option)
install(TARGETS app)"

cpack_refuses 'a library that is not found' 'thing.dll, needed by with-thing.exe' "$staging
install(TARGETS with-thing)"

project "set(CPACK_EXTERNAL_PACKAGE_SCRIPT \"\${Kestrelpack_CPACK_SCRIPT}\")
$staging
set(CPACK_KESTRELPACK_MAIN bin/app.exe tools/second.exe)
set(CPACK_KESTRELPACK_SEARCH \"@WORK@/thing\")
set(CPACK_KESTRELPACK_FILE_NAME Suite)
set_target_properties(with-thing PROPERTIES OUTPUT_NAME second)
kestrelpack_add_portable(app COMPONENT single)
install(TARGETS app COMPONENT one)
install(TARGETS with-thing DESTINATION tools COMPONENT two)
include(CPack)"
configure || die 'configuring failed'
quietly 'building' cmake --build "$p/b"
(cd "$p/b" && quietly 'cpack' cpack -G External)
"$build/bin/kestrelpack-cli" inspect "$p/b/Suite-second.exe" >"$log"
says 'starts tools/second.exe'
says 'bin/app.exe'
says 'tools/THING.dll'
[ -e "$p/b/Suite-app.exe" ] || die 'CPack made no file for the first main program'
echo 'ok: cpack: two main programs, in two components, while the component of the portable file is not built'
