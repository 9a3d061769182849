#!/bin/sh
# SPDX-License-Identifier: MIT
# All the VAPs that the access point can have, sixteen on each radio. Not among the scenarios that run
# by themselves, as it takes its time.
# shellcheck source=rig/scenarios/lib.sh
. "${0%/*}/lib.sh"

vaps_of() { # RADIO
    for vap in 0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15; do
        printf '%s{"vap": %d, "ssid": "Hall %d.%d", "vlan_id": %d,
            "wireless_security": "wpa-personal",
            "wpa_personal": {"wpa": ["WPA2"], "key": "the key of hall %d.%d"}}' \
            "$separator" "$vap" "$1" "$vap" $((100 + vap)) "$1" "$vap"
        separator=,
    done
    separator=
}
separator=
printf '{"radios": [{"radio": 0, "enabled": true, "channel": 6, "vaps": [%s]},
    {"radio": 1, "enabled": true, "channel": 36, "vaps": [%s]}]}' "$(vaps_of 0)" "$(vaps_of 1)" \
    >/tmp/halls.json
push /tmp/halls.json halls

check 'the library waits until all are up' ap 'orloctl wait-vaps >/dev/null'
check 'thirty-two VAPs are up' equals "$(ap ifconfig | grep -c '^wdev[01]ap')" 32
check 'the last of radio 0 lets a station in' joins 1 2437 'Hall 0.15' "$(psk 'the key of hall 0.15')"
check 'the last of radio 1 lets a station in' joins 2 5180 'Hall 1.15' "$(psk 'the key of hall 1.15')"
check 'and not with the key of another' is_refused 3 5180 'Hall 1.14' "$(psk 'the key of hall 1.15')"
call api_generate_assoc_client_file
check 'both are listed' equals "$(ap 'cat /tmp/assoc_client')" "0,15,$(address_of 1)
1,15,$(address_of 2)"
all_leave
