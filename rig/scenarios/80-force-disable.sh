#!/bin/sh
# SPDX-License-Identifier: MIT
# A radio that is forced off is off, whatever else it is told.
# shellcheck source=rig/scenarios/lib.sh
. "${0%/*}/lib.sh"
with_office

check 'a station joins at 2.4 GHz' joins 1 2437 Office "$(psk "$office_key")"
check 'and one at 5 GHz' joins 2 5180 Office "$(psk "$office_key")"

echo '{"radios": [{"radio": 0, "enabled": true, "override": "force-disable"}]}' >/tmp/off.json
push /tmp/off.json forced-off
check 'radio 0 has no VAP any more' not ap 'ifconfig | grep -q ^wdev0ap'
check 'its beacons are not heard' equals "$(hears 3 2437)" ''
check 'its station has lost its network' eventually 15 is_told 1 CTRL-EVENT-DISCONNECTED
check 'the library tells that it is forced off' \
    equals "$(ap 'orloctl call api_get_force_disable_status 0')" yes
check 'radio 1 is there' is_up wdev1ap0
check 'nothing is waited for' ap 'timeout 5 orloctl wait-vaps >/dev/null'
check 'and its stations may come back' eventually 30 has_joined 2

echo '{"radios": [{"radio": 0, "enabled": true, "override": "not-override"}]}' >/tmp/on.json
push /tmp/on.json office # as it was
check 'radio 0 is back' is_up wdev0ap1
check 'and its station too' eventually 30 has_joined 1
all_leave
