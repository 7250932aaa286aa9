# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

include_guard(GLOBAL)
include("${CMAKE_CURRENT_LIST_DIR}/FinishProgram.cmake")

set(KESTRELPACK_WINDOWS_TEMPLATES "${CMAKE_CURRENT_LIST_DIR}/windows" CACHE INTERNAL "")

# kestrelpack_link_whole(<target>): on Windows, links the program as one file, adds threadlocals.cpp so that its
# threads end correctly, and leaves out the build time, so that the same source gives the same file. A release
# build has no symbols. The header says that the program needs Windows 10, as its manifest does.
function(kestrelpack_link_whole target)
    if(MINGW)
        target_link_options(${target} PRIVATE -static -Wl,--no-insert-timestamp
            -Wl,--major-os-version,10,--minor-os-version,0
            -Wl,--major-subsystem-version,10,--minor-subsystem-version,0)
        target_sources(${target} PRIVATE "${KESTRELPACK_WINDOWS_TEMPLATES}/threadlocals.cpp")
        if(CMAKE_BUILD_TYPE MATCHES "^(Release|MinSizeRel)$")
            target_link_options(${target} PRIVATE -s -Wl,--gc-sections)
        endif()
    endif()
endfunction()

# kestrelpack_windows_program(<target> FILE_NAME <name.exe> DESCRIPTION <text> [NO_ICON]): on Windows, gives
# the program its icon, version information and manifest, and links it whole.
function(kestrelpack_windows_program target)
    if(NOT WIN32)
        return()
    endif()
    cmake_parse_arguments(PARSE_ARGV 1 arg "NO_ICON" "FILE_NAME;DESCRIPTION" "")
    string(REPLACE "." "," version_numbers "${Kestrelpack_VERSION}")
    set(file_name "${arg_FILE_NAME}")
    set(description "${arg_DESCRIPTION}")
    set(icon "${Kestrelpack_SOURCE_DIR}/resources/icons/logo.ico")
    set(icon_line "IDI_ICON1 ICON \"${icon}\"")
    if(arg_NO_ICON)
        set(icon_line "// no icon")
    endif()
    set(manifest "${CMAKE_CURRENT_BINARY_DIR}/${target}.manifest")
    set(resources "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc")
    configure_file("${KESTRELPACK_WINDOWS_TEMPLATES}/program.manifest.in" "${manifest}" @ONLY)
    configure_file("${KESTRELPACK_WINDOWS_TEMPLATES}/program.rc.in" "${resources}" @ONLY)
    set_source_files_properties("${resources}" PROPERTIES OBJECT_DEPENDS "${manifest};${icon}")
    target_sources(${target} PRIVATE "${resources}")
    if(MSVC)
        target_link_options(${target} PRIVATE /MANIFEST:NO) # the resources contain the manifest
    endif()

    get_filename_component(name "${arg_FILE_NAME}" NAME_WE)
    set_target_properties(${target} PROPERTIES OUTPUT_NAME "${name}")
    kestrelpack_link_whole(${target})
endfunction()
