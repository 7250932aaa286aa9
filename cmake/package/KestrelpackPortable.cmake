# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

# kestrelpack_add_portable(<target>
#     [MAIN <path>] [ICON <file>|none] [OUTPUT <path>] [TARGET_NAME <name>] [ALL] [STRIP] [NO_QT_DEPLOY]
#     [DIRECTORY <folder>...] [FILES <file>...] [DEPENDS <target or file>...]
#     [SEARCH <folder>...] [SYSTEM_LIBRARIES <name>...] [OPTIONS <option>...]
#     [SIGN <command> <argument>...] [COMPONENT <name>] [DESTINATION <folder>])
#
# Adds the target <target>-portable, which packs the Windows program <target>, with everything that it needs,
# into one executable. docs/cmake.md explains the arguments.

include_guard(GLOBAL)
set(KESTRELPACK_PACKAGE_FOLDER "${CMAKE_CURRENT_LIST_DIR}" CACHE INTERNAL "")

# Functions use the policies of the file that defines them, not those of the project that calls them.
cmake_policy(PUSH)
cmake_policy(VERSION 3.21...3.25)

# Sets `variable` to `paths`, relative ones from the source folder. A slash at the end stays.
function(kestrelpack_absolute_paths variable)
    cmake_parse_arguments(PARSE_ARGV 1 no "" "" "")
    set(result "")
    foreach(path IN LISTS no_UNPARSED_ARGUMENTS)
        if(NOT IS_ABSOLUTE "${path}" AND NOT path MATCHES "^\\$<")
            set(path "${CMAKE_CURRENT_SOURCE_DIR}/${path}")
        endif()
        list(APPEND result "${path}")
    endforeach()
    set(${variable} "${result}" PARENT_SCOPE)
endfunction()

function(kestrelpack_check_target target)
    if(NOT TARGET "${target}")
        message(FATAL_ERROR "kestrelpack_add_portable: there is no target ${target}.")
    endif()
    get_target_property(type ${target} TYPE)
    get_target_property(is_imported ${target} IMPORTED)
    if(NOT type STREQUAL "EXECUTABLE" OR is_imported)
        message(FATAL_ERROR "kestrelpack_add_portable: ${target} is no program of this project; "
            "only a target from add_executable() can be packed.")
    endif()
    if(NOT WIN32)
        message(FATAL_ERROR "kestrelpack_add_portable: ${target} is built for "
            "${CMAKE_SYSTEM_NAME}, and only Windows programs can be packed. Configure with a "
            "toolchain file for Windows, or call this command inside if(WIN32).")
    endif()
endfunction()

# Some options of the terminal program have arguments of the command in their place.
function(kestrelpack_check_options)
    foreach(option IN LISTS ARGN)
        if(option MATCHES "^(-m|--main|-o|--output|-n|--name|-i|--icon)(=.*)?$")
            message(FATAL_ERROR "kestrelpack_add_portable: OPTIONS cannot have "
                "${CMAKE_MATCH_1}; use the arguments MAIN, OUTPUT and ICON.")
        endif()
    endforeach()
endfunction()

# Sets `variable` to the path of the produced file. It may depend on the configuration only.
function(kestrelpack_product_path variable target output)
    get_target_property(name ${target} RUNTIME_OUTPUT_NAME)
    if(NOT name)
        get_target_property(name ${target} OUTPUT_NAME)
    endif()
    if(NOT name)
        get_target_property(name ${target} NAME)
    endif()
    get_property(is_multi GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
    if(NOT output)
        set(output portable)
    endif()
    if(output MATCHES "\\.[Ee][Xx][Ee]$")
        if(is_multi AND NOT output MATCHES "\\$<")
            message(FATAL_ERROR "kestrelpack_add_portable: OUTPUT ${output} would be the same "
                "file for all configurations; put $<CONFIG> into it, or name a folder.")
        endif()
    else()
        if(is_multi AND NOT output MATCHES "\\$<")
            string(APPEND output "/$<CONFIG>")
        endif()
        string(APPEND output "/${name}.exe")
    endif()
    if(NOT IS_ABSOLUTE "${output}" AND NOT output MATCHES "^\\$<")
        set(output "${CMAKE_CURRENT_BINARY_DIR}/${output}")
    endif()
    set(${variable} "${output}" PARENT_SCOPE)
endfunction()

# Sets `variable` to the folders with the import libraries of this compiler.
function(kestrelpack_link_folders variable)
    set(folders ${CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES} ${CMAKE_C_IMPLICIT_LINK_DIRECTORIES})
    list(REMOVE_DUPLICATES folders)
    set(${variable} "${folders}" PARENT_SCOPE)
endfunction()

# Sets `variable` to folders in which libraries of this compiler and of the project's packages can be.
function(kestrelpack_library_folders variable)
    kestrelpack_link_folders(folders)
    foreach(folder IN LISTS folders)
        list(APPEND folders "${folder}/../bin")
    endforeach()
    foreach(prefix IN LISTS CMAKE_PREFIX_PATH CMAKE_FIND_ROOT_PATH)
        list(APPEND folders "${prefix}/bin")
    endforeach()
    foreach(compiler IN ITEMS "${CMAKE_CXX_COMPILER}" "${CMAKE_C_COMPILER}")
        if(compiler AND CMAKE_HOST_WIN32)
            get_filename_component(folder "${compiler}" DIRECTORY)
            list(APPEND folders "${folder}")
        endif()
    endforeach()
    if(MSVC)
        set(CMAKE_INSTALL_SYSTEM_RUNTIME_LIBS_SKIP TRUE)
        include(InstallRequiredSystemLibraries)
        foreach(library IN LISTS CMAKE_INSTALL_SYSTEM_RUNTIME_LIBS)
            get_filename_component(folder "${library}" DIRECTORY)
            list(APPEND folders "${folder}")
        endforeach()
    endif()
    list(REMOVE_DUPLICATES folders)
    set(${variable} "${folders}" PARENT_SCOPE)
endfunction()

# Sets `variable` to the program that lists the libraries that a program needs, or to nothing.
function(kestrelpack_header_tool variable)
    set(tool "${CMAKE_OBJDUMP}")
    if(MSVC OR NOT tool)
        get_filename_component(folder "${CMAKE_LINKER}" DIRECTORY)
        find_program(dumpbin NAMES dumpbin HINTS "${folder}" NO_CACHE NO_CMAKE_FIND_ROOT_PATH)
        if(dumpbin)
            set(tool "${dumpbin}")
        endif()
    endif()
    set(${variable} "${tool}" PARENT_SCOPE)
endfunction()

# Sets `variable` to Qt's deployment tool for Windows, or to nothing.
function(kestrelpack_windeployqt variable)
    set(tool "")
    foreach(version IN ITEMS 6 5)
        if(TARGET Qt${version}::windeployqt)
            set(tool "$<TARGET_FILE:Qt${version}::windeployqt>")
            break()
        elseif(TARGET Qt${version}::Core)
            find_program(found NAMES windeployqt NO_CACHE NO_CMAKE_FIND_ROOT_PATH
                HINTS "${QT6_INSTALL_PREFIX}/bin" "${Qt${version}_DIR}/../../../bin")
            if(found)
                set(tool "${found}")
            endif()
            break()
        endif()
    endforeach()
    set(${variable} "${tool}" PARENT_SCOPE)
endfunction()

# Writes what the packing script needs to know into a file, which changes only if something else is to be done.
# The names of its variables begin with "settings_". The arguments of the command are the variables arg_...
function(kestrelpack_write_settings target product work)
    get_target_property(settings_cli Kestrelpack::cli LOCATION)
    set(settings_target "${target}")
    set(settings_work "${work}")
    set(settings_product "${product}")
    set(settings_program "$<TARGET_FILE:${target}>")
    set(settings_runtime_dlls "$<TARGET_RUNTIME_DLLS:${target}>")
    set(settings_qt_deploy_support "${QT_DEPLOY_SUPPORT}")
    kestrelpack_link_folders(settings_link_folders)
    kestrelpack_library_folders(settings_library_folders)
    kestrelpack_header_tool(settings_header_tool)
    kestrelpack_windeployqt(settings_windeployqt)
    set(settings_strip "")
    if(arg_STRIP)
        set(settings_strip "${CMAKE_STRIP}")
    endif()
    set(given MAIN ICON FILES DIRECTORY SEARCH SYSTEM_LIBRARIES OPTIONS SIGN NO_QT_DEPLOY)
    foreach(name IN LISTS given)
        string(TOLOWER "settings_${name}" setting)
        set(${setting} "${arg_${name}}")
    endforeach()

    set(content "")
    get_cmake_property(names VARIABLES)
    list(FILTER names INCLUDE REGEX "^settings_")
    foreach(name IN LISTS names)
        string(APPEND content "set(${name} [==[${${name}}]==])\n")
    endforeach()
    file(GENERATE OUTPUT "${work}/settings.cmake" CONTENT "${content}")
endfunction()

# Adds the target `name`, which makes `product`.
function(kestrelpack_add_packing target name product work)
    set(all "")
    if(arg_ALL)
        set(all ALL)
    endif()
    set(inputs "")
    foreach(file IN LISTS arg_FILES arg_ICON)
        if(NOT file STREQUAL "none")
            list(APPEND inputs "${file}")
        endif()
    endforeach()
    file(GLOB scripts "${KESTRELPACK_PACKAGE_FOLDER}/Kestrelpack*.cmake")
    add_custom_command(
        OUTPUT "${product}"
        COMMAND "${CMAKE_COMMAND}" -D "KESTRELPACK_SETTINGS=${work}/settings.cmake"
                -P "${KESTRELPACK_PACKAGE_FOLDER}/KestrelpackPack.cmake"
        DEPENDS ${target} "${work}/settings.cmake" ${scripts} ${inputs} ${arg_DEPENDS}
        DEPFILE "${work}/inputs.d"
        COMMENT "Packing ${target} into one executable"
        VERBATIM)
    add_custom_target(${name} ${all} DEPENDS "${product}")
    set_target_properties(${name} PROPERTIES
        KESTRELPACK_FILE "${product}"
        ADDITIONAL_CLEAN_FILES "${work}/folder")
endfunction()

# Only "cmake --install <build> --component <name>" installs the produced file: an installation of the whole
# project contains the program itself. CPack may ask for all components, also those that were not built.
function(kestrelpack_install_product name product component destination)
    install(CODE "
        if(NOT EXISTS \"${product}\" AND NOT CMAKE_INSTALL_PREFIX MATCHES \"/_CPack_Packages/\")
            message(FATAL_ERROR \"${product} is missing: build the target ${name} first.\")
        endif()" COMPONENT "${component}" EXCLUDE_FROM_ALL)
    install(PROGRAMS "${product}" DESTINATION "${destination}"
        COMPONENT "${component}" EXCLUDE_FROM_ALL OPTIONAL)
    # CPack's script leaves these components out.
    set(components ${CPACK_KESTRELPACK_PORTABLE_COMPONENTS} "${component}")
    list(REMOVE_DUPLICATES components)
    set(CPACK_KESTRELPACK_PORTABLE_COMPONENTS "${components}" CACHE INTERNAL "")
endfunction()

function(kestrelpack_add_portable target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "ALL;STRIP;NO_QT_DEPLOY"
        "MAIN;ICON;OUTPUT;TARGET_NAME;COMPONENT;DESTINATION"
        "DIRECTORY;FILES;DEPENDS;SEARCH;SYSTEM_LIBRARIES;OPTIONS;SIGN")
    if(arg_UNPARSED_ARGUMENTS OR arg_KEYWORDS_MISSING_VALUES)
        message(FATAL_ERROR "kestrelpack_add_portable: unknown, or without a value: "
            "${arg_UNPARSED_ARGUMENTS} ${arg_KEYWORDS_MISSING_VALUES}")
    endif()
    kestrelpack_check_target(${target})
    kestrelpack_check_options(${arg_OPTIONS})
    foreach(default IN ITEMS "TARGET_NAME=${target}-portable" "COMPONENT=portable" "DESTINATION=.")
        string(REGEX MATCH "^([A-Z_]+)=(.*)$" unused "${default}")
        if(NOT arg_${CMAKE_MATCH_1})
            set(arg_${CMAKE_MATCH_1} "${CMAKE_MATCH_2}")
        endif()
    endforeach()
    foreach(paths IN ITEMS FILES DIRECTORY SEARCH)
        kestrelpack_absolute_paths(arg_${paths} ${arg_${paths}})
    endforeach()
    if(arg_ICON AND NOT arg_ICON STREQUAL "none")
        kestrelpack_absolute_paths(arg_ICON "${arg_ICON}")
    endif()

    set(work "${CMAKE_CURRENT_BINARY_DIR}/kestrelpack/${arg_TARGET_NAME}")
    get_property(is_multi GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
    if(is_multi)
        string(APPEND work "/$<CONFIG>")
    endif()
    kestrelpack_product_path(product ${target} "${arg_OUTPUT}")
    kestrelpack_write_settings(${target} "${product}" "${work}")
    kestrelpack_add_packing(${target} "${arg_TARGET_NAME}" "${product}" "${work}")
    kestrelpack_install_product("${arg_TARGET_NAME}" "${product}" "${arg_COMPONENT}"
        "${arg_DESTINATION}")
endfunction()

cmake_policy(POP)
