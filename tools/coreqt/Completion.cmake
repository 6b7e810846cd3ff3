# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Writes the bash completion of coreqt from the tool's own help (commands, global options, each
# command's own options) and the library's trigger event table (the keys for `coreqt event`).
# cmake -DTOOL=<coreqt binary> -DNAME=<installed name> -DEVENTS=<EventTypes.cpp> -DOUTPUT=<file>
#       -P Completion.cmake
include("${CMAKE_CURRENT_LIST_DIR}/RunTool.cmake")

# The long options that take a value ("--name <value>") in a help text.
function(valued_options out help)
    string(REGEX MATCHALL "--[a-z-]+ <" found "${help}")
    string(REPLACE " <" "" found "${found}")
    set(${out} "${found}" PARENT_SCOPE)
endfunction()

# The long options ("--name") named in a help text.
function(long_options out help)
    string(REGEX MATCHALL "\n  (-[a-z], )?--[a-z-]+" found "${help}")
    set(result "")
    foreach(option IN LISTS found)
        string(REGEX REPLACE ".*(--[a-z-]+)$" "\\1" option "${option}")
        list(APPEND result "${option}")
    endforeach()
    list(REMOVE_DUPLICATES result)
    set(${out} "${result}" PARENT_SCOPE)
endfunction()

run_tool(help --help)
long_options(globalOptions "${help}")
valued_options(valued "${help}")
string(REGEX MATCH "\nCommands:\n(.*)\n\n" match "${help}")
string(REGEX MATCHALL "\n  [a-z]+" commands "\n${CMAKE_MATCH_1}")
string(REGEX REPLACE "\n  " "" commands "${commands}")

set(cases "")
foreach(command IN LISTS commands)
    run_tool(commandHelp ${command} --help)
    long_options(options "${commandHelp}")
    valued_options(commandValued "${commandHelp}")
    list(APPEND valued ${commandValued})
    list(REMOVE_ITEM options ${globalOptions})
    list(JOIN options " " options)
    string(APPEND cases "        ${command}) own=\"${options}\" ;;\n")
endforeach()

# Trigger event keys: the second field of each row of the library's table.
file(READ "${EVENTS}" source)
string(REGEX MATCHALL "\n    { \"[^\"]*\", \"[^\"]+\"" rows "${source}")
set(keys "")
foreach(row IN LISTS rows)
    string(REGEX REPLACE ".*\", \"([^\"]+)\"$" "\\1" key "${row}")
    list(APPEND keys "${key}")
endforeach()
list(LENGTH keys count)
if(count LESS 48)
    message(FATAL_ERROR "found ${count} trigger event keys in ${EVENTS}")
endif()
list(APPEND keys AMB_ AME_)

list(JOIN commands " " commandWords)
list(JOIN globalOptions " " globalWords)
list(JOIN keys " " keyWords)
list(REMOVE_DUPLICATES valued)
list(REMOVE_ITEM valued --lang --format)
list(JOIN valued " | " valuedCase)
file(WRITE "${OUTPUT}" "# bash completion for ${NAME}, made from its help and the library's tables      -*- shell-script -*-

_${NAME}()
{
    local cur prev words cword
    _init_completion || return

    local commands=\"${commandWords}\"
    local global=\"${globalWords}\"
    case \$prev in
        --lang) COMPREPLY=(\$(compgen -W 'de fr en' -- \"\$cur\")); return ;;
        --format) COMPREPLY=(\$(compgen -W 'text json' -- \"\$cur\")); return ;;
        ${valuedCase}) return ;;
    esac

    # The command is the first word that is neither an option nor an option's value.
    local command='' i
    for ((i = 1; i < cword; i++)); do
        case \${words[i]} in
            --lang | --format | ${valuedCase}) ((i++)) ;;
            -*) ;;
            *) command=\${words[i]}; break ;;
        esac
    done

    local own=''
    case \$command in
${cases}    esac

    if [[ \$cur == -* ]]; then
        COMPREPLY=(\$(compgen -W \"\$global \$own\" -- \"\$cur\"))
    elif [[ -z \$command ]]; then
        COMPREPLY=(\$(compgen -W \"\$commands\" -- \"\$cur\"))
    else
        case \$command in
            event) COMPREPLY=(\$(compgen -W \"${keyWords}\" -- \"\$cur\")) ;;
            bench) COMPREPLY=(\$(compgen -W 'jobs' -- \"\$cur\")) ;;
            encrypt | decrypt | inspect) _filedir ;;
        esac
    fi
} &&
    complete -F _${NAME} ${NAME}

# ex: filetype=sh
")
