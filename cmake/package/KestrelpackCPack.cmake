# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

# The script for "cpack -G External": packs what the project installs into one executable. A project sets
#
#     set(CPACK_EXTERNAL_PACKAGE_SCRIPT "${Kestrelpack_CPACK_SCRIPT}")
#     set(CPACK_EXTERNAL_ENABLE_STAGING ON)
#
# and, if it wants to, the variables CPACK_KESTRELPACK_... that docs/cmake.md explains.

cmake_minimum_required(VERSION 3.21...3.25)
include("${CMAKE_CURRENT_LIST_DIR}/KestrelpackTerminalProgram.cmake")
include("${CMAKE_CURRENT_LIST_DIR}/KestrelpackLibraries.cmake")

# Sets `variable` to the folder to pack. If CPack has installed each component into a folder of its own, they are
# put together.
function(collect_installed_files variable)
    if(NOT CPACK_EXTERNAL_ENABLE_STAGING)
        message(FATAL_ERROR "Kestrelpack packs the installed files, and CPack has installed none: \
set(CPACK_EXTERNAL_ENABLE_STAGING ON) is missing before include(CPack).")
    endif()
    set(folder "${CPACK_TEMPORARY_DIRECTORY}")
    set(parts "")
    set(components ${CPACK_COMPONENTS_ALL})
    list(REMOVE_ITEM components ${CPACK_KESTRELPACK_PORTABLE_COMPONENTS})
    foreach(component IN LISTS components)
        if(IS_DIRECTORY "${folder}/${component}" AND NOT CPACK_MONOLITHIC_INSTALL)
            list(APPEND parts "${folder}/${component}")
        endif()
    endforeach()
    if(parts)
        set(folder "${CPACK_TEMPORARY_DIRECTORY}-portable")
        file(REMOVE_RECURSE "${folder}")
        file(MAKE_DIRECTORY "${folder}")
        foreach(part IN LISTS parts)
            file(COPY "${part}/" DESTINATION "${folder}")
        endforeach()
    endif()
    set(${variable} "${folder}" PARENT_SCOPE)
endfunction()

# Sets `variable` to the main programs, as paths in the folder: those of CPACK_KESTRELPACK_MAIN, otherwise the
# programs of CPACK_PACKAGE_EXECUTABLES, otherwise the only one that is there.
function(choose_main_programs folder variable)
    string(REPLACE "[" "[[]" pattern "${folder}") # file(GLOB) treats brackets as a pattern
    file(GLOB_RECURSE programs RELATIVE "${folder}" "${pattern}/*.[Ee][Xx][Ee]")
    set(chosen "${CPACK_KESTRELPACK_MAIN}")
    if(NOT chosen)
        set(is_name TRUE) # names and labels take turns
        foreach(entry IN LISTS CPACK_PACKAGE_EXECUTABLES)
            if(is_name)
                list(APPEND chosen "bin/${entry}.exe")
            endif()
            string(COMPARE EQUAL "${is_name}" FALSE is_name)
        endforeach()
    endif()
    if(NOT chosen)
        set(chosen "${programs}")
        list(LENGTH chosen count)
        if(count GREATER 1)
            list(JOIN programs ", " programs)
            message(FATAL_ERROR "Set CPACK_KESTRELPACK_MAIN to the program that the portable file \
starts. The project installs these: ${programs}.")
        endif()
    endif()
    if(NOT programs)
        message(FATAL_ERROR "The project installs no Windows program (.exe), so there is nothing to \
pack. Was it configured for Windows?")
    endif()
    foreach(main IN LISTS chosen)
        if(NOT EXISTS "${folder}/${main}")
            list(JOIN programs ", " programs)
            message(FATAL_ERROR "The main program ${main} is not among the installed files. The \
project installs these programs: ${programs}.")
        endif()
    endforeach()
    set(${variable} "${chosen}" PARENT_SCOPE)
endfunction()

set(KESTRELPACK_CLI "${CPACK_KESTRELPACK_CLI}")
kestrelpack_find_terminal_program(cli reason)
if(NOT cli)
    string(REPLACE "KESTRELPACK_CLI" "CPACK_KESTRELPACK_CLI" reason "${reason}")
    message(FATAL_ERROR "${reason}")
endif()
collect_installed_files(folder)
choose_main_programs("${folder}" main_programs)

# The same search for libraries as for kestrelpack_add_portable(). The folder is CPack's own copy.
set(settings_target "the installed files")
set(settings_header_tool "${CPACK_KESTRELPACK_HEADER_TOOL}")
set(settings_library_folders "${CPACK_KESTRELPACK_LIBRARY_FOLDERS}")
set(settings_link_folders "${CPACK_KESTRELPACK_LINK_FOLDERS}")
set(settings_search "${CPACK_KESTRELPACK_SEARCH}")
set(settings_system_libraries "${CPACK_KESTRELPACK_SYSTEM_LIBRARIES}")
if(settings_header_tool)
    list(TRANSFORM main_programs PREPEND "${folder}/" OUTPUT_VARIABLE program_files)
    copy_needed_libraries("${folder}" "Install them, or name their folder with \
CPACK_KESTRELPACK_SEARCH. If Windows has them, name them with CPACK_KESTRELPACK_SYSTEM_LIBRARIES."
        copied ${program_files})
endif()

set(arguments --quiet)
if(CPACK_KESTRELPACK_ICON)
    list(APPEND arguments --icon "${CPACK_KESTRELPACK_ICON}")
endif()

list(LENGTH main_programs count)
foreach(main IN LISTS main_programs)
    set(name "${CPACK_PACKAGE_FILE_NAME}")
    if(CPACK_KESTRELPACK_FILE_NAME)
        set(name "${CPACK_KESTRELPACK_FILE_NAME}")
    endif()
    if(count GREATER 1) # one file for each main program
        get_filename_component(base "${main}" NAME_WLE)
        string(APPEND name "-${base}")
    endif()
    set(product "${CPACK_TOPLEVEL_DIRECTORY}/${name}.exe")
    kestrelpack_run_terminal_program("${cli}" ${arguments} --main "${main}" --output "${product}"
        ${CPACK_KESTRELPACK_OPTIONS} "${folder}")
    list(APPEND CPACK_EXTERNAL_BUILT_PACKAGES "${product}") # CPack moves them to the build folder
endforeach()
