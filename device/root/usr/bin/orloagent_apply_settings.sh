#!/bin/sh
# SPDX-License-Identifier: MIT
# Stand-in of the script that makes a saved configuration effective, one word SERVICE-PARAMETER for
# each service to restart. The network's restart brings up the VAPs that the configuration enables
# and takes the others down; the mesh station is up when a mesh VAP connects upward. Whoever waits for it waits until its marker has gone.
# shellcheck source=../lib/device/stand-in.sh
. /usr/lib/device/stand-in.sh
record "$@"

marker=/tmp/orlo_network_restarting
log=/var/log/messages

# Prints the sections whose "disabled" is there and is not "1".
enabled_sections() {
    uci -q show wireless |
        sed -n "s/^wireless\.\(wifi[01][vap0-9]*\)\.disabled='\(.*\)'\$/\1 \2/p" |
        while read -r section disabled; do
            [ "$disabled" = 1 ] || printf ' %s ' "$section"
        done
}

is_enabled() {
    case $enabled in
    *" $1 "*) true ;;
    *) false ;;
    esac
}

connects_upward() {
    [ "$(uci -q get "wireless.$1.mode")" = qx_mesh ] &&
        [ "$(uci -q get "wireless.$1.connector")" = 1 ]
}

restart_network() {
    enabled=$(enabled_sections)
    states=
    station=down
    for radio in 0 1; do
        for vap in 0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15; do
            new=down
            section=wifi${radio}vap$vap
            if is_enabled "wifi$radio" && is_enabled "$section"; then
                new=up
                ! connects_upward "$section" || station=up
            fi
            states="$states wdev${radio}ap$vap $new"
        done
    done
    # shellcheck disable=SC2086 # names and states are words
    set_interfaces $states mesh0 $station
}

/bin/busybox usleep 20000
network_restarted=
for word; do
    printf '%s: restarting %s\n' "${0##*/}" "${word%-*}" >>"$log"
    case $word in
    network-*)
        restart_network
        network_restarted=yes
        ;;
    esac
done
printf '%s: done\n' "${0##*/}" >>"$log"
[ -z "$network_restarted" ] || rm -f "$marker"
