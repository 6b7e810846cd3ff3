# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Fails when LIBRARY imports a symbol of the stand-in libraries (STANDINS, separated by '|') that is
# not listed in ALLOWED (demangled names, one a line, '#' starts a comment). OMIT drops one entry
# of the list, to check that the failure names the symbol.
#   cmake -DNM=nm -DLIBRARY=libCoreQt.so.1 "-DSTANDINS=libCore.so.1|libkom.so.1" -DALLOWED=list.txt
#         [-DOMIT=symbol] -P CheckStandInInterface.cmake

# The demangled names an nm listing gives, one per entry, without addresses, kinds and versions.
function(read_symbols out)
    execute_process(COMMAND ${NM} -D -C ${ARGN}
        OUTPUT_VARIABLE listing ERROR_VARIABLE errors RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${NM} ${ARGN} failed: ${errors}")
    endif()
    string(REPLACE ";" "\\;" listing "${listing}")
    string(REPLACE "\n" ";" lines "${listing}")
    set(symbols "")
    foreach(line IN LISTS lines)
        string(REGEX REPLACE "^[0-9a-fA-F]* *[A-Za-z] " "" name "${line}")
        string(REGEX REPLACE "@.*$" "" name "${name}")
        if(name)
            list(APPEND symbols "${name}")
        endif()
    endforeach()
    set(${out} "${symbols}" PARENT_SCOPE)
endfunction()

read_symbols(imported --undefined-only "${LIBRARY}")
string(REPLACE "|" ";" standin_files "${STANDINS}")
set(offered "")
foreach(file IN LISTS standin_files)
    read_symbols(defined --defined-only "${file}")
    list(APPEND offered ${defined})
endforeach()

file(STRINGS "${ALLOWED}" allowed REGEX "^[^#]")
if(DEFINED OMIT)
    list(REMOVE_ITEM allowed "${OMIT}")
endif()

# Only the stand-ins' own entities count; a standard-library template that one of them happens
# to export is not part of any interface.
set(offending "")
foreach(symbol IN LISTS imported)
    string(REGEX REPLACE "^(typeinfo name for|typeinfo for|vtable for|VTT for|construction vtable for|virtual thunk to|non-virtual thunk to) "
        "" entity "${symbol}")
    if(NOT entity MATCHES "^(ko::|kom)")
        continue()
    endif()
    list(FIND offered "${symbol}" at)
    if(at EQUAL -1)
        continue()
    endif()
    list(FIND allowed "${symbol}" at)
    if(at EQUAL -1)
        list(APPEND offending "${symbol}")
    endif()
endforeach()

if(offending)
    list(JOIN offending "\n  " names)
    message(FATAL_ERROR "${LIBRARY} uses symbols outside the stand-ins' interface:\n  ${names}\n"
        "Use only what ${ALLOWED} lists, or implement the rest in CoreQt itself.")
endif()
message(STATUS "${LIBRARY}: every stand-in symbol it uses is in the listed interface")
