# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Script run by CTest: the library built against the other Qt major version (PEER_MAJOR, built here
# in PEER_DIR) and this build install into one prefix, where they share only the Qt-free stand-ins;
# one consumer tree then finds both packages, pkg-config each, and both tools run.
include("${CMAKE_CURRENT_LIST_DIR}/ConsumerChecks.cmake")

run(${CMAKE_COMMAND} -S "${SOURCE_DIR}" -B "${PEER_DIR}" -G "${GENERATOR}" -DCMAKE_BUILD_TYPE=${BUILD_TYPE}
    -DCMAKE_CXX_COMPILER=${CXX} -DCOREQT_QT_MAJOR=${PEER_MAJOR} -DBUILD_TESTING=OFF
    -DCOREQT_BUILD_BENCHMARKS=OFF -DCOREQT_BUILD_EXAMPLES=OFF)
run(${CMAKE_COMMAND} --build "${PEER_DIR}")

set(prefix "${WORK_DIR}/prefix")
file(REMOVE_RECURSE "${WORK_DIR}")
run(${CMAKE_COMMAND} --install "${PEER_DIR}" --prefix "${prefix}")
file(GLOB_RECURSE peer_files LIST_DIRECTORIES false RELATIVE "${prefix}" "${prefix}/*")
# This build alone, as the fixture installed it.
file(GLOB_RECURSE own_files LIST_DIRECTORIES false RELATIVE "${OWN_PREFIX}" "${OWN_PREFIX}/*")
run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${prefix}")

foreach(file ${peer_files} ${own_files})
    if(NOT EXISTS "${prefix}/${file}")
        message(FATAL_ERROR "${file} is missing from the prefix that holds both variants")
    endif()
endforeach()
foreach(file ${peer_files})
    list(FIND own_files "${file}" index)
    if(NOT index EQUAL -1 AND NOT file MATCHES "^lib/lib(Core|kom)\\.so")
        message(FATAL_ERROR "both variants install ${file}")
    endif()
endforeach()

run_consumers("${prefix}" "CoreQt;CoreQt6" "${CONSUMER_DIR}" "${WORK_DIR}" "${CXX}" "")
foreach(tool coreqt coreqt6)
    run("${prefix}/bin/${tool}" --version)
    if(NOT last_output STREQUAL "coreqt 1.0.0\n")
        message(FATAL_ERROR "unexpected output of ${tool} --version: ${last_output}")
    endif()
endforeach()
