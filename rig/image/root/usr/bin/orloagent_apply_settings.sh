#!/bin/sh
# Makes a saved configuration effective, one word SERVICE-PARAMETER for each service to restart. It
# reads nothing but the configuration. Whoever waits for the network's restart waits until the marker
# has gone: until every VAP is up, and no longer than a start may take.
. /usr/lib/wireless/channels.sh

marker=/tmp/orlo_network_restarting
log=/var/log/apply-settings.log
patience=15 # seconds
run=/var/run

say() {
    echo "$*" >>"$log"
}

# The VAPs of a radio that are to be up, "MODE NAME" a line.
wanted_vaps() { # RADIO
    awk -v radio="$1" -f /usr/lib/wireless/options.awk -f /usr/lib/wireless/vaps.awk "$run/wireless"
}

stop_radio() { # RADIO
    for pid_file in "$run/hostapd-wifi$1.pid" "$run"/wdev"$1"ap*.station.pid; do
        [ -e "$pid_file" ] || continue
        read -r pid <"$pid_file"
        kill "$pid" 2>/dev/null
        # Its VAPs go when it has ended.
        for _ in 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20; do
            kill -0 "$pid" 2>/dev/null || break
            usleep 100000
        done
        kill -9 "$pid" 2>/dev/null
        rm -f "$pid_file"
    done
    rm -f "$run/hostapd-wifi$1.main"
    rm -rf "$run/hostapd-wifi$1"
    for interface in /sys/class/net/wdev"$1"ap*; do
        [ ! -e "$interface" ] || iw dev "${interface##*/}" del
    done
}

vap_address() { # NAME
    section=wifi${1#wdev}
    uci -q get "wireless.${section%%ap*}vap${section##*ap}.vapmac"
}

create_vap() { # RADIO NAME TYPE
    iw phy "phy$1" interface add "$2" type "$3" &&
        ip link set "$2" address "$(vap_address "$2")"
}

bridge_of() { # VLAN
    bridge=br-vlan$1
    if [ ! -e "/sys/class/net/$bridge" ]; then
        ip link add "$bridge" type bridge
        ip address add "10.$(($1 / 256)).$(($1 % 256)).1/24" dev "$bridge"
        ip link set "$bridge" up
    fi
}

# The access points of a radio: one hostapd, whose first VAP this script creates.
start_access_points() { # RADIO NAME...
    radio=$1
    shift
    create_vap "$radio" "$1" __ap
    describe_channel "$radio" "$(channel_of "$radio")" "$(uci -q get "wireless.wifi$radio.htmode")"
    for vlan in $(awk -v radio="$radio" -v what=vlans -f /usr/lib/wireless/options.awk \
        -f /usr/lib/wireless/vaps.awk "$run/wireless"); do
        bridge_of "$vlan"
    done
    conf=$run/hostapd-wifi$radio.conf
    awk -v radio="$radio" -v channel="$(channel_of "$radio")" -v channel_lines="$hostapd_lines" \
        -v names="$*" -v run="$run" -f /usr/lib/wireless/options.awk \
        -f /usr/lib/wireless/hostapd.awk "$run/wireless" >"$conf"
    echo "$1" >"$run/hostapd-wifi$radio.main"
    hostapd -t "$conf" >"$run/hostapd-wifi$radio.log" 2>&1 &
    echo "$!" >"$run/hostapd-wifi$radio.pid"
}

# Where no channel is told, the first that may be used.
channel_of() { # RADIO
    channel=$(uci -q get "wireless.wifi$1.channel")
    case $channel in
    '' | auto | *[!0-9]*)
        # shellcheck disable=SC2046 # words
        set -- $(uci -q get "wireless.wifi$1.eg_ch")
        channel=$1
        ;;
    esac
    echo "$channel"
}

# The child of a link over the air: a station that carries a network behind it.
start_station() { # RADIO NAME
    create_vap "$1" "$2" managed
    iw dev "$2" set 4addr on
    awk -v radio="$1" -v name="$2" -f /usr/lib/wireless/options.awk \
        -f /usr/lib/wireless/station.awk "$run/wireless" >"$run/$2.station.conf"
    ip link set "$2" up
    wpa_supplicant -i "$2" -c "$run/$2.station.conf" -D nl80211 >"$run/$2.station.log" 2>&1 &
    echo "$!" >"$run/$2.station.pid"
}

start_radio() { # RADIO
    points=
    while read -r mode name; do
        case $mode in
        ap) points="$points $name" ;;
        station) start_station "$1" "$name" ;;
        esac
    done <"$run/wifi$1.vaps"
    # shellcheck disable=SC2086 # names
    [ -z "$points" ] || start_access_points "$1" $points
}

is_up() { # RADIO
    [ -e "$run/hostapd-wifi$1.main" ] || return 0
    read -r main <"$run/hostapd-wifi$1.main"
    hostapd_cli -i "$main" status 2>/dev/null | grep -q '^state=ENABLED'
}

# The older folders of the control sockets, one for each radio.
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
    iw reg set "$(uci -q get system.system.country || echo US)"
    for radio in 0 1; do
        wanted_vaps "$radio" >"$run/wifi$radio.vaps"
        stop_radio "$radio"
        start_radio "$radio"
    done
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
