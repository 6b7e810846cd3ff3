#!/bin/sh
# Doxygen input filter: puts each public header into the group of its area, named after its
# folder, so that the reference is grouped by area without a group tag in every header.
file=$1
case "$file" in
    */platform/core/*) group=standin_core ;;
    */platform/kom/*) group=standin_kom ;;
    */src/console/*) group=console ;;
    */src/kom/*) group=komadaptors ;;
    */src/*/*) group=$(basename "$(dirname "$file")") ;;
    *) cat "$file"; exit 0 ;;
esac
printf '/** @addtogroup %s\n @{ */\n' "$group"
cat "$file"
printf '\n/** @} */\n'
