#!/bin/sh
# SPDX-License-Identifier: MIT
# The records of links over the air yield VAPs that carry them.
# shellcheck source=rig/scenarios/lib.sh
. "${0%/*}/lib.sh"

# A station that carries a network behind it, as a child of a link does.
joins_as_child() { # NUMBER FREQUENCY SSID LINE...
    leave "$1"
    in_station "$1" iw dev "$(interface_of "$1")" set type managed
    in_station "$1" iw dev "$(interface_of "$1")" set 4addr on
    joins "$@"
}

cat >/tmp/parent.json <<'END'
{
  "radios": [
    {"radio": 0, "enabled": true, "override": "not-override", "channel": 6,
     "vaps": [{"vap": 0, "ssid": "Yard", "vlan_id": 20}]},
    {"radio": 1, "enabled": true, "override": "not-override", "channel": 36,
     "mesh": {"eligible_channels": [36, 40, 44, 48], "bandwidth": 80,
              "vap": {"vap": 1, "acceptor": true, "connector": false,
                      "ssid": "Orchard Mesh", "key": "from tree to tree"}},
     "vaps": [{"vap": 0, "ssid": "Orchard", "vlan_id": 20}]}
  ],
  "wds": [{"radio_intf": "wlan0", "wds_mode": "parent", "ssid": "Warehouse Link", "security": "wpa",
           "wpa": {"key": "the yard is between us", "version": ["WPA2"], "cipher": ["CCMP"],
                   "mfp": true, "bcast_key_refresh_rate": 3600}}]
}
END
push /tmp/parent.json links
check 'the links are there, on radio 0 the first VAP alone' \
    equals "$(ap 'iw dev' | sed -n 's,^\t\tssid ,,p' | sort | tr '\n' ' ')" \
    'Orchard Orchard Mesh Warehouse Link '
link_key() {
    printf 'key_mgmt=WPA-PSK-SHA256 WPA-PSK\nieee80211w=1\npsk="the yard is between us"\n'
}
check 'a child joins the WDS parent' joins_as_child 1 2437 'Warehouse Link' "$(link_key)"
check 'and gets a port of its own there' eventually 5 ap 'iw dev | grep -q wdev0ap0.sta1'
call api_set_Channel 0 11
child_is_on() { # FREQUENCY
    in_station 1 iw dev "$(interface_of 1)" info | grep -q "($1 MHz)"
}
check 'it comes along to another channel' eventually 5 child_is_on 2462
check 'without leaving' not is_told 1 CTRL-EVENT-DISCONNECTED
check 'a child joins the mesh' joins_as_child 2 5180 'Orchard Mesh' "$(psk 'from tree to tree')"
check 'and gets a port of its own there' eventually 5 ap 'iw dev | grep -q wdev1ap1.sta1'
check 'the mesh is not heard by name' not eval 'hears 3 5180 | grep -q Mesh'
all_leave

# The access point as the child of a parent elsewhere: a station's radio is the parent.
cat >/tmp/stations/parent.conf <<END
interface=$(interface_of 3)
driver=nl80211
hw_mode=a
channel=36
country_code=US
ssid=Warehouse Link
wpa=2
wpa_key_mgmt=WPA-PSK WPA-PSK-SHA256
rsn_pairwise=CCMP
ieee80211w=1
wpa_passphrase=the yard is between us
wds_sta=1
END
in_station 3 iw dev "$(interface_of 3)" set type __ap
in_station 3 hostapd -B -P /tmp/stations/parent.pid -f /tmp/stations/parent.log /tmp/stations/parent.conf
push "$examples/wds-child.json" wds-child
child_has_joined() {
    grep -q "AP-STA-CONNECTED 02:00:00:00:01:00" /tmp/stations/parent.log
}
check 'radio 1 joins its parent' eventually 15 child_has_joined
check 'as a station' ap 'iw dev wdev1ap0 info | grep -q "type managed"'
check 'radio 0 has its network' is_up wdev0ap0
read -r pid </tmp/stations/parent.pid
kill "$pid"
eventually 5 not kill -0 "$pid" 2>/dev/null
for number in 1 2 3; do
    in_station "$number" ip link set "$(interface_of "$number")" down
    in_station "$number" iw dev "$(interface_of "$number")" set type managed
    in_station "$number" iw dev "$(interface_of "$number")" set 4addr off
done
