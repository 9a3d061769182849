#!/bin/sh
# SPDX-License-Identifier: MIT
# The interface of the built library against that of the last release, which liborlovendor.abi
# describes: exported names, their types, and the layout of everything that these reach.
#
#   interface.sh check LIBRARY     what is different; status 0 when nothing is
#   interface.sh update LIBRARY    makes this library's interface the one to compare with
#
# The library has to be one with debug information, from g++ on x86-64.
set -eu
here=$(dirname "$0")
action=$1
library=$2

# Nothing of the machine that it was made on enters the description.
of_exports="--headers-dir $here/../../include/orlo --drop-private-types --exported-interfaces-only"
no_traces='--no-corpus-path --no-comp-dir-path --no-show-locs --no-elf-needed --type-id-style hash'

case $action in
check)
    if ! abidiff --harmless "$here/liborlovendor.abi" "$library"; then
        echo 'The interface is not that of the last release. If that is meant: ./run interface update' >&2
        exit 1
    fi
    ;;
update)
    # shellcheck disable=SC2086  # the options are words
    abidw $of_exports $no_traces --out-file "$here/liborlovendor.abi" "$library"
    ;;
*)
    echo "interface.sh: check or update, not '$action'" >&2
    exit 2
    ;;
esac
