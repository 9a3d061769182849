#!/bin/sh
# SPDX-License-Identifier: MIT
# A station that the agent sends away goes, and is told so.
# shellcheck source=rig/scenarios/lib.sh
. "${0%/*}/lib.sh"
with_office

listed() {
    ap 'orloctl call api_generate_assoc_client_file >/dev/null; cat /tmp/assoc_client'
}

check 'a station joins' joins 1 2437 Office "$(psk "$office_key")"
check 'and another' joins 2 2437 Office "$(psk "$office_key")"
check 'both are listed' equals "$(listed)" "0,1,$(address_of 1),$(address_of 2)"

# The first would be back within a second: it is kept from it.
read -r pid <"$stations/1.pid"
kill -STOP "$pid"
call api_disassociate_client "$(address_of 1)" 0 1
gone() {
    equals "$(listed)" "0,1,$(address_of 2)"
}
check 'only the other is listed' eventually 3 gone
check 'the other was left alone' not is_told 2 CTRL-EVENT-DISCONNECTED
kill -CONT "$pid"
check 'the station was told' eventually 3 is_told 1 'CTRL-EVENT-DISCONNECTED.*bssid=02:00:00:00:00:01'
check 'and may join again' eventually 15 has_joined 1
all_leave
