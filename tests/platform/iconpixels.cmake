# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

# Tests reading icons with the shell and GDI. The images for comparison are made on Linux.
if(NOT CMAKE_CROSSCOMPILING OR NOT TARGET example-hello)
    return()
endif()
get_target_property(hello_folder example-hello APP_FOLDER)
set(references "${CMAKE_CURRENT_BINARY_DIR}/icon-references")

add_test(NAME icon-references COMMAND
    "${CMAKE_CURRENT_SOURCE_DIR}/make-icon-references.sh" "${references}" "${hello_folder}/hello.exe")
set_tests_properties(icon-references PROPERTIES FIXTURES_SETUP icon-references)

kestrelpack_add_test(NAME tst_iconpixels_win
    SOURCES tst_iconpixels_win.cpp handlecount_win.cpp handlecount_win.h
    LIBRARIES kestrelpack_test_support kestrelpack_petest gdi32)
set_property(TEST tst_iconpixels_win PROPERTY RUN_SERIAL ON)
set_property(TEST tst_iconpixels_win APPEND PROPERTY FIXTURES_REQUIRED icon-references)
target_compile_definitions(tst_iconpixels_win PRIVATE
    KESTRELPACK_ICON_REFERENCES="${references}"
    KESTRELPACK_ICONLESS_EXE="${KESTRELPACK_SFX_MODULE_FILE}"
    KESTRELPACK_RESOURCE_EDITOR="$<TARGET_FILE:resource-editor>")
add_dependencies(tst_iconpixels_win example-hello resource-editor self-extractor)
