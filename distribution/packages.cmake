# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

# The packages that CPack makes: on Linux two for Debian, kestrelpack-cli (which needs no libraries of a display) and
# kestrelpack; for Windows a zip file. `cpack` in the build folder makes them.

set(CPACK_PACKAGE_NAME kestrelpack)
set(CPACK_PACKAGE_VENDOR "The Kestrelpack developers")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_HOMEPAGE_URL "${KESTRELPACK_WEBSITE}")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL terminal window development)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENT_DEVELOPMENT_GROUP terminal-group)
set(CPACK_COMPONENT_TERMINAL_GROUP terminal-group)
set(CPACK_COMPONENT_WINDOW_GROUP window-group)

if(WIN32)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_COMPONENTS_ALL terminal window development)
    set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
    set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
    set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
    set(CPACK_PACKAGE_FILE_NAME "Kestrelpack-${PROJECT_VERSION}-windows-x64")
    include(CPack)
    return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${KESTRELPACK_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON) # dpkg-shlibdeps
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

set(CPACK_DEBIAN_TERMINAL-GROUP_PACKAGE_NAME kestrelpack-cli)
set(CPACK_DEBIAN_TERMINAL-GROUP_PACKAGE_SUGGESTS "kestrelpack, wine")
set(CPACK_DEBIAN_TERMINAL-GROUP_DESCRIPTION "pack a Windows application into one executable, from a terminal
Turns a folder with a Windows application into one executable, which unpacks
itself into a private folder, runs the application there, passes arguments,
handles and exit codes on, and removes what it unpacked.
.
This package has the program for terminals, scripts and build servers. It also
shows, verifies and unpacks such executables. It needs no display.")

# Qt finds the SVG plugin when the window opens, so dpkg-shlibdeps does not see it. The window shows Chinese texts.
set(CPACK_DEBIAN_WINDOW-GROUP_PACKAGE_NAME kestrelpack)
set(CPACK_DEBIAN_WINDOW-GROUP_PACKAGE_DEPENDS "libqt6svg6")
set(CPACK_DEBIAN_WINDOW-GROUP_PACKAGE_RECOMMENDS "fonts-noto-cjk | fonts-wqy-zenhei, kestrelpack-cli")
set(CPACK_DEBIAN_WINDOW-GROUP_PACKAGE_SUGGESTS "wine")
set(CPACK_DEBIAN_WINDOW-GROUP_DESCRIPTION "pack a Windows application into one executable, in a window
Turns a folder with a Windows application into one executable, which unpacks
itself into a private folder, runs the application there, passes arguments,
handles and exit codes on, and removes what it unpacked.
.
This package has the program with a window, whose texts are Chinese.")

include(CPack)
cpack_add_component_group(terminal-group)
cpack_add_component_group(window-group)
