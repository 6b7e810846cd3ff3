# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Debian packages: `cpack -G DEB` in a build tree configured with -DCMAKE_INSTALL_PREFIX=/usr, so
# that GNUInstallDirs puts the libraries into Debian's multiarch folder. One package per install
# component:
#   Platform             libcoreqt-platform1     libCore.so.1, libkom.so.1 (for every Qt variant)
#   PlatformDevelopment  libcoreqt-platform-dev  their .so links
#   Runtime              libcoreqt1              libCoreQt.so.1, libCoreQtConsole.so.1
#   Development          libcoreqt-dev           headers, .so links, CMake package, .pc files
#   Tools                coreqt-tools            coreqt, its manual page and bash completion
# A build for another Qt major version carries the number in its own names (libcoreqt6-1,
# libcoreqt6-dev, coreqt6-tools) and shares the stand-in packages, so both install side by side.

if(COREQT_QT_MAJOR EQUAL 6)
    set(COREQT_DEB_QT_MAJOR 6)
    set(COREQT_DEB_VARIANT 6)
    set(COREQT_DEB_QT_DEVELOPMENT "qt6-base-dev, qt6-5compat-dev")
else()
    set(COREQT_DEB_QT_MAJOR 5)
    set(COREQT_DEB_VARIANT "")
    set(COREQT_DEB_QT_DEVELOPMENT "qtbase5-dev")
endif()

set(COREQT_DEB_MAINTAINER "CoreQt maintainers <coreqt@example.org>" CACHE STRING
    "Maintainer of the Debian packages")
set(COREQT_DEB_HOMEPAGE "https://coreqt.example.org/" CACHE STRING
    "Homepage of the Debian packages")
set(COREQT_DEB_SOURCE coreqt)
set(COREQT_DEB_RELEASE 1)
set(COREQT_DEB_VERSION "${PROJECT_VERSION}-${COREQT_DEB_RELEASE}")

# Debian's name for the package of a shared library: the library's name in lower case, then its
# SONAME version, with a hyphen between when the name ends in a digit (libCoreQt6.so.1 ->
# libcoreqt6-1).
function(coreqt_deb_library_package out name)
    string(TOLOWER "lib${name}" package)
    if(package MATCHES "[0-9]$")
        string(APPEND package "-")
    endif()
    set(${out} "${package}${PROJECT_VERSION_MAJOR}" PARENT_SCOPE)
endfunction()

set(CPACK_COMPONENTS_ALL Platform PlatformDevelopment Runtime Development Tools)
coreqt_deb_library_package(CPACK_DEBIAN_PLATFORM_PACKAGE_NAME coreqt-platform)
set(CPACK_DEBIAN_PLATFORMDEVELOPMENT_PACKAGE_NAME libcoreqt-platform-dev)
coreqt_deb_library_package(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME CoreQt${COREQT_DEB_VARIANT})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libcoreqt${COREQT_DEB_VARIANT}-dev)
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME coreqt${COREQT_DEB_VARIANT}-tools)

set(CPACK_DEBIAN_PLATFORM_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PLATFORMDEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)

# Package relations beyond the computed ones: a development package needs the libraries of its
# own build and the Qt development files its CMake package and .pc files ask for.
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_COMPONENT_PLATFORMDEVELOPMENT_DEPENDS Platform)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS Runtime PlatformDevelopment)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${COREQT_DEB_QT_DEVELOPMENT}")

# Sets the description of a component's package: its summary line, then the long text.
macro(coreqt_deb_describe component summary text)
    string(TOUPPER ${component} _coreqt_upper)
    set(CPACK_DEBIAN_${_coreqt_upper}_DESCRIPTION "${summary}\n${text}")
endmacro()

coreqt_deb_describe(Platform "stand-ins of the camera suite's base libraries"
"libCore (namespace ko: log, exceptions, mutexes, cipher engine, settings
storage) and libkom (the middleware's strings, containers, smart handles,
status messages and synchronization interfaces), as CoreQt builds on them.
Every Qt variant of CoreQt uses this one package.")
coreqt_deb_describe(PlatformDevelopment "development links of the camera suite's stand-in libraries"
"The libCore.so and libkom.so links, shared by the development packages of
every Qt variant of CoreQt; the headers come with those packages.")
coreqt_deb_describe(Runtime
"Qt ${COREQT_DEB_QT_MAJOR} foundation library of the camera-management suite"
"CoreQt gives the suite's applications job and event-loop thread pools, an
exception family with cause chains, a logging front for the application's,
Qt's and the middleware's messages, checked signal/slot helpers, string, time
and container conversions, device adaptors with an enciphering file device,
and the camera vocabulary with German and French translations.
.
This package holds the library and its live console for the pools.")
coreqt_deb_describe(Development
"development files of CoreQt${COREQT_DEB_VARIANT}, a Qt ${COREQT_DEB_QT_MAJOR} foundation library"
"Headers of CoreQt${COREQT_DEB_VARIANT}, its console and the stand-in libraries, the .so links,
the CMake package CoreQt${COREQT_DEB_VARIANT} for find_package() and the pkg-config files.")
coreqt_deb_describe(Tools "command-line tool of the CoreQt${COREQT_DEB_VARIANT} library"
"coreqt${COREQT_DEB_VARIANT} looks up the camera vocabulary and trigger events, converts
frame times, writes, reads and inspects enciphered files, measures the job
pool and shows the pools of a process that runs a live console.")

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_PACKAGE_NAME coreqt${COREQT_DEB_VARIANT})
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "${COREQT_DEB_MAINTAINER}")
set(CPACK_PACKAGE_HOMEPAGE_URL "${COREQT_DEB_HOMEPAGE}")
# Each package has a summary line of its own in its description.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${COREQT_DEB_RELEASE})
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SOURCE ${COREQT_DEB_SOURCE})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/debian/shlibs/lib")
set(CPACK_DEBIAN_PLATFORM_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/cmake/debian/triggers")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/cmake/debian/triggers")
set(CPACK_COREQT_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_PROJECT_CONFIG_FILE "${PROJECT_SOURCE_DIR}/cmake/debian/CPackOptions.cmake")

# Every package carries the copyright file and the Debian changelog in its own doc folder. They
# belong to the packages only, so a plain `cmake --install` leaves them out.
function(coreqt_deb_install_docs)
    set(dir "${PROJECT_BINARY_DIR}/debian")
    configure_file(cmake/debian/changelog.in "${dir}/changelog.Debian" @ONLY)
    execute_process(COMMAND gzip -9 -n -c
        INPUT_FILE "${dir}/changelog.Debian" OUTPUT_FILE "${dir}/changelog.Debian.gz")
    foreach(component IN LISTS CPACK_COMPONENTS_ALL)
        string(TOUPPER ${component} upper)
        install(FILES cmake/debian/copyright "${dir}/changelog.Debian.gz"
                DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME}
                COMPONENT ${component} EXCLUDE_FROM_ALL)
    endforeach()
endfunction()

# dpkg-shlibdeps turns a binary's use of one of our own libraries into a dependency on the package
# that holds it through that package's shlibs file, which does not exist yet while the packages
# are being made. This folder stands in for the built packages: the libraries under their SONAMEs
# in lib/ (CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS) and, above them, DEBIAN/shlibs with the
# lines that CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS writes into each package.
function(coreqt_deb_shlibs_tree dir)
    set(shlibs "")
    set(links "")
    foreach(target Core kom CoreQt Console)
        set(package ${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME})
        if(target STREQUAL "Core" OR target STREQUAL "kom")
            set(package ${CPACK_DEBIAN_PLATFORM_PACKAGE_NAME})
        endif()
        string(APPEND shlibs "$<TARGET_FILE_PREFIX:${target}>$<TARGET_FILE_BASE_NAME:${target}> "
            "${PROJECT_VERSION_MAJOR} ${package} (>= ${COREQT_DEB_VERSION})\n")
        list(APPEND links COMMAND "${CMAKE_COMMAND}" -E create_symlink "$<TARGET_FILE:${target}>"
            "${dir}/lib/$<TARGET_SONAME_FILE_NAME:${target}>")
    endforeach()
    file(GENERATE OUTPUT "${dir}/DEBIAN/shlibs" CONTENT "${shlibs}")
    add_custom_command(OUTPUT "${dir}/lib.stamp"
        COMMAND "${CMAKE_COMMAND}" -E make_directory "${dir}/lib"
        ${links}
        COMMAND "${CMAKE_COMMAND}" -E touch "${dir}/lib.stamp"
        DEPENDS Core kom CoreQt Console
        VERBATIM)
    add_custom_target(coreqt_deb_shlibs ALL DEPENDS "${dir}/lib.stamp")
endfunction()

coreqt_deb_install_docs()
coreqt_deb_shlibs_tree("${PROJECT_BINARY_DIR}/debian/shlibs")
include(CPack)
