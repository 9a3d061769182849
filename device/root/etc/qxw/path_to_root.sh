#!/bin/sh
# SPDX-License-Identifier: MIT
# Stand-in of the mesh software's script: the addresses from this access point up to the root.
# shellcheck source=../../usr/lib/device/stand-in.sh
. /usr/lib/device/stand-in.sh
record "$@"

path=
while read -r address; do
    path=$path${path:+ ---> }$address
done <"$state/mesh-path"
printf '%s\n' "$path"
