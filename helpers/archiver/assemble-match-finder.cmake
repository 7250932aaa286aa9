# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

# Assembles 7-Zip's match finder for build-archiver:
#
#   cmake -D SOURCES=FOLDER -D OUTPUT=FILE -D SYSTEM=NATIVE|WINDOWS [-D KESTRELPACK_LLVM_ML=PROGRAM] -P THIS-FILE
#
# OUTPUT is the object file; its folder is used for the work, too. If it cannot be made, prints the reason.

cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/../../cmake/LzmaAssembler.cmake")
get_filename_component(folder "${OUTPUT}" DIRECTORY)
kestrelpack_assemble(object LzFindOpt "${SOURCES}" "${folder}" ${SYSTEM})
if(object)
    file(RENAME "${object}" "${OUTPUT}")
else()
    execute_process(COMMAND "${CMAKE_COMMAND}" -E echo "${object_PROBLEM}")
endif()
