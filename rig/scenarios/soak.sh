#!/bin/sh
# SPDX-License-Identifier: MIT
# Many random pushes in one process, while stations are attached: nothing leaks. Not among the
# scenarios that run by themselves, as it takes its time.
# shellcheck source=rig/scenarios/lib.sh
. "${0%/*}/lib.sh"

pushes=${ORLO_RIG_PUSHES:-50}
seed=${ORLO_RIG_SEED:-1}
key='all the year round'
push_first() {
    printf '{"radios": [{"radio": 0, "enabled": true, "channel": 6, "vaps": [{"vap": 0, "ssid": "Soak",
        "vlan_id": 20, "wireless_security": "wpa-personal",
        "wpa_personal": {"wpa": ["WPA2"], "key": "%s"}}]}]}' "$key" >/tmp/first.json
    push /tmp/first.json soak
}
push_first
check 'a station joins' joins 1 2437 Soak "$(psk "$key")"
# What the allocator keeps aside for a thread would count as in use: it keeps nothing.
check "$pushes random pushes (seed $seed) leave the process as it was" \
    ap "GLIBC_TUNABLES=glibc.malloc.tcache_count=0 soak $pushes $seed Soak '$key' $(address_of 1)"
all_leave
