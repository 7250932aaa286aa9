# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

# The environment of the tests: variables, Wine prefix, display. There are two ways to run the
# tests:
#
#   native     windows are drawn off screen; the tests with the label "wine" start Windows programs
#   cross      all tests are Windows programs; they run under Wine as on a Chinese Windows, on a
#              display without a screen

find_program(KESTRELPACK_WINE NAMES wine wine64)
mark_as_advanced(KESTRELPACK_WINE)

# All tests share one prefix. It is made before the first of them runs.
set(KESTRELPACK_TEST_WINEPREFIX "${CMAKE_CURRENT_BINARY_DIR}/wineprefix")
set(KESTRELPACK_TEST_WINE_ENVIRONMENT
    "WINEPREFIX=${KESTRELPACK_TEST_WINEPREFIX}"
    "KESTRELPACK_TEST_WINEPREFIX=${KESTRELPACK_TEST_WINEPREFIX}"
    "WINEDEBUG=-all"
    "WINEDLLOVERRIDES=mscoree,mshtml="
    "KESTRELPACK_TEST_WINE=${KESTRELPACK_WINE}")
# Scripts and tests start "wine" from there; the script says why.
set(KESTRELPACK_TEST_WINE_PATH "PATH=path_list_prepend:${CMAKE_CURRENT_SOURCE_DIR}/wine/bin")

set(KESTRELPACK_TEST_RUNNER "")
set(tests_are_windows_programs OFF)
if(CMAKE_CROSSCOMPILING AND WIN32)
    set(tests_are_windows_programs ON)
    set(KESTRELPACK_TEST_RUNNER "${CMAKE_CURRENT_SOURCE_DIR}/wine/run-test.sh")
    list(APPEND KESTRELPACK_TEST_WINE_ENVIRONMENT
        "LC_ALL=zh_CN.UTF-8"
        "LOCPATH=${CMAKE_CURRENT_BINARY_DIR}/locale"
        "KESTRELPACK_TEST_DISPLAY=${CMAKE_CURRENT_BINARY_DIR}/display")

    # The test programs for Windows are part of a release. They are equal from every folder: the
    # paths in them begin at the top folder, which they get here (support/builtfile.h).
    list(APPEND KESTRELPACK_TEST_WINE_ENVIRONMENT "KESTRELPACK_TEST_TOP=${PROJECT_SOURCE_DIR}")
    add_compile_definitions(KESTRELPACK_TEST_TOP="${PROJECT_SOURCE_DIR}")
    add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=>)
endif()

# Native tests that start Windows programs run one after another. So do tests with windows on the
# shared display, because only one window can have the keyboard. These are the tests of our window,
# and those with the label "display": they start programs that can show one. A produced file, for
# example, shows its progress if unpacking takes longer than 300 ms; its window once took the
# keyboard from another test's open menu, which closed.
function(kestrelpack_set_test_environment name labels timeout)
    if(tests_are_windows_programs)
        set(environment ${KESTRELPACK_TEST_WINE_ENVIRONMENT})
        set_tests_properties(${name} PROPERTIES FIXTURES_REQUIRED "wineprefix;display")
        set(libraries "")
        if(TARGET ${name})
            get_target_property(libraries ${name} LINK_LIBRARIES)
        endif()
        if("kestrelpack_app" IN_LIST libraries OR "kestrelpack_bundle_swap" IN_LIST libraries
           OR "display" IN_LIST labels)
            set_tests_properties(${name} PROPERTIES RESOURCE_LOCK display)
        endif()
    else()
        set(environment "QT_QPA_PLATFORM=offscreen" "LC_ALL=C.UTF-8")
        if("wine" IN_LIST labels)
            list(APPEND environment ${KESTRELPACK_TEST_WINE_ENVIRONMENT})
            set_tests_properties(${name} PROPERTIES
                FIXTURES_REQUIRED wineprefix RESOURCE_LOCK wineprefix)
        endif()
    endif()
    if(NOT KESTRELPACK_WINE AND (tests_are_windows_programs OR "wine" IN_LIST labels))
        set_tests_properties(${name} PROPERTIES DISABLED TRUE)
    endif()
    # Qt Test ends a test function after this many milliseconds. The default is five minutes.
    math(EXPR function_timeout "${timeout} * 1000 - 30000")
    list(APPEND environment "QTEST_FUNCTION_TIMEOUT=${function_timeout}")
    set_tests_properties(${name} PROPERTIES
        LABELS "${labels}" TIMEOUT ${timeout} ENVIRONMENT "${environment}")
    if(tests_are_windows_programs OR "wine" IN_LIST labels)
        set_tests_properties(${name} PROPERTIES
            ENVIRONMENT_MODIFICATION "${KESTRELPACK_TEST_WINE_PATH}")
    endif()
endfunction()

# kestrelpack_add_fixture(<fixture> <name> <SETUP|CLEANUP> <script>)
function(kestrelpack_add_fixture fixture name moment script)
    add_test(NAME ${name} COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/wine/${script}")
    set_tests_properties(${name} PROPERTIES
        FIXTURES_${moment} ${fixture} LABELS wine TIMEOUT 900
        ENVIRONMENT "${KESTRELPACK_TEST_WINE_ENVIRONMENT}"
        ENVIRONMENT_MODIFICATION "${KESTRELPACK_TEST_WINE_PATH}")
endfunction()

if(KESTRELPACK_WINE)
    kestrelpack_add_fixture(wineprefix wineprefix SETUP make-prefix.sh)
    add_test(NAME wine_addresses
        COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/wine/fixed-addresses.sh")
    kestrelpack_set_test_environment(wine_addresses wine 900)
    set_tests_properties(wine_addresses PROPERTIES SKIP_RETURN_CODE 77)
endif()
if(KESTRELPACK_WINE AND tests_are_windows_programs)
    kestrelpack_add_fixture(display display SETUP start-display.sh)
    kestrelpack_add_fixture(display display-end CLEANUP stop-display.sh)
endif()
