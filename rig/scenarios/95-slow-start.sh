#!/bin/sh
# SPDX-License-Identifier: MIT
# The library waits for VAPs that take their time after a restart of the network.
# shellcheck source=rig/scenarios/lib.sh
. "${0%/*}/lib.sh"
with_office

ap 'cat >/tmp/slow-hostapd && chmod +x /tmp/slow-hostapd && cp /usr/sbin/hostapd /tmp/real-hostapd &&
    mount -o bind /tmp/slow-hostapd /usr/sbin/hostapd' <<'END'
#!/bin/sh
sleep 40
exec /tmp/real-hostapd "$@"
END
push "$examples/office.json" slow-office
check 'the VAPs are not up when the save is done' not is_up wdev0ap1
begun=$(cut -d . -f 1 /proc/uptime)
check 'the library waits until they are' ap 'orloctl wait-vaps >/dev/null'
check 'they are up' is_up wdev1ap3
check 'in the second or third look, half a minute apart' [ $(($(cut -d . -f 1 /proc/uptime) - begun)) -ge 30 ]
ap 'umount /usr/sbin/hostapd'
office_is_changed
