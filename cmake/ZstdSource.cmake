# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

include_guard(GLOBAL)
include("${CMAKE_CURRENT_LIST_DIR}/FetchDebianSource.cmake")

# Zstandard's library from Debian's source package `libzstd`, used under its BSD licence.
set(KESTRELPACK_ZSTD_DIR "" CACHE PATH
    "Folder with Zstandard's sources (lib/); empty: Debian's source package libzstd is fetched")

# kestrelpack_zstd_source(<variable>): sets the variable to the folder that contains zstd.h.
function(kestrelpack_zstd_source output)
    set(folder "${KESTRELPACK_ZSTD_DIR}")
    if(NOT folder)
        kestrelpack_fetch_debian_source(PACKAGE libzstd OUTPUT folder
            HINT "-DKESTRELPACK_ZSTD_DIR=FOLDER names a folder that has it (lib/zstd.h). Without it and \
without tests, -DKESTRELPACK_FAST_ARCHIVER=FILE brings a finished program.")
    endif()
    if(NOT EXISTS "${folder}/lib/zstd.h")
        message(FATAL_ERROR "No Zstandard sources in ${folder}")
    endif()
    set(${output} "${folder}/lib" PARENT_SCOPE)
endfunction()

# kestrelpack_add_zstd(<target>): makes a static library from Zstandard's C files, for the system of this build: the
# compressor with threads, and the decoder (which only tests link). Old formats and dictionary training are left
# out. The code is optimised in every kind of build: without that, packing takes ten times as long.
function(kestrelpack_add_zstd target)
    kestrelpack_zstd_source(folder)
    file(GLOB files "${folder}/common/*.c" "${folder}/compress/*.c" "${folder}/decompress/*.c")
    add_library(${target} STATIC ${files})
    target_include_directories(${target} SYSTEM PUBLIC "${folder}")
    # Zstandard has one function in assembler. It belongs to the decoder, and is not for Windows.
    target_compile_definitions(${target} PRIVATE
        ZSTD_MULTITHREAD ZSTD_DISABLE_ASM XXH_NAMESPACE=ZSTD_ ZSTD_LEGACY_SUPPORT=0 DEBUGLEVEL=0)
    target_compile_options(${target} PRIVATE -w -O3 -fno-sanitize=alignment)
    find_package(Threads REQUIRED)
    target_link_libraries(${target} PUBLIC Threads::Threads)
endfunction()
