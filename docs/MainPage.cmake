# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Writes the reference's main page from the README: its overview (the text before the set-up
# commands) and its sections on the stand-in cipher and the enciphered file format.
# cmake -DREADME=... -DOUTPUT=... -P MainPage.cmake
file(READ "${README}" readme)

# The text from the heading line that starts with ${heading} up to the next heading of the same
# or a higher level.
function(readme_section heading level out)
    string(FIND "${readme}" "\n${heading}\n" start)
    if(start EQUAL -1)
        message(FATAL_ERROR "README has no section '${heading}'")
    endif()
    math(EXPR start "${start} + 1")
    string(SUBSTRING "${readme}" ${start} -1 rest)
    string(LENGTH "${heading}" headingLength)
    string(SUBSTRING "${rest}" ${headingLength} -1 body)
    set(end -1)
    foreach(stop "\n## " "\n# ")
        if(level STREQUAL "###" OR NOT stop STREQUAL "\n### ")
            string(FIND "${body}" "${stop}" at)
            if(NOT at EQUAL -1 AND (end EQUAL -1 OR at LESS end))
                set(end ${at})
            endif()
        endif()
    endforeach()
    if(level STREQUAL "###")
        string(FIND "${body}" "\n### " at)
        if(NOT at EQUAL -1 AND (end EQUAL -1 OR at LESS end))
            set(end ${at})
        endif()
    endif()
    string(SUBSTRING "${body}" 0 ${end} body)
    set(${out} "${heading}${body}\n" PARENT_SCOPE)
endfunction()

string(FIND "${readme}" "\n## " firstSection)
string(SUBSTRING "${readme}" 0 ${firstSection} overview)
string(REGEX REPLACE "^# CoreQt\n" "" overview "${overview}")
readme_section("### The stand-in cipher" "###" cipher)
readme_section("## The enciphered file" "##" format)

file(WRITE "${OUTPUT}" "CoreQt {#mainpage}\n======\n${overview}\n"
    "The reference is grouped by area: see the Modules (Topics) page.\n\n"
    "${cipher}\n${format}")
