#!/bin/sh
# SPDX-License-Identifier: MIT
# A whole office is pushed through the library and saved: its networks are in the air.
# shellcheck source=rig/scenarios/lib.sh
. "${0%/*}/lib.sh"

push "$examples/office.json" office

check 'the library waited until all VAPs were up' ap 'timeout 5 orloctl wait-vaps >/dev/null'
for vap in 'wdev0ap0 Office Scanners' 'wdev0ap1 Office' 'wdev0ap2 Office Guests' \
    'wdev1ap0 Office Staff' 'wdev1ap1 Office' 'wdev1ap2 Office Guests' 'wdev1ap3 Office Lab'; do
    interface=${vap%% *}
    check "$vap is an access point of the kernel" \
        equals "$(ap "iw dev $interface info" | sed -n 's/^\tssid //p')" "${vap#* }"
done
check 'no other VAP is up' equals "$(ap 'ifconfig' | grep -c '^wdev[01]ap')" 7

check 'a station hears the networks of radio 0 with their addresses' equals "$(hears 1 2437)" \
    '02:00:00:00:00:00 Office Scanners
02:00:00:00:00:01 Office
02:00:00:00:00:02 Office Guests'
# A station that does not ask for the hidden network hears it without a name.
check 'and those of radio 1' equals "$(hears 1 5180 | sed 's,\(\\x00\)*$,,')" \
    '02:00:00:00:01:00 Office Staff
02:00:00:00:01:01 Office
02:00:00:00:01:02 Office Guests
02:00:00:00:01:03 '

check 'the library tells the channels in use' \
    equals "$(ap 'orloctl call api_get_channel 0; orloctl call api_get_channel 1' | tr '\n' ' ')" '6 36 '
