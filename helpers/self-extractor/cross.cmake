# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

# Builds the modules in a native build: configures this folder again, with the cross compiler.

include(ExternalProject)

find_program(KESTRELPACK_MINGW_COMPILER x86_64-w64-mingw32-g++-posix)
if(NOT KESTRELPACK_MINGW_COMPILER)
    message(WARNING "No MinGW-w64 compiler (package g++-mingw-w64-x86-64-posix): "
                    "the self-extractor modules are not built.")
    add_custom_target(self-extractor
        COMMAND ${CMAKE_COMMAND} -E echo "x86_64-w64-mingw32-g++-posix is missing"
        COMMAND ${CMAKE_COMMAND} -E false)
    return()
endif()

# 7-Zip's source is fetched once, here; the inner build gets its path.
kestrelpack_sevenzip_source(sevenzip_dir)

ExternalProject_Add(self-extractor
    SOURCE_DIR "${CMAKE_CURRENT_SOURCE_DIR}"
    BINARY_DIR "${CMAKE_CURRENT_BINARY_DIR}/module"
    CMAKE_ARGS
        "-DCMAKE_TOOLCHAIN_FILE=${root}/cmake/toolchain-mingw64.cmake"
        -DCMAKE_BUILD_TYPE=Release
        "-DKESTRELPACK_SEVENZIP_DIR=${sevenzip_dir}"
        "-DKESTRELPACK_LLVM_ML=${KESTRELPACK_LLVM_ML}"
        "-DKESTRELPACK_SFX_TEST_MODULES=${KESTRELPACK_BUILD_TESTS}"
    BUILD_ALWAYS ON
    BUILD_BYPRODUCTS
        "${CMAKE_CURRENT_BINARY_DIR}/module/7zS2.sfx"
        "${CMAKE_CURRENT_BINARY_DIR}/module/7zS2-full.sfx"
    INSTALL_COMMAND ""
    EXCLUDE_FROM_ALL OFF)
