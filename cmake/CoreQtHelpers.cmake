# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Build settings shared by every target of the project.

# Compile definitions that the public headers rely on (Qt 4 names kept behind
# Qt 5's deprecation switch); they travel with the libraries to their users. The
# Qt 6 variant's headers need none: its users keep Qt 6's defaults.
if(COREQT_QT_MAJOR EQUAL 5)
    set(COREQT_PUBLIC_DEFINITIONS QT_DISABLE_DEPRECATED_BEFORE=0 QT_NO_DEPRECATED_WARNINGS)
else()
    set(COREQT_PUBLIC_DEFINITIONS)
    # The project's own code uses nothing that Qt 6.4 deprecates (QT_DISABLE_DEPRECATED_UP_TO
    # from Qt 6.5 on; Qt 6.4 reads QT_DISABLE_DEPRECATED_BEFORE).
    set(COREQT_PRIVATE_DEFINITIONS QT_DISABLE_DEPRECATED_BEFORE=0x060400 QT_DISABLE_DEPRECATED_UP_TO=0x060400)
endif()

# Applies warnings and the project's private Qt settings to a target.
function(coreqt_target_defaults target)
    target_compile_options(${target} PRIVATE -Wall -Wextra)
    target_compile_definitions(${target} PRIVATE QT_NO_KEYWORDS ${COREQT_PRIVATE_DEFINITIONS})
endfunction()

# Creates one of the project's shared libraries: version 1.0.0, SOVERSION 1,
# hidden visibility, a generated export header <export_header> (relative to the
# generated include directory) with the macro <BASE_NAME>_EXPORT. PLATFORM marks the
# stand-ins, whose files go into install components of their own (Platform,
# PlatformDevelopment) that every Qt variant of the library shares.
function(coreqt_add_library target)
    cmake_parse_arguments(ARG "PLATFORM" "BASE_NAME;EXPORT_HEADER" "SOURCES" ${ARGN})
    add_library(${target} SHARED ${ARG_SOURCES})
    add_library(CoreQt::${target} ALIAS ${target}) # the installed package's namespace is ${COREQT_PACKAGE}::
    # Installed side by side, the libraries find one another wherever the tree is put.
    set_target_properties(${target} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        EXPORT_NAME ${target}
        INSTALL_RPATH "$ORIGIN")
    generate_export_header(${target}
        BASE_NAME ${ARG_BASE_NAME}
        EXPORT_FILE_NAME "${COREQT_GENERATED_INCLUDE_DIR}/${ARG_EXPORT_HEADER}")
    target_compile_definitions(${target} PUBLIC ${COREQT_PUBLIC_DEFINITIONS})
    target_include_directories(${target} PUBLIC
        "$<BUILD_INTERFACE:${COREQT_GENERATED_INCLUDE_DIR}>"
        "$<INSTALL_INTERFACE:${COREQT_INSTALL_INCLUDE_DIR}>"
        "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
    coreqt_target_defaults(${target})
    set(runtime Runtime)
    set(development Development)
    if(ARG_PLATFORM)
        set(runtime Platform)
        set(development PlatformDevelopment)
    endif()
    get_filename_component(export_dir "${ARG_EXPORT_HEADER}" DIRECTORY)
    install(FILES "${COREQT_GENERATED_INCLUDE_DIR}/${ARG_EXPORT_HEADER}"
            DESTINATION "${COREQT_INSTALL_INCLUDE_DIR}/${export_dir}" COMPONENT Development)
    install(TARGETS ${target} EXPORT CoreQtTargets
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
                COMPONENT ${runtime} NAMELINK_COMPONENT ${development}
            ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${development}
            RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${runtime})
endfunction()

# Installs public headers under include/CoreQt/<destination>, keeping the
# folder they live in.
function(coreqt_install_headers destination)
    install(FILES ${ARGN} DESTINATION "${COREQT_INSTALL_INCLUDE_DIR}/${destination}"
            COMPONENT Development)
endfunction()

# Adds one area of libCoreQt: its sources and headers go into the CoreQt
# target, its public headers are installed under include/CoreQt/<area>/.
# Call from the area's own CMakeLists.txt (src/<area>/).
function(coreqt_add_area area)
    cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS;PRIVATE_HEADERS" ${ARGN})
    target_sources(CoreQt PRIVATE ${ARG_SOURCES} ${ARG_HEADERS} ${ARG_PRIVATE_HEADERS})
    coreqt_install_headers(${area} ${ARG_HEADERS})
endfunction()

# Adds a Qt Test executable tests/<area>/<name> registered with CTest under the
# label <area> (and any extra LABELS). ENVIRONMENT entries are passed to the test.
function(coreqt_add_test name)
    cmake_parse_arguments(ARG "" "AREA;TIMEOUT" "SOURCES;LABELS;ENVIRONMENT;LIBRARIES" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE CoreQt::CoreQt ${COREQT_QT}::Test coreqt_testsupport ${ARG_LIBRARIES})
    coreqt_target_defaults(${name})
    add_test(NAME ${name} COMMAND ${name})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 300)
    endif()
    set_tests_properties(${name} PROPERTIES
        LABELS "${ARG_AREA};${ARG_LABELS}"
        TIMEOUT ${ARG_TIMEOUT}
        ENVIRONMENT "QT_FORCE_STDERR_LOGGING=1;${ARG_ENVIRONMENT}")
endfunction()

# Adds a Google Benchmark program benchmarks/<name>; built by default, never
# run by CTest.
function(coreqt_add_benchmark name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE CoreQt::CoreQt benchmark::benchmark ${ARG_LIBRARIES})
    coreqt_target_defaults(${name})
endfunction()

# Adds a libFuzzer program <name> linked to the library (needs Clang); scripts/fuzz.sh runs it.
function(coreqt_add_fuzzer name)
    cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        message(FATAL_ERROR "COREQT_FUZZ needs Clang (libFuzzer)")
    endif()
    add_executable(${name} ${ARG_SOURCES})
    target_compile_options(${name} PRIVATE -fsanitize=fuzzer)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    target_link_libraries(${name} PRIVATE CoreQt::CoreQt)
    coreqt_target_defaults(${name})
endfunction()
