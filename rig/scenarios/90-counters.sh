#!/bin/sh
# SPDX-License-Identifier: MIT
# Counters grow by what was really sent.
# shellcheck source=rig/scenarios/lib.sh
. "${0%/*}/lib.sh"
with_office

counted_by_kernel() { # FIELD
    ap "cat /sys/class/net/wdev0ap1/statistics/$1"
}
told_by_library() { # FIELD
    ap 'orloctl counters --json' | tr -d ' \n' |
        sed -n "s/.*\"vaps\":\[\(.*\)/\1/p" | tr '{' '\n' | grep '"radio":0,"vap":1,' |
        sed -n "s/.*\"$1\":\([0-9]*\).*/\1/p"
}

check 'a station joins' joins 1 2437 Office "$(psk "$office_key")"
takes_address 1 20
check 'and speaks' eventually 5 reaches_vlan 1 20
sleep 2

packets=$(told_by_library rx_packets)
bytes=$(told_by_library rx_bytes)
in_station 1 ping -c 20 -i 0.1 -s 1000 10.0.20.1 >/dev/null
more_packets=$(($(told_by_library rx_packets) - packets))
more_bytes=$(($(told_by_library rx_bytes) - bytes))

# A ping is 1000 bytes, behind headers of 8, 20 and 14; a few packets of the network's own come between.
echo "$more_packets packets, $more_bytes bytes"
check 'twenty pings are twenty packets more' [ "$more_packets" -ge 20 ]
check 'and hardly any others' [ "$more_packets" -le 25 ]
check 'with their bytes' [ "$more_bytes" -ge $((20 * 1042)) ]
check 'and hardly any others' [ "$more_bytes" -le $((20 * 1042 + 1000)) ]
before=$(counted_by_kernel rx_packets)
told=$(told_by_library rx_packets)
check 'the library tells what the kernel counts' [ "$before" -le "$told" ]
check 'and not more' [ "$told" -le "$(counted_by_kernel rx_packets)" ]
all_leave
