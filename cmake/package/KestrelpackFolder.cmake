# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

# Lays the folder that is packed: the user's files, the target, Qt, and the libraries that all of them need.
# The variables settings_... are the arguments of kestrelpack_add_portable().

# Copies what DIRECTORY and FILES name, as install() does: a slash at the end of a folder means its content.
function(copy_user_files folder)
    foreach(directory IN LISTS settings_directory)
        string(REGEX REPLACE "/+$" "" plain "${directory}")
        if(NOT IS_DIRECTORY "${plain}")
            fail_packing("there is no folder ${plain} (argument DIRECTORY).")
        endif()
        string(FIND "${settings_product}" "${plain}/" place)
        if(place EQUAL 0)
            fail_packing("the produced file ${settings_product} would be in ${plain}, which is \
packed into it. Choose another OUTPUT.")
        endif()
        file(COPY "${directory}" DESTINATION "${folder}")
    endforeach()
    foreach(file IN LISTS settings_files)
        if(NOT EXISTS "${file}" OR IS_DIRECTORY "${file}")
            fail_packing("there is no file ${file} (argument FILES).")
        endif()
        file(COPY "${file}" DESTINATION "${folder}")
    endforeach()
endfunction()

# Copies the target and the libraries of its targets. Sets `main_variable` to the main program's path in the
# folder, and `place_variable` to the folder of the target and its libraries.
#
# MAIN can give the target another folder ("bin/app.exe"), or name another program among the user's files.
function(copy_target folder main_variable place_variable)
    get_filename_component(name "${settings_program}" NAME)
    get_filename_component(main_name "${settings_main}" NAME)
    get_filename_component(main_folder "${settings_main}" DIRECTORY)
    set(place "${folder}")
    if(settings_main STREQUAL "")
        set(settings_main "${name}")
    elseif(main_name STREQUAL name AND NOT main_folder STREQUAL "")
        string(APPEND place "/${main_folder}")
    endif()
    file(COPY "${settings_program}" DESTINATION "${place}")
    foreach(library IN LISTS settings_runtime_dlls)
        if(EXISTS "${library}")
            file(COPY "${library}" DESTINATION "${place}")
        endif()
    endforeach()
    set(${main_variable} "${settings_main}" PARENT_SCOPE)
    set(${place_variable} "${place}" PARENT_SCOPE)
endfunction()

# Runs Qt's deployment for the target, if it needs Qt and the user's files do not contain Qt already.
function(deploy_qt folder place)
    get_filename_component(name "${settings_program}" NAME)
    file(RELATIVE_PATH bin "${folder}" "${place}")
    if(bin STREQUAL "")
        set(bin .)
    endif()
    set(tool_error "")
    if(settings_qt_deploy_support AND EXISTS "${settings_qt_deploy_support}")
        set(QT_DEPLOY_PREFIX "${folder}")
        include("${settings_qt_deploy_support}")
        if(__QT_DEPLOY_TOOL)
            qt6_deploy_runtime_dependencies(EXECUTABLE "${bin}/${name}"
                BIN_DIR "${bin}" LIB_DIR "${bin}" PLUGINS_DIR "${bin}")
            return()
        endif()
    endif()
    if(NOT settings_windeployqt)
        fail_packing("it needs Qt's libraries, and Qt's tool windeployqt was not found. Put Qt's \
libraries and plugins into a folder and name it with DIRECTORY, or set CMAKE_PREFIX_PATH to a Qt that has the \
tool.")
    endif()
    execute_process(COMMAND "${settings_windeployqt}" --dir "${place}" "${place}/${name}"
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
    if(NOT result EQUAL 0)
        fail_packing("${settings_windeployqt} failed (${result}):\n${output}${errors}")
    endif()
endfunction()

# Removes the symbols from the copies of the target and of the libraries that were found. The user's files, which
# may be signed, stay as they are.
function(strip_copies folder place)
    foreach(file IN LISTS ARGN)
        get_filename_component(name "${file}" NAME)
        foreach(copy IN ITEMS "${folder}/${name}" "${place}/${name}")
            if(EXISTS "${copy}")
                execute_process(COMMAND "${settings_strip}" "${copy}" RESULT_VARIABLE result)
                if(NOT result EQUAL 0)
                    fail_packing("${settings_strip} failed (${result}) with ${copy}.")
                endif()
            endif()
        endforeach()
    endforeach()
endfunction()

function(check_main folder main)
    if(EXISTS "${folder}/${main}" AND NOT IS_DIRECTORY "${folder}/${main}")
        return()
    endif()
    escape_for_glob("${folder}" pattern)
    file(GLOB_RECURSE programs RELATIVE "${folder}" "${pattern}/*.[Ee][Xx][Ee]")
    list(JOIN programs ", " programs)
    fail_packing("the main program ${main} is missing. The folder has these programs: ${programs}.")
endfunction()

# Lays the folder anew. Sets `main_variable` to the path of the main program in it, and `libraries_variable` to
# the libraries that were copied.
function(lay_folder folder main_variable libraries_variable)
    file(REMOVE_RECURSE "${folder}")
    file(MAKE_DIRECTORY "${folder}")
    copy_user_files("${folder}")
    escape_for_glob("${folder}" pattern)
    file(GLOB_RECURSE users_qt "${pattern}/Qt[56]Core*.dll")
    copy_target("${folder}" main place)
    check_main("${folder}" "${main}")

    set(needs_qt FALSE)
    if(settings_header_tool AND NOT users_qt AND NOT settings_no_qt_deploy)
        needs_library("${folder}/${main}" "^qt[56]core.*\\.dll$" needs_qt)
    endif()
    if(needs_qt)
        deploy_qt("${folder}" "${place}")
    endif()

    set(copied "")
    if(settings_header_tool)
        get_filename_component(name "${settings_program}" NAME)
        copy_needed_libraries("${folder}" "Name their folder with SEARCH, or the libraries with FILES. \
If Windows has them, name them with SYSTEM_LIBRARIES." copied "${folder}/${main}" "${place}/${name}")
    else()
        message("No objdump or dumpbin was found: the libraries of ${settings_target} are not checked.")
    endif()
    if(settings_strip)
        strip_copies("${folder}" "${place}" ${settings_program} ${settings_runtime_dlls} ${copied})
    endif()
    set(${main_variable} "${main}" PARENT_SCOPE)
    set(${libraries_variable} ${settings_runtime_dlls} ${copied} PARENT_SCOPE)
endfunction()
