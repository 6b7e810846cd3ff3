#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# The installed manual page and bash completion of coreqt: the page renders without a warning
# and names every command, option and example the tool's help lists; the completion offers the
# commands, a command's own options and the trigger event keys.
#   manual.sh PREFIX [NAME]     NAME: the installed program, coreqt (default) or coreqt6
set -euo pipefail
prefix=$1
name=${2:-coreqt}
tool=$prefix/bin/$name
page=$prefix/share/man/man1/$name.1.gz
completion=$prefix/share/bash-completion/completions/$name
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

warnings=$(zcat "$page" | groff -man -Tutf8 -ww -z 2>&1) || fail "groff failed"
[ -z "$warnings" ] || fail "groff warnings: $warnings"
text=$(zcat "$page" | groff -man -Tutf8 -P-cbou 2>/dev/null)
for section in NAME SYNOPSIS DESCRIPTION COMMANDS OPTIONS "EXIT STATUS" EXAMPLES; do
    grep -q "^$section" <<<"$text" || fail "no section $section"
done
commands=$("$tool" --help | sed -n '/^Commands:/,/^$/p' | awk 'NR > 1 && NF { print $1 }')
[ "$(wc -w <<<"$commands")" -ge 10 ] || fail "too few commands in the help: $commands"
for command in $commands; do
    grep -q "^       $command" <<<"$text" || fail "command $command missing"
    example=$("$tool" "$command" --help | sed -n '/^Example:/{n;p}' | sed 's/^ *//')
    [ -n "$example" ] || fail "command $command has no example"
    grep -qF -- "$example" <<<"$text" || fail "example of $command missing: $example"
    for option in $("$tool" "$command" --help | grep -oE '^  (-., )?--[a-z-]+' | grep -oE -- '--[a-z-]+'); do
        grep -qF -- "$option" <<<"$text" || fail "option $option of $command missing"
    done
done

bash -n "$completion" || fail "completion does not parse"
complete_words() {
    bash -c 'source /usr/share/bash-completion/bash_completion; source "$1"; shift
        COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); COMP_LINE="$*"; COMP_POINT=${#COMP_LINE}
        "_$0" "$0" "${COMP_WORDS[-1]}" "${COMP_WORDS[-2]}"; echo "${COMPREPLY[*]}"' "$name" "$completion" "$@"
}
[ "$(complete_words "$name" ev)" = "events event" ] || fail "commands: $(complete_words "$name" ev)"
[ "$(complete_words "$name" --lang de vocab --k)" = "--key" ] \
    || fail "own option: $(complete_words "$name" --lang de vocab --k)"
[ "$(complete_words "$name" event Ring)" = "RingOK" ] || fail "event keys: $(complete_words "$name" event Ring)"
[ "$(complete_words "$name" --format '')" = "text json" ] || fail "format values"

[ "$failures" -eq 0 ] || exit 1
echo "manual page and completion: ok"
