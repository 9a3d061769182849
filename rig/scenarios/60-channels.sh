#!/bin/sh
# SPDX-License-Identifier: MIT
# Channels that the library sets reach the driver: the beacons move, and the stations after them.
# shellcheck source=rig/scenarios/lib.sh
. "${0%/*}/lib.sh"
with_office

channel() { # RADIO
    ap "orloctl call api_get_channel $1"
}
is_on() { # RADIO CHANNEL
    [ "$(channel "$1")" = "$2" ]
}
sends_at() { # FREQUENCY BSSID
    hears 4 "$1" | grep -q "^$2"
}
driver_says() { # WORD
    ap 'iwpriv wdev1 getcmd "radiomode 1"' | sed -n "s/^.*$1=//p"
}

check 'a station joins on channel 6' joins 1 "2437 2462" Office "$(psk "$office_key")"
call api_set_Channel 0 11
check 'radio 0 moves to channel 11' eventually 5 is_on 0 11
check 'its beacons are heard there' eventually 5 sends_at 2462 02:00:00:00:00:01
check 'the configuration has it' equals "$(ap 'uci get wireless.wifi0.channel')" 11
takes_address 1 20
check 'the station has found them' eventually 20 reaches_vlan 1 20
check 'channel 14 is refused' not call api_set_Channel 0 14
check 'and changes nothing' is_on 0 11

call api_set_Channel 1 149
check 'radio 1 moves with all of its 80 MHz' eventually 5 is_on 1 149
check 'its beacons are heard there' eventually 5 sends_at 5745 02:00:00:00:01:02
check 'the kernel has the block of the channel' \
    equals "$(ap 'iw dev wdev1ap0 info' | sed -n 's/.*center1: //p')" '5775 MHz'

call api_set_secondChannel 1 36
check 'the driver runs in two segments' equals "$(driver_says BW2) $(driver_says Channel2)" '5 36'
check 'which the library tells' equals "$(ap 'orloctl call api_get_2ndchannel 1')" 36
call api_set_secondChannel 1 -1
check 'the driver runs in one segment' equals "$(driver_says BW2) $(driver_says Channel2)" '0 '
check 'which the library tells' equals "$(ap 'orloctl call api_get_2ndchannel 1')" 0

# The library looks a frequency up in the driver's list.
parameter=/sys/module/wdev/parameters/frequency_in_mhz
ap "echo Y >$parameter"
check 'a channel told as its frequency is found' equals "$(channel 0) $(channel 1)" '11 149'
ap "echo N >$parameter"
call api_set_Channel 0 6
call api_set_Channel 1 36
check 'radio 0 moves back' eventually 5 is_on 0 6
check 'radio 1 moves back' eventually 5 is_on 1 36
all_leave
