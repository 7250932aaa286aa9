# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

include_guard(GLOBAL)
include("${CMAKE_CURRENT_LIST_DIR}/FetchDebianSource.cmake")
include("${CMAKE_CURRENT_LIST_DIR}/LzmaAssembler.cmake")

# 7-Zip's sources from Debian's package `7zip`. The self-extractor module links only code from C/: it is in the
# public domain, except the decoder for Zstandard, which has a BSD licence.
set(KESTRELPACK_SEVENZIP_DIR "" CACHE PATH
    "Folder with 7-Zip's sources (C/, CPP/, DOC/); empty: Debian's source package 7zip is fetched")

# kestrelpack_sevenzip_source(<variable>): sets the variable to the folder that contains C/ and CPP/.
function(kestrelpack_sevenzip_source output)
    set(folder "${KESTRELPACK_SEVENZIP_DIR}")
    if(NOT folder)
        kestrelpack_fetch_debian_source(PACKAGE 7zip OUTPUT folder
            HINT "-DKESTRELPACK_SEVENZIP_DIR=FOLDER names a folder that has it (C/, CPP/, Asm/). Without it \
and without tests, -DKESTRELPACK_ARCHIVER=FILE and -DKESTRELPACK_SFX_MODULE=FILE bring finished programs.")
    endif()
    if(NOT EXISTS "${folder}/C/7zArcIn.c")
        message(FATAL_ERROR "No 7-Zip sources in ${folder}")
    endif()
    set(${output} "${folder}" PARENT_SCOPE)
endfunction()

# kestrelpack_sevenzip_notice(<variable>): sets the variable to the copyright lines and the licence of 7-Zip's
# decoder for Zstandard. The licence of its check sums is the same with one condition less.
function(kestrelpack_sevenzip_notice output)
    kestrelpack_sevenzip_source(folder)
    set(file "${folder}/DOC/License.txt")
    if(EXISTS "${file}")
        file(READ "${file}" text)
        string(REGEX MATCHALL "Copyright \\(c\\) [^\n]*(Facebook|Pavlov|Collet)[^\n]*" holders "${text}")
        list(REMOVE_DUPLICATES holders)
        list(JOIN holders "\n" holders)
        string(REGEX REPLACE "^.*\nText of the \"BSD 3-clause License\"\n-+\n+" "" text "${text}")
        string(FIND "${text}" "\n---\n" end)
        string(SUBSTRING "${text}" 0 ${end} text)
    endif()
    if(NOT text MATCHES "^Redistribution and use" OR NOT holders MATCHES "Facebook")
        message(FATAL_ERROR "No licence of the decoder for Zstandard in ${file}")
    endif()
    set(${output} "Zstandard decoder:\n${holders}\n\n${text}" PARENT_SCOPE)
endfunction()

# kestrelpack_add_sevenzip_decoder(<target>): makes an object library from the archive parser and the decoders
# of 7-Zip's C part, with the including project's flags but without its warnings. The target's property
# KESTRELPACK_ASSEMBLED lists the object files that must be linked with it.
function(kestrelpack_add_sevenzip_decoder target)
    kestrelpack_sevenzip_source(folder)
    set(files 7zArcIn 7zBuf 7zCrc 7zStream Bcj2 Bra Bra86 BraIA64 CpuArch Delta Lzma2Dec
              LzmaDec Xxh64 ZstdDec)
    list(TRANSFORM files PREPEND "${folder}/C/")
    list(TRANSFORM files APPEND ".c")
    add_library(${target} OBJECT ${files})
    target_include_directories(${target} SYSTEM PUBLIC "${folder}/C")
    target_compile_definitions(${target} PRIVATE Z7_ST)
    # The module's own code computes the check sums of files, by instructions of x86. This is for short data only.
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
        target_compile_definitions(${target} PRIVATE Z7_CRC_NUM_TABLES=1)
    else()
        target_sources(${target} PRIVATE "${folder}/C/7zCrcOpt.c")
    endif()
    # The x86 code reads unaligned words on purpose; a sanitizer must not stop there.
    target_compile_options(${target} PRIVATE -w -fno-sanitize=alignment)

    kestrelpack_assemble_lzma_decoder(object "${folder}")
    if(object)
        target_compile_definitions(${target} PRIVATE Z7_LZMA_DEC_OPT)
        set_source_files_properties("${object}" PROPERTIES EXTERNAL_OBJECT TRUE)
        set_target_properties(${target} PROPERTIES KESTRELPACK_ASSEMBLED "${object}")
    endif()
endfunction()
