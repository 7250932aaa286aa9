# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

# Finds the libraries that a Windows program needs, and copies those that are not part of Windows. It also works
# for cross builds, where no library of Windows is at hand. The variables settings_... are those of
# KestrelpackPortable.cmake; KestrelpackCPack.cmake sets them, too.

# An error is one paragraph for the person who builds.
function(fail_packing text)
    message(FATAL_ERROR "Cannot pack ${settings_target}: ${text}")
endfunction()

# Libraries in Windows' own folder that programs often need. The libraries for which the compiler has an import
# library (user32.dll: libuser32.a) need not be here.
set(windows_libraries
    advapi32 authz avicap32 avifil32 avrt bcrypt bcryptprimitives cabinet cfgmgr32 cldapi combase comctl32
    comdlg32 compstui credui crypt32 cryptbase cryptsp cryptui d2d1 d3d10 d3d10_1 d3d11 d3d12
    d3d8 d3d9 dbgeng dbghelp dciman32 dcomp ddraw devobj dhcpcsvc dinput8 dnsapi dsound dssenh dwmapi dwrite
    dxcore dxgi dxva2 esent evr fltlib fwpuclnt gdi32 gdi32full gdiplus glu32 hid httpapi imagehlp imm32
    inetcomm iphlpapi kernel32 kernelbase ktmw32 loadperf lz32 magnification mapi32 mf mfplat mfreadwrite
    mgmtapi mmdevapi mpr mscms mscoree msacm32 msctf mshtml msi msimg32 msvcp60 msvcp_win msvcrt msvfw32
    mswsock msxml3 msxml6 ncrypt ndfapi netapi32 netutils newdev ninput normaliz ntdll ntdsapi odbc32 odbccp32
    ole32 oleacc oleaut32 oledlg opengl32 pdh powrprof profapi propsys psapi quartz rasapi32 resutils rpcrt4
    rstrtmgr samcli sechost secur32 sensapi setupapi sfc shcore shell32 shfolder shlwapi slc snmpapi srvcli
    sspicli sti strmiids t2embed tapi32 taskschd tbs tdh traffic twinapi txfw32 ucrtbase uiautomationcore
    urlmon user32 userenv usp10 uxtheme version virtdisk vssapi wbemcomn webservices wer wevtapi wimgapi
    windowscodecs winhttp wininet winmm winscard winspool.drv winsta wintrust winusb wkscli wlanapi wldap32
    wmvcore wofutil ws2_32 wscapi wsdapi wsock32 wtsapi32 xaudio2_9 xinput1_4 xinput9_1_0 xmllite)

# Part of Visual C++, not of Windows, even if an installer has put them into Windows' folder.
set(compiler_libraries "^(vcruntime|msvcp|msvcr|concrt|vcomp|vcamp|vccorlib|mfc)[0-9]")

# Sets `variable` to the path with the characters escaped that file(GLOB) treats as a pattern.
function(escape_for_glob path variable)
    string(REPLACE "[" "[[]" path "${path}")
    set(${variable} "${path}" PARENT_SCOPE)
endfunction()

# Sets `variable` to the names of the libraries that the file loads when it starts, in lower case.
function(list_imports file variable)
    get_property(names GLOBAL PROPERTY "imports of ${file}")
    if(NOT names)
        set(arguments -p)
        set(line "DLL Name: ([^\r\n]+)")
        if(settings_header_tool MATCHES "[Dd][Uu][Mm][Pp][Bb][Ii][Nn]")
            set(arguments /nologo /dependents)
            set(line "\n    ([^ \r\n]+\\.[A-Za-z]+)")
        endif()
        execute_process(COMMAND "${settings_header_tool}" ${arguments} "${file}"
            RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_QUIET)
        set(names "none")
        if(result EQUAL 0)
            string(REPLACE ";" " " output "${output}")
            string(REGEX REPLACE "delay load dependencies.*" "" output "${output}")
            string(REGEX MATCHALL "${line}" lines "${output}")
            foreach(found IN LISTS lines)
                string(REGEX MATCH "${line}" unused "${found}")
                string(TOLOWER "${CMAKE_MATCH_1}" name)
                list(APPEND names "${name}")
            endforeach()
        endif()
        set_property(GLOBAL PROPERTY "imports of ${file}" "${names}")
    endif()
    list(REMOVE_ITEM names none)
    set(${variable} "${names}" PARENT_SCOPE)
endfunction()

# Whether Windows has the library.
function(is_part_of_windows name variable)
    set(result FALSE)
    string(REGEX REPLACE "\\.dll$" "" base "${name}")
    string(TOLOWER "${settings_system_libraries}" named)
    if(name IN_LIST named OR base IN_LIST named OR base IN_LIST windows_libraries
       OR name MATCHES "^(api|ext)-ms-")
        set(result TRUE)
    elseif(NOT name MATCHES "${compiler_libraries}")
        if(CMAKE_HOST_WIN32 AND EXISTS "$ENV{SystemRoot}/System32/${name}")
            set(result TRUE)
        endif()
        foreach(folder IN LISTS settings_link_folders)
            if(EXISTS "${folder}/lib${base}.a")
                set(result TRUE)
            endif()
        endforeach()
    endif()
    set(${variable} ${result} PARENT_SCOPE)
endfunction()

# Sets `variable` to the path of the library in one of the folders, or to nothing. Case does not matter in names
# of Windows, but the disk may be one on which it does.
function(find_in_folders name variable)
    set(result "")
    foreach(folder IN LISTS ARGN)
        escape_for_glob("${folder}" pattern)
        file(GLOB files "${pattern}/*")
        foreach(file IN LISTS files)
            get_filename_component(file_name "${file}" NAME)
            string(TOLOWER "${file_name}" file_name)
            if(file_name STREQUAL name)
                set(result "${file}")
                break()
            endif()
        endforeach()
        if(result)
            break()
        endif()
    endforeach()
    set(${variable} "${result}" PARENT_SCOPE)
endfunction()

# Sets `variable` to the folders outside the packed one in which libraries are looked for.
function(folders_to_search variable)
    set(folders ${settings_search})
    foreach(library IN LISTS settings_runtime_dlls)
        get_filename_component(folder "${library}" DIRECTORY)
        list(APPEND folders "${folder}")
    endforeach()
    foreach(folder IN LISTS settings_library_folders)
        if(IS_DIRECTORY "${folder}")
            list(APPEND folders "${folder}")
        endif()
    endforeach()
    list(REMOVE_DUPLICATES folders)
    set(${variable} "${folders}" PARENT_SCOPE)
endfunction()

# Follows what the file `start` loads, library by library. Libraries that are missing in the folders `place` and
# that of `start` are copied to `place`. Sets `copied_variable` to the libraries that were copied, and
# `missing_variable` to a line for each that was not found.
function(follow_imports start place copied_variable missing_variable)
    folders_to_search(folders)
    get_filename_component(start_folder "${start}" DIRECTORY)
    set(queue "${start}")
    set(seen "")
    set(copied "")
    set(missing "")
    while(queue)
        list(POP_FRONT queue file)
        list_imports("${file}" names)
        list(REMOVE_ITEM names ${seen})
        list(APPEND seen ${names})
        foreach(name IN LISTS names)
            find_in_folders("${name}" found "${place}" "${start_folder}")
            if(NOT found)
                is_part_of_windows("${name}" is_known)
                if(is_known)
                    continue()
                endif()
                find_in_folders("${name}" found ${folders})
                if(NOT found)
                    get_filename_component(user "${file}" NAME)
                    list(APPEND missing "  ${name}, needed by ${user}")
                    continue()
                endif()
                file(COPY "${found}" DESTINATION "${place}")
                list(APPEND copied "${found}")
            endif()
            list(APPEND queue "${found}")
        endforeach()
    endwhile()
    set(${copied_variable} "${copied}" PARENT_SCOPE)
    set(${missing_variable} "${missing}" PARENT_SCOPE)
endfunction()

# Sets `variable` to whether the program, or one of its libraries in the same folder, needs a library whose name
# matches.
function(needs_library program expression variable)
    set(result FALSE)
    get_filename_component(place "${program}" DIRECTORY)
    set(queue "${program}")
    set(seen "")
    while(queue)
        list(POP_FRONT queue file)
        list_imports("${file}" names)
        list(REMOVE_ITEM names ${seen})
        list(APPEND seen ${names})
        foreach(name IN LISTS names)
            if(name MATCHES "${expression}")
                set(result TRUE)
            endif()
            find_in_folders("${name}" found "${place}")
            if(found)
                list(APPEND queue "${found}")
            endif()
        endforeach()
    endwhile()
    set(${variable} ${result} PARENT_SCOPE)
endfunction()

# Copies the libraries that the programs in ARGN need, and those of all other programs and libraries in the folder,
# beside the programs. What the programs in ARGN cannot start without is an error, which ends with `advice`. Something
# missing for the others is only told, because they may be optional (database drivers, for example).
function(copy_needed_libraries folder advice copied_variable)
    set(all_copied "")
    set(needed "")
    foreach(program IN LISTS ARGN)
        get_filename_component(place "${program}" DIRECTORY)
        list_imports("${program}" names)
        if(NOT names)
            message("${settings_header_tool} shows no libraries of ${program}: they are not checked.")
        endif()
        follow_imports("${program}" "${place}" copied missing)
        list(APPEND all_copied ${copied})
        list(APPEND needed ${missing})
    endforeach()
    if(needed)
        list(REMOVE_DUPLICATES needed)
        list(JOIN needed "\n" lines)
        folders_to_search(folders)
        list(JOIN folders "\n  " folders)
        fail_packing("libraries are missing:\n${lines}\nThey are neither in the packed folder nor in\n  \
${folders}\n${advice}")
    endif()
    list(GET ARGN 0 program)
    get_filename_component(place "${program}" DIRECTORY)
    escape_for_glob("${folder}" pattern)
    file(GLOB_RECURSE others "${pattern}/*.[Dd][Ll][Ll]" "${pattern}/*.[Ee][Xx][Ee]")
    foreach(other IN LISTS others)
        follow_imports("${other}" "${place}" copied missing)
        list(APPEND all_copied ${copied})
        foreach(line IN LISTS missing)
            string(STRIP "${line}" line)
            message("Not packed, because it was not found: ${line}")
        endforeach()
    endforeach()
    list(REMOVE_DUPLICATES all_copied)
    set(${copied_variable} "${all_copied}" PARENT_SCOPE)
endfunction()
