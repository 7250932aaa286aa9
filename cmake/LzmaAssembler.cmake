# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

include_guard(GLOBAL)

# 7-Zip's LZMA decoder in assembler is about a quarter faster than the one in C. It is written for
# Microsoft's macro assembler. LLVM's assembler accepts it after some forms that it does not know are
# rewritten. Version 19 works; version 14 does not.
find_program(KESTRELPACK_LLVM_ML NAMES llvm-ml-19 llvm-ml-20 llvm-ml-21 llvm-ml
    DOC "LLVM's macro assembler (package llvm-19) for the LZMA decoder")
mark_as_advanced(KESTRELPACK_LLVM_ML)

# Rewrites text equates that end within an operand ("LOC rep0"), macro calls in parentheses, a built-in text
# function, and the sizes of jumps.
function(kestrelpack_translate_lzma_assembler input output)
    file(READ "${input}" text)
    string(REPLACE "\r" "" text "${text}")
    string(REGEX REPLACE "\n(PTR_FIELD|GLOB_2|GLOB|LOC_0|LOC)[ \t]+equ [^\n]*" "" text "${text}")
    string(REGEX REPLACE "([ \t])PTR_FIELD" "\\1dq ?" text "${text}")
    foreach(equate "GLOB_2|[sym_R].CLzmaDec_Asm" "GLOB|[r1].CLzmaDec_Asm"
                   "LOC_0|[r0].CLzmaDec_Asm_Loc" "LOC|[RSP].CLzmaDec_Asm_Loc")
        string(REGEX MATCH "^([^|]+)\\|(.*)$" found "${equate}")
        set(place "${CMAKE_MATCH_2}")
        string(REGEX REPLACE "([ \t])${CMAKE_MATCH_1} +([A-Za-z_0-9]+)" "\\1${place}.\\2"
            text "${text}")
    endforeach()
    string(REGEX REPLACE "(COPY_VAR|RESTORE_VAR)\\(([a-zA-Z_0-9]+)\\)" "\\1 \\2" text "${text}")
    string(REGEX REPLACE "(near|short) ptr " "" text "${text}")
    # Replaces the macro's two registers before their names are joined.
    string(REPLACE "@CatStr(src, _W)" "src&_W" text "${text}")
    string(REPLACE "\nMY_ASM_START\n" "\nEDX_W equ DX\nEDI_W equ DI\nMY_ASM_START\n" text "${text}")
    file(WRITE "${output}" "${text}")
endfunction()

# kestrelpack_assemble_lzma_decoder(<variable> <7-Zip's folder>): sets the variable to an object file for the
# target system. The file contains the function that LzmaDec.c calls if it is compiled with Z7_LZMA_DEC_OPT.
# If that file cannot be made, sets the variable to nothing and prints the reason.
function(kestrelpack_assemble_lzma_decoder output sevenzip)
    set(${output} "" PARENT_SCOPE)
    set(folder "${CMAKE_CURRENT_BINARY_DIR}/lzma-assembler")
    set(object "${folder}/LzmaDecOpt.obj")
    # A sanitizer can check only C code.
    if(NOT CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$" OR CMAKE_C_FLAGS MATCHES "-fsanitize")
        message(STATUS "LZMA decoder: in C")
        return()
    endif()
    if(NOT KESTRELPACK_LLVM_ML)
        message(STATUS "LZMA decoder: in C, because llvm-ml (package llvm-19) is missing")
        return()
    endif()

    file(MAKE_DIRECTORY "${folder}")
    set(sources "${sevenzip}/Asm/x86")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
        "${sources}/LzmaDecOpt.asm" "${sources}/7zAsm.asm")
    foreach(name LzmaDecOpt 7zAsm)
        kestrelpack_translate_lzma_assembler("${sources}/${name}.asm" "${folder}/${name}.asm")
    endforeach()
    set(convention "")
    if(NOT WIN32)
        set(convention /DABI_LINUX)
    endif()
    execute_process(
        COMMAND "${KESTRELPACK_LLVM_ML}" -m64 /c ${convention} /Fo LzmaDecOpt.obj LzmaDecOpt.asm
        WORKING_DIRECTORY "${folder}" RESULT_VARIABLE result OUTPUT_QUIET ERROR_QUIET)
    if(result EQUAL 0 AND NOT WIN32)
        # Converts COFF to ELF; the file has no relocations.
        set(object "${folder}/LzmaDecOpt.o")
        execute_process(
            COMMAND "${CMAKE_OBJCOPY}" -I pe-x86-64 -O elf64-x86-64
                --rename-section .text$LZMADECOPT=.text.LzmaDecOpt
                --add-section .note.GNU-stack=/dev/null LzmaDecOpt.obj "${object}"
            WORKING_DIRECTORY "${folder}" RESULT_VARIABLE result OUTPUT_QUIET ERROR_QUIET)
    endif()
    if(NOT result EQUAL 0)
        message(STATUS "LZMA decoder: in C, because ${KESTRELPACK_LLVM_ML} cannot assemble the other one")
        return()
    endif()
    message(STATUS "LZMA decoder: in assembler")
    set(${output} "${object}" PARENT_SCOPE)
endfunction()
