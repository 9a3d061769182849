#!/bin/sh
# SPDX-License-Identifier: MIT
# Makes a saved configuration effective, one word SERVICE-PARAMETER for each service to restart. It
# reads nothing but the configuration. Whoever waits for the network's restart waits until the marker
# has gone: until every VAP is up, and no longer than a start may take.

# shellcheck source=rig/image/root/usr/lib/wireless/channels.sh
. /usr/lib/wireless/channels.sh

marker=/tmp/orlo_network_restarting
log=/var/log/apply-settings.log
patience=15 # seconds
run=/var/run

say() {
    echo "$*" >>"$log"
}

end_process() { # PID-FILE
    [ -e "$1" ] || return 0
    read -r pid <"$1"
    kill "$pid" 2>/dev/null
    # Its VAPs go when it has ended.
    for _ in 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20; do
        kill -0 "$pid" 2>/dev/null || break
        usleep 100000
    done
    kill -9 "$pid" 2>/dev/null
    rm -f "$1"
}

stop_radio() { # RADIO
    for pid_file in "$run/hostapd-wifi$1.pid" "$run/wdev$1"ap*.station.pid; do
        end_process "$pid_file"
    done
    rm -rf "$run/hostapd-wifi$1" "$run/hostapd-wifi$1.main"
    for interface in /sys/class/net/wdev"$1"ap*; do
        [ ! -e "$interface" ] || iw dev "${interface##*/}" del
    done
}

create_vap() { # NAME TYPE ADDRESS
    phy=${1#wdev}
    iw phy "phy${phy%%ap*}" interface add "$1" type "$2" &&
        ip link set "$1" address "$3"
}

# The bridge that carries a VLAN, with the access point's own address in it.
create_bridge() { # VLAN
    bridge=br-vlan$1
    [ ! -e "/sys/class/net/$bridge" ] || return 0
    ip link add "$bridge" type bridge
    ip address add "10.$(($1 / 256)).$(($1 % 256)).1/24" dev "$bridge"
    ip link set "$bridge" up
}

# The child of a link over the air: a station that carries a network behind it.
start_station() { # NAME ADDRESS VLAN
    create_vap "$1" managed "$2"
    iw dev "$1" set 4addr on
    ip link set "$1" master "br-vlan$3"
    awk -v name="$1" -f /usr/lib/wireless/options.awk -f /usr/lib/wireless/station.awk \
        "$run/wireless" >"$run/$1.station.conf"
    ip link set "$1" up
    wpa_supplicant -i "$1" -b "br-vlan$3" -c "$run/$1.station.conf" -D nl80211 \
        >"$run/$1.station.log" 2>&1 &
    echo "$!" >"$run/$1.station.pid"
}

# The access points of a radio are one hostapd's, which creates all but the first of its VAPs.
start_access_points() { # NAME...
    [ $# -gt 0 ] || return 0
    conf=$run/hostapd-wifi$radio.conf
    describe_channel "$radio" "$channel" "$width"
    awk -v radio="$radio" -v channel="$channel" -v channel_lines="$hostapd_lines" -v names="$*" \
        -v run="$run" -f /usr/lib/wireless/options.awk -f /usr/lib/wireless/hostapd.awk \
        "$run/wireless" >"$conf"
    echo "$1" >"$run/hostapd-wifi$radio.main"
    hostapd -t "$conf" >"$run/hostapd-wifi$radio.log" 2>&1 &
    echo "$!" >"$run/hostapd-wifi$radio.pid"
}

# Reads what is to be up, line by line.
start_radios() {
    points=
    while read -r kind first second third; do
        case $kind in
        radio)
            # shellcheck disable=SC2086 # names
            start_access_points $points
            points=
            radio=$first
            channel=$second
            width=$third
            ;;
        ap)
            create_bridge "$third"
            [ -n "$points" ] || create_vap "$first" __ap "$second"
            points="$points $first"
            ;;
        station)
            create_bridge "$third"
            start_station "$first" "$second" "$third"
            ;;
        esac
    done <"$run/wanted"
    # shellcheck disable=SC2086
    start_access_points $points
}

is_up() { # RADIO
    [ -e "$run/hostapd-wifi$1.main" ] || return 0
    read -r main <"$run/hostapd-wifi$1.main"
    hostapd_cli -i "$main" status 2>/dev/null | grep -q '^state=ENABLED'
}

# Some of the library's commands look for the control sockets in a folder of the radio.
offer_sockets() {
    for radio in 0 1; do
        mkdir -p "$run/hostapd-wifi$radio"
        for socket in "$run"/hostapd/wdev"$radio"ap*; do
            [ ! -e "$socket" ] || ln -sf "$socket" "$run/hostapd-wifi$radio/${socket##*/}"
        done
    done
}

restart_network() {
    uci show wireless >"$run/wireless"
    awk -f /usr/lib/wireless/options.awk -f /usr/lib/wireless/vaps.awk "$run/wireless" >"$run/wanted"
    stop_radio 0
    stop_radio 1
    start_radios
    waited=0
    until is_up 0 && is_up 1; do
        waited=$((waited + 1))
        if [ "$waited" -gt $((patience * 5)) ]; then
            say 'the VAPs take their time'
            return
        fi
        usleep 200000
    done
    offer_sockets
}

mkdir -p "$run/hostapd"
network_restarted=
for word; do
    say "restarting ${word%-*}"
    case $word in
    network-*)
        restart_network
        network_restarted=yes
        ;;
    esac
done
say 'done'
[ -z "$network_restarted" ] || rm -f "$marker"
