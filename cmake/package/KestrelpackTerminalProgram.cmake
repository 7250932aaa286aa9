# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

# Finds and runs kestrelpack-cli. Used while a project is configured, built, and packed with CPack.

set(KESTRELPACK_PREFIX "${CMAKE_CURRENT_LIST_DIR}/../../..")

# Finds the kestrelpack-cli that runs on this machine: the one that KESTRELPACK_CLI names, the one that was
# installed with this package, or one in PATH. Sets the variable `path_variable` to its path, or to nothing,
# and then `reason_variable` to the reason.
function(kestrelpack_find_terminal_program path_variable reason_variable)
    set(name kestrelpack-cli)
    if(CMAKE_HOST_WIN32)
        set(name kestrelpack-cli.exe)
    endif()
    set(reason "")
    if(KESTRELPACK_CLI)
        set(program "${KESTRELPACK_CLI}")
        if(NOT EXISTS "${program}" OR IS_DIRECTORY "${program}")
            set(reason "KESTRELPACK_CLI is ${program}, which is no file.")
        endif()
    else()
        # A toolchain file may say that programs are in the system root only; this one never is.
        find_program(program "${name}" NO_CACHE NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH
            PATHS "${KESTRELPACK_PREFIX}/bin" "${KESTRELPACK_PREFIX}")
        if(NOT program)
            find_program(program "${name}" NO_CACHE NO_CMAKE_FIND_ROOT_PATH
                NO_CMAKE_PATH NO_CMAKE_ENVIRONMENT_PATH NO_CMAKE_SYSTEM_PATH)
        endif()
        if(NOT program)
            get_filename_component(prefix "${KESTRELPACK_PREFIX}" ABSOLUTE)
            set(reason "The program ${name} is neither in ${prefix}/bin nor in PATH. Install \
Kestrelpack for this machine, or set KESTRELPACK_CLI to the path of its kestrelpack-cli.")
        endif()
    endif()
    if(reason)
        set(program "")
    else()
        get_filename_component(program "${program}" ABSOLUTE)
    endif()
    set(${path_variable} "${program}" PARENT_SCOPE)
    set(${reason_variable} "${reason}" PARENT_SCOPE)
endfunction()

# kestrelpack_run_terminal_program(<program> <argument>...): runs kestrelpack-cli and shows what it says. Ends
# with an error if it fails.
function(kestrelpack_run_terminal_program program)
    cmake_parse_arguments(PARSE_ARGV 1 no "" "" "")
    execute_process(COMMAND "${program}" ${no_UNPARSED_ARGUMENTS}
        RESULT_VARIABLE result ERROR_VARIABLE errors OUTPUT_VARIABLE output ENCODING UTF-8)
    string(STRIP "${output}${errors}" said)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${program} failed (${result}):\n${said}")
    elseif(said)
        message("${said}")
    endif()
endfunction()
