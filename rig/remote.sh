#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs scenarios against an access point elsewhere, with radios of this machine as its stations. As
# root: the radios get networks of their own while it runs.
#
# usage: remote.sh ACCESS-POINT "PHY..." SCENARIO...
#   ACCESS-POINT  as for ssh, for example root@192.0.2.1
set -eu

if [ $# -lt 3 ]; then
    sed -n 's/^# \{0,1\}//; 2,6p' "$0" >&2
    exit 2
fi
here=$(cd "$(dirname "$0")" && pwd)
export ORLO_AP="ssh -o BatchMode=yes $1"
radios=$2
shift 2

# shellcheck source=rig/scenarios/stations.sh
. "$here/scenarios/stations.sh"
give_back() {
    for space in /run/netns/station*; do
        [ ! -e "$space" ] || ip netns delete "${space##*/}" # its radio returns
    done
}
trap give_back EXIT
# shellcheck disable=SC2086 # names
use_radios $radios

passed=0
failed=0
for name; do
    echo "== $name"
    if sh "$here/scenarios/${name%.sh}.sh"; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
    fi
done
printf '\n%d passed, %d failed\n' "$passed" "$failed"
[ "$failed" = 0 ]
