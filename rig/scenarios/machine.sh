# Prepares the machine for the scenarios and runs them: the job of a run.
# shellcheck shell=sh

# shellcheck source=rig/scenarios/stations.sh
. /share/scenarios/stations.sh
use_radios phy2 phy3 phy4 phy5

# The RADIUS server of the office, at the address that its description gives.
ip address add 192.0.2.11/32 dev lo
hostapd /etc/radius/server.conf >/var/log/radius.log 2>&1 &

kernel_complains() {
    dmesg | grep -E 'WARNING:|BUG:|Oops|Call Trace'
}

# Seconds since the boot, and how many of them were spent computing.
seconds() {
    read -r uptime idle </proc/uptime
    uptime=${uptime%.*}
    busy=$((uptime - ${idle%.*}))
}

# What a failure is looked into with.
show_state() {
    echo '--- stations'
    tail -n 15 /tmp/stations/*.log
    echo '--- access point'
    orloctl status 2>&1
    iw dev
    tail -n 25 /var/log/apply-settings.log /var/run/hostapd-wifi*.log /var/log/radius.log
    echo '--- kernel'
    dmesg | tail -n 40
}

# A complaint counts for the scenario in which it comes. What a failed one leaves is cleared away.
run_scenario() { # NAME
    sh "/share/scenarios/$1.sh" || return 1
    if kernel_complains; then
        dmesg -c >"/share/logs/$1.kernel"
        echo 'FAILED: the kernel complains of nothing'
        return 1
    fi
}

clear_away() {
    (
        # shellcheck source=rig/scenarios/lib.sh
        . /share/scenarios/lib.sh
        all_leave
        office_is_changed
    )
}

run_scenarios() {
    status=0
    while read -r name; do
        seconds
        begun=$uptime
        busy_before=$busy
        result=ok
        run_scenario "$name" >"/share/logs/$name.log" 2>&1 </dev/null || {
            result=FAILED
            status=1
            show_state >>"/share/logs/$name.log" 2>&1
            clear_away
        }
        seconds
        printf '%-7s %-18s %4d s, %3d s of them busy\n' "$result" "$name" \
            $((uptime - begun)) $((busy - busy_before)) >>/share/results
    done </share/list
    dmesg >/share/logs/dmesg
    return "$status"
}

# shellcheck disable=SC1091 # made for each run
[ ! -e /share/settings ] || . /share/settings
if [ -e /share/list ]; then
    run_scenarios
else
    echo 'An access point and the stations 1 to 4. . /share/scenarios/lib.sh and try:'
    echo '  push /usr/share/examples/office.json office'
    # shellcheck disable=SC2016 # to be typed
    echo '  joins 1 2437 Office "$(psk "$office_key")" && orloctl clients'
    setsid cttyhack /bin/sh # busybox has a shell of its own, and would run its own ip
    true
fi
