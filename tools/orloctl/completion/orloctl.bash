# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# Completion of orloctl for bash: orloctl itself tells what may come next. Where it does not know,
# any file may.

_orloctl() {
    local typed=("${COMP_WORDS[@]:1:COMP_CWORD}")
    mapfile -t COMPREPLY < <("${COMP_WORDS[0]}" completion -- "${typed[@]}" 2>/dev/null)
    if [ "${#COMPREPLY[@]}" -eq 0 ]; then
        compopt -o default
    fi
}

complete -F _orloctl orloctl
