# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Runs the built tool (TOOL) for the scripts that make files from its help: in a fixed locale,
# without the leak report of a sanitizer build.
set(ENV{ASAN_OPTIONS} "detect_leaks=0")
set(ENV{LC_ALL} "C.UTF-8")

# Sets @out to what `TOOL ARGN` prints; a failing run stops the script.
function(run_tool out)
    execute_process(COMMAND "${TOOL}" ${ARGN} OUTPUT_VARIABLE text RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${TOOL} ${ARGN} failed (${status})")
    endif()
    set(${out} "${text}" PARENT_SCOPE)
endfunction()
