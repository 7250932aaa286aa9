# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

include_guard(GLOBAL)

# kestrelpack_fetch_debian_source(PACKAGE <source package> OUTPUT <variable> [VERSION <pattern>]
#                                 [HINT <advice if it cannot be downloaded>])
#
# Sets the variable to the folder of the unpacked Debian source package. If the package is not in the cache
# (~/.cache/kestrelpack), it is downloaded from the machine's apt sources. scripts/fetch-debian does
# the work.
function(kestrelpack_fetch_debian_source)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "PACKAGE;OUTPUT;VERSION;HINT" "")
    execute_process(
        COMMAND "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../scripts/fetch-debian" source
                "${arg_PACKAGE}" ${arg_VERSION}
        OUTPUT_VARIABLE folder
        OUTPUT_STRIP_TRAILING_WHITESPACE
        RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "Cannot get the source package ${arg_PACKAGE}; see the line above. "
                            "${arg_HINT}")
    endif()
    set(${arg_OUTPUT} "${folder}" PARENT_SCOPE)
endfunction()
