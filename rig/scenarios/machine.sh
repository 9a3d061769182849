# Prepares the machine for the scenarios and runs them; the job of a run.
# shellcheck shell=sh

# The stations: a radio each, in a network of its own.
mkdir -p /tmp/stations
for number in 1 2 3 4; do
    ip netns add "station$number"
    interface=wlan$((number + 1))
    echo "$interface" >"/tmp/stations/$number.interface"
    cat "/sys/class/net/$interface/address" >"/tmp/stations/$number.address"
    iw phy "phy$((number + 1))" set netns name "station$number"
done

# The RADIUS server of the office, at the address that its description gives.
ip address add 192.0.2.11/32 dev lo
hostapd /etc/radius/server.conf >/var/log/radius.log 2>&1 &

kernel_complains() {
    dmesg | grep -E 'WARNING:|BUG:|Oops|Call Trace'
}

uptime_seconds() {
    cut -d . -f 1 /proc/uptime
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

run_scenarios() {
    status=0
    while read -r name; do
        begun=$(uptime_seconds)
        result=ok
        sh "/share/scenarios/$name.sh" >"/share/logs/$name.log" 2>&1 || result=FAILED
        if kernel_complains >>"/share/logs/$name.log"; then
            echo 'FAILED: the kernel complains of nothing' >>"/share/logs/$name.log"
            result=FAILED
        fi
        [ "$result" = ok ] || {
            status=1
            show_state >>"/share/logs/$name.log" 2>&1
        }
        printf '%-7s %-24s %4d s\n' "$result" "$name" $(($(uptime_seconds) - begun)) >>/share/results
    done </share/list
    dmesg >/share/logs/dmesg
    return "$status"
}

# shellcheck disable=SC1091 # made for each run
. /share/settings
run_scenarios
