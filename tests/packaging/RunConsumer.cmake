# Script run by CTest: builds and runs consumers of the tree installed in PREFIX.
file(REMOVE_RECURSE "${WORK_DIR}")
set(prefix "${PREFIX}")

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT rc EQUAL 0)
        message(FATAL_ERROR "Failed (${rc}): ${ARGN}\n${out}\n${err}")
    endif()
    set(last_output "${out}" PARENT_SCOPE)
endfunction()

# Libraries with their SONAME links.
foreach(lib Core kom CoreQt)
    foreach(name lib${lib}.so lib${lib}.so.1 lib${lib}.so.1.0.0)
        if(NOT EXISTS "${prefix}/lib/${name}")
            message(FATAL_ERROR "missing ${prefix}/lib/${name}")
        endif()
    endforeach()
endforeach()

# The umbrella header names every installed public header.
file(READ "${prefix}/include/CoreQt/CoreQt.h" umbrella)
file(GLOB_RECURSE headers RELATIVE "${prefix}/include/CoreQt" "${prefix}/include/CoreQt/*.h")
foreach(header ${headers})
    if(header STREQUAL "CoreQt.h" OR header MATCHES "_export\\.h$")
        continue()
    endif()
    string(FIND "${umbrella}" "#include \"${header}\"" found)
    if(found EQUAL -1)
        message(FATAL_ERROR "CoreQt.h does not include ${header}")
    endif()
endforeach()

set(flags "")
if(SANITIZE)
    set(flags "-fsanitize=${SANITIZE}")
endif()

# find_package(CoreQt CONFIG)
run(${CMAKE_COMMAND} -S "${CONSUMER_DIR}" -B "${WORK_DIR}/consumer"
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${CXX}
    "-DCMAKE_CXX_FLAGS=${flags}" "-DCMAKE_EXE_LINKER_FLAGS=${flags}")
run(${CMAKE_COMMAND} --build "${WORK_DIR}/consumer")
run("${WORK_DIR}/consumer/consumer")
if(NOT last_output MATCHES "consumer ok")
    message(FATAL_ERROR "unexpected consumer output: ${last_output}")
endif()

# pkg-config
set(ENV{PKG_CONFIG_PATH} "${prefix}/lib/pkgconfig")
run(pkg-config --cflags --libs CoreQt)
string(STRIP "${last_output}" pc_flags)
separate_arguments(pc_flags UNIX_COMMAND "${pc_flags}")
separate_arguments(extra UNIX_COMMAND "${flags}")
run(${CXX} -std=c++17 -fPIC ${extra} "${CONSUMER_DIR}/main.cpp" -o "${WORK_DIR}/consumer-pc" ${pc_flags})
set(ENV{LD_LIBRARY_PATH} "${prefix}/lib")
run("${WORK_DIR}/consumer-pc")
if(NOT last_output MATCHES "consumer ok")
    message(FATAL_ERROR "unexpected pkg-config consumer output: ${last_output}")
endif()
