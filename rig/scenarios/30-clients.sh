#!/bin/sh
# SPDX-License-Identifier: MIT
# The library tells exactly the stations that are there: in its list, in both files, to the agent.
# shellcheck source=rig/scenarios/lib.sh
. "${0%/*}/lib.sh"
with_office

ap 'ip neighbour flush all' # whoever has spoken before
# A station's signal at the other radios is its power less 50 dB.
for number in 1 2 3; do
    in_station "$number" iw dev "$(interface_of "$number")" set txpower fixed $((number * 500 + 500))
done
check 'station 1 joins Office at 2.4 GHz' joins 1 2437 Office "$(psk "$office_key")"
check 'station 2 joins Office Lab' joins 2 5180 'Office Lab' "$(sae "$lab_key")"
check 'station 3 joins Office Guests at 5 GHz' joins 3 5180 'Office Guests' key_mgmt=NONE
start_joining 4 2437 Office "$(psk 'wrong horse battery staple')" # and is not told
takes_address 1 20
takes_address 2 50
check 'station 1 speaks' eventually 5 reaches_vlan 1 20
check 'station 2 speaks' eventually 5 reaches_vlan 2 50
first=$(address_of 1)
second=$(address_of 2)
third=$(address_of 3)

call api_generate_assoc_client_file
check 'the list has them by their VAPs' equals "$(ap 'cat /tmp/assoc_client')" \
    "0,1,$first
1,2,$third
1,3,$second"

# BSSID RADIO VAP CHANNEL STATION IPV4 SSID VLAN KIND SIGNAL of each record of 134 bytes.
records() {
    od -An -v -tu1 -w134 | awk '
        function address(at) {
            return sprintf("%02x:%02x:%02x:%02x:%02x:%02x", $(at + 1), $(at + 2), $(at + 3),
                $(at + 4), $(at + 5), $(at + 6))
        }
        {
            ssid = ""
            for (i = 25; i < 58 && $(i + 1); i++) {
                ssid = ssid sprintf("%c", $(i + 1))
            }
            print address(0), $7, $8, $9, address(9), $18 "." $19 "." $20 "." $21, ssid, \
                $59 + 256 * $60, $61, $123 - 256
        }'
}
check 'the detail file tells each as it is' equals "$(ap 'cat /tmp/assoc_client_detail' | records)" \
    "02:00:00:00:00:01 0 1 6 $first $(ipv4_of 1 20) Office 20 0 -40
02:00:00:00:01:02 1 2 36 $third 0.0.0.0 Office Guests 30 0 -30
02:00:00:00:01:03 1 3 36 $second $(ipv4_of 2 50) Office Lab 50 0 -35"

ap 'datagrams 36000 2 10 >/tmp/datagrams & sleep 0.5; orloctl call api_get_assoc_client_detail; wait' >/dev/null
zeros() { # COUNT
    printf "%0$(($1 * 2))d" 0
}
check 'the agent gets a start marker and an end marker' equals "$(ap 'cat /tmp/datagrams')" \
    "058600$(zeros 60)01$(zeros 73)
058600$(zeros 60)02$(zeros 73)"

all_leave
call api_generate_assoc_client_file
check 'who has left is not told any more' equals "$(ap 'cat /tmp/assoc_client')" ''
