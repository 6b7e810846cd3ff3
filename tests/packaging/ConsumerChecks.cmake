# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Checks of an installed tree, shared by the packaging scripts run by CTest and scripts/package.sh.
# LIBDIR names the tree's library folder below the prefix (lib unless given; Debian's multiarch
# folder for the packages).
if(NOT LIBDIR)
    set(LIBDIR lib)
endif()

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT rc EQUAL 0)
        message(FATAL_ERROR "Failed (${rc}): ${ARGN}\n${out}\n${err}")
    endif()
    set(last_output "${out}" PARENT_SCOPE)
endfunction()

# The Qt major version a package is built against: CoreQt is Qt 5, CoreQt6 Qt 6.
function(package_qt_major package out)
    if(package STREQUAL "CoreQt6")
        set(${out} 6 PARENT_SCOPE)
    else()
        set(${out} 5 PARENT_SCOPE)
    endif()
endfunction()

# The installed files of @package in @prefix: its library with the stand-ins and their SONAME links,
# and an umbrella header that names every installed public header.
function(check_installed_package prefix package)
    foreach(lib Core kom ${package} ${package}Console)
        foreach(name lib${lib}.so lib${lib}.so.1 lib${lib}.so.1.0.0)
            if(NOT EXISTS "${prefix}/${LIBDIR}/${name}")
                message(FATAL_ERROR "missing ${prefix}/${LIBDIR}/${name}")
            endif()
        endforeach()
    endforeach()
    file(READ "${prefix}/include/${package}/CoreQt.h" umbrella)
    file(GLOB_RECURSE headers RELATIVE "${prefix}/include/${package}" "${prefix}/include/${package}/*.h")
    foreach(header ${headers})
        # The console library has headers of its own, outside the umbrella.
        if(header STREQUAL "CoreQt.h" OR header MATCHES "_export\\.h$" OR header MATCHES "^console/")
            continue()
        endif()
        string(FIND "${umbrella}" "#include \"${header}\"" found)
        if(found EQUAL -1)
            message(FATAL_ERROR "${package}/CoreQt.h does not include ${header}")
        endif()
    endforeach()
endfunction()

# Checks that a consumer's output names the library version and the package's Qt.
function(check_consumer_output package output)
    package_qt_major(${package} major)
    if(NOT output MATCHES "consumer ok 1\\.0\\.0 Qt ${major}\\.")
        message(FATAL_ERROR "unexpected output of the ${package} consumer: ${output}")
    endif()
endfunction()

# Checks the output of a package's console consumer.
function(check_console_output package output)
    if(NOT output MATCHES "console consumer ok 1")
        message(FATAL_ERROR "unexpected output of the ${package} console consumer: ${output}")
    endif()
endfunction()

# Builds and runs the consumer of every package in @packages against @prefix, once from one CMake
# tree with find_package() for each and once per package through pkg-config.
function(run_consumers prefix packages consumer_dir work_dir cxx sanitize)
    set(flags "")
    if(sanitize)
        set(flags "-fsanitize=${sanitize}")
    endif()
    foreach(package ${packages})
        check_installed_package("${prefix}" ${package})
    endforeach()

    string(REPLACE ";" "\\;" package_list "${packages}")
    run(${CMAKE_COMMAND} -S "${consumer_dir}" -B "${work_dir}/consumer"
        -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${cxx} "-DCOREQT_PACKAGES=${package_list}"
        "-DCMAKE_CXX_FLAGS=${flags}" "-DCMAKE_EXE_LINKER_FLAGS=${flags}")
    run(${CMAKE_COMMAND} --build "${work_dir}/consumer")
    foreach(package ${packages})
        run("${work_dir}/consumer/consumer_${package}")
        check_consumer_output(${package} "${last_output}")
        run("${work_dir}/consumer/console_consumer_${package}")
        check_console_output(${package} "${last_output}")
    endforeach()

    set(ENV{PKG_CONFIG_PATH} "${prefix}/${LIBDIR}/pkgconfig")
    set(ENV{LD_LIBRARY_PATH} "${prefix}/${LIBDIR}")
    separate_arguments(extra UNIX_COMMAND "${flags}")
    foreach(package ${packages})
        run(pkg-config --cflags --libs ${package})
        string(STRIP "${last_output}" pc_flags)
        separate_arguments(pc_flags UNIX_COMMAND "${pc_flags}")
        set(checks "")
        if(package STREQUAL "CoreQt6")
            set(checks -DQT_DISABLE_DEPRECATED_BEFORE=0x060400 -DQT_DISABLE_DEPRECATED_UP_TO=0x060400
                -Werror=deprecated-declarations)
        endif()
        run(${cxx} -std=c++17 -fPIC ${extra} ${checks} "-DCOREQT_UMBRELLA=<${package}/CoreQt.h>"
            "${consumer_dir}/main.cpp" -o "${work_dir}/consumer-pc-${package}" ${pc_flags})
        run("${work_dir}/consumer-pc-${package}")
        check_consumer_output(${package} "${last_output}")

        run(pkg-config --cflags --libs ${package}Console)
        string(STRIP "${last_output}" pc_flags)
        separate_arguments(pc_flags UNIX_COMMAND "${pc_flags}")
        run(${cxx} -std=c++17 -fPIC ${extra} "-DCOREQT_UMBRELLA=<${package}/CoreQt.h>"
            "${consumer_dir}/console.cpp" -o "${work_dir}/console-consumer-pc-${package}" ${pc_flags})
        run("${work_dir}/console-consumer-pc-${package}")
        check_console_output(${package} "${last_output}")
    endforeach()
endfunction()
