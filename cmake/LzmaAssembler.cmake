# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

include_guard(GLOBAL)

# 7-Zip's LZMA decoder and match finder in assembler are faster than those in C. They are written for
# Microsoft's macro assembler. LLVM's assembler accepts them after some forms that it does not know are
# rewritten. Version 19 works; version 14 does not.
# The module uses the decoder (SevenZipSource.cmake), and 7zr the match finder (helpers/archiver).
find_program(KESTRELPACK_LLVM_ML NAMES llvm-ml-19 llvm-ml-20 llvm-ml-21 llvm-ml
    DOC "LLVM's macro assembler (package llvm-19) for the LZMA decoder and the match finder")
mark_as_advanced(KESTRELPACK_LLVM_ML)

# Sets the variable to the text without text equates for whole operands ("hash_VAR equ QWORD PTR [r4 + 16]"): each
# is replaced where it is used. As a macro's argument, an operand is put in angle brackets, because it has spaces.
function(kestrelpack_replace_operand_equates output text)
    set(operand "([DQ]WORD PTR )?\\[[^]\n]*\\]")
    # A semicolon would divide the list of matches; here it begins a comment.
    string(REGEX REPLACE ";[^\n]*" "" text "${text}")
    string(REGEX REPLACE "(\n +COPY_VAR_[0-9]+) ([A-Za-z_]+), ([A-Za-z_]+)" "\\1 <\\2>, <\\3>" text "${text}")
    while(text MATCHES "\n[ \t]*([A-Za-z_]+)[ \t]+equ[ \t]+(${operand})")
        set(equate "${CMAKE_MATCH_0}")
        set(name "${CMAKE_MATCH_1}")
        set(value "${CMAKE_MATCH_2}")
        string(REPLACE "${equate}" "" text "${text}")
        string(REGEX REPLACE "([^A-Za-z_0-9])${name}([^A-Za-z_0-9])" "\\1${value}\\2" text "${text}")
    endwhile()
    set(${output} "${text}" PARENT_SCOPE)
endfunction()

# Rewrites text equates that end within an operand ("LOC rep0"), macro calls in parentheses, a built-in text
# function, and the sizes of jumps.
function(kestrelpack_translate_assembler input output)
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
    kestrelpack_replace_operand_equates(text "${text}")
    # Replaces the macro's two registers before their names are joined.
    string(REPLACE "@CatStr(src, _W)" "src&_W" text "${text}")
    string(REPLACE "\nMY_ASM_START\n" "\nEDX_W equ DX\nEDI_W equ DI\nMY_ASM_START\n" text "${text}")
    file(WRITE "${output}" "${text}")
endfunction()

# kestrelpack_assemble(<variable> <name> <7-Zip's folder> <folder> [WINDOWS]): assembles Asm/x86/<name>.asm in the
# folder, for x86-64. Sets the variable to the object file; if it cannot be made, sets it to nothing, and
# <variable>_PROBLEM to the reason.
function(kestrelpack_assemble output name sevenzip folder)
    set(${output} "" PARENT_SCOPE)
    if(NOT KESTRELPACK_LLVM_ML)
        set(${output}_PROBLEM "llvm-ml (package llvm-19) is missing" PARENT_SCOPE)
        return()
    endif()
    set(problem "${KESTRELPACK_LLVM_ML} cannot assemble the other one")
    set(${output}_PROBLEM "${problem}" PARENT_SCOPE)

    file(MAKE_DIRECTORY "${folder}")
    foreach(file ${name} 7zAsm)
        kestrelpack_translate_assembler("${sevenzip}/Asm/x86/${file}.asm" "${folder}/${file}.asm")
    endforeach()
    set(convention /DABI_LINUX)
    if("WINDOWS" IN_LIST ARGN)
        set(convention "")
    endif()
    execute_process(
        COMMAND "${KESTRELPACK_LLVM_ML}" -m64 /c ${convention} /Fo ${name}.obj ${name}.asm
        WORKING_DIRECTORY "${folder}" RESULT_VARIABLE result OUTPUT_QUIET ERROR_QUIET)
    set(object "${folder}/${name}.obj")
    if(result EQUAL 0 AND convention)
        # Converts COFF to ELF; the file has no relocations.
        set(object "${folder}/${name}.o")
        string(TOUPPER "${name}" section)
        find_program(CMAKE_OBJCOPY objcopy)
        execute_process(
            COMMAND "${CMAKE_OBJCOPY}" -I pe-x86-64 -O elf64-x86-64
                --rename-section .text$${section}=.text.${name}
                --add-section .note.GNU-stack=/dev/null ${name}.obj "${object}"
            WORKING_DIRECTORY "${folder}" RESULT_VARIABLE result OUTPUT_QUIET ERROR_QUIET)
    endif()
    if(result EQUAL 0)
        set(${output} "${object}" PARENT_SCOPE)
    endif()
endfunction()

# kestrelpack_assemble_lzma_decoder(<variable> <7-Zip's folder>): sets the variable to an object file for the
# target system. The file contains the function that LzmaDec.c calls if it is compiled with Z7_LZMA_DEC_OPT.
# If that file cannot be made, sets the variable to nothing and prints the reason.
function(kestrelpack_assemble_lzma_decoder output sevenzip)
    set(${output} "" PARENT_SCOPE)
    # A sanitizer can check only C code.
    if(NOT CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$" OR CMAKE_C_FLAGS MATCHES "-fsanitize")
        message(STATUS "LZMA decoder: in C")
        return()
    endif()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
        "${sevenzip}/Asm/x86/LzmaDecOpt.asm" "${sevenzip}/Asm/x86/7zAsm.asm")
    set(system "")
    if(WIN32)
        set(system WINDOWS)
    endif()
    kestrelpack_assemble(object LzmaDecOpt "${sevenzip}" "${CMAKE_CURRENT_BINARY_DIR}/lzma-assembler" ${system})
    if(object)
        message(STATUS "LZMA decoder: in assembler")
    else()
        message(STATUS "LZMA decoder: in C, because ${object_PROBLEM}")
    endif()
    set(${output} "${object}" PARENT_SCOPE)
endfunction()
