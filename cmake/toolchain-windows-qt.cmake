# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

# Debian's MinGW-w64 together with the Qt that scripts/build-qt-windows builds. The link `qt-windows` in the
# cache points to that script's newest result. The environment variable KESTRELPACK_QT_WINDOWS can name
# another Qt.
include("${CMAKE_CURRENT_LIST_DIR}/toolchain-mingw64.cmake")

set(qt_windows "$ENV{KESTRELPACK_QT_WINDOWS}")
if(NOT qt_windows)
    set(cache "$ENV{XDG_CACHE_HOME}")
    if(NOT cache)
        set(cache "$ENV{HOME}/.cache")
    endif()
    set(qt_windows "${cache}/kestrelpack/qt-windows")
endif()
if(NOT EXISTS "${qt_windows}/lib/cmake/Qt6")
    message(FATAL_ERROR "No Qt for Windows in ${qt_windows}; scripts/build-qt-windows makes one.")
endif()

list(APPEND CMAKE_FIND_ROOT_PATH "${qt_windows}")
list(PREPEND CMAKE_PREFIX_PATH "${qt_windows}")

# Qt's tools moc, uic and rcc are those of this machine; they have the same version.
set(QT_HOST_PATH /usr)
execute_process(COMMAND uname -m OUTPUT_VARIABLE machine OUTPUT_STRIP_TRAILING_WHITESPACE)
set(QT_HOST_PATH_CMAKE_DIR "/usr/lib/${machine}-linux-gnu/cmake")

# Tests run under Wine.
find_program(KESTRELPACK_WINE NAMES wine wine64)
mark_as_advanced(KESTRELPACK_WINE)
if(KESTRELPACK_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR "${KESTRELPACK_WINE}")
endif()
