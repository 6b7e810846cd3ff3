#!/bin/sh
# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Doxygen input filter: puts each public header into the group of its area, named after its
# folder, so that the reference is grouped by area without a group tag in every header.
# Doxygen does not carry a group opened at file level into a namespace block, so each namespace
# block opens the group again. The markers replace the blank line after the include guard and
# share the lines of the namespace braces, so that line numbers stay those of the header.
file=$1
case "$file" in
    */platform/core/*) group=standin_core ;;
    */platform/kom/*) group=standin_kom ;;
    */src/console/*) group=console ;;
    */src/kom/*) group=komadaptors ;;
    */src/*/*) group=$(basename "$(dirname "$file")") ;;
    *) cat "$file"; exit 0 ;;
esac
awk -v open="/** @addtogroup $group */ /** @{ */" '
    !opened && NF == 0 { print open; opened = 1; next }
    afterNamespace && $0 == "{" { print "{ " open; afterNamespace = 0; next }
    { afterNamespace = /^namespace [A-Za-z_][A-Za-z_0-9]*$/ }
    /^} \/\/ namespace / { print "/** @} */ " $0; next }
    { print }
    END { if (opened) print "/** @} */" }
' "$file"
