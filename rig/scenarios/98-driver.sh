#!/bin/sh
# SPDX-License-Identifier: MIT
# The driver's module may go and come while all of it is in use.
# shellcheck source=rig/scenarios/lib.sh
. "${0%/*}/lib.sh"
with_office

ask_forever() {
    while :; do
        orloctl clients
        orloctl counters
        iwpriv wdev0 getcmd 'radiomode 1'
        cat /sys/kernel/debug/sta/sta_assoc_list
    done >/dev/null 2>&1
}

check 'a station joins' joins 1 2437 Office "$(psk "$office_key")"
ask_forever &
asker=$!
for _ in 1 2 3; do
    rmmod wdev
    sleep 0.3
    modprobe wdev
    ip link set wdev0 up
    sleep 0.3
done
kill "$asker"
wait "$asker" 2>/dev/null
call api_generate_assoc_client_file
check 'the station is told again' equals "$(cat /tmp/assoc_client)" "0,1,$(address_of 1)"
check 'the quilt list has it, too' grep -q "^$(address_of 1) " /sys/kernel/debug/sta/sta_assoc_list
check 'without the module nothing is told' rmmod wdev
check 'and nothing fails' equals "$(orloctl call api_get_channel 0)" 'none (-1)'
modprobe wdev
ip link set wdev0 up
ip link set wdev1 up
check 'and all is told again' equals "$(orloctl call api_get_channel 1)" 36

all_leave
