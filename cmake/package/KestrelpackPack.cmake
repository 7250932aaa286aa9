# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

# The script of the targets that kestrelpack_add_portable() adds: lays the folder, packs it, and writes the list
# of its inputs for the build system. KESTRELPACK_SETTINGS is the file with the arguments.

cmake_minimum_required(VERSION 3.21...3.25)
include("${CMAKE_CURRENT_LIST_DIR}/KestrelpackTerminalProgram.cmake")
include("${CMAKE_CURRENT_LIST_DIR}/KestrelpackLibraries.cmake")
include("${CMAKE_CURRENT_LIST_DIR}/KestrelpackFolder.cmake")
include("${KESTRELPACK_SETTINGS}")

# Writes all files and folders that the produced file was made from, in the form that compilers use. A folder
# is in the list because it changes when a file is added to it. Names with "#" or "$" are left out: CMake writes
# the list again for Ninja and does not escape them.
function(write_inputs)
    set(inputs "${settings_cli}" ${settings_files} ${ARGN})
    foreach(folder IN LISTS settings_directory)
        string(REGEX REPLACE "/+$" "" folder "${folder}")
        escape_for_glob("${folder}" pattern)
        file(GLOB_RECURSE content LIST_DIRECTORIES true "${pattern}/*")
        list(APPEND inputs "${folder}" ${content})
    endforeach()
    list(REMOVE_DUPLICATES inputs)
    string(REPLACE " " "\\ " text "${settings_product}:")
    foreach(input IN LISTS inputs)
        if(EXISTS "${input}" AND NOT input MATCHES "[#$]") # a semicolon in a name splits it
            string(REPLACE " " "\\ " input "${input}")
            string(APPEND text " \\\n  ${input}")
        endif()
    endforeach()
    file(WRITE "${settings_work}/inputs.d" "${text}\n")
endfunction()

# Runs the command of the argument SIGN. A file that is not signed never gets the place of the produced file.
function(sign_product file)
    string(REPLACE "<FILE>" "${file}" command "${settings_sign}")
    execute_process(COMMAND ${command} RESULT_VARIABLE result)
    if(result EQUAL 0)
        file(RENAME "${file}" "${settings_product}")
    endif()
    get_filename_component(folder "${file}" DIRECTORY)
    file(REMOVE_RECURSE "${folder}")
    if(NOT result EQUAL 0)
        list(GET settings_sign 0 program)
        message(FATAL_ERROR "Cannot sign ${settings_product}: ${program} failed (${result}).")
    endif()
endfunction()

set(folder "${settings_work}/folder")
lay_folder("${folder}" main libraries)

set(output "${settings_product}")
if(settings_sign) # beside it, so that it can be renamed
    string(REGEX REPLACE "/([^/]+)$" "/.unsigned-\\1/\\1" output "${settings_product}")
endif()
get_filename_component(output_folder "${output}" DIRECTORY)
file(MAKE_DIRECTORY "${output_folder}")
set(arguments --quiet --main "${main}" --output "${output}")
if(settings_icon)
    list(APPEND arguments --icon "${settings_icon}")
endif()
kestrelpack_run_terminal_program("${settings_cli}" ${arguments} ${settings_options} "${folder}")
if(settings_sign)
    sign_product("${output}")
endif()
write_inputs(${libraries})
file(TOUCH "${settings_product}") # SOURCE_DATE_EPOCH must not make it older than its inputs
