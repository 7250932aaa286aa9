# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

include_guard(GLOBAL)

get_filename_component(KESTRELPACK_FINISH_ROOT "${CMAKE_CURRENT_LIST_DIR}/.." ABSOLUTE)
set(KESTRELPACK_FINISH_ROOT "${KESTRELPACK_FINISH_ROOT}" CACHE INTERNAL "")
set(KESTRELPACK_FINISH_PROGRAM "${CMAKE_BINARY_DIR}/host/finish-program" CACHE INTERNAL "")

# The step after linking, which completes the header of a Windows program (tools/finish-program/finishing.h).
# The tool runs on the machine that builds, so its script does not use the cross compiler.
if(CMAKE_CROSSCOMPILING AND WIN32)
    file(GLOB sources CONFIGURE_DEPENDS
        "${KESTRELPACK_FINISH_ROOT}/tools/finish-program/*"
        "${KESTRELPACK_FINISH_ROOT}/helpers/pe/*.h"
        "${KESTRELPACK_FINISH_ROOT}/helpers/pe/*.cpp")
    add_custom_command(
        OUTPUT "${KESTRELPACK_FINISH_PROGRAM}"
        COMMAND "${CMAKE_COMMAND}" -E make_directory "${CMAKE_BINARY_DIR}/host"
        COMMAND "${KESTRELPACK_FINISH_ROOT}/tools/finish-program/build"
                "${KESTRELPACK_FINISH_PROGRAM}"
        DEPENDS ${sources}
        COMMENT "Building finish-program for this machine"
        VERBATIM)
    add_custom_target(finish-program DEPENDS "${KESTRELPACK_FINISH_PROGRAM}")
endif()

# kestrelpack_finish_program(<target> [WITH_QT]): on Windows, links the program with its load configuration and
# runs the step after linking. WITH_QT: the program links Qt; it also gets systemrandom_win.cpp.
#
# A build on Windows itself does not do this, and with a shared Qt neither: there Qt's libraries lie beside the
# program, and the load configuration would keep the loader from finding them.
function(kestrelpack_finish_program target)
    if(NOT TARGET finish-program)
        return()
    endif()
    cmake_parse_arguments(PARSE_ARGV 1 arg "WITH_QT" "" "")
    if(arg_WITH_QT)
        get_target_property(type Qt6::Core TYPE)
        if(type STREQUAL "SHARED_LIBRARY")
            message(STATUS "${target}: no load configuration, because Qt is not linked into it")
            return()
        endif()
        target_sources(${target} PRIVATE
            "${KESTRELPACK_FINISH_ROOT}/cmake/windows/systemrandom_win.cpp")
    endif()
    target_sources(${target} PRIVATE "${KESTRELPACK_FINISH_ROOT}/cmake/windows/loadconfig.cpp")
    target_include_directories(${target} PRIVATE "${KESTRELPACK_FINISH_ROOT}")
    target_link_options(${target} PRIVATE -Wl,-u,kestrelpackLoadConfig)
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${KESTRELPACK_FINISH_PROGRAM}")
    add_dependencies(${target} finish-program)
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND "${KESTRELPACK_FINISH_PROGRAM}" "$<TARGET_FILE:${target}>" VERBATIM)
endfunction()
