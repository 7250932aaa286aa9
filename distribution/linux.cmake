# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

# The install rules for Linux. The names of the folders below share/doc are those of Debian's packages.

set(written "${CMAKE_CURRENT_BINARY_DIR}/written")
set(sources "${CMAKE_CURRENT_SOURCE_DIR}/linux")
set(terminal_doc "${CMAKE_INSTALL_DATADIR}/doc/kestrelpack-cli")
set(window_doc "${CMAKE_INSTALL_DATADIR}/doc/kestrelpack")
set(KESTRELPACK_MAINTAINER "The Kestrelpack developers <developers@kestrelpack.example>" CACHE STRING
    "Who answers for the Debian packages, with an e-mail address")

# The date of this version: that of SOURCE_DATE_EPOCH if it is set, as scripts/release does.
string(TIMESTAMP KESTRELPACK_DATE "%Y-%m-%d" UTC)
string(TIMESTAMP KESTRELPACK_DEBIAN_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file("${sources}/metainfo.xml.in" "${written}/example.kestrelpack.Kestrelpack.metainfo.xml" @ONLY)
configure_file("${sources}/kestrelpack.1.in" "${written}/kestrelpack.1" @ONLY)
configure_file("${sources}/changelog.in" "${written}/changelog" @ONLY)

# gzip -n writes no time into the file.
# compress_with_gzip(<file> [<target that makes it>])
function(compress_with_gzip file)
    get_filename_component(name "${file}" NAME)
    add_custom_command(
        OUTPUT "${written}/${name}.gz"
        COMMAND "${CMAKE_COMMAND}" -E make_directory "${written}"
        COMMAND sh -c "gzip -9nc \"$1\" >\"$2\"" gzip "${file}" "${written}/${name}.gz"
        DEPENDS "${file}" ${ARGN}
        VERBATIM)
    set(compressed ${compressed} "${written}/${name}.gz" PARENT_SCOPE)
endfunction()
set(compressed "")
compress_with_gzip("${PROJECT_BINARY_DIR}/docs/kestrelpack-cli.1" terminal-documents)
compress_with_gzip("${written}/kestrelpack.1")
compress_with_gzip("${written}/changelog")

add_custom_command(
    OUTPUT "${written}/copyright"
    COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/write-notices" "${written}/copyright"
    DEPENDS write-notices "${PROJECT_SOURCE_DIR}/LICENSE"
    COMMENT "Collecting the notices of all parts"
    VERBATIM)

# Other programs show the logo in bitmaps of these sizes.
set(icon_sides 16 24 32 48 64 256)
set(icon_files "")
foreach(side IN LISTS icon_sides)
    list(APPEND icon_files "${written}/icons/${side}.png")
endforeach()
set(logo "${PROJECT_SOURCE_DIR}/resources/icons/logo")
add_executable(theme-icons "${PROJECT_SOURCE_DIR}/tools/theme-icons/main.cpp")
target_link_libraries(theme-icons PRIVATE Qt6::Gui kestrelpack_warnings)
add_custom_command(
    OUTPUT ${icon_files}
    COMMAND theme-icons "${logo}.ico" "${written}/icons" ${icon_sides}
    DEPENDS theme-icons "${logo}.ico"
    COMMENT "Writing the images of the logo"
    VERBATIM)
add_custom_target(distribution-files ALL DEPENDS
    ${compressed} ${icon_files} "${written}/copyright" terminal-documents)

install(TARGETS kestrelpack-cli RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT terminal)
install(FILES "${written}/kestrelpack-cli.1.gz"
    DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT terminal)
install(FILES "${PROJECT_BINARY_DIR}/docs/kestrelpack-cli.bash"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions"
    RENAME kestrelpack-cli COMPONENT terminal)
install(FILES "${PROJECT_BINARY_DIR}/docs/_kestrelpack-cli"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions" COMPONENT terminal)
install(FILES
    "${PROJECT_SOURCE_DIR}/README.md" "${PROJECT_SOURCE_DIR}/README.zh-CN.md"
    "${PROJECT_SOURCE_DIR}/docs/self-extractor.md" "${PROJECT_SOURCE_DIR}/docs/self-extractor.zh-CN.md"
    "${PROJECT_SOURCE_DIR}/docs/reliability.md" "${PROJECT_SOURCE_DIR}/docs/reliability.zh-CN.md"
    DESTINATION "${terminal_doc}" COMPONENT terminal)

install(TARGETS kestrelpack RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT window)
install(FILES "${written}/kestrelpack.1.gz"
    DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT window)
install(FILES "${sources}/kestrelpack.desktop"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/applications" COMPONENT window)
install(FILES "${written}/example.kestrelpack.Kestrelpack.metainfo.xml"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo" COMPONENT window)
set(theme "${CMAKE_INSTALL_DATADIR}/icons/hicolor")
foreach(side IN LISTS icon_sides)
    install(FILES "${written}/icons/${side}.png"
        DESTINATION "${theme}/${side}x${side}/apps" RENAME kestrelpack.png COMPONENT window)
endforeach()
install(FILES "${logo}.svg"
    DESTINATION "${theme}/scalable/apps" RENAME kestrelpack.svg COMPONENT window)

foreach(component IN ITEMS terminal window)
    install(FILES "${written}/copyright" "${written}/changelog.gz"
        DESTINATION "${${component}_doc}" COMPONENT ${component})
endforeach()
