#!/bin/sh
# SPDX-License-Identifier: MIT
# The example agent in a virtual access point.
#
# usage: agent.sh VIRTUAL_AP
set -eu
virtual_ap=$1

expect() { # SENTENCE EXPECTED COMMAND
    said=$("$virtual_ap" -- sh -c "$3" 2>&1) || status=$?
    [ "${status:-0}" -ne 77 ] || exit 77
    if [ "$said" != "$2" ]; then
        printf '%s. Expected:\n%s\nThe agent says:\n%s\n' "$1" "$2" "$said" >&2
        exit 1
    fi
}

expect 'puts its network on the air, once' \
    'radio 1: channel 44, power 75%, "Example" is up
already applied
radio 1: channel 44, power 75%, "Example" is up
psk2+ccmp' \
    'example-agent && example-agent && uci get wireless.wifi1vap0.encryption'

# shellcheck disable=SC2016  # the access point's own shell expands it
expect 'leaves the stored network and lets the web interface in again when an operation fails' \
    'uciSetValue (67): Failed to set value: wireless.wifi1vap15.mode=ap
agent: api_apply_vap: failed (-1)
radio 1: channel 44, power 75%, "Lobby 5 GHz" is up
status 1, nothing staged' \
    'uci delete wireless.wifi1vap15 && uci commit
     example-agent
     echo "status $?, $([ -z "$(uci changes)" ] && echo nothing) staged"
     test ! -e /tmp/radio_setting'

expect 'waits for its turn while the web interface applies' \
    'agent: the web interface is applying its own configuration' \
    'touch /tmp/gui_network_restarting; example-agent'
