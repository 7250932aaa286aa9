# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

# All compiler warnings are set here. Each of our targets links this library privately.
add_library(kestrelpack_warnings INTERFACE)
if(MSVC)
    target_compile_options(kestrelpack_warnings INTERFACE /W4 /permissive- /utf-8)
else()
    target_compile_options(kestrelpack_warnings INTERFACE
        -Wall -Wextra -Wshadow -Wconversion -Wsign-conversion -Wcast-align -Wformat=2 -Wundef
        $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
        $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>)
endif()
if(KESTRELPACK_WERROR)
    target_compile_options(kestrelpack_warnings INTERFACE $<IF:$<CXX_COMPILER_ID:MSVC>,/WX,-Werror>)
endif()
