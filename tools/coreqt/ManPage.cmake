# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Writes the manual page coreqt(1) from the tool's own help, so that the two cannot drift:
# `coreqt --help` gives the description, the commands, the global options and the exit status;
# `coreqt COMMAND --help` gives each command's arguments, description, own options and example.
# cmake -DTOOL=<coreqt binary> -DNAME=<installed name> -DOUTPUT=<file> -P ManPage.cmake
include("${CMAKE_CURRENT_LIST_DIR}/RunTool.cmake")

# roff: backslashes, leading dots and dashes made literal.
function(roff out text)
    string(REPLACE "\\" "\\e" text "${text}")
    string(REPLACE "-" "\\-" text "${text}")
    string(REGEX REPLACE "(^|\n)([.'])" "\\1\\\\&\\2" text "${text}")
    set(${out} "${text}" PARENT_SCOPE)
endfunction()

# The lines of a help section ("Options:", "Arguments:", "Commands:", "Example:", ...): the
# indented lines after its heading, up to the next blank line.
function(help_section out help heading)
    string(FIND "${help}" "\n${heading}\n" start)
    if(start EQUAL -1)
        set(${out} "" PARENT_SCOPE)
        return()
    endif()
    string(LENGTH "${heading}" length)
    math(EXPR start "${start} + ${length} + 2")
    string(SUBSTRING "${help}" ${start} -1 rest)
    string(FIND "${rest}" "\n\n" end)
    string(SUBSTRING "${rest}" 0 ${end} section)
    set(${out} "${section}" PARENT_SCOPE)
endfunction()

# Options as man entries: each "  -x, --long <v>   text" (text continued on deeper lines).
function(options_roff out section skip)
    string(REPLACE ";" "\\;" section "${section}")
    string(REPLACE "\n" ";" lines "${section}")
    set(result "")
    set(current "")
    foreach(line IN LISTS lines)
        if(line MATCHES "^  (-[^ ].*[^ ]|-[^ ]*)  +(.*)$")
            set(flag "${CMAKE_MATCH_1}")
            set(text "${CMAKE_MATCH_2}")
            list(FIND skip "${flag}" skipped)
            if(skipped EQUAL -1)
                roff(flag "${flag}")
                roff(text "${text}")
                string(APPEND result ".TP\n.B ${flag}\n${text}\n")
                set(current on)
            else()
                set(current "")
            endif()
        elseif(line MATCHES "^   +(.*)$" AND current)
            roff(text "${CMAKE_MATCH_1}")
            string(APPEND result "${text}\n")
        endif()
    endforeach()
    set(${out} "${result}" PARENT_SCOPE)
endfunction()

function(join_lines out section)
    string(REGEX REPLACE "\n +" " " section "${section}")
    string(STRIP "${section}" section)
    set(${out} "${section}" PARENT_SCOPE)
endfunction()

run_tool(help --help)
run_tool(version --version)
string(STRIP "${version}" version)
string(REGEX REPLACE "^[^ ]+ " "" version "${version}")

# Description: the text between the usage line and the command list.
string(REGEX MATCH "\n([^\n].*)\n\nCommands:" match "${help}")
string(STRIP "${CMAKE_MATCH_1}" description)
help_section(commands "${help}" "Commands:")
string(REGEX MATCH "\nExit status: ([^\n]*)" match "${help}")
set(exitStatus "${CMAKE_MATCH_1}")
help_section(globalOptions "${help}" "Options:")
set(globalFlags "")
string(REPLACE "\n" ";" globalLines "${globalOptions}")
foreach(line IN LISTS globalLines)
    if(line MATCHES "^  (-[^ ].*[^ ]|-[^ ]*)  ")
        list(APPEND globalFlags "${CMAKE_MATCH_1}")
    endif()
endforeach()

string(TOUPPER "${NAME}" title)
roff(descriptionRoff "${description}")
string(CONCAT page ".TH ${title} 1 \"\" \"CoreQt ${version}\" \"User Commands\"\n"
    ".SH NAME\n${NAME} \\- the CoreQt library's camera vocabulary, frame times and enciphered files\n"
    ".SH SYNOPSIS\n.B ${NAME}\n[\\fIoptions\\fR] [\\fIcommand\\fR [\\fIarguments\\fR]]\n"
    ".SH DESCRIPTION\n${descriptionRoff}\n.SH COMMANDS\n")

set(examples "")
string(REPLACE "\n" ";" commandLines "${commands}")
foreach(line IN LISTS commandLines)
    string(STRIP "${line}" usage)
    string(REGEX MATCH "^[^ ]+" command "${usage}")
    run_tool(commandHelp ${command} --help)
    help_section(arguments "${commandHelp}" "Arguments:")
    string(REGEX REPLACE "^  [^ ]+ +" "" arguments "${arguments}")
    join_lines(text "${arguments}")
    help_section(options "${commandHelp}" "Options:")
    options_roff(ownOptions "${options}" "${globalFlags}")
    help_section(example "${commandHelp}" "Example:")
    string(STRIP "${example}" example)
    roff(usageRoff "${usage}")
    roff(text "${text}")
    string(APPEND page ".TP\n.B ${usageRoff}\n${text}\n")
    if(ownOptions)
        string(APPEND page ".RS\n${ownOptions}.RE\n")
    endif()
    if(example)
        # The example, then the first sentence of what the command does.
        roff(exampleRoff "${example}")
        string(REGEX MATCH "^[^.:;(]*" what "${text}")
        string(STRIP "${what}" what)
        string(APPEND examples ".TP\n\\fB${exampleRoff}\\fR\n${what}.\n")
    endif()
endforeach()

options_roff(globalRoff "${globalOptions}" "")
roff(exitRoff "${exitStatus}")
string(APPEND page ".SH OPTIONS\nThese options go with every command.\n${globalRoff}"
    ".SH EXIT STATUS\n${exitRoff}\n.SH EXAMPLES\n${examples}"
    ".SH SEE ALSO\nThe CoreQt README and API reference.\n")
file(WRITE "${OUTPUT}" "${page}")
