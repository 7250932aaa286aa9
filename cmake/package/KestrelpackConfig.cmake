# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

# find_package(Kestrelpack) gives the program Kestrelpack::cli, the command kestrelpack_add_portable(), and the
# variable Kestrelpack_CPACK_SCRIPT for "cpack -G External".

if(CMAKE_VERSION VERSION_LESS 3.21)
    set(Kestrelpack_FOUND FALSE)
    set(Kestrelpack_NOT_FOUND_MESSAGE
        "Kestrelpack's package needs CMake 3.21; this is CMake ${CMAKE_VERSION}.")
    return()
endif()

include("${CMAKE_CURRENT_LIST_DIR}/KestrelpackTerminalProgram.cmake")
kestrelpack_find_terminal_program(Kestrelpack_CLI Kestrelpack_NOT_FOUND_MESSAGE)
if(NOT Kestrelpack_CLI)
    set(Kestrelpack_FOUND FALSE)
    return()
endif()

if(NOT TARGET Kestrelpack::cli)
    add_executable(Kestrelpack::cli IMPORTED GLOBAL)
    set_target_properties(Kestrelpack::cli PROPERTIES IMPORTED_LOCATION "${Kestrelpack_CLI}")
endif()
set(Kestrelpack_CPACK_SCRIPT "${CMAKE_CURRENT_LIST_DIR}/KestrelpackCPack.cmake")
include("${CMAKE_CURRENT_LIST_DIR}/KestrelpackPortable.cmake")

# CPack hands variables with these names on to its script, which runs without the project.
kestrelpack_header_tool(Kestrelpack_header_tool)
kestrelpack_library_folders(Kestrelpack_library_folders)
kestrelpack_link_folders(Kestrelpack_link_folders)
foreach(name IN ITEMS header_tool library_folders link_folders)
    string(TOUPPER "CPACK_KESTRELPACK_${name}" variable)
    set(${variable} "${Kestrelpack_${name}}" CACHE INTERNAL "")
endforeach()
