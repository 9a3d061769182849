# Prepares the stations, 1 to 4: a radio each, in a network of its own.
# usage: . stations.sh; use_radios PHY...
# shellcheck shell=sh

use_radios() {
    mkdir -p /tmp/stations
    number=0
    for phy; do
        number=$((number + 1))
        ip netns add "station$number"
        for interface in "/sys/class/ieee80211/$phy"/device/net/*; do
            echo "${interface##*/}" >"/tmp/stations/$number.interface"
            cat "$interface/address" >"/tmp/stations/$number.address"
        done
        iw phy "$phy" set netns name "station$number"
    done
}
