# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

# 7zr.exe from 7-Zip's sources, with the cross compiler. Not part of `all`: only the Windows bundle
# needs it. The sources are fetched when the target is built for the first time.

include("${PROJECT_SOURCE_DIR}/cmake/SevenZipSource.cmake") # KESTRELPACK_SEVENZIP_DIR
set(headers "${PROJECT_SOURCE_DIR}/scripts/sevenzip-headers.sh")
set(KESTRELPACK_ARCHIVER_WINDOWS_FILE "${CMAKE_CURRENT_BINARY_DIR}/windows/7zr.exe"
    CACHE INTERNAL "7zr.exe for Windows")

add_custom_command(
    OUTPUT "${KESTRELPACK_ARCHIVER_WINDOWS_FILE}"
    COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/build-archiver-windows"
            "${CMAKE_CURRENT_BINARY_DIR}/windows" ${KESTRELPACK_SEVENZIP_DIR}
    DEPENDS build-archiver-windows archiver.manifest "${headers}"
    COMMENT "Building 7zr.exe for Windows"
    VERBATIM)
add_custom_target(archiver-windows DEPENDS "${KESTRELPACK_ARCHIVER_WINDOWS_FILE}")
